#include "YDPickerDrag.h"

#include "gui/KVDocumentView.h"
#include "utilities/KVPixelRatioRound.h"
#include "utilities/KVStringHelper.h"

#include <QCursor>
#include <QPixmap>

#include <algorithm>
#include <limits>

namespace {

const QPoint HotSpot(2, 14); ///< the pipette's tip

/// A coordinate in picture pixels. Without the lowest integer, which leaves QRect no room to normalize.
int Scaled(int coordinate, int ratio)
{
    using Limits = std::numeric_limits<int>;
    return int(std::clamp(qint64(coordinate) * ratio, qint64(Limits::min()) + 1, qint64(Limits::max())));
}

QPoint Scaled(const QPoint& point, int ratio) { return {Scaled(point.x(), ratio), Scaled(point.y(), ratio)}; }

} // namespace

YDPickerDrag::YDPickerDrag(QObject* filter) : m_filter(filter) {}

YDPickerDrag::~YDPickerDrag() { LeaveView(); }

void YDPickerDrag::SetView(KVDocumentView* view)
{
    const bool isArmed = m_isArmed;
    LeaveView();
    m_view = view;
    if (isArmed)
        Watch();
}

void YDPickerDrag::Watch()
{
    EndWatch();
    m_isArmed = true;
    m_scene = m_view ? m_view->scene() : nullptr;
    if (m_scene)
        m_scene->installEventFilter(m_filter);
}

void YDPickerDrag::EndWatch()
{
    EndDrag();
    if (m_scene)
        m_scene->removeEventFilter(m_filter);
    m_scene = nullptr;
    m_isArmed = false;
}

void YDPickerDrag::ShowPickerCursor()
{
    if (!m_view)
        return;
    const QPixmap pixmap(KVStringHelper::DPIAdjustImageName(QStringLiteral("theme:picker_cursor.png")));
    m_view->SetOverrideCursor(QCursor(pixmap, HotSpot.x(), HotSpot.y()));
}

void YDPickerDrag::HidePickerCursor()
{
    if (m_view)
        m_view->SetOverrideCursor(QCursor());
}

void YDPickerDrag::MousePressed(const QPoint& point, Qt::MouseButton button)
{
    if (m_isDragging || button != Qt::LeftButton)
        return;
    m_isDragging = true;
    m_start = point;
    if (m_view)
        m_view->setDragMode(QGraphicsView::RubberBandDrag);
}

std::optional<QRect> YDPickerDrag::MouseReleased(const QPoint& point, Qt::MouseButton button)
{
    if (!m_isDragging || button != Qt::LeftButton)
        return std::nullopt;
    EndDrag();
    const int ratio = int(KVPixelRatioRound::GetPixelRatio());
    return QRect(Scaled(m_start, ratio), Scaled(point, ratio)).normalized();
}

void YDPickerDrag::EndDrag()
{
    if (m_isDragging && m_view)
        m_view->setDragMode(QGraphicsView::NoDrag);
    m_isDragging = false;
}

/// Takes back what was set on the view.
void YDPickerDrag::LeaveView()
{
    const bool isArmed = m_isArmed;
    EndWatch();
    if (isArmed)
        HidePickerCursor();
}
