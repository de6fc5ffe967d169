#pragma once

#include "YDRecord.h"
#include "adjustmentgui_operations_export.h"

#include <QColor>
#include <QCoreApplication>
#include <QFont>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QVector>

#include <array>
#include <initializer_list>
#include <optional>

/// The fields of parameter records as JSON values, one pair of functions for each type that fields have.
///
/// The FromJson functions change `field` only when the value fits: a number within `range` where there is
/// one, a colour as "#rrggbb" or "#aarrggbb", a list of exactly as many elements, any number of points
/// [x, y] with both coordinates within `range`, the edges [left, top, right, bottom] of a rectangle likewise.
/// They answer with an empty text then, and with what is wrong otherwise, behind the place in the list:
/// "[1][0]: 300 is outside 0..255".
///
/// A font is a text as QFont::toString() writes it, or only its beginning, the family or "family,points". The
/// text has no room for a name with a comma and for spacings, capitals and stretching, which are lost.
namespace FieldJson {

using OptionalRange = std::optional<YDRecord::Range>;

ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(int field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(double field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(float field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(bool field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(const QString& field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(const QColor& field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(const QPoint& field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(const QVector<QPoint>& field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(const QRect& field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(const QFont& field);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ToJson(Qt::Alignment field);

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, int& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, double& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, float& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, bool& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, QString& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, QColor& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, QPoint& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range,
                                                               QVector<QPoint>& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, QRect& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range, QFont& field);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString FromJson(const QJsonValue& value,
                                                               const OptionalRange& range,
                                                               Qt::Alignment& field);

/// `problem`, which is in the part of a field that `place` names.
ADJUSTMENTGUI_OPERATIONS_EXPORT QString ProblemIn(const QString& place, const QString& problem);
/// `problem`, which is in the element of a list that `index` counts from 0.
ADJUSTMENTGUI_OPERATIONS_EXPORT QString ProblemIn(int index, const QString& problem);

/// Names the first key of `object` that is none of `known`; empty where there is none.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString
ProblemOfUnknownKey(const QJsonObject& object, std::initializer_list<QLatin1String> known);

template <class Element, std::size_t Size>
QJsonValue ToJson(const std::array<Element, Size>& fields)
{
    QJsonArray list;
    for (const Element& field : fields)
        list.append(ToJson(field));
    return list;
}

template <class Element, std::size_t Size>
[[nodiscard]] QString FromJson(const QJsonValue& value, const OptionalRange& range,
                               std::array<Element, Size>& fields)
{
    const QJsonArray list = value.toArray();
    if (!value.isArray() || list.size() != int(Size))
        return QCoreApplication::translate("FieldJson", "a list of %n elements is expected", nullptr,
                                           int(Size));
    std::array<Element, Size> elements{};
    for (std::size_t i = 0; i < Size; ++i) {
        const QString problem = FromJson(list.at(int(i)), range, elements[i]);
        if (!problem.isEmpty())
            return ProblemIn(int(i), problem);
    }
    fields = elements;
    return {};
}

/// What kind of value a field takes, for people: "number", "whole number", "true or false", "text",
/// "colour", "font", "list of points" or "list".
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const int*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const double*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const float*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const bool*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const QString*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const QColor*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const QVector<QPoint>*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const QRect*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const QFont*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QString TypeName(const Qt::Alignment*);
template <class Element, std::size_t Size>
QString TypeName(const std::array<Element, Size>*)
{
    return QCoreApplication::translate("FieldJson", "list");
}

/// The JSON value that `text`, as typed on a command line for a field of this type, stands for; undefined
/// if it stands for none. Texts, fonts and colours are typed as they are, lists as JSON.
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const int*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const double*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const float*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const bool*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const QString*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const QColor*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const QVector<QPoint>*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const QRect*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const QFont*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue FromText(const QString& text, const Qt::Alignment*);
ADJUSTMENTGUI_OPERATIONS_EXPORT QJsonValue ListFromText(const QString& text);
template <class Element, std::size_t Size>
QJsonValue FromText(const QString& text, const std::array<Element, Size>*)
{
    return ListFromText(text);
}

} // namespace FieldJson
