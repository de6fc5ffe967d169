#include "gui/KVDocumentView.h"

#include "threads/ParallelRows.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int DarkestLightGrey = 128;
/// Repaints of more device pixels are shared between the cores.
constexpr double MostPixelsDrawnAlone = 1 << 19;
constexpr int RowsPerBand = 64; ///< view units
const QColor LightSurroundings(184, 184, 184);
const QColor DarkSurroundings(43, 43, 43);

bool IsDark(const QPalette& palette)
{
    return qGray(palette.color(QPalette::Window).rgb()) < DarkestLightGrey;
}

QPainterPath ShapeIn(const QRectF& area, KVDocumentView::SelectionTool tool)
{
    QPainterPath path;
    if (area.isEmpty())
        return path;
    if (tool == KVDocumentView::SelectionTool::Ellipse)
        path.addEllipse(area);
    else
        path.addRect(area);
    return path;
}

} // namespace

KVDocumentView::KVDocumentView(QWidget* parent)
    : ZoomView(parent), m_before(this), m_after(this), m_ants(this), m_draft(this)
{
    setScene(new QGraphicsScene(this));
    setSceneRect(0, 0, 0, 0);
    setFrameShape(NoFrame);
    setLayoutDirection(Qt::LeftToRight); // a picture is not mirrored, and neither are its scroll bars
    setAccessibleName(tr("Picture"));
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    const auto repaint = [this] { viewport()->update(); };
    connect(&m_before, &PictureLayer::Changed, this, repaint);
    connect(&m_after, &PictureLayer::Changed, this, repaint);
    connect(&m_ants, &MarchingAnts::Stepped, this,
            [this] { viewport()->update(m_ants.Area(CurrentPlacement(), viewport()->rect())); });
    connect(this, &ZoomView::ZoomChanged, &m_before, &PictureLayer::SetZoom);
    connect(this, &ZoomView::ZoomChanged, &m_after, &PictureLayer::SetZoom);
}

void KVDocumentView::SetImage(const RGBA32iImage& image)
{
    const QSize oldSize = PictureSize();
    if (!image.IsEmpty() && image.SharesPixelsWith(Preview()))
        m_before.TakeOver(m_after);
    else
        m_before.SetPicture(image, Zoom());
    if (PictureSize() == oldSize)
        return;
    CancelGesture();
    setSceneRect(QRectF(QPointF(0, 0), PictureSize()));
    if (IsZoomedToFit())
        ZoomToFit();
}

void KVDocumentView::SetPreview(const RGBA32iImage& preview)
{
    if (preview.IsEmpty() && m_gesture == Gesture::MoveSplitter)
        CancelGesture();
    m_after.SetPicture(preview, Zoom());
}

void KVDocumentView::SetSplitterShare(double share)
{
    m_splitter.SetShare(share);
    viewport()->update();
}

void KVDocumentView::SetSelectionTool(SelectionTool tool)
{
    if (tool == m_tool)
        return;
    CancelGesture();
    m_tool = tool;
    UpdateCursor();
}

void KVDocumentView::SetSelectionOutline(const QPainterPath& outline)
{
    m_ants.SetOutline(outline);
    viewport()->update();
}

void KVDocumentView::HideSplitter(bool hide)
{
    if (hide == m_isSplitterHidden)
        return;
    if (m_gesture == Gesture::MoveSplitter)
        CancelGesture();
    m_isSplitterHidden = hide;
    viewport()->update();
    UpdateCursor();
    emit SplitterHiddenChanged(hide);
}

QCursor KVDocumentView::CursorAt(const QPoint& mouse) const
{
    const bool takesSplitter =
        m_gesture == Gesture::None && IsSplitterShown() && m_splitter.Hits(mouse, VisiblePicture());
    if (takesSplitter || m_gesture == Gesture::MoveSplitter)
        return Qt::SplitHCursor;
    return m_tool == SelectionTool::None ? Qt::ArrowCursor : Qt::CrossCursor;
}

void KVDocumentView::paintEvent(QPaintEvent* event)
{
    {
        QPainter painter(viewport());
        const Frame frame = CurrentFrame();
        const double ratio = devicePixelRatioF();
        const bool isWhole = ratio == std::floor(ratio); // threads draw whole units
        for (const QRect& area : event->region())
            if (isWhole && area.width() * ratio * area.height() * ratio > MostPixelsDrawnAlone)
                DrawPicturesOnAllCores(painter, area, frame);
            else
                DrawPictures(painter, area, frame);
    }
    ZoomView::paintEvent(event);
    QPainter painter(viewport());
    DrawOverlay(painter, event->rect());
}

