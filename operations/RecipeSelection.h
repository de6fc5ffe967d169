#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Selection.h"

#include <QCoreApplication>
#include <QJsonValue>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QVector>

#include <array>
#include <functional>

namespace operations {

/// How the selection of a recipe's step is made: a value that fits pictures of any size.
struct ADJUSTMENTGUI_OPERATIONS_EXPORT RecipeSelection
{
    Q_DECLARE_TR_FUNCTIONS(RecipeSelection)

public:
    enum class Kind
    {
        All, ///< nothing limits the step
        Rectangle,
        Ellipse,
        Polygon,
        MaskFile,
    };

    static constexpr int MaxCorners = 100'000;
    static constexpr double MaxCoordinate = 1'000'000; ///< pixels from the picture's corner, either way

    Kind kind = Kind::All;
    /// Of a rectangle, or around an ellipse: left, top, right, bottom, in pixels of the picture. A rectangle
    /// from 0 to 2 holds two columns.
    std::array<double, 4> edges{};
    /// Of a polygon, in pixels of the picture. The last corner is joined with the first one; what the outline
    /// goes around twice is not selected.
    QVector<QPointF> corners;
    int feather = 0;   ///< of these three, in pixels; see MaskOfShape()
    QString maskFile;  ///< of MaskFile: a path from the recipe's folder, which does not lead out of it
    QPoint maskOffset; ///< where the mask's upper left corner lies in the picture

    bool IsShape() const { return kind != Kind::All && kind != Kind::MaskFile; }

    QJsonValue ToJson() const;

    /// Takes what `value` says, which nobody vouches for. An empty answer, or what is wrong, with nothing
    /// taken then.
    [[nodiscard]] QString FromJson(const QJsonValue& value);

    /// Reads a mask whose upper left corner lies at (0, 0). `file` is what `maskFile` says. An error text,
    /// empty for none.
    using ReadMask = std::function<QString(const QString& file, Selection& mask)>;

    /// Makes the selection in a picture of the given size. `readMask` is asked for a mask file only. An error
    /// text, which comes from it or says that memory is short; empty for none.
    [[nodiscard]] QString Make(const QSize& picture, const ReadMask& readMask, Selection& selection) const;

    /// What a shape selects in a picture of the given size, as MaskOfShape() has it; everything where there
    /// is no shape.
    Selection OfShape(const QSize& picture) const;
};

} // namespace operations
