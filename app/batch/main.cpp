#include "batch/ApplyCommand.h"
#include "batch/Console.h"
#include "batch/ListCommand.h"
#include "batch/PresetCommand.h"
#include "batch/ShowCommand.h"

#include <QFile>
#include <QGuiApplication>

#include <cstdio>

namespace {

struct MainText
{
    Q_DECLARE_TR_FUNCTIONS(main)
};

struct Command
{
    const char* name;
    ExitStatus (*run)(const QStringList& arguments);
};

constexpr Command Commands[] = {
    {"list", RunListCommand},
    {"preset", RunPresetCommand},
    {"show", RunShowCommand},
    {"apply", RunApplyCommand},
};

/// The picture libraries tell about damaged files here, which the program names itself.
void OnQtMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "adjust: %s\n", qPrintable(message));
}

void PrintHelp()
{
    Console::Print(MainText::tr("Applies image adjustments, stored presets and recipes to many pictures.\n\n"
                                "  adjust list [--json]\n"
                                "  adjust preset NAME [FIELD=VALUE ...] [--force] -o FILE\n"
                                "  adjust show FILE [--json]\n"
                                "  adjust apply (-a 'NAME [FIELD=VALUE ...]' | -p PRESET | -r RECIPE)...\n"
                                "               [-s MASK [--offset X,Y]] [-j N] [--force] IN... -o OUT\n"
                                "  adjust COMMAND --help\n"
                                "  adjust --version"));
}

ExitStatus Run(const QStringList& arguments)
{
    const QString name = arguments.value(0);
    for (const Command& command : Commands)
        if (name == QLatin1String(command.name))
            return command.run(arguments);
    if (name == QLatin1String("-h") || name == QLatin1String("--help") || name == QLatin1String("help")) {
        PrintHelp();
        return ExitStatus::Done;
    }
    if (name == QLatin1String("-v") || name == QLatin1String("--version")) {
        Console::Print(QStringLiteral("adjust " ADJUST_VERSION));
        return ExitStatus::Done;
    }
    Console::Complain(
        name.isEmpty() ? MainText::tr("a command is expected; \"adjust --help\" names them")
                       : MainText::tr("there is no command \"%1\"; \"adjust --help\" names them").arg(name));
    return ExitStatus::WrongCall;
}

} // namespace

int main(int argc, char* argv[])
{
    qInstallMessageHandler(OnQtMessage);
    // Texts are drawn with fonts, which ask for a platform; no display is needed.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    int toolkitArgc = 1; // the arguments are ours: none is a style or a platform
    const QGuiApplication application(toolkitArgc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui"));
    QCoreApplication::setApplicationName(QStringLiteral("adjust"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ADJUST_VERSION));
    ExitStatus status = Run(arguments);
    if (!Console::Flush() && status == ExitStatus::Done) {
        Console::Complain(MainText::tr("standard output could not be written"));
        status = ExitStatus::FileFailed;
    }
    return int(status);
}
