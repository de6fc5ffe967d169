#include "batch/CommandLine.h"

#include "batch/Console.h"

#include <QCoreApplication>

CommandLine::CommandLine(const QStringList& arguments, const QString& description)
    : m_arguments(arguments), m_help({QStringLiteral("h"), QStringLiteral("help")}, tr("Shows this help."))
{
    // What the parser takes for the program's name.
    m_arguments.first() = QStringLiteral("adjust ") + arguments.first();
    m_parser.setApplicationDescription(description);
    m_parser.addOption(m_help);
}

void CommandLine::AddOption(const QCommandLineOption& option) { m_parser.addOption(option); }

void CommandLine::AddPositional(const QString& name, const QString& description, const QString& syntax)
{
    m_parser.addPositionalArgument(name, description, syntax);
}

std::optional<ExitStatus> CommandLine::Parse()
{
    if (!m_parser.parse(m_arguments)) {
        Console::Complain(m_parser.errorText());
        return ExitStatus::WrongCall;
    }
    if (!m_parser.isSet(m_help))
        return {};
    QString help = m_parser.helpText().trimmed();
    const QString program = QCoreApplication::arguments().constFirst(); // without the command
    help.replace(help.indexOf(program), program.size(), m_arguments.constFirst());
    Console::Print(help);
    return ExitStatus::Done;
}
