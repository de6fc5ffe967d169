#pragma once

#include "BenchReport.h"

#include <benchmark/benchmark.h>

/// The report for people: a line for each row, the medians in columns, what else it counted behind them.
/// Keeps the rows too.
class TableReporter : public benchmark::BenchmarkReporter
{
public:
    /// What is kept goes to `report`, and after each row to `file` if that is named.
    TableReporter(BenchReport& report, const QString& file) : m_report(report), m_file(file) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

private:
    void ReportRun(const Run& run);
    void Keep(const Run& run);

    BenchReport& m_report;
    const QString m_file;
};
