#include "operations/Settings.h"

#include <algorithm>

operations::Settings::~Settings() = default;

QString operations::Settings::SetFromText(const QString& assignment)
{
    const int equals = assignment.indexOf(QLatin1Char('='));
    if (equals < 1)
        return QCoreApplication::translate("Settings", "\"%1\" is not FIELD=VALUE").arg(assignment);
    const QString name = assignment.left(equals);
    const QString text = assignment.mid(equals + 1);
    const QVector<SettingsField> fields = Fields();
    const auto field = std::find_if(fields.begin(), fields.end(),
                                    [&name](const SettingsField& each) { return each.name == name; });
    if (field == fields.end())
        return QCoreApplication::translate("Settings", "there is no field \"%1\"").arg(name);
    const QJsonValue value = ValueFromText(name, text);
    if (value.isUndefined())
        return QCoreApplication::translate("Settings", "\"%1\" is no value for %2 (%3)")
            .arg(text, name, field->typeName);
    return FromJson({{name, value}});
}
