#include "batch/ApplyCommand.h"

#include "batch/AdjustmentStep.h"
#include "batch/CommandLine.h"
#include "batch/Console.h"
#include "batch/InterruptWatch.h"
#include "batch/OutputPlan.h"
#include "batch/PicturePipeline.h"
#include "batch/ReadMask.h"

#include <QRegularExpression>
#include <QThread>

namespace {

constexpr int MaxPicturesAtOnce = 256;
constexpr int MaxOffset = 1'000'000;
constexpr int MaxMegapixels = 4000;
constexpr qint64 PixelsPerMegapixel = 1'000'000;

/// One call of "adjust apply".
class ApplyCommand
{
    Q_DECLARE_TR_FUNCTIONS(ApplyCommand)

public:
    explicit ApplyCommand(const QStringList& arguments);

    [[nodiscard]] ExitStatus Run();

private:
    using Problem = OutputPlan::Problem;

    static Problem Wrong(const QString& text) { return {ExitStatus::WrongCall, text}; }
    static Problem Failed(const QString& text)
    {
        return {text.isEmpty() ? ExitStatus::Done : ExitStatus::FileFailed, text};
    }

    Problem Prepare();
    Problem TakeFiles();
    Problem TakeNumbers();
    Problem TakeSteps();
    Problem TakeMask();
    Problem TakeWhole(const QCommandLineOption& option, int maximum, int& number) const;
    ExitStatus Process();

    const QCommandLineParser& Parser() const { return m_line.Parser(); }

    CommandLine m_line;
    const QCommandLineOption m_adjust{{QStringLiteral("a"), QStringLiteral("adjust")},
                                      tr("Applies an adjustment with these settings."),
                                      QStringLiteral("NAME [FIELD=VALUE ...]")};
    const QCommandLineOption m_preset{
        {QStringLiteral("p"), QStringLiteral("preset")},
        tr("Applies a stored preset. -a and -p may be given as often as wanted, "
           "and are applied in their order."),
        QStringLiteral("FILE")};
    const QCommandLineOption m_selection{
        {QStringLiteral("s"), QStringLiteral("selection")},
        tr("A picture whose grey values limit the adjustments: black keeps a "
           "pixel, white adjusts it."),
        QStringLiteral("MASK")};
    const QCommandLineOption m_offset{QStringLiteral("offset"),
                                      tr("Where the mask's upper left corner lies in the pictures."),
                                      QStringLiteral("X,Y")};
    const QCommandLineOption m_jobs{{QStringLiteral("j"), QStringLiteral("jobs")},
                                    tr("At most so many pictures at once; one for each core unless given."),
                                    QStringLiteral("N")};
    const QCommandLineOption m_force{{QStringLiteral("f"), QStringLiteral("force")},
                                     tr("Replaces existing files.")};
    const QCommandLineOption m_allow{QStringLiteral("allow"),
                                     tr("Reads pictures of this kind as well, such as gif."),
                                     QStringLiteral("KIND")};
    const QCommandLineOption m_limit{QStringLiteral("max-megapixels"),
                                     tr("Refuses larger pictures; 268 unless given."), QStringLiteral("N")};
    const QCommandLineOption m_output{{QStringLiteral("o"), QStringLiteral("output")},
                                      tr("A file for one picture, a folder for several."),
                                      QStringLiteral("OUT")};

