#include "FieldJson.h"

#include "image/ColorToRgba.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

// A font as text: the family, its size in points, whole numbers, the size in pixels first among them, and
// perhaps the name of a style.
constexpr int FontParts = 10;
constexpr int FirstWholeFontPart = 2;
constexpr double NoPoints = -1; ///< of a font whose size is in pixels

QString Tr(const char* text) { return QCoreApplication::translate("FieldJson", text); }

/// Millions without an exponent.
QString Shown(double number)
{
    constexpr int Digits = 8;
    return QString::number(number, 'g', Digits);
}

QString CheckNumber(const QJsonValue& value, const FieldJson::OptionalRange& range)
{
    if (!value.isDouble())
        return Tr("a number is expected");
    const double number = value.toDouble();
    if (range && !(number >= range->minimum && number <= range->maximum))
        return Tr("%1 is outside %2..%3").arg(Shown(number), Shown(range->minimum), Shown(range->maximum));
    return {};
}

/// A colour with '#' and six or eight digits; QColor alone would take names and other lengths as well.
bool IsColor(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^#([0-9a-fA-F]{6}|[0-9a-fA-F]{8})$"));
    return pattern.match(text).hasMatch();
}

/// The number that is written with the fewest digits from which `number`, a finite one, is read again.
double ShortestDecimal(float number)
{
    std::array<char, 32> text{}; // the longest is such as "-1.17549435e-38"
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
    Q_ASSERT(error == std::errc());
    const double decimal = QByteArray(text.data(), int(end - text.data())).toDouble();
    // Reading goes by way of a double, which rounds twice.
    return static_cast<float>(decimal) == number ? decimal : double(number);
}

/// Whether QFont takes the text for a font without bending it. QFont alone would take an infinite size, and
/// any text for a number.
bool IsFont(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.first().isEmpty() ||
        (parts.size() > 2 && parts.size() != FontParts && parts.size() != FontParts + 1))
        return false;
    const auto isNumber = [&parts](int part) {
        bool isIt = false;
        parts.at(part).toInt(&isIt);
        return isIt;
    };
    for (int part = FirstWholeFontPart; part < std::min(parts.size(), FontParts); ++part)
        if (!isNumber(part))
            return false;
    const double points = parts.size() > 1 ? parts.at(1).toDouble() : 1;
    const int pixels = parts.size() > FirstWholeFontPart ? parts.at(FirstWholeFontPart).toInt() : 0;
    return (points > 0 && std::isfinite(points)) || (points == NoPoints && pixels > 0);
}

} // namespace

QJsonValue FieldJson::ToJson(int field) { return field; }

/// JSON has no number for what is not finite.
QJsonValue FieldJson::ToJson(double field)
{
    return std::isfinite(field) ? QJsonValue(field) : QJsonValue(QString::number(field));
}

/// The shortest decimal that reads back as this float: 0.333, not 0.33300000429153442.
QJsonValue FieldJson::ToJson(float field)
{
    return std::isfinite(field) ? QJsonValue(ShortestDecimal(field))
                                : QJsonValue(QString::number(double(field)));
}

QJsonValue FieldJson::ToJson(bool field) { return field; }

QJsonValue FieldJson::ToJson(const QString& field) { return field; }

QJsonValue FieldJson::ToJson(const QColor& field)
{
    const QColor color = QColor::fromRgba(ColorToRgba(field));
    return color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
}

QJsonValue FieldJson::ToJson(const QPoint& field) { return QJsonArray{field.x(), field.y()}; }

QJsonValue FieldJson::ToJson(const QVector<QPoint>& field)
{
    QJsonArray list;
    for (const QPoint& point : field)
        list.append(ToJson(point));
    return list;
}

QJsonValue FieldJson::ToJson(const QRect& field)
{
    return QJsonArray{field.left(), field.top(), field.right(), field.bottom()};
}

QJsonValue FieldJson::ToJson(const QFont& field) { return field.toString(); }

