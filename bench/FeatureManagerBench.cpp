#include "FeatureManager.h"
#include "SimFeatures.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

// A camera with the given number of filler features in front of its own, and
// a manager over its features, as a tab holds them.
class BenchCamera
{
public:
    explicit BenchCamera(int fillers)
        : m_Camera(KST::TrkAPI::Sim::MakeCamera("autofunction", fillers)),
          m_Features(MakeFeatureVector(*m_Camera)), m_Manager(m_Features)
    {}

    FeatureManager& Manager() { return m_Manager; }
    double Size() const { return m_Features->size(); }

    // The name of the feature that a walk reaches last.
    QString LastName() const
    {
        const FeaturePtr last = m_Features->last();
        unsigned int length = 0;
        last->GetName(nullptr, length);
        std::vector<char> name(length + 1, '\0');
        last->GetName(name.data(), length);
        return QString::fromLatin1(name.data());
    }

private:
    std::unique_ptr<KST::TrkAPI::Sim::Camera> m_Camera;
    QSharedPointer<FeatureVector> m_Features;
    FeatureManager m_Manager;
};

void FindLastFeature(benchmark::State& state)
{
    BenchCamera camera(static_cast<int>(state.range(0)));
    const QString name = camera.LastName();
    for (auto _ : state) {
        benchmark::DoNotOptimize(camera.Manager().FindFeature(name));
    }
    state.counters["features"] = camera.Size();
}

void FindAbsentFeature(benchmark::State& state)
{
    BenchCamera camera(static_cast<int>(state.range(0)));
    const QString name = QString::fromLatin1("NoSuchFeature");
    for (auto _ : state) {
        benchmark::DoNotOptimize(camera.Manager().FindFeature(name));
    }
    state.counters["features"] = camera.Size();
}

void GetValueRange(benchmark::State& state)
{
    BenchCamera camera(static_cast<int>(state.range(0)));
    const QString name = QString::fromLatin1("AutofunctionAOIWidth");
    double min = 0.0;
    double max = 0.0;
    double increment = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(camera.Manager().GetValueRange(name, &min, &max, &increment));
    }
    state.counters["features"] = camera.Size();
}

} // namespace

BENCHMARK(FindLastFeature)->Arg(50)->Arg(500)->Arg(5000);
BENCHMARK(FindAbsentFeature)->Arg(50)->Arg(500)->Arg(5000);
BENCHMARK(GetValueRange)->Arg(50)->Arg(500)->Arg(5000);

BENCHMARK_MAIN();
