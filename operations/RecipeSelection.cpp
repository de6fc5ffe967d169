#include "operations/RecipeSelection.h"

#include "FieldJson.h"
#include "operations/MaskOfShape.h"

#include <QDir>
#include <QJsonObject>
#include <QPolygonF>

#include <algorithm>

namespace {

using operations::RecipeSelection;
using Kind = RecipeSelection::Kind;

const QLatin1String FeatherKey("feather");
const QLatin1String OffsetKey("offset");
constexpr YDRecord::Range Coordinates{-RecipeSelection::MaxCoordinate, RecipeSelection::MaxCoordinate};
constexpr YDRecord::Range Feathers{0, operations::MaxFeather};

struct KindKey
{
    Kind kind;
    QLatin1String key;
};
const std::array<KindKey, 4> KindKeys{{{Kind::Rectangle, QLatin1String("rectangle")},
                                       {Kind::Ellipse, QLatin1String("ellipse")},
                                       {Kind::Polygon, QLatin1String("polygon")},
                                       {Kind::MaskFile, QLatin1String("mask")}}};

QLatin1String KeyOf(Kind kind)
{
    const auto* const found = std::find_if(KindKeys.begin(), KindKeys.end(),
                                           [kind](const KindKey& each) { return each.kind == kind; });
    return found == KindKeys.end() ? QLatin1String() : found->key;
}

/// The kind that `object` names; All if it names none, or several.
Kind KindIn(const QJsonObject& object)
{
    Kind kind = Kind::All;
    for (const KindKey& each : KindKeys) {
        if (!object.contains(each.key))
            continue;
        if (kind != Kind::All)
            return Kind::All;
        kind = each.kind;
    }
    return kind;
}

QString EdgesFromJson(const QJsonValue& value, RecipeSelection& selection)
{
    const QString problem = FieldJson::FromJson(value, Coordinates, selection.edges);
    if (!problem.isEmpty())
        return problem;
    const auto& [left, top, right, bottom] = selection.edges;
    return left <= right && top <= bottom
               ? QString()
               : RecipeSelection::tr("the edges left, top, right, bottom are expected in this order");
}

QString CornersFromJson(const QJsonValue& value, RecipeSelection& selection)
{
    constexpr int LeastCorners = 3;
    if (!value.isArray())
        return RecipeSelection::tr("a list of points [x, y] is expected");
    const QJsonArray list = value.toArray();
    if (list.size() < LeastCorners || list.size() > RecipeSelection::MaxCorners)
        return RecipeSelection::tr("%1 points are outside %2..%3")
            .arg(list.size())
            .arg(LeastCorners)
            .arg(RecipeSelection::MaxCorners);
    selection.corners.reserve(list.size());
    for (int i = 0; i < list.size(); ++i) {
        std::array<double, 2> corner{};
        if (const QString problem = FieldJson::FromJson(list.at(i), Coordinates, corner); !problem.isEmpty())
            return FieldJson::ProblemIn(i, problem);
        selection.corners.append({corner[0], corner[1]});
    }
    return {};
}

/// A mask lies beside its recipe, so that a recipe from elsewhere reads nothing but what came with it.
QString MaskFileFromJson(const QJsonValue& value, RecipeSelection& selection)
{
    const QString problem = FieldJson::FromJson(value, {}, selection.maskFile);
    if (!problem.isEmpty())
        return problem;
    const QString& file = selection.maskFile;
    if (file.isEmpty() || file.contains(QChar::Null))
        return RecipeSelection::tr("the name of a file is expected");
    if (QDir::isAbsolutePath(file) || file.split(QLatin1Char('/')).contains(QLatin1String("..")))
        return RecipeSelection::tr("a path from the recipe's folder is expected, without \"..\"");
    return {};
}

QString KindFromJson(const QJsonValue& value, RecipeSelection& selection)
{
    switch (selection.kind) {
    case Kind::Polygon:
        return CornersFromJson(value, selection);
    case Kind::MaskFile:
        return MaskFileFromJson(value, selection);
    default:
        return EdgesFromJson(value, selection);
    }
}

QJsonValue KindToJson(const RecipeSelection& selection)
{
    switch (selection.kind) {
    case Kind::Polygon: {
        QJsonArray list;
        for (const QPointF& corner : selection.corners)
            list.append(QJsonArray{corner.x(), corner.y()});
        return list;
    }
    case Kind::MaskFile:
        return selection.maskFile;
    default:
        return FieldJson::ToJson(selection.edges);
    }
}

QPainterPath PathOf(const RecipeSelection& selection)
{
    const auto& [left, top, right, bottom] = selection.edges;
    const QRectF area(QPointF(left, top), QPointF(right, bottom));
    QPainterPath path;
    if (selection.kind == Kind::Rectangle)
        path.addRect(area);
    else if (selection.kind == Kind::Ellipse)
        path.addEllipse(area);
    else
        path.addPolygon(QPolygonF(selection.corners));
    path.closeSubpath();
    return path;
}

} // namespace

QJsonValue operations::RecipeSelection::ToJson() const
{
    if (kind == Kind::All)
        return QJsonValue::Null;
    QJsonObject object{{KeyOf(kind), KindToJson(*this)}};
    if (kind == Kind::MaskFile)
        object.insert(OffsetKey, FieldJson::ToJson(maskOffset));
    else
        object.insert(FeatherKey, feather);
    return object;
}

QString operations::RecipeSelection::FromJson(const QJsonValue& value)
{
    RecipeSelection read;
    if (value.isNull()) {
        *this = read;
        return {};
    }
    if (!value.isObject())
        return tr("an object or null is expected");
    const QJsonObject object = value.toObject();
    read.kind = KindIn(object);
    const QLatin1String key = KeyOf(read.kind);
    const QLatin1String companion = read.kind == Kind::MaskFile ? OffsetKey : FeatherKey;
    QString problem =
        read.kind == Kind::All
            ? FieldJson::ProblemOfUnknownKey(object, {QLatin1String("rectangle"), QLatin1String("ellipse"),
                                                      QLatin1String("polygon"), QLatin1String("mask"),
                                                      FeatherKey, OffsetKey})
            : FieldJson::ProblemOfUnknownKey(object, {key, companion});
    if (!problem.isEmpty())
        return problem;
    if (read.kind == Kind::All)
        return tr("one of \"rectangle\", \"ellipse\", \"polygon\" and \"mask\" is expected");
    if (problem = KindFromJson(object.value(key), read); !problem.isEmpty())
        return FieldJson::ProblemIn(key, problem);
    if (object.contains(companion)) {
        const QJsonValue given = object.value(companion);
        problem = read.kind == Kind::MaskFile ? FieldJson::FromJson(given, Coordinates, read.maskOffset)
                                              : FieldJson::FromJson(given, Feathers, read.feather);
        if (!problem.isEmpty())
            return FieldJson::ProblemIn(companion, problem);
    }
    *this = read;
    return {};
}

QString operations::RecipeSelection::Make(const QSize& picture, const ReadMask& readMask,
                                          Selection& selection) const
{
    if (kind != Kind::MaskFile) {
        selection = OfShape(picture);
        return selection.isMissing ? tr("there is not enough memory for the selection") : QString();
    }
    Selection mask;
    const QString problem = readMask(maskFile, mask);
    if (!problem.isEmpty())
        return problem;
    mask.offset += maskOffset;
    selection = mask;
    return {};
}

operations::Selection operations::RecipeSelection::OfShape(const QSize& picture) const
{
    return IsShape() ? MaskOfShape(PathOf(*this), feather, picture) : Selection();
}
