#pragma once

#include <QString>

#include <vector>

/// What the benchmark program is asked for besides the options of Google Benchmark.
struct BenchOptions
{
    std::vector<int> megapixels{24}; ///< the sizes to measure at
    QString json;    ///< the file that the run is stored in; rows that it has are not measured again
    QString against; ///< the stored run to compare with
    bool isTableWanted = false; ///< those of docs/speed.md, behind the rows

    /// Takes what is ours from the arguments and leaves the rest. Returns what is wrong, nothing if all is
    /// well.
    QString Take(int& argc, char** argv);

    static const char* Help();
};