QJsonValue FieldJson::ToJson(Qt::Alignment field) { return int(field); }

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange& range, int& field)
{
    const QString problem = CheckNumber(value, range);
    if (!problem.isEmpty())
        return problem;
    const double number = value.toDouble();
    if (number != std::floor(number) || number < std::numeric_limits<int>::min() ||
        number > std::numeric_limits<int>::max())
        return Tr("a whole number is expected");
    field = static_cast<int>(number);
    return {};
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange& range, double& field)
{
    const QString problem = CheckNumber(value, range);
    if (problem.isEmpty())
        field = value.toDouble();
    return problem;
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange& range, float& field)
{
    double number = 0;
    const QString problem = FromJson(value, range, number);
    if (!problem.isEmpty())
        return problem;
    if (std::abs(number) > double(std::numeric_limits<float>::max()))
        return Tr("%1 is too large").arg(number);
    field = static_cast<float>(number);
    return {};
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange&, bool& field)
{
    if (!value.isBool())
        return Tr("true or false is expected");
    field = value.toBool();
    return {};
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange&, QString& field)
{
    if (!value.isString())
        return Tr("a text is expected");
    field = value.toString();
    return {};
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange&, QColor& field)
{
    if (!IsColor(value.toString()))
        return Tr("a colour as #rrggbb or #aarrggbb is expected");
    field = QColor(value.toString());
    return {};
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange& range, QPoint& field)
{
    if (!value.isArray() || value.toArray().size() != 2)
        return Tr("a point [x, y] is expected");
    std::array<int, 2> coordinates{};
    const QString problem = FromJson(value, range, coordinates);
    if (problem.isEmpty())
        field = QPoint(coordinates[0], coordinates[1]);
    return problem;
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange& range, QVector<QPoint>& field)
{
    if (!value.isArray())
        return Tr("a list of points [x, y] is expected");
    const QJsonArray list = value.toArray();
    QVector<QPoint> points(list.size());
    for (int i = 0; i < points.size(); ++i) {
        const QString problem = FromJson(list.at(i), range, points[i]);
        if (!problem.isEmpty())
            return ProblemIn(i, problem);
    }
    field = points;
    return {};
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange& range, QRect& field)
{
    std::array<int, 4> edges{};
    const QString problem = FromJson(value, range, edges);
    if (problem.isEmpty())
        field.setCoords(edges[0], edges[1], edges[2], edges[3]);
    return problem;
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange&, QFont& field)
{
    QFont font;
    if (!IsFont(value.toString()) || !font.fromString(value.toString()))
        return Tr("a font as \"family,points\" is expected");
    field = font;
    return {};
}

QString FieldJson::FromJson(const QJsonValue& value, const OptionalRange& range, Qt::Alignment& field)
{
    int flags = 0;
    const QString problem = FromJson(value, range, flags);
    if (problem.isEmpty())
        field = Qt::Alignment(QFlag(flags));
    return problem;
}

QString FieldJson::ProblemIn(const QString& place, const QString& problem)
{
    // The place in an inner list stands behind that in the outer one, without a colon between.
    const QLatin1String separator(problem.startsWith(QLatin1Char('[')) ? "" : ": ");
    return place + separator + problem;
}

QString FieldJson::ProblemIn(int index, const QString& problem)
{
    return ProblemIn(QStringLiteral("[%1]").arg(index), problem);
}

QString FieldJson::ProblemOfUnknownKey(const QJsonObject& object, std::initializer_list<QLatin1String> known)
{
    for (auto each = object.begin(); each != object.end(); ++each)
        if (std::find(known.begin(), known.end(), each.key()) == known.end())
            return Tr("the key \"%1\" is not known here").arg(each.key());
    return {};
}

QString FieldJson::TypeName(const int*) { return Tr("whole number"); }
QString FieldJson::TypeName(const double*) { return Tr("number"); }
QString FieldJson::TypeName(const float*) { return Tr("number"); }
QString FieldJson::TypeName(const bool*) { return Tr("true or false"); }
QString FieldJson::TypeName(const QString*) { return Tr("text"); }
QString FieldJson::TypeName(const QColor*) { return Tr("colour"); }
QString FieldJson::TypeName(const QVector<QPoint>*) { return Tr("list of points"); }

QString FieldJson::TypeName(const QRect*) { return Tr("list"); }
QString FieldJson::TypeName(const QFont*) { return Tr("font"); }
QString FieldJson::TypeName(const Qt::Alignment*) { return Tr("whole number"); }

QJsonValue FieldJson::FromText(const QString& text, const double*)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? QJsonValue(number) : QJsonValue(QJsonValue::Undefined);
}

QJsonValue FieldJson::FromText(const QString& text, const int*)
{
    return FromText(text, static_cast<const double*>(nullptr));
}

QJsonValue FieldJson::FromText(const QString& text, const float*)
{
    return FromText(text, static_cast<const double*>(nullptr));
}

QJsonValue FieldJson::FromText(const QString& text, const bool*)
{
    if (text == QLatin1String("true"))
        return true;
    if (text == QLatin1String("false"))
        return false;
    return QJsonValue(QJsonValue::Undefined);
}

QJsonValue FieldJson::FromText(const QString& text, const QString*) { return text; }
QJsonValue FieldJson::FromText(const QString& text, const QColor*) { return text; }

QJsonValue FieldJson::FromText(const QString& text, const QVector<QPoint>*) { return ListFromText(text); }

QJsonValue FieldJson::FromText(const QString& text, const QRect*) { return ListFromText(text); }
QJsonValue FieldJson::FromText(const QString& text, const QFont*) { return text; }

QJsonValue FieldJson::FromText(const QString& text, const Qt::Alignment*)
{
    return FromText(text, static_cast<const double*>(nullptr));
}

QJsonValue FieldJson::ListFromText(const QString& text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(QJsonValue::Undefined);
}
