#include "ImagePane.h"
#include "FrameConversion.h"
#include "OpenAndWait.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace KST::TrkAPI;

namespace {

// The frame of the given size, format and bytes converted to fit within box.
QImage Convert(int width, int height, PixelFormat format, std::vector<unsigned char> data,
               QSize box)
{
    const size_t stride = static_cast<size_t>(width) * BytesPerPixel(format);
    return ConvertFrame(Frame{width, height, format, stride, 0, std::move(data)}, box);
}

TEST(ImagePane, ConvertsEachFormatAndFitsTheAspectRatio)
{
    const QImage mono = Convert(2, 1, PixelFormat::Mono8, {0, 200}, QSize(2, 1));
    EXPECT_EQ(qRgb(0, 0, 0), mono.pixel(0, 0));
    EXPECT_EQ(qRgb(200, 200, 200), mono.pixel(1, 0));
    // Words come little-endian, as over the wire.
    EXPECT_EQ(qRgb(0x80, 0x80, 0x80),
              Convert(1, 1, PixelFormat::Mono16, {0x40, 0x80}, QSize(1, 1)).pixel(0, 0));
    EXPECT_EQ(qRgb(10, 20, 30),
              Convert(1, 1, PixelFormat::RGB8, {10, 20, 30}, QSize(1, 1)).pixel(0, 0));
    // One 2 x 2 cell of 10, 20 over 30, 40: each format reads red and blue
    // from its own corners and averages the two greens.
    const std::pair<PixelFormat, QRgb> bayer[] = {{PixelFormat::BayerRG8, qRgb(10, 25, 40)},
                                                  {PixelFormat::BayerGR8, qRgb(20, 25, 30)},
                                                  {PixelFormat::BayerGB8, qRgb(30, 25, 20)},
                                                  {PixelFormat::BayerBG8, qRgb(40, 25, 10)}};
    for (const auto& format : bayer) {
        EXPECT_EQ(format.second,
                  Convert(2, 2, format.first, {10, 20, 30, 40}, QSize(2, 2)).pixel(1, 1))
            << static_cast<int>(format.first);
    }
    EXPECT_EQ(QSize(200, 50), Convert(400, 100, PixelFormat::Mono8,
                                      std::vector<unsigned char>(40000), QSize(200, 200))
                                  .size());
    // Shrinking averages 0/255 columns at 2:1 to grey; Mono12 arrives shifted
    // to the top of the word; the last row and column of an odd Bayer frame
    // keep their cell's colours; padded rows are skipped.
    EXPECT_EQ(qRgb(127, 127, 127),
              Convert(4, 2, PixelFormat::Mono8, {0, 255, 0, 255, 255, 0, 255, 0}, QSize(2, 1))
                  .pixel(1, 0));
    EXPECT_EQ(qRgb(0xAB, 0xAB, 0xAB),
              Convert(1, 1, PixelFormat::Mono16, {0xC0, 0xAB}, QSize(1, 1)).pixel(0, 0));
    EXPECT_EQ(qRgb(10, 25, 40), Convert(3, 3, PixelFormat::BayerRG8,
                                        {10, 20, 10, 30, 40, 30, 10, 20, 10}, QSize(3, 3))
                                    .pixel(2, 2));
    const Frame padded{2, 2, PixelFormat::Mono8, 4, 0, {1, 2, 99, 99, 3, 4, 99, 99}};
    EXPECT_EQ(qRgb(3, 3, 3), ConvertFrame(padded, QSize(2, 2)).pixel(0, 1));
    EXPECT_TRUE(Convert(2, 1, PixelFormat::Mono8, {1, 2}, QSize()).isNull());
    EXPECT_TRUE(Convert(2, 2, PixelFormat::Mono8, {1, 2}, QSize(2, 2)).isNull());
    EXPECT_TRUE(Convert(1, 1, PixelFormat::BayerRG8, {1}, QSize(1, 1)).isNull());
}

TEST(ImagePane, ShowsTheNewestFrameAndDropsThoseItCannotShowInTime)
{
    ImagePane pane;
    pane.resize(320, 240);
    pane.show();
    std::unique_ptr<Sim::Camera> camera = Sim::MakeCamera("autofunction");
    camera->SetFrameClock(false);
    camera->SetFromCamera("Width", 640LL);
    camera->SetFromCamera("Height", 480LL);
    camera->Find("AcquisitionStart")->RunCommand();
    camera->SetFrameHandler(pane.Handler());

    // Without the event loop the pane takes no image: all but the frame
    // being converted and the newest one are dropped.
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(camera->ProduceFrame());
    }
    EXPECT_EQ(30u, pane.FramesReceived());
    EXPECT_TRUE(RunUntil([&] { return pane.FramesShown() == 2; }));
    QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
    EXPECT_EQ(2u, pane.FramesShown());
    EXPECT_TRUE(pane.StatisticsText().contains("received: 30"));

    camera->SetFrameHandler(FrameHandler());

    // An image converted before the pane is cleared never shows; of the
    // frames after it, the newest is shown last.
    const FrameHandler handler = pane.Handler();
    auto offer = [&handler](unsigned char level) {
        handler(std::make_shared<Frame>(
            Frame{4, 4, PixelFormat::Mono8, 4, 0, std::vector<unsigned char>(16, level)}));
    };
    offer(10);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    pane.Clear();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
    EXPECT_EQ(0u, pane.FramesShown());
    EXPECT_EQ(qRgb(32, 32, 32), pane.grab().toImage().pixel(60, 60));
    for (unsigned char level : {20, 30, 40}) {
        offer(level);
    }
    EXPECT_TRUE(RunUntil([&] { return pane.grab().toImage().pixel(60, 60) == qRgb(40, 40, 40); }));
    EXPECT_EQ(3u, pane.FramesReceived());
}

} // namespace