void KVDocumentView::resizeEvent(QResizeEvent* event)
{
    ZoomView::resizeEvent(event);
    viewport()->update(); // the splitter moves with the size
}

void KVDocumentView::scrollContentsBy(int dx, int dy)
{
    ZoomView::scrollContentsBy(dx, dy);
    if (!IsSplitterShown())
        return;
    // The pixels on the screen moved, the splitter did not: what it covered is drawn again, and with it
    // what crossed it and now shows the wrong side.
    const QRect splitter = m_splitter.Area(VisiblePicture(), font());
    viewport()->update(splitter | splitter.translated(dx, dy));
}

void KVDocumentView::showEvent(QShowEvent* event)
{
    ZoomView::showEvent(event);
    m_ants.SetVisible(true);
}

void KVDocumentView::hideEvent(QHideEvent* event)
{
    ZoomView::hideEvent(event);
    m_ants.SetVisible(false);
    m_canvas = {};
    CancelGesture();
}

void KVDocumentView::mousePressEvent(QMouseEvent* event)
{
    if (m_gesture == Gesture::None && !BeginGesture(*event))
        ZoomView::mousePressEvent(event);
}

void KVDocumentView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (m_gesture == Gesture::None && !BeginGesture(*event))
        ZoomView::mouseDoubleClickEvent(event);
}

void KVDocumentView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_gesture != Gesture::None && !(event->buttons() & Qt::LeftButton))
        CancelGesture(); // the release went elsewhere, to a dialog perhaps
    if (m_gesture == Gesture::None)
        ZoomView::mouseMoveEvent(event);
    else
        ContinueGesture(event->pos(), event->modifiers());
}

void KVDocumentView::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_gesture == Gesture::None)
        ZoomView::mouseReleaseEvent(event);
    else if (event->button() == Qt::LeftButton)
        EndGesture(event->pos(), event->modifiers());
}

void KVDocumentView::keyPressEvent(QKeyEvent* event)
{
    if (m_gesture != Gesture::None && event->key() == Qt::Key_Escape) {
        CancelGesture();
        return;
    }
    if (m_gesture == Gesture::DrawSelection && event->key() == Qt::Key_Shift) {
        m_drag.isSquare = true;
        ShowDraft();
    }
    ZoomView::keyPressEvent(event);
}

void KVDocumentView::keyReleaseEvent(QKeyEvent* event)
{
    if (m_gesture == Gesture::DrawSelection && event->key() == Qt::Key_Shift) {
        m_drag.isSquare = false;
        ShowDraft();
    }
    ZoomView::keyReleaseEvent(event);
}

QRect KVDocumentView::VisiblePicture() const
{
    const QRectF picture(ToView({0, 0}), ToView({double(Image().Width()), double(Image().Height())}));
    return picture.intersected(QRectF(viewport()->rect())).toRect();
}

bool KVDocumentView::IsSplitterShown() const
{
    return !m_isSplitterHidden && !Image().IsEmpty() && !Preview().IsEmpty();
}

KVDocumentView::Frame KVDocumentView::CurrentFrame() const
{
    Frame frame;
    frame.placement = CurrentPlacement();
    frame.visible = VisiblePicture();
    frame.hasAfter = !Preview().IsEmpty() && !m_after.IsAwaitingFirstCopy();
    frame.split = IsSplitterShown() ? m_splitter.Position(frame.visible) : frame.visible.left();
    frame.isDark = IsDark(palette());
    return frame;
}

void KVDocumentView::DrawPictures(QPainter& painter, const QRect& area, const Frame& frame) const
{
    painter.fillRect(area, frame.isDark ? DarkSurroundings : LightSurroundings);
    if (!frame.hasAfter) {
        m_before.Draw(painter, frame.placement, area, frame.isDark);
        return;
    }
    const QRect picture = area & frame.visible; // a preview may be larger
    QRect before = picture;
    before.setRight(std::min(picture.right(), frame.split - 1));
    QRect after = picture;
    after.setLeft(std::max(picture.left(), frame.split));
    m_before.Draw(painter, frame.placement, before, frame.isDark);
    m_after.Draw(painter, frame.placement, after, frame.isDark);
}

