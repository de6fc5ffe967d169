#pragma once

#include "operations/Settings.h"

#include <QDataStream>
#include <QIODevice>

#include <string_view>
#include <type_traits>

namespace operations {

/// What settings lack without which they do nothing; nothing, unless they have a function of their own.
template <class Value>
QString WhatIsMissing(const Value&)
{
    return {};
}

/// The overloads that belong to the value's type, which members of the same name would hide.
template <class Value>
Task TaskOf(const Value& value)
{
    return MakeTask(value);
}
template <class Value>
QString MissingIn(const Value& value)
{
    return WhatIsMissing(value);
}

/// The settings that `Value` holds, which lists its fields as a parameter record does and has a task. A
/// `Value` with a tag can be stored as a preset.
template <class Value>
class SettingsOf final : public Settings
{
public:
    Value value;

    std::unique_ptr<Settings> Clone() const override { return std::make_unique<SettingsOf>(*this); }

    QVector<SettingsField> Fields() const override
    {
        QVector<SettingsField> fields;
        const Value defaults;
        Value::VisitFields(defaults, [&fields](const char* name, const auto& field, auto... range) {
            fields.append({QString::fromLatin1(name), FieldJson::TypeName(&field),
                           FieldJson::OptionalRange(range...), FieldJson::ToJson(field)});
            return true;
        });
        return fields;
    }

    QJsonObject ToJson() const override
    {
        QJsonObject object;
        Value::VisitFields(value, [&object](const char* name, const auto& field, auto...) {
            object.insert(QString::fromLatin1(name), FieldJson::ToJson(field));
            return true;
        });
        return object;
    }

    [[nodiscard]] QString FromJson(const QJsonObject& object) override
    {
        Value changed = value;
        QString problem;
        int taken = 0;
        Value::VisitFields(changed, [&](const char* name, auto& field, auto... range) {
            const QJsonValue given = object.value(QLatin1String(name));
            if (given.isUndefined())
                return true;
            ++taken;
            const QString wrong = FieldJson::FromJson(given, FieldJson::OptionalRange(range...), field);
            if (!wrong.isEmpty())
                problem = FieldJson::ProblemIn(QString::fromLatin1(name), wrong);
            return wrong.isEmpty();
        });
        if (problem.isEmpty() && taken != object.size())
            problem = ProblemOfUnknown(object);
        if (problem.isEmpty()) {
            YDRecord::Derive(changed);
            value = changed;
        }
        return problem;
    }

    bool HasPreset() const override { return HasTag<Value>::value; }

    QByteArray ToPreset() const override
    {
        QByteArray preset;
        if constexpr (HasTag<Value>::value) {
            QDataStream stream(&preset, QIODevice::WriteOnly);
            Prepare(stream);
            if (!value.Write(stream))
                preset.clear();
        }
        return preset;
    }

    [[nodiscard]] bool FromPreset(const QByteArray& preset) override
    {
        Value read;
        bool isWhole = false;
        if constexpr (HasTag<Value>::value) {
            QDataStream stream(preset);
            Prepare(stream);
            isWhole = read.Read(stream) && stream.atEnd();
        }
        value = isWhole ? read : Value();
        return isWhole;
    }

    bool IsTagOf([[maybe_unused]] const QByteArray& preset) const override
    {
        if constexpr (HasOlderTag<Value>::value)
            return BeginsWith(preset, Value::Tag) || BeginsWith(preset, Value::OlderTag);
        else if constexpr (HasTag<Value>::value)
            return BeginsWith(preset, Value::Tag);
        else
            return false;
    }

    [[nodiscard]] Task MakeTask() const override { return TaskOf(value); }

    QString WhatIsMissing() const override { return MissingIn(value); }

protected:
    QJsonValue ValueFromText(const QString& name, const QString& text) const override
    {
        QJsonValue parsed(QJsonValue::Undefined);
        Value::VisitFields(value, [&](const char* each, const auto& field, auto...) {
            const bool isWanted = name == QLatin1String(each);
            if (isWanted)
                parsed = FieldJson::FromText(text, &field);
            return !isWanted;
        });
        return parsed;
    }

private:
    template <class Record, class = void>
    struct HasTag : std::false_type
    {};
    template <class Record>
    struct HasTag<Record, std::void_t<decltype(Record::Tag)>> : std::true_type
    {};
    template <class Record, class = void>
    struct HasOlderTag : std::false_type
    {};
    template <class Record>
    struct HasOlderTag<Record, std::void_t<decltype(Record::OlderTag)>> : std::true_type
    {};

    /// Names the first key of `object` that is no field.
    static QString ProblemOfUnknown(const QJsonObject& object)
    {
        const QJsonObject known = SettingsOf().ToJson();
        for (auto each = object.begin(); each != object.end(); ++each)
            if (!known.contains(each.key()))
                return QCoreApplication::translate("Settings", "there is no field \"%1\"").arg(each.key());
        return {};
    }

    static bool BeginsWith(const QByteArray& preset, std::string_view tag)
    {
        return preset.startsWith(QByteArray::fromRawData(tag.data(), int(tag.size())));
    }

    /// The stream's form, said in this one place.
    static void Prepare(QDataStream& stream)
    {
        stream.setVersion(QDataStream::Qt_5_15);
        stream.setByteOrder(QDataStream::BigEndian);
    }
};

} // namespace operations
