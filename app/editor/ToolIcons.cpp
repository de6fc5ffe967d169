#include "editor/ToolIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace {

/// Icons are drawn on a grid of this many units a side.
constexpr double Grid = 24.0;
constexpr double PenWidth = 1.7;

/// What is drawn of an icon: lines, dashed lines, and areas that are filled.
struct Drawing
{
    QPainterPath lines;
    QPainterPath dashes;
    QPainterPath fill;
};

QPainterPath Polyline(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    for (const QPointF& point : points) {
        if (path.elementCount() == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    return path;
}

Drawing Open()
{
    QPainterPath folder = Polyline({{3.5, 18.5}, {3.5, 5.5}, {9.5, 5.5}, {11.5, 8}, {18.5, 8}, {18.5, 10.5}});
    folder.addPath(Polyline({{3.5, 18.5}, {6.5, 10.5}, {21.5, 10.5}, {18.5, 18.5}, {3.5, 18.5}}));
    return {folder, {}, {}};
}

Drawing Save()
{
    QPainterPath tray = Polyline({{12, 4}, {12, 14.5}});
    tray.addPath(Polyline({{7.5, 10.5}, {12, 15}, {16.5, 10.5}}));
    tray.addPath(Polyline({{4, 15.5}, {4, 19.5}, {20, 19.5}, {20, 15.5}}));
    return {tray, {}, {}};
}

Drawing Undo()
{
    QPainterPath arrow = Polyline({{8, 4.5}, {4, 8.5}, {8, 12.5}});
    arrow.moveTo(4, 8.5);
    arrow.lineTo(14.5, 8.5);
    arrow.arcTo(QRectF(9.5, 8.5, 10, 10), 90, -180);
    arrow.lineTo(9, 18.5);
    return {arrow, {}, {}};
}

Drawing Redo() { return {QTransform(-1, 0, 0, 1, Grid, 0).map(Undo().lines), {}, {}}; }

Drawing Move()
{
    QPainterPath arm = Polyline({{12, 12}, {12, 3.5}});
    arm.addPath(Polyline({{9, 6.5}, {12, 3.5}, {15, 6.5}}));
    QPainterPath cross;
    for (int quarter = 0; quarter < 4; ++quarter)
        cross.addPath(QTransform().translate(12, 12).rotate(90 * quarter).translate(-12, -12).map(arm));
    return {cross, {}, {}};
}

Drawing Rectangle()
{
    QPainterPath path;
    path.addRect(QRectF(4, 5.5, 16, 13));
    return {{}, path, {}};
}

Drawing Ellipse()
{
    QPainterPath path;
    path.addEllipse(QRectF(3.5, 5, 17, 14));
    return {{}, path, {}};
}

QPainterPath Lens()
{
    QPainterPath lens;
    lens.addEllipse(QPointF(10.5, 10.5), 6.5, 6.5);
    lens.addPath(Polyline({{15.3, 15.3}, {20.5, 20.5}}));
    return lens;
}

Drawing ZoomIn()
{
    QPainterPath lens = Lens();
    lens.addPath(Polyline({{7.5, 10.5}, {13.5, 10.5}}));
    lens.addPath(Polyline({{10.5, 7.5}, {10.5, 13.5}}));
    return {lens, {}, {}};
}

Drawing ZoomOut()
{
    QPainterPath lens = Lens();
    lens.addPath(Polyline({{7.5, 10.5}, {13.5, 10.5}}));
    return {lens, {}, {}};
}

Drawing ZoomFit()
{
    const QPainterPath corner = Polyline({{4, 9}, {4, 5}, {8.5, 5}});
    QPainterPath corners = corner;
    corners.addPath(QTransform(-1, 0, 0, 1, Grid, 0).map(corner));
    corners.addPath(QTransform(1, 0, 0, -1, 0, Grid).map(corner));
    corners.addPath(QTransform(-1, 0, 0, -1, Grid, Grid).map(corner));
    QPainterPath picture;
    picture.addRoundedRect(QRectF(8, 9, 8, 6), 0.5, 0.5);
    return {corners, {}, picture};
}

Drawing ZoomActual()
{
    QPainterPath ones = Polyline({{4.5, 8}, {7, 6}, {7, 18}});
    ones.addPath(Polyline({{15.5, 8}, {18, 6}, {18, 18}}));
    QPainterPath colon;
    colon.addEllipse(QPointF(12, 9.5), 1.2, 1.2);
    colon.addEllipse(QPointF(12, 15.5), 1.2, 1.2);
    return {ones, {}, colon};
}

Drawing Compare()
{
    QPainterPath frame;
    frame.addRoundedRect(QRectF(3.5, 5.5, 17, 13), 1.5, 1.5);
    frame.addPath(Polyline({{12, 3}, {12, 21}}));
    QPainterPath half;
    half.addRect(QRectF(12, 5.5, 8.5, 13));
    return {frame, {}, half};
}

Drawing Sliders()
{
    QPainterPath lines = Polyline({{3.5, 7}, {20.5, 7}});
    lines.addPath(Polyline({{3.5, 17}, {20.5, 17}}));
    QPainterPath knobs;
    knobs.addEllipse(QPointF(15.5, 7), 2.6, 2.6);
    knobs.addEllipse(QPointF(8.5, 17), 2.6, 2.6);
    return {lines, {}, knobs};
}

Drawing Close()
{
    QPainterPath cross = Polyline({{6, 6}, {18, 18}});
    cross.addPath(Polyline({{18, 6}, {6, 18}}));
    return {cross, {}, {}};
}

Drawing Detach()
{
    QPainterPath windows = Polyline({{8, 8}, {8, 4.5}, {19.5, 4.5}, {19.5, 16}, {16, 16}});
    windows.addRect(QRectF(4.5, 8, 11.5, 11.5));
    return {windows, {}, {}};
}

Drawing DrawingOf(ToolIcons::Kind kind)
{
    using ToolIcons::Kind;
    switch (kind) {
    case Kind::Open:
        return Open();
    case Kind::Save:
        return Save();
    case Kind::Undo:
        return Undo();
    case Kind::Redo:
        return Redo();
    case Kind::Move:
        return Move();
    case Kind::Rectangle:
        return Rectangle();
    case Kind::Ellipse:
        return Ellipse();
    case Kind::ZoomIn:
        return ZoomIn();
    case Kind::ZoomOut:
        return ZoomOut();
    case Kind::ZoomFit:
        return ZoomFit();
    case Kind::ZoomActual:
        return ZoomActual();
    case Kind::Compare:
        return Compare();
    case Kind::Sliders:
        return Sliders();
    case Kind::Close:
        return Close();
    case Kind::Detach:
        return Detach();
    }
    Q_UNREACHABLE();
}

class LineIconEngine : public QIconEngine
{
public:
    explicit LineIconEngine(ToolIcons::Kind kind) : m_kind(kind) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QGuiApplication::palette();
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor& color =
            palette.color(group, mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText);
        const Drawing drawing = DrawingOf(m_kind);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / Grid, rect.height() / Grid);
        painter->fillPath(drawing.fill, color);
        QPen pen(color, PenWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        painter->strokePath(drawing.lines, pen);
        pen.setDashPattern({1.9, 1.9});
        pen.setCapStyle(Qt::FlatCap);
        painter->strokePath(drawing.dashes, pen);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new LineIconEngine(m_kind); }

private:
    const ToolIcons::Kind m_kind;
};

QPixmap ApplicationPixmap(int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / Grid, side / Grid);
    QLinearGradient ground(0, 0, Grid, Grid);
    ground.setColorAt(0, QColor(0x3a, 0x7b, 0xd5));
    ground.setColorAt(1, QColor(0x6a, 0x3a, 0xb2));
    QPainterPath plate;
    plate.addRoundedRect(QRectF(1, 1, 22, 22), 5, 5);
    painter.fillPath(plate, ground);
    const Drawing sliders = Sliders();
    painter.fillPath(sliders.fill, Qt::white);
    painter.strokePath(sliders.lines, QPen(Qt::white, PenWidth, Qt::SolidLine, Qt::RoundCap));
    return pixmap;
}

} // namespace

QIcon ToolIcons::Icon(Kind kind) { return QIcon(new LineIconEngine(kind)); }

QIcon ToolIcons::Application()
{
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(ApplicationPixmap(side));
    return icon;
}
