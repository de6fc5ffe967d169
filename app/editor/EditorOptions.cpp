#include "editor/EditorOptions.h"

#include "catalog/AdjustmentCatalog.h"

#include <QCommandLineParser>

namespace {

QStringList AdjustmentNames()
{
    QStringList names;
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        names.append(entry.name);
    return names;
}

} // namespace

EditorOptions EditorOptions::Parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(tr("A small photo editor."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption palette(QStringLiteral("palette"), tr("Look: system, light or dark."),
                                     QStringLiteral("look"));
    const QCommandLineOption render(
        QStringLiteral("render"),
        tr("Open the picture, run the adjustment through its dialog, write the results, and end."));
    const QCommandLineOption adjustment(
        QStringLiteral("adjustment"),
        tr("With --render: %1.").arg(AdjustmentNames().join(QStringLiteral(", "))), QStringLiteral("name"));
    const QCommandLineOption set(QStringLiteral("set"), tr("With --render: one of the adjustment's fields."),
                                 QStringLiteral("field=value"));
    const QCommandLineOption output(
        QStringLiteral("output"), tr("With --render: file of the adjusted picture."), QStringLiteral("file"));
    const QCommandLineOption window(QStringLiteral("window"),
                                    tr("With --render: file of a picture of the window with the dialog."),
                                    QStringLiteral("file"));
    parser.addOptions({palette, render, adjustment, set, output, window});
    parser.addPositionalArgument(QStringLiteral("pictures"), tr("Pictures to open."),
                                 QStringLiteral("[picture...]"));
    parser.process(arguments);

    EditorOptions options;
    options.pictures = parser.positionalArguments();
    options.isRender = parser.isSet(render);
    options.outputPath = parser.value(output);
    options.windowPath = parser.value(window);
    options.colorScheme = ColorScheme::FromName(parser.value(palette));
    if (parser.isSet(palette) && !options.colorScheme)
        options.error =
            tr("the palette \"%1\" is neither system nor light nor dark").arg(parser.value(palette));
    else if (options.isRender)
        options.TakeRender(parser.value(adjustment), parser.values(set));
    return options;
}

void EditorOptions::TakeRender(const QString& adjustmentName, const QStringList& assignments)
{
    adjustment = AdjustmentCatalog::Find(adjustmentName);
    if (pictures.size() != 1) {
        error = tr("--render takes one picture");
    } else if (!adjustment) {
        error = tr("there is no adjustment \"%1\"; there are %2")
                    .arg(adjustmentName, AdjustmentNames().join(QStringLiteral(", ")));
    } else {
        settings = adjustment->makeSettings();
        for (const QString& assignment : assignments)
            if (error.isEmpty())
                error = settings->SetFromText(assignment);
    }
}
