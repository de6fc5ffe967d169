#include "batch/PresetCommand.h"

#include "batch/AdjustmentStep.h"
#include "batch/CommandLine.h"
#include "batch/Console.h"
#include "core/WholeFile.h"

namespace {

struct PresetText
{
    Q_DECLARE_TR_FUNCTIONS(PresetCommand)
};

ExitStatus Refuse(const QString& text)
{
    Console::Complain(text);
    return ExitStatus::WrongCall;
}

} // namespace

ExitStatus RunPresetCommand(const QStringList& arguments)
{
    CommandLine line(arguments, PresetText::tr("Stores the settings of an adjustment."));
    const QCommandLineOption output({QStringLiteral("o"), QStringLiteral("output")},
                                    PresetText::tr("The file to write."), QStringLiteral("FILE"));
    const QCommandLineOption force({QStringLiteral("f"), QStringLiteral("force")},
                                   PresetText::tr("Replaces an existing file."));
    line.AddOption(output);
    line.AddOption(force);
    line.AddPositional(QStringLiteral("NAME"), PresetText::tr("The adjustment, as \"adjust list\" names it."),
                       QStringLiteral("NAME"));
    line.AddPositional(QStringLiteral("FIELD=VALUE"), PresetText::tr("A setting that is not the default."),
                       QStringLiteral("[FIELD=VALUE ...]"));
    if (const auto status = line.Parse())
        return *status;
    QStringList words = line.Parser().positionalArguments();
    if (words.isEmpty())
        return Refuse(PresetText::tr("preset: the name of an adjustment is missing"));
    if (line.Parser().values(output).size() != 1 || line.Parser().value(output).isEmpty())
        return Refuse(PresetText::tr("preset: one file is expected behind -o"));
    AdjustmentStep step;
    const QString name = words.takeFirst();
    if (const QString problem = step.Take(name, words); !problem.isEmpty())
        return Refuse(problem);
    if (!step.Settings().HasPreset())
        return Refuse(PresetText::tr("%1 has no stored form").arg(name));
    const auto existing =
        line.Parser().isSet(force) ? WholeFile::Existing::Replace : WholeFile::Existing::Refuse;
    const QString error = WholeFile::Write(line.Parser().value(output), step.Settings().ToPreset(), existing);
    if (error.isEmpty())
        return ExitStatus::Done;
    Console::Complain(error);
    return ExitStatus::FileFailed;
}
