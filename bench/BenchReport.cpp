#include "BenchReport.h"

#include "Quantile.h"

#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace {

constexpr qint64 MaxFileSize = 16 << 20; // a run is a hundred times smaller
constexpr double LeastFactor = 1.03;
constexpr int FewestRowsForDrift = 10; ///< of fewer the median row may be the one that changed

const QString Version = QStringLiteral("adjustmentgui_bench");
const QString MachineKey = QStringLiteral("machine");
const QString RowsKey = QStringLiteral("rows");

/// The median ratio of a row and the quartiles around it.
struct Ratio
{
    explicit Ratio(const BenchReport::Counters& counters)
        : median(counters.value(QStringLiteral("ratio"))), low(counters.value(QStringLiteral("ratio_low"))),
          high(counters.value(QStringLiteral("ratio_high")))
    {}

    bool IsKnown() const { return low > 0.0 && median >= low && high >= median; }

    double median;
    double low;
    double high;
};

/// Whether what the two runs measured for a row lies apart.
bool AreApart(const Ratio& a, const Ratio& b) { return a.low > b.high || b.low > a.high; }

/// How far a row's medians lie apart, the same for twice and for half as slow.
double Distance(const BenchReport::Change& change) { return std::abs(std::log(change.Factor())); }

/// The distance up to which a row has not changed, of two runs that have `all` rows in common.
double LargestNoise(const QVector<BenchReport::Change>& all)
{
    constexpr double TimesUsual = 3.0;
    const double least = std::log(LeastFactor);
    if (all.size() < FewestRowsForDrift)
        return least;
    std::vector<double> distances;
    for (const BenchReport::Change& change : all)
        distances.push_back(Distance(change));
    return std::max(least, TimesUsual * Median(distances));
}

} // namespace

QString BenchReport::Read(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("%1: %2").arg(fileName, file.errorString());
    if (file.size() > MaxFileSize)
        return QStringLiteral("%1 is too large for a run of the benchmarks").arg(fileName);
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    if (root[Version].toInt() != 1 || !root[RowsKey].isObject())
        return QStringLiteral("%1 holds no run of the benchmarks").arg(fileName);
    BenchReport report;
    report.machine = root[MachineKey].toObject();
    const QJsonObject all = root[RowsKey].toObject();
    for (auto row = all.begin(); row != all.end(); ++row) {
        const QJsonObject counters = row.value().toObject();
        for (auto counter = counters.begin(); counter != counters.end(); ++counter)
            report.rows[row.key()][counter.key()] = counter.value().toDouble();
    }
    *this = report;
    return {};
}

QString BenchReport::Write(const QString& fileName) const
{
    QJsonObject all;
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        QJsonObject counters;
        for (auto counter = row->begin(); counter != row->end(); ++counter)
            if (std::isfinite(counter.value()))
                counters[counter.key()] = counter.value();
        all[row.key()] = counters;
    }
    const QJsonObject root{{Version, 1}, {MachineKey, machine}, {RowsKey, all}};
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(root).toJson());
        if (file.commit())
            return {};
    }
    return QStringLiteral("%1: %2").arg(fileName, file.errorString());
}

QVector<BenchReport::Change> BenchReport::ChangesSince(const BenchReport& before) const
{
    QVector<Change> all;
    QVector<Change> apart;
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        const Ratio now(row.value());
        const Ratio then(before.rows.value(row.key()));
        if (!now.IsKnown() || !then.IsKnown())
            continue;
        all.append({row.key(), then.median, now.median});
        if (AreApart(now, then))
            apart.append(all.back());
    }
    const double noise = LargestNoise(all);
    QVector<Change> changes;
    std::copy_if(apart.cbegin(), apart.cend(), std::back_inserter(changes),
                 [noise](const Change& change) { return Distance(change) > noise; });
    std::stable_sort(changes.begin(), changes.end(),
                     [](const Change& a, const Change& b) { return a.Factor() > b.Factor(); });
    return changes;
}