    std::vector<AdjustmentStep> m_steps;
    operations::Selection m_mask;
    OutputPlan m_plan;
    PicturePipeline::Options m_options;
};

ApplyCommand::ApplyCommand(const QStringList& arguments)
    : m_line(arguments, tr("Applies adjustments to pictures and writes the results as new files."))
{
    m_line.AddOption(m_adjust);
    m_line.AddOption(m_preset);
    m_line.AddOption(m_selection);
    m_line.AddOption(m_offset);
    m_line.AddOption(m_jobs);
    m_line.AddOption(m_force);
    m_line.AddOption(m_allow);
    m_line.AddOption(m_limit);
    m_line.AddOption(m_output);
    m_line.AddPositional(QStringLiteral("IN"), tr("The pictures."), QStringLiteral("IN..."));
}

ExitStatus ApplyCommand::Run()
{
    if (const auto status = m_line.Parse())
        return *status;
    const Problem problem = Prepare();
    if (problem.status != ExitStatus::Done) {
        Console::Complain(problem.text);
        return problem.status;
    }
    return Process();
}

/// What makes the call a wrong one comes first, so that it is told before any file is touched.
ApplyCommand::Problem ApplyCommand::Prepare()
{
    using Take = Problem (ApplyCommand::*)();
    for (const Take take : {&ApplyCommand::TakeFiles, &ApplyCommand::TakeNumbers, &ApplyCommand::TakeSteps,
                            &ApplyCommand::TakeMask}) {
        const Problem problem = (this->*take)();
        if (problem.status != ExitStatus::Done)
            return problem;
    }
    return m_plan.MakeFolder();
}

ApplyCommand::Problem ApplyCommand::TakeFiles()
{
    const QStringList inputs = Parser().positionalArguments();
    if (inputs.isEmpty())
        return Wrong(tr("apply: no picture is given"));
    if (Parser().values(m_output).size() != 1 || Parser().value(m_output).isEmpty())
        return Wrong(tr("apply: one file or folder is expected behind -o"));
    if (Parser().values(m_selection).size() > 1)
        return Wrong(tr("apply: there can be one mask only"));
    return m_plan.Make(inputs, Parser().value(m_output));
}

ApplyCommand::Problem ApplyCommand::TakeWhole(const QCommandLineOption& option, int maximum,
                                              int& number) const
{
    if (!Parser().isSet(option))
        return {};
    bool isNumber = false;
    number = Parser().value(option).toInt(&isNumber);
    if (isNumber && number >= 1 && number <= maximum)
        return {};
    return Wrong(tr("apply: a whole number from 1 to %1 is expected behind --%2, not \"%3\"")
                     .arg(maximum)
                     .arg(option.names().constLast(), Parser().value(option)));
}

ApplyCommand::Problem ApplyCommand::TakeNumbers()
{
    m_options.overwrite = Parser().isSet(m_force);
    m_options.picturesAtOnce = qBound(1, QThread::idealThreadCount(), MaxPicturesAtOnce);
    if (const Problem problem = TakeWhole(m_jobs, MaxPicturesAtOnce, m_options.picturesAtOnce);
        problem.status != ExitStatus::Done)
        return problem;
    int megapixels = 0;
    const Problem problem = TakeWhole(m_limit, MaxMegapixels, megapixels);
    if (megapixels > 0)
        m_options.reading.maxPixels = megapixels * PixelsPerMegapixel;
    const QStringList kinds = Parser().values(m_allow);
    for (const QString& kind : kinds)
        m_options.reading.formats.append(kind.toLower().toLatin1());
    return problem;
}

/// Both kinds of steps keep the order of the command line among each other, which the parser tells through
/// the names of the options alone.
ApplyCommand::Problem ApplyCommand::TakeSteps()
{
    QStringList texts = Parser().values(m_adjust);
    QStringList presets = Parser().values(m_preset);
    QStringList unreadable;
    const QStringList names = Parser().optionNames();
    for (const QString& name : names) {
        AdjustmentStep step;
        if (m_adjust.names().contains(name)) {
            if (const QString problem = step.TakeText(texts.takeFirst()); !problem.isEmpty())
                return Wrong(problem);
        } else if (m_preset.names().contains(name)) {
            if (const QString problem = step.TakePreset(presets.takeFirst()); !problem.isEmpty())
                unreadable.append(problem);
        } else {
            continue;
        }
        m_steps.push_back(std::move(step));
    }
    if (m_steps.empty())
        return Wrong(tr("apply: no adjustment is given; -a or -p names one"));
    return unreadable.isEmpty() ? Problem() : Failed(unreadable.first());
}

ApplyCommand::Problem ApplyCommand::TakeMask()
{
    if (!Parser().isSet(m_selection))
        return Parser().isSet(m_offset) ? Wrong(tr("apply: --offset belongs to a mask, which -s names"))
                                        : Problem();
    QPoint position;
    if (Parser().isSet(m_offset)) {
        static const QRegularExpression pattern(QStringLiteral("^([+-]?[0-9]{1,7}),([+-]?[0-9]{1,7})$"));
        const QRegularExpressionMatch match = pattern.match(Parser().value(m_offset));
        position = {match.captured(1).toInt(), match.captured(2).toInt()};
        if (!match.hasMatch() || qAbs(position.x()) > MaxOffset || qAbs(position.y()) > MaxOffset)
            return Wrong(tr("apply: two whole numbers X,Y are expected behind --offset, not \"%1\"")
                             .arg(Parser().value(m_offset)));
    }
    return Failed(ReadMask(Parser().value(m_selection), position, m_options.reading, m_mask));
}

ExitStatus ApplyCommand::Process()
{
    for (const AdjustmentStep& step : m_steps)
        if (const QString missing = step.Settings().WhatIsMissing(); !missing.isEmpty())
            Console::Complain(tr("note: %1: %2").arg(step.Adjustment().name, missing));
    InterruptWatch interrupt;
    PicturePipeline pipeline(m_steps, m_mask, m_options);
    QObject::connect(&interrupt, &InterruptWatch::Interrupted, &pipeline, &PicturePipeline::Stop);
    const int failed = pipeline.Run(m_plan.Items());
    if (interrupt.Signal() != 0) {
        Console::Complain(tr("interrupted; what has been written is whole"));
        InterruptWatch::EndBy(interrupt.Signal());
    }
    return failed == 0 ? ExitStatus::Done : ExitStatus::FileFailed;
}

} // namespace

ExitStatus RunApplyCommand(const QStringList& arguments) { return ApplyCommand(arguments).Run(); }
