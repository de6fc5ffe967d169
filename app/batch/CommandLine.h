#pragma once

#include "batch/ExitStatus.h"

#include <QCommandLineParser>
#include <QStringList>

#include <optional>

/// The arguments of one command, "adjust COMMAND ...", with its own help.
class CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    /// `arguments` begins with the command's name.
    CommandLine(const QStringList& arguments, const QString& description);

    void AddOption(const QCommandLineOption& option);
    void AddPositional(const QString& name, const QString& description, const QString& syntax);

    /// Empty when the command shall go on; otherwise the status to end with, everything having been said.
    [[nodiscard]] std::optional<ExitStatus> Parse();

    const QCommandLineParser& Parser() const { return m_parser; }

private:
    QStringList m_arguments;
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
};
