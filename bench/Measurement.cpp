#include "Measurement.h"

#include "ReferencePass.h"

#include <QElapsedTimer>

#include <algorithm>
#include <vector>

namespace {

constexpr double MsPerSecond = 1e3;

/// Odd, so that one pass is the median; fewer where a pass takes longer.
int PassesAt(int megapixels) { return std::clamp(500 / megapixels, 7, 101) | 1; }

std::string FullName(int megapixels, const std::string& name)
{
    return std::to_string(megapixels) + "MP/" + name;
}

double MegapixelsOf(const BenchPictures& pictures)
{
    return double(pictures.photograph.Width()) * pictures.photograph.Height() / 1e6;
}

void Measure(benchmark::State& state, int megapixels, const BenchRow& row)
{
    const BenchPictures& pictures = BenchPictures::OfSize(megapixels);
    row.prepare(pictures);
    row.pass(pictures); // the first pass fills the caches of memory, threads and code
    std::vector<double> times;
    std::vector<double> references;
    std::vector<double> ratios;
    for (auto _ : state) {
        row.prepare(pictures);
        const double reference = TimeOf([&] { RunReferencePass(pictures.reference); });
        const double time = row.pass(pictures);
        state.SetIterationTime(std::max(time, 0.0) / MsPerSecond);
        if (time < 0.0)
            continue;
        times.push_back(time);
        references.push_back(reference);
        ratios.push_back(time / reference);
    }
    row.finish();
    if (times.empty())
        return state.SkipWithError("no pass gave a time");
    state.counters["ms"] = Median(times);
    state.counters["ref_ms"] = Median(references);
    state.counters["ratio"] = Median(ratios);
    if (row.coversPicture)
        state.counters["MP/s"] = MegapixelsOf(pictures) * MsPerSecond / Median(times);
}

} // namespace

double TimeOf(const std::function<void()>& operation)
{
    QElapsedTimer timer;
    timer.start();
    operation();
    return double(timer.nsecsElapsed()) / NsPerMs;
}

void RegisterRow(int megapixels, const std::string& name, const BenchRow& row)
{
    benchmark::RegisterBenchmark(
        FullName(megapixels, name).c_str(),
        [megapixels, row](benchmark::State& state) { Measure(state, megapixels, row); })
        ->UseManualTime()
        ->Iterations(PassesAt(megapixels))
        ->Unit(benchmark::kMillisecond);
}

void RegisterSingleRow(int megapixels, const std::string& name,
                       const std::function<void(benchmark::State&)>& measure)
{
    benchmark::RegisterBenchmark(FullName(megapixels, name).c_str(), measure)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

double Median(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}
