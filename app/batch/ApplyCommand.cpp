#include "batch/ApplyCommand.h"

#include "batch/AdjustmentStep.h"
#include "batch/CommandLine.h"
#include "batch/Console.h"
#include "batch/InterruptWatch.h"
#include "batch/OutputPlan.h"
#include "batch/PicturePipeline.h"
#include "batch/ReadMask.h"
#include "operations/Recipe.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>

#include <map>

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

    /// One adjustment, and the folder in which its mask is looked for.
    struct Step
    {
        operations::Recipe::Step recipeStep;
        QString folder;
    };

    static Problem Wrong(const QString& text) { return {ExitStatus::WrongCall, text}; }
    static Problem Failed(const QString& text)
    {
        return {text.isEmpty() ? ExitStatus::Done : ExitStatus::FileFailed, text};
    }

    Problem Prepare();
    Problem TakeFiles();
    Problem TakeNumbers();
    Problem TakeSteps();
    QString TakeText(const QString& text);
    QString TakePreset(const QString& path);
    QString TakeRecipe(const QString& path);
    Problem TakeMask();
    Problem PrepareSteps();
    Problem TakeWhole(const QCommandLineOption& option, int maximum, int& number) const;
    ExitStatus Process();
    void TellWhatIsMissing() const;

    const QCommandLineParser& Parser() const { return m_line.Parser(); }

    CommandLine m_line;
    const QCommandLineOption m_adjust{{QStringLiteral("a"), QStringLiteral("adjust")},
                                      tr("Applies an adjustment with these settings."),
                                      QStringLiteral("NAME [FIELD=VALUE ...]")};
    const QCommandLineOption m_preset{
        {QStringLiteral("p"), QStringLiteral("preset")},
        tr("Applies a stored preset. -a and -p may be given as often as wanted, "
           "and are applied in their order; so may -r."),
        QStringLiteral("FILE")};
    const QCommandLineOption m_recipe{{QStringLiteral("r"), QStringLiteral("recipe")},
                                      tr("Applies the steps of a recipe. A step's own selection takes the "
                                         "place of the mask."),
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

    std::vector<Step> m_steps;
    operations::Selection m_mask;
    std::vector<PicturePipeline::Step> m_pipelineSteps;
    OutputPlan m_plan;
    PicturePipeline::Options m_options;
};

ApplyCommand::ApplyCommand(const QStringList& arguments)
    : m_line(arguments, tr("Applies adjustments to pictures and writes the results as new files."))
{
    m_line.AddOption(m_adjust);
    m_line.AddOption(m_preset);
    m_line.AddOption(m_recipe);
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
                            &ApplyCommand::TakeMask, &ApplyCommand::PrepareSteps}) {
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

/// All kinds of steps keep the order of the command line among each other, which the parser tells through
/// the names of the options alone.
ApplyCommand::Problem ApplyCommand::TakeSteps()
{
    QStringList texts = Parser().values(m_adjust);
    QStringList presets = Parser().values(m_preset);
    QStringList recipes = Parser().values(m_recipe);
    if (texts.isEmpty() && presets.isEmpty() && recipes.isEmpty())
        return Wrong(tr("apply: no adjustment is given; -a, -p or -r names one"));
    QString unreadable;
    const QStringList names = Parser().optionNames();
    for (const QString& name : names) {
        QString problem;
        if (m_adjust.names().contains(name)) {
            if (problem = TakeText(texts.takeFirst()); !problem.isEmpty())
                return Wrong(problem);
        } else if (m_preset.names().contains(name)) {
            problem = TakePreset(presets.takeFirst());
        } else if (m_recipe.names().contains(name)) {
            problem = TakeRecipe(recipes.takeFirst());
        }
        if (unreadable.isEmpty())
            unreadable = problem;
    }
    return Failed(unreadable);
}

QString ApplyCommand::TakeText(const QString& text)
{
    AdjustmentStep step;
    const QString problem = step.TakeText(text);
    if (problem.isEmpty())
        m_steps.push_back({step.RecipeStep(), QString()});
    return problem;
}

QString ApplyCommand::TakePreset(const QString& path)
{
    AdjustmentStep step;
    const QString problem = step.TakePreset(path);
    if (problem.isEmpty())
        m_steps.push_back({step.RecipeStep(), QString()});
    return problem;
}

QString ApplyCommand::TakeRecipe(const QString& path)
{
    const operations::Recipe::Result result = operations::Recipe::Read(path);
    const QString folder = QFileInfo(path).path();
    for (const operations::Recipe::Step& step : result.recipe.steps)
        if (step.enabled)
            m_steps.push_back({step, folder});
    return result.error;
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

/// A mask is read once, however many steps it limits; a shape is drawn for each picture.
ApplyCommand::Problem ApplyCommand::PrepareSteps()
{
    std::map<QString, operations::Selection> masks;
    for (const Step& step : m_steps) {
        const operations::RecipeSelection& own = step.recipeStep.selection;
        const operations::Task task = step.recipeStep.settings->MakeTask();
        if (own.IsShape()) {
            m_pipelineSteps.push_back({task, [own](const QSize& picture) { return own.OfShape(picture); }});
            continue;
        }
        const auto readMask = [&](const QString& file, operations::Selection& mask) {
            const QString path = step.folder + QLatin1Char('/') + file;
            const auto [entry, isNew] = masks.try_emplace(path);
            const QString problem =
                isNew ? ReadMask(path, QPoint(), m_options.reading, entry->second) : QString();
            mask = entry->second;
            return problem;
        };
        operations::Selection selection = m_mask;
        if (own.kind == operations::RecipeSelection::Kind::MaskFile)
            if (const QString problem = own.Make(QSize(), readMask, selection); !problem.isEmpty())
                return Failed(problem);
        m_pipelineSteps.push_back({task, [selection](const QSize&) { return selection; }});
    }
    return {};
}

void ApplyCommand::TellWhatIsMissing() const
{
    for (const Step& step : m_steps)
        if (const QString missing = step.recipeStep.settings->WhatIsMissing(); !missing.isEmpty())
            Console::Complain(tr("note: %1: %2").arg(step.recipeStep.adjustment->name, missing));
}

ExitStatus ApplyCommand::Process()
{
    TellWhatIsMissing();
    InterruptWatch interrupt;
    PicturePipeline pipeline(m_pipelineSteps, m_options);
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
