#pragma once

#include "YDAdjustmentWidget.h"
#include "catalog/AdjustmentSettings.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>

/// The settings of an adjustment whose widget keeps a parameter record with a stream.
template <class Widget>
class RecordSettings : public AdjustmentSettings
{
public:
    using Params = typename Widget::Params;

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
                problem = QStringLiteral("%1: %2").arg(QLatin1String(name), wrong);
            return wrong.isEmpty();
        });
        if (problem.isEmpty() && taken != object.size())
            problem = QCoreApplication::translate("RecordSettings", "a field that there is not");
        if (problem.isEmpty())
            m_params = params;
        return problem;
    }

    bool HasPreset() const override { return true; }

    QByteArray ToPreset() const override
    {
        QByteArray preset;
        QDataStream stream(&preset, QIODevice::WriteOnly);
        Prepare(stream);
        return m_params.Write(stream) ? preset : QByteArray();
    }

    [[nodiscard]] bool FromPreset(const QByteArray& preset) override
    {
        QDataStream stream(preset);
        Prepare(stream);
        Params params;
        const bool isWhole = params.Read(stream) && stream.atEnd();
        m_params = isWhole ? params : Params();
        return isWhole;
    }

    bool IsTagOf(const QByteArray& preset) const override
    {
        return preset.startsWith(QByteArray::fromRawData(Params::Tag.data(), int(Params::Tag.size())));
    }

    void ShowIn(YDAdjustmentWidget& widget) const override
    {
        static_cast<Widget&>(widget).SetValue(m_params);
    }

    void TakeFrom(const YDAdjustmentWidget& widget) override
    {
        m_params = static_cast<const Widget&>(widget).GetValue();
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

private:
    /// The stream's form, said in this one place.
    static void Prepare(QDataStream& stream)
    {
        stream.setVersion(QDataStream::Qt_5_15);
        stream.setByteOrder(QDataStream::BigEndian);
    }

    Params m_params;
};
