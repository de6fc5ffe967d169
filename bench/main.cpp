#include "AdjustmentRows.h"
#include "BenchAdjustments.h"
#include "BenchPictures.h"
#include "CurveMoveRow.h"
#include "DeviceRows.h"
#include "EventLoopGaps.h"
#include "FloodFillRows.h"
#include "LimitRows.h"
#include "ManyPassRows.h"
#include "TableReporter.h"

#include <QApplication>
#include <QStandardPaths>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr int EditorMegapixels = 24; ///< of the picture behind rows that measure what a user feels

/// The rows of one size together, so that its pictures are made once.
void RegisterRows()
{
    for (const int megapixels : BenchSizes()) {
        RegisterLimitRows(megapixels);
        for (const BenchAdjustment& adjustment : BenchAdjustments())
            RegisterAdjustmentRows(adjustment, megapixels);
        RegisterManyPassRows(megapixels);
        RegisterFloodFillRows(megapixels);
        RegisterDeviceRows(megapixels);
        if (megapixels == EditorMegapixels) {
            RegisterCurveMoveRow(megapixels);
            RegisterEventLoopGaps(BenchAdjustments().front(), megapixels);
        }
    }
}

bool AsksForAFormat(int argc, char** argv)
{
    return std::any_of(argv, argv + argc, [](const char* argument) {
        return std::strncmp(argument, "--benchmark_format", std::strlen("--benchmark_format")) == 0;
    });
}

} // namespace

/// Measures, reports, asserts nothing. Takes the options of Google Benchmark, such as
/// --benchmark_filter=^24MP and --benchmark_out=FILE.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true); // the user's settings are not ours to read or change
    QApplication application(argc, argv);
    const bool hasFormat = AsksForAFormat(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RegisterRows();
    if (hasFormat) {
        benchmark::RunSpecifiedBenchmarks();
    } else {
        TableReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
    }
    benchmark::Shutdown();
    return 0;
}
