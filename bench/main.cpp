#include "AdjustmentRows.h"
#include "BenchAdjustments.h"
#include "BenchOptions.h"
#include "BenchReport.h"
#include "CurveMoveRow.h"
#include "DeviceRows.h"
#include "EventLoopGaps.h"
#include "FloodFillRows.h"
#include "LimitRows.h"
#include "Machine.h"
#include "ManyPassRows.h"
#include "Measurement.h"
#include "SpeedTables.h"
#include "TableReporter.h"

#include <QApplication>
#include <QFile>
#include <QStandardPaths>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <iostream>

namespace {

constexpr int EditorMegapixels = 24; ///< of the picture behind rows that measure what a user feels

/// The rows of one size together, so that its pictures are made once.
void RegisterRows(const std::vector<int>& sizes)
{
    for (const int megapixels : sizes) {
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

/// Goes on with the run that is stored in `file`, if there is one. Returns what is wrong with it.
QString Resume(const QString& file, BenchReport& report)
{
    if (!QFile::exists(file))
        return {};
    BenchReport stored;
    const QString problem = stored.Read(file);
    if (!problem.isEmpty())
        return problem;
    if (stored.machine != report.machine)
        return QStringLiteral(
                   "%1 was measured with another build or on another machine (%2); name another file")
            .arg(file, Machine::Describe(stored.machine));
    report.rows = stored.rows;
    const QStringList names = report.rows.keys();
    for (const QString& name : names)
        LeaveRowOut(name.toStdString());
    return {};
}

void PrintChanges(const BenchReport& now, const BenchReport& before)
{
    std::cout << "\nAgainst the run on " << Machine::Describe(before.machine).toStdString() << ":\n";
    const QVector<BenchReport::Change> changes = now.ChangesSince(before);
    for (const BenchReport::Change& change : changes)
        std::cout << (change.Factor() > 1.0 ? "slower " : "faster ") << std::fixed << std::setprecision(2)
                  << change.before << " -> " << change.now << "  x " << change.Factor() << "  "
                  << change.row.toStdString() << '\n';
    if (changes.isEmpty())
        std::cout << "nothing changed by more than noise\n";
    std::cout << std::flush;
}

int Fail(const QString& problem)
{
    std::cerr << problem.toStdString() << '\n' << BenchOptions::Help();
    return 1;
}

bool AsksForAFormat(int argc, char** argv)
{
    return std::any_of(argv, argv + argc, [](const char* argument) {
        return std::strncmp(argument, "--benchmark_format", std::strlen("--benchmark_format")) == 0;
    });
}

} // namespace

/// Measures, reports, asserts nothing.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true); // the user's settings are not ours to read or change
    QApplication application(argc, argv);
    const bool hasFormat = AsksForAFormat(argc, argv);
    BenchOptions options;
    const QString wrongOption = options.Take(argc, argv);
    if (!wrongOption.isEmpty())
        return Fail(wrongOption);
    benchmark::Initialize(&argc, argv);
    if (argc > 1)
        return Fail(QStringLiteral("what is %1?").arg(QString::fromLocal8Bit(argv[1])));
    BenchReport report;
    report.machine = Machine::Facts();
    const QString unreadable = Resume(options.json, report);
    if (!unreadable.isEmpty())
        return Fail(unreadable);
    BenchReport before;
    const QString incomparable = options.against.isEmpty() ? QString() : before.Read(options.against);
    if (!incomparable.isEmpty())
        return Fail(incomparable);
    RegisterRows(options.megapixels);
    if (hasFormat) {
        benchmark::RunSpecifiedBenchmarks();
    } else {
        TableReporter reporter(report, options.json);
        benchmark::RunSpecifiedBenchmarks(&reporter);
    }
    benchmark::Shutdown();
    if (options.isTableWanted)
        std::cout << '\n' << SpeedTables(report).toStdString() << std::flush;
    if (!options.against.isEmpty())
        PrintChanges(report, before);
    return 0;
}
