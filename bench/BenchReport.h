#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

/// What one run of the benchmarks measured, and on which machine.
struct BenchReport
{
    /// What was measured, by what was counted: "ms", "ref_ms", "ratio" and the like.
    using Counters = QMap<QString, double>;

    QJsonObject machine;          ///< Machine::Facts()
    QMap<QString, Counters> rows; ///< by name, such as "24MP/gamma/vector"

    /// Reads what Write() wrote. Returns what is wrong with the file, nothing if it was read.
    QString Read(const QString& fileName);

    /// Replaces the file only when the new one is whole. Returns what went wrong, nothing if it was written.
    QString Write(const QString& fileName) const;

    /// A row whose ratio to the reference pass is another than it was.
    struct Change
    {
        QString row;
        double before = 0.0; ///< median ratios
        double now = 0.0;

        double Factor() const { return now / before; }
    };

    /// The rows of both runs that are slower (or, with a factor below 1, faster) than before by more than
    /// noise: the middle halves of what the two runs measured for the row do not touch, and the medians are
    /// further apart than three per cent, and than three times what they are apart in the median row, by
    /// which a machine wanders between two runs. The slowest first. Rows without quartiles are left out.
    QVector<Change> ChangesSince(const BenchReport& before) const;
};
