#include "Measurement.h"

#include "Quantile.h"
#include "ReferencePass.h"

#include <QElapsedTimer>

#include <algorithm>
#include <set>
#include <vector>

namespace {

constexpr double MsPerSecond = 1e3;
constexpr int FewestPasses = 5;
constexpr int MostPasses = 101;
constexpr double RowPatienceMs = 600.0; ///< with a row that has its fewest passes
constexpr double LowerQuartile = 0.25;
constexpr double UpperQuartile = 0.75;

std::set<std::string>& RowsLeftOut()
{
    static std::set<std::string> names;
    return names;
}

double MegapixelsOf(const BenchPictures& pictures)
{
    return double(pictures.photograph.Width()) * pictures.photograph.Height() / 1e6;
}

/// What the passes of a row took.
struct Passes
{
    std::vector<double> times; ///< milliseconds
    std::vector<double> references;
    std::vector<double> ratios;
};

/// An odd number of them, so that one is the median.
Passes MeasurePasses(const BenchPictures& pictures, const BenchRow& row)
{
    Passes passes;
    QElapsedTimer sinceStart;
    sinceStart.start();
    const auto isEnough = [&](int pass) {
        return pass >= MostPasses ||
               (pass >= FewestPasses && pass % 2 == 1 && double(sinceStart.elapsed()) > RowPatienceMs);
    };
    for (int pass = 0; !isEnough(pass); ++pass) {
        row.prepare(pictures);
        const double reference = TimeOf([&] { RunReferencePass(pictures.reference); });
        const double time = row.pass(pictures);
        if (time < 0.0)
            continue;
        passes.times.push_back(time);
        passes.references.push_back(reference);
        passes.ratios.push_back(time / reference);
    }
    return passes;
}

void Measure(benchmark::State& state, int megapixels, const BenchRow& row)
{
    const BenchPictures& pictures = BenchPictures::OfSize(megapixels);
    row.prepare(pictures);
    row.pass(pictures); // the first pass fills the caches of memory, threads and code
    Passes passes;
    for (auto _ : state) {
        passes = MeasurePasses(pictures, row);
        state.SetIterationTime(Median(passes.times) / MsPerSecond);
    }
    row.finish();
    if (passes.times.empty())
        return state.SkipWithError("no pass gave a time");
    state.counters["ms"] = Median(passes.times);
    state.counters["ref_ms"] = Median(passes.references);
    state.counters["ratio"] = Median(passes.ratios);
    state.counters["ratio_low"] = Quantile(passes.ratios, LowerQuartile);
    state.counters["ratio_high"] = Quantile(passes.ratios, UpperQuartile);
    state.counters["passes"] = double(passes.ratios.size());
    if (row.coversPicture)
        state.counters["MP/s"] = MegapixelsOf(pictures) * MsPerSecond / Median(passes.times);
}

/// Null for a row that is left out.
benchmark::internal::Benchmark* Register(int megapixels, const std::string& name,
                                         const std::function<void(benchmark::State&)>& measure)
{
    const std::string fullName = std::to_string(megapixels) + "MP/" + name;
    if (RowsLeftOut().count(fullName) > 0)
        return nullptr;
    return benchmark::RegisterBenchmark(fullName.c_str(), measure)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

double TimeOf(const std::function<void()>& operation)
{
    QElapsedTimer timer;
    timer.start();
    operation();
    return double(timer.nsecsElapsed()) / NsPerMs;
}

void LeaveRowOut(const std::string& fullName) { RowsLeftOut().insert(fullName); }

void RegisterRow(int megapixels, const std::string& name, const BenchRow& row)
{
    if (auto* const registered = Register(megapixels, name, [megapixels, row](benchmark::State& state) {
            Measure(state, megapixels, row);
        }))
        registered->UseManualTime();
}

void RegisterSingleRow(int megapixels, const std::string& name,
                       const std::function<void(benchmark::State&)>& measure)
{
    Register(megapixels, name, measure);
}
