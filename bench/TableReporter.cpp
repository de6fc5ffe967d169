#include "TableReporter.h"

#include "VectorTargets.h"

#include <QStringList>
#include <QThread>

#include <array>
#include <iomanip>
#include <iostream>

namespace {

struct Column
{
    const char* counter;
    const char* title;
    int precision;
};

constexpr std::array<Column, 4> Columns{
    {{"ms", "ms", 3}, {"ref_ms", "ref ms", 3}, {"ratio", "ratio", 2}, {"MP/s", "MP/s", 0}}};
constexpr int NameWidth = 46;
constexpr int ColumnWidth = 10;

bool IsColumn(const std::string& counter)
{
    for (const Column& column : Columns)
        if (counter == column.counter)
            return true;
    return false;
}

/// The name without what Google Benchmark puts behind it about iterations and kinds of time.
std::string ShortName(const benchmark::BenchmarkReporter::Run& run) { return run.run_name.function_name; }

} // namespace

bool TableReporter::ReportContext(const Context&)
{
    QStringList targets;
    for (const VectorTargets::Target& target : VectorTargets::All())
        targets.append(target.name);
    std::ostream& out = GetOutputStream();
    out << QThread::idealThreadCount() << " cores; vector kernels for "
        << (targets.isEmpty() ? "nothing (no module)" : targets.join(QStringLiteral(", ")).toStdString())
        << ".\nMedians; ratio: to the reference pass before each pass, "
           "an in-place saturating add on all cores.\n\n"
        << std::left << std::setw(NameWidth) << "row" << std::right;
    for (const Column& column : Columns)
        out << std::setw(ColumnWidth) << column.title;
    out << '\n' << std::string(NameWidth + Columns.size() * ColumnWidth, '-') << std::endl;
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs)
        ReportRun(run);
}

void TableReporter::ReportRun(const Run& run)
{
    std::ostream& out = GetOutputStream();
    out << std::left << std::setw(NameWidth) << ShortName(run) << std::right << std::fixed;
    if (run.error_occurred) {
        out << "  " << run.error_message << std::endl;
        return;
    }
    for (const Column& column : Columns) {
        const auto found = run.counters.find(column.counter);
        if (found != run.counters.end())
            out << std::setw(ColumnWidth) << std::setprecision(column.precision) << found->second.value;
    }
    for (const auto& [name, counter] : run.counters)
        if (!IsColumn(name))
            out << "  " << name << ' ' << std::setprecision(2) << counter.value;
    out << std::endl;
}
