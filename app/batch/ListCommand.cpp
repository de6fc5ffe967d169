#include "batch/ListCommand.h"

#include "batch/CommandLine.h"
#include "batch/Console.h"
#include "batch/SettingsText.h"
#include "operations/Catalog.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct ListText
{
    Q_DECLARE_TR_FUNCTIONS(ListCommand)
};

QJsonObject JsonOf(const operations::SettingsField& field)
{
    QJsonObject object{{QStringLiteral("name"), field.name},
                       {QStringLiteral("type"), field.typeName},
                       {QStringLiteral("default"), field.defaultValue}};
    if (field.range) {
        object.insert(QStringLiteral("minimum"), field.range->minimum);
        object.insert(QStringLiteral("maximum"), field.range->maximum);
    }
    return object;
}

QJsonObject JsonOf(const operations::Adjustment& adjustment)
{
    const auto settings = adjustment.makeSettings();
    QJsonArray fields;
    const QVector<operations::SettingsField> all = settings->Fields();
    for (const operations::SettingsField& field : all)
        fields.append(JsonOf(field));
    return {{QStringLiteral("name"), adjustment.name},
            {QStringLiteral("title"), adjustment.Title()},
            {QStringLiteral("preset"), settings->HasPreset()},
            {QStringLiteral("fields"), fields}};
}

void PrintJson()
{
    QJsonArray adjustments;
    for (const operations::Adjustment& adjustment : operations::Catalog::All())
        adjustments.append(JsonOf(adjustment));
    Console::Print(QString::fromUtf8(QJsonDocument(adjustments).toJson()).trimmed());
}

QString Describe(const operations::SettingsField& field)
{
    QString type = field.typeName;
    if (field.range)
        type += QStringLiteral(" %1..%2").arg(field.range->minimum).arg(field.range->maximum);
    return QStringLiteral("    %1=%2  (%3)")
        .arg(field.name, SettingsText::FromValue(field.defaultValue), type);
}

void PrintText()
{
    for (const operations::Adjustment& adjustment : operations::Catalog::All()) {
        const auto settings = adjustment.makeSettings();
        const QString note = settings->HasPreset() ? QString() : ListText::tr(" (no presets)");
        Console::Print(QStringLiteral("%1  %2%3").arg(adjustment.name, adjustment.Title(), note));
        const QVector<operations::SettingsField> fields = settings->Fields();
        for (const operations::SettingsField& field : fields)
            Console::Print(Describe(field));
    }
}

} // namespace

ExitStatus RunListCommand(const QStringList& arguments)
{
    CommandLine line(arguments, ListText::tr("Lists the adjustments, their fields with their defaults, and "
                                             "what values a field takes."));
    const QCommandLineOption json(QStringLiteral("json"), ListText::tr("Prints JSON."));
    line.AddOption(json);
    if (const auto status = line.Parse())
        return *status;
    if (!line.Parser().positionalArguments().isEmpty()) {
        Console::Complain(
            ListText::tr("\"%1\" is one argument too many").arg(line.Parser().positionalArguments().first()));
        return ExitStatus::WrongCall;
    }
    if (line.Parser().isSet(json))
        PrintJson();
    else
        PrintText();
    return ExitStatus::Done;
}
