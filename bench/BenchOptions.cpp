#include "BenchOptions.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr int LargestPicture = 1000; // megapixels; four pictures of that size are in memory at once

/// The value of an option such as "--json=FILE"; null if `argument` is another.
QString ValueOf(const QString& argument, const QString& option)
{
    const QString prefix = option + QLatin1Char('=');
    return argument.startsWith(prefix) ? argument.mid(prefix.size()) : QString();
}

QString TakeSizes(const QString& list, std::vector<int>& megapixels)
{
    megapixels.clear();
    const QStringList sizes = list.split(QLatin1Char(','));
    for (const QString& text : sizes) {
        bool isNumber = false;
        const int size = text.toInt(&isNumber);
        if (!isNumber || size < 1 || size > LargestPicture)
            return QStringLiteral("--sizes: \"%1\" is no number of megapixels from 1 to %2")
                .arg(text)
                .arg(LargestPicture);
        megapixels.push_back(size);
    }
    return {};
}

} // namespace

QString BenchOptions::Take(int& argc, char** argv)
{
    QString problem;
    const auto isOurs = [&](const char* text) {
        const QString argument = QString::fromLocal8Bit(text);
        const QString sizes = ValueOf(argument, QStringLiteral("--sizes"));
        const QString jsonFile = ValueOf(argument, QStringLiteral("--json"));
        const QString storedRun = ValueOf(argument, QStringLiteral("--against"));
        const bool isTable = argument == QLatin1String("--table");
        if (!sizes.isNull())
            problem = TakeSizes(sizes, megapixels);
        else if (!jsonFile.isEmpty())
            json = jsonFile;
        else if (!storedRun.isEmpty())
            against = storedRun;
        else if (isTable)
            isTableWanted = true;
        else
            return false;
        return true;
    };
    char** const last = std::remove_if(argv + 1, argv + argc, isOurs);
    argc = int(last - argv);
    argv[argc] = nullptr;
    return problem;
}

const char* BenchOptions::Help()
{
    return "--sizes=1,6,24,100,400  megapixels of the pictures to measure on (24)\n"
           "--json=FILE             store the run; of the same build on the same machine, measure only what "
           "the file "
           "lacks\n"
           "--against=FILE          tell which rows became slower or faster than in a stored run, by more "
           "than noise\n"
           "--table                 print the tables of docs/speed.md too\n"
           "--benchmark_filter=REGEX and the other options of Google Benchmark\n";
}
