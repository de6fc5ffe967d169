#include "batch/ListCommand.h"

#include "batch/CommandLine.h"
#include "batch/Console.h"
#include "batch/SettingsText.h"
#include "catalog/AdjustmentCatalog.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct ListText
{
    Q_DECLARE_TR_FUNCTIONS(ListCommand)
};

QJsonObject JsonOf(const SettingsField& field)
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

QJsonObject JsonOf(const AdjustmentEntry& entry)
{
    const auto settings = entry.makeSettings();
    QJsonArray fields;
    const QVector<SettingsField> all = settings->Fields();
    for (const SettingsField& field : all)
        fields.append(JsonOf(field));
    return {{QStringLiteral("name"), entry.name},
            {QStringLiteral("title"), entry.Title()},
            {QStringLiteral("preset"), settings->HasPreset()},
            {QStringLiteral("fields"), fields}};
}

void PrintJson()
{
    QJsonArray adjustments;
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        adjustments.append(JsonOf(entry));
    Console::Print(QString::fromUtf8(QJsonDocument(adjustments).toJson()).trimmed());
}

QString Describe(const SettingsField& field)
{
    QString type = field.typeName;
    if (field.range)
        type += QStringLiteral(" %1..%2").arg(field.range->minimum).arg(field.range->maximum);
    return QStringLiteral("    %1=%2  (%3)")
        .arg(field.name, SettingsText::FromValue(field.defaultValue), type);
}

void PrintText()
{
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
        const auto settings = entry.makeSettings();
        const QString note = settings->HasPreset() ? QString() : ListText::tr(" (no presets)");
        Console::Print(QStringLiteral("%1  %2%3").arg(entry.name, entry.Title(), note));
        const QVector<SettingsField> fields = settings->Fields();
        for (const SettingsField& field : fields)
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
