// A full refresh of the editor on a camera served by tabcamera over GigE
// Vision on loopback: its time, and the reads the device answers, counted in
// the server's own log of the commands it handles.

#include "BenchMain.h"
#include "BenchTab.h"
#include "ServedCamera.h"
#include "SimFeatures.h"

#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <unistd.h>

using KST::TrkAPI::GenICam::Camera;

namespace {

const char* const Families[] = {"autofunction", "automode", "dsp"};
// The device's own memory; addresses beyond hold its description.
const unsigned long DeviceMemory = 0x10000;

// One served camera and the log of the reads it answered.
struct LoggedServer
{
    explicit LoggedServer(const std::string& family)
        : log("/tmp/genicam_refresh_bench_" + std::to_string(getpid()) + "_" + family + ".log"),
          server("/bin/sh", [&](const std::string& serial) {
              return std::vector<std::string>{
                  "-c", "exec env ARV_DEBUG=device:3 " TAB_CAMERA_SERVER " --family " + family +
                            " --serial " + serial + " 2> " + log};
          })
    {
        if (!server.Id().empty()) {
            camera = Camera::Open(server.Id());
        }
    }
    ~LoggedServer() { std::remove(log.c_str()); }

    // The reads logged from line first on, by address.
    std::map<unsigned long, int> Reads(size_t& first) const
    {
        std::map<unsigned long, int> reads;
        std::ifstream in(log);
        std::string line;
        for (size_t number = 0; std::getline(in, line); ++number) {
            const size_t at = line.find("Read memory command ");
            if (number >= first && at != std::string::npos) {
                unsigned long address = std::stoul(line.substr(at + 20));
                reads[address] += address < DeviceMemory ? 1 : 0;
            }
            first = number + 1;
        }
        return reads;
    }

    std::string log;
    ServedCamera server;
    std::unique_ptr<Camera> camera;
};

void P1_RefreshOnShowOverGigEVision(benchmark::State& state)
{
    const std::string family = Families[state.range(0)];
    state.SetLabel(family);
    LoggedServer served(family);
    if (!served.camera) {
        state.SkipWithError("tabcamera was not discovered");
        return;
    }
    BenchPage page(MakeFeatureVector(*served.camera));
    // Past the first poll, so that the cache holds what the device holds.
    std::this_thread::sleep_for(Camera::PollPeriod * 2);
    size_t line = 0;
    served.Reads(line);
    double reads = 0.0;
    int mostOfOne = 0;
    for (auto _ : state) {
        page.tab->Hide();
        page.tab->RefreshOnShow();
        state.PauseTiming();
        for (const auto& read : served.Reads(line)) {
            reads += read.second;
            mostOfOne = std::max(mostOfOne, read.second);
        }
        state.ResumeTiming();
    }
    state.counters["features"] = served.camera->Features().size();
    state.counters["reads"] = reads / state.iterations();
    state.counters["most_reads_of_one_register"] = mostOfOne;
}

} // namespace

BENCHMARK(P1_RefreshOnShowOverGigEVision)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv);
}
