#include "batch/ShowCommand.h"

#include "batch/AdjustmentStep.h"
#include "batch/CommandLine.h"
#include "batch/Console.h"
#include "batch/SettingsText.h"

#include <QJsonDocument>

namespace {

struct ShowText
{
    Q_DECLARE_TR_FUNCTIONS(ShowCommand)
};

void PrintJson(const AdjustmentStep& step)
{
    const QJsonObject object{{QStringLiteral("adjustment"), step.Adjustment().name},
                             {QStringLiteral("fields"), step.Settings().ToJson()}};
    Console::Print(QString::fromUtf8(QJsonDocument(object).toJson()).trimmed());
}

void PrintText(const AdjustmentStep& step)
{
    Console::Print(step.Adjustment().name);
    const QStringList lines = SettingsText::Lines(step.Settings());
    for (const QString& line : lines)
        Console::Print(line);
}

} // namespace

ExitStatus RunShowCommand(const QStringList& arguments)
{
    CommandLine line(arguments,
                     ShowText::tr("Shows which adjustment a stored preset is of, and its fields."));
    const QCommandLineOption json(QStringLiteral("json"), ShowText::tr("Prints JSON."));
    line.AddOption(json);
    line.AddPositional(QStringLiteral("FILE"), ShowText::tr("The preset."), QStringLiteral("FILE"));
    if (const auto status = line.Parse())
        return *status;
    const QStringList files = line.Parser().positionalArguments();
    if (files.size() != 1) {
        Console::Complain(ShowText::tr("show: one file is expected"));
        return ExitStatus::WrongCall;
    }
    AdjustmentStep step;
    if (const QString problem = step.TakePreset(files.first()); !problem.isEmpty()) {
        Console::Complain(problem);
        return ExitStatus::FileFailed;
    }
    if (line.Parser().isSet(json))
        PrintJson(step);
    else
        PrintText(step);
    return ExitStatus::Done;
}
