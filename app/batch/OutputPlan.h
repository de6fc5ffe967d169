#pragma once

#include "batch/ExitStatus.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

/// Which picture goes where.
class OutputPlan
{
    Q_DECLARE_TR_FUNCTIONS(OutputPlan)

public:
    struct Item
    {
        QString input;
        QString output;
        bool formatOfInput = false; ///< the output's name tells no format: keep that of the input
    };

    struct Problem
    {
        ExitStatus status = ExitStatus::Done;
        QString text;
    };

    /// `output` is a file for one input and a folder for several. A folder that exists, or is written with a
    /// slash at its end, takes a single picture as well. Several inputs of the same name cannot go into one
    /// folder.
    [[nodiscard]] Problem Make(const QStringList& inputs, const QString& output);

    /// Makes the folder if it is missing; the folder that it lies in must be there, so that a slip in a path
    /// does not grow a tree.
    [[nodiscard]] Problem MakeFolder() const;

    const QList<Item>& Items() const { return m_items; }

private:
    [[nodiscard]] Problem PlanFile(const QString& input, const QString& output);
    [[nodiscard]] Problem PlanFolder(const QStringList& inputs, const QString& folder);

    QList<Item> m_items;
    QString m_folder; ///< empty for a single file
};
