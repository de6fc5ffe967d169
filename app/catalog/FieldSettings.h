#pragma once

#include "catalog/AdjustmentSettings.h"

/// Settings that `Params` holds, which lists its fields as a parameter record does.
template <class Params>
class FieldSettings : public AdjustmentSettings
{
public:
    QVector<SettingsField> Fields() const override
    {
        QVector<SettingsField> fields;
        const Params defaults;
        Params::VisitFields(defaults, [&fields](const char* name, const auto& field, auto... range) {
            fields.append({QString::fromLatin1(name), FieldJson::TypeName(&field),
                           FieldJson::OptionalRange(range...), FieldJson::ToJson(field)});
            return true;
        });
        return fields;
    }

    QJsonObject ToJson() const override
    {
        QJsonObject object;
        Params::VisitFields(m_params, [&object](const char* name, const auto& field, auto...) {
            object.insert(QString::fromLatin1(name), FieldJson::ToJson(field));
            return true;
        });
        return object;
    }

    [[nodiscard]] QString FromJson(const QJsonObject& object) override
    {
        Params params = m_params;
        QString problem;
        int taken = 0;
        Params::VisitFields(params, [&](const char* name, auto& field, auto... range) {
            const QJsonValue value = object.value(QLatin1String(name));
            if (value.isUndefined())
                return true;
            ++taken;
            const QString wrong = FieldJson::FromJson(value, FieldJson::OptionalRange(range...), field);
            if (!wrong.isEmpty())
                problem = FieldJson::ProblemIn(QString::fromLatin1(name), wrong);
            return wrong.isEmpty();
        });
        if (problem.isEmpty() && taken != object.size())
            problem = QCoreApplication::translate("FieldSettings", "a field that there is not");
        if (problem.isEmpty()) {
            YDRecord::Derive(params);
            m_params = params;
        }
        return problem;
    }

protected:
    QJsonValue ValueFromText(const QString& name, const QString& text) const override
    {
        QJsonValue value(QJsonValue::Undefined);
        Params::VisitFields(m_params, [&](const char* each, const auto& field, auto...) {
            const bool isWanted = name == QLatin1String(each);
            if (isWanted)
                value = FieldJson::FromText(text, &field);
            return !isWanted;
        });
        return value;
    }

    Params m_params;
};
