#pragma once

#include <benchmark/benchmark.h>

/// The report for people: a line for each row, the medians in columns, what else it counted behind them.
class TableReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

private:
    void ReportRun(const Run& run);
};
