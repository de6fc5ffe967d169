#include "operations/Recipe.h"

#include "FieldJson.h"
#include "core/WholeFile.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

using operations::Recipe;

constexpr int Version = 1;
const QLatin1String VersionKey("adjustmentgui");
const QLatin1String StepsKey("steps");
const QLatin1String AdjustmentKey("adjustment");
const QLatin1String EnabledKey("enabled");
const QLatin1String SettingsKey("settings");
const QLatin1String SelectionKey("selection");

Recipe::Result Refusal(const QString& reason) { return {Recipe(), reason}; }

QString IsMissing(QLatin1String key) { return Recipe::tr("the key \"%1\" is missing").arg(key); }

/// A problem in the value of one of a step's keys, to stand behind the step's place.
QString ProblemAt(QLatin1String key, const QString& problem)
{
    return QStringLiteral(".%1: %2").arg(key, problem);
}

/// The adjustment that `value` names; null, and what is wrong, if it names none.
const operations::Adjustment* AdjustmentFromJson(const QJsonValue& value, QString& problem)
{
    const operations::Adjustment* const adjustment = operations::Catalog::Find(value.toString());
    if (value.isUndefined())
        problem = QStringLiteral(": ") + IsMissing(AdjustmentKey);
    else if (!value.isString())
        problem = ProblemAt(AdjustmentKey, Recipe::tr("a text is expected"));
    else if (!adjustment)
        problem = ProblemAt(AdjustmentKey, Recipe::tr("there is no adjustment \"%1\"").arg(value.toString()));
    return adjustment;
}

QString SettingsFromJson(const QJsonValue& value, operations::Settings& settings)
{
    if (value.isUndefined())
        return {};
    const QString problem =
        value.isObject() ? settings.FromJson(value.toObject()) : Recipe::tr("an object is expected");
    return problem.isEmpty() ? QString() : ProblemAt(SettingsKey, problem);
}

/// Appends the step to `recipe`. An empty answer, or what is wrong, to stand behind the step's place.
QString StepFromJson(const QJsonValue& value, Recipe& recipe)
{
    if (!value.isObject())
        return QStringLiteral(": ") + Recipe::tr("an object is expected");
    const QJsonObject object = value.toObject();
    QString problem =
        FieldJson::ProblemOfUnknownKey(object, {AdjustmentKey, EnabledKey, SettingsKey, SelectionKey});
    if (!problem.isEmpty())
        return QStringLiteral(": ") + problem;
    const operations::Adjustment* const adjustment = AdjustmentFromJson(object.value(AdjustmentKey), problem);
    if (!adjustment)
        return problem;
    std::shared_ptr<operations::Settings> settings = adjustment->makeSettings();
    Recipe::Step step(*adjustment, settings);
    if (object.contains(EnabledKey))
        problem = FieldJson::FromJson(object.value(EnabledKey), {}, step.enabled);
    if (!problem.isEmpty())
        return ProblemAt(EnabledKey, problem);
    if (problem = SettingsFromJson(object.value(SettingsKey), *settings); !problem.isEmpty())
        return problem;
    if (object.contains(SelectionKey))
        problem = step.selection.FromJson(object.value(SelectionKey));
    if (!problem.isEmpty())
        return ProblemAt(SelectionKey, problem);
    recipe.steps.push_back(step);
    return {};
}

QString CheckVersion(const QJsonObject& object)
{
    if (!object.contains(VersionKey))
        return IsMissing(VersionKey);
    int version = 0;
    QString problem = FieldJson::FromJson(object.value(VersionKey), {}, version);
    if (problem.isEmpty() && version != Version)
        problem = Recipe::tr("version %1 is not known").arg(version);
    return problem.isEmpty() ? QString() : FieldJson::ProblemIn(VersionKey, problem);
}

QString StepsFromJson(const QJsonObject& object, Recipe& recipe)
{
    if (!object.contains(StepsKey))
        return IsMissing(StepsKey);
    if (!object.value(StepsKey).isArray())
        return FieldJson::ProblemIn(StepsKey, Recipe::tr("a list is expected"));
    const QJsonArray list = object.value(StepsKey).toArray();
    if (list.size() > Recipe::MaxSteps)
        return FieldJson::ProblemIn(StepsKey, Recipe::tr("there are more than %1").arg(Recipe::MaxSteps));
    for (int i = 0; i < list.size(); ++i)
        if (const QString problem = StepFromJson(list.at(i), recipe); !problem.isEmpty())
            return QStringLiteral("%1[%2]").arg(StepsKey).arg(i) + problem;
    return {};
}

QJsonObject ToObject(const Recipe::Step& step)
{
    return {{AdjustmentKey, step.adjustment->name},
            {EnabledKey, step.enabled},
            {SettingsKey, step.settings->ToJson()},
            {SelectionKey, step.selection.ToJson()}};
}

} // namespace

operations::Recipe::Result operations::Recipe::FromJson(const QByteArray& json)
{
    if (json.isEmpty())
        return Refusal(tr("the file is empty"));
    if (json.size() > MaxBytes)
        return Refusal(tr("it is longer than %1 bytes").arg(MaxBytes));
    QJsonParseError wrong;
    const QJsonDocument document = QJsonDocument::fromJson(json, &wrong);
    if (wrong.error != QJsonParseError::NoError)
        return Refusal(tr("it is not JSON (byte %1: %2)").arg(wrong.offset).arg(wrong.errorString()));
    if (!document.isObject())
        return Refusal(tr("a recipe is expected, which is an object"));
    const QJsonObject object = document.object();
    // The version first: what another one has is not known here.
    QString problem = CheckVersion(object);
    if (problem.isEmpty())
        problem = FieldJson::ProblemOfUnknownKey(object, {VersionKey, StepsKey});
    Result result;
    if (problem.isEmpty())
        problem = StepsFromJson(object, result.recipe);
    return problem.isEmpty() ? result : Refusal(problem);
}

operations::Recipe::Result operations::Recipe::Read(const QString& path)
{
    const WholeFile::Content file = WholeFile::Read(path, MaxBytes);
    if (!file.error.isEmpty())
        return Refusal(file.error);
    Result result = FromJson(file.bytes);
    if (!result.error.isEmpty())
        result.error = WholeFile::Error(path, result.error);
    return result;
}

QByteArray operations::Recipe::ToJson() const
{
    QByteArray json =
        QStringLiteral("{\"%1\": %2, \"%3\": [").arg(VersionKey).arg(Version).arg(StepsKey).toUtf8();
    const char* separator = "\n";
    for (const Step& step : steps) {
        json += separator + QJsonDocument(ToObject(step)).toJson(QJsonDocument::Compact);
        separator = ",\n";
    }
    return json + "\n]}\n";
}

QString operations::Recipe::Write(const QString& path, Existing existing) const
{
    const QByteArray json = ToJson();
    if (const QString problem = FromJson(json).error; !problem.isEmpty())
        return WholeFile::Error(path, problem);
    return WholeFile::Write(path, json,
                            existing == Existing::Replace ? WholeFile::Existing::Replace
                                                          : WholeFile::Existing::Refuse);
}
