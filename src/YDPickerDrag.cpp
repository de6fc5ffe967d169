#include "YDPickerDrag.h"

#include "gui/KVDocumentView.h"
#include "utilities/KVPixelRatioRound.h"
#include "utilities/KVStringHelper.h"

#include <QCursor>
#include <QPixmap>

#include <algorithm>

namespace {

const QPoint HotSpot(2, 14); ///< the pipette's tip

/// The same whichever of its corners comes first. QRect::normalized() loses the border of a rectangle that
/// was dragged to the left or upwards, and all of one that was dragged by a single pixel.
QRect Spanned(const QPoint& p, const QPoint& q)
{
    return {QPoint(std::min(p.x(), q.x()), std::min(p.y(), q.y())),
            QPoint(std::max(p.x(), q.x()), std::max(p.y(), q.y()))};
}

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
    return Spanned(m_start * ratio, point * ratio);
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
