#include "TableReporter.h"

#include "Machine.h"

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

/// Of the row's noise, for comparisons.
constexpr std::array<const char*, 3> Hidden{{"ratio_low", "ratio_high", "passes"}};

bool IsShownBehind(const std::string& counter)
{
    for (const char* hidden : Hidden)
        if (counter == hidden)
            return false;
    for (const Column& column : Columns)
        if (counter == column.counter)
            return false;
    return true;
}

/// The name without what Google Benchmark puts behind it about iterations and kinds of time.
std::string ShortName(const benchmark::BenchmarkReporter::Run& run) { return run.run_name.function_name; }

} // namespace

bool TableReporter::ReportContext(const Context&)
{
    std::ostream& out = GetOutputStream();
    out << Machine::Describe(m_report.machine).toStdString()
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
    for (const Run& run : runs) {
        ReportRun(run);
        Keep(run);
    }
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
        if (IsShownBehind(name))
            out << "  " << name << ' ' << std::setprecision(2) << counter.value;
    out << std::endl;
}

void TableReporter::Keep(const Run& run)
{
    if (run.error_occurred)
        return;
    BenchReport::Counters& counters = m_report.rows[QString::fromStdString(ShortName(run))];
    for (const auto& [name, counter] : run.counters)
        counters[QString::fromStdString(name)] = counter.value;
    if (m_file.isEmpty())
        return;
    const QString problem = m_report.Write(m_file);
    if (!problem.isEmpty())
        GetErrorStream() << problem.toStdString() << std::endl;
}