void KVDocumentView::DrawPicturesOnAllCores(QPainter& painter, const QRect& area, const Frame& frame)
{
    const int ratio = qRound(devicePixelRatioF());
    const QSize size = viewport()->size() * ratio;
    if (m_canvas.size() != size)
        m_canvas = QImage(size, QImage::Format_RGB32);
    if (m_canvas.isNull()) {
        DrawPictures(painter, area, frame);
        return;
    }
    uchar* const pixels = m_canvas.bits();
    const int bytesPerLine = m_canvas.bytesPerLine();
    const auto rows = [&](int first, int last) {
        QImage image(pixels + qsizetype(first) * ratio * bytesPerLine, size.width(), (last - first) * ratio,
                     bytesPerLine, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        return image;
    };
    ForEachRowBand(area.top(), area.bottom() + 1, RowsPerBand, nullptr, [&](int first, int last) {
        QImage band = rows(first, last);
        QPainter bandPainter(&band);
        bandPainter.translate(0, -first);
        DrawPictures(bandPainter, QRect(area.left(), first, area.width(), last - first), frame);
    });
    const QRect source(area.left() * ratio, 0, area.width() * ratio, area.height() * ratio);
    painter.drawImage(area, rows(area.top(), area.bottom() + 1), source);
}

void KVDocumentView::DrawOverlay(QPainter& painter, const QRect& area)
{
    m_ants.Draw(painter, CurrentPlacement(), area);
    m_draft.Draw(painter, CurrentPlacement(), area);
    if (IsSplitterShown())
        m_splitter.Draw(painter, VisiblePicture(), font());
}

/// Returns whether the press is the view's own.
bool KVDocumentView::BeginGesture(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || HasOverrideCursor() || IsPanning() || IsPanPress(event) ||
        Image().IsEmpty())
        return false;
    if (IsSplitterShown() && m_splitter.Hits(event.pos(), VisiblePicture())) {
        m_gesture = Gesture::MoveSplitter;
        m_shareBefore = m_splitter.Share();
        m_grabOffset = event.pos().x() - m_splitter.Position(VisiblePicture());
    } else if (m_tool != SelectionTool::None) {
        m_gesture = Gesture::DrawSelection;
        m_drag = {ToScene(event.pos()), ToScene(event.pos()), false};
    } else {
        return false;
    }
    m_pressPosition = event.pos();
    m_isDragged = false;
    UpdateCursor(event.pos());
    return true;
}

void KVDocumentView::ContinueGesture(const QPoint& mouse, Qt::KeyboardModifiers modifiers)
{
    if (m_gesture == Gesture::MoveSplitter) {
        m_splitter.MoveTo(mouse.x() - m_grabOffset, VisiblePicture());
        viewport()->update();
        return;
    }
    if ((mouse - m_pressPosition).manhattanLength() >= QApplication::startDragDistance())
        m_isDragged = true;
    m_drag.end = ToScene(mouse);
    m_drag.isSquare = modifiers & Qt::ShiftModifier;
    ShowDraft();
}

void KVDocumentView::EndGesture(const QPoint& mouse, Qt::KeyboardModifiers modifiers)
{
    ContinueGesture(mouse, modifiers);
    const QRectF drawn = m_isDragged ? m_drag.Area(PictureSize()) : QRectF();
    const bool isSelection = m_gesture == Gesture::DrawSelection;
    m_gesture = Gesture::None;
    ShowDraft();
    UpdateCursor(mouse);
    if (!isSelection)
        return;
    if (drawn.isEmpty())
        emit SelectionCleared();
    else
        emit SelectionDrawn(drawn, m_tool);
}

void KVDocumentView::CancelGesture()
{
    if (m_gesture == Gesture::MoveSplitter)
        SetSplitterShare(m_shareBefore);
    if (m_gesture == Gesture::None)
        return;
    m_gesture = Gesture::None;
    ShowDraft();
    UpdateCursor();
}

void KVDocumentView::ShowDraft()
{
    const bool isDrawn = m_gesture == Gesture::DrawSelection && m_isDragged;
    const QRegion before = m_draft.Area(CurrentPlacement(), viewport()->rect());
    m_draft.SetOutline(isDrawn ? ShapeIn(m_drag.Area(PictureSize()), m_tool) : QPainterPath());
    viewport()->update(before + m_draft.Area(CurrentPlacement(), viewport()->rect()));
}
