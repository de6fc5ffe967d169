#pragma once

#include "FieldJson.h"
#include "adjustmentgui_operations_export.h"
#include "operations/Task.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include <memory>

namespace operations {

/// One field of an adjustment's settings, as people see it.
struct SettingsField
{
    QString name;
    QString typeName;
    FieldJson::OptionalRange range;
    QJsonValue defaultValue;
};

/// The settings of one adjustment, whichever it is: named fields, JSON, a preset stream, a task.
class ADJUSTMENTGUI_OPERATIONS_EXPORT Settings
{
public:
    virtual ~Settings();

    virtual std::unique_ptr<Settings> Clone() const = 0;

    /// The fields, in stream order.
    virtual QVector<SettingsField> Fields() const = 0;

    virtual QJsonObject ToJson() const = 0;

    /// Takes the fields that `object` has. An empty answer, or what is wrong, with nothing taken then.
    [[nodiscard]] virtual QString FromJson(const QJsonObject& object) = 0;

    /// Sets one field as typed on a command line, "name=value". An empty answer, or what is wrong.
    [[nodiscard]] QString SetFromText(const QString& assignment);

    /// Whether a preset can be stored.
    virtual bool HasPreset() const = 0;

    /// The preset: the parameter stream and nothing else. Empty if there is none.
    virtual QByteArray ToPreset() const = 0;

    /// Takes a preset's values as the record takes them. False, with the defaults taken, if `preset` is not
    /// a whole record of this adjustment, or holds more than that.
    [[nodiscard]] virtual bool FromPreset(const QByteArray& preset) = 0;

    /// Whether `preset` begins as the presets of this adjustment do.
    virtual bool IsTagOf(const QByteArray& preset) const = 0;

    /// What the settings do to a picture.
    [[nodiscard]] virtual Task MakeTask() const = 0;

    /// What the settings lack without which they do nothing, for people; empty for nothing.
    virtual QString WhatIsMissing() const = 0;

protected:
    Settings() = default;
    Settings(const Settings&) = default;
    Settings& operator=(const Settings&) = default;

    /// The JSON value that `text` stands for in the field `name`; undefined if it stands for none.
    virtual QJsonValue ValueFromText(const QString& name, const QString& text) const = 0;
};

} // namespace operations
