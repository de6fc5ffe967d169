#pragma once

#include <QGraphicsScene>
#include <QPoint>
#include <QPointer>
#include <QRect>

#include <optional>

class KVDocumentView;

/// The dragging of a rectangle on the document view while a picker is armed: which scene is watched for it,
/// the view's cursor, and its rubber band.
///
/// View and scene may go at any time. What was set on the view is taken back when the watch ends, when
/// another view takes its place and when the object goes.
class YDPickerDrag
{
public:
    /// `filter` is what is installed as event filter on the view's scene. It outlives the object.
    explicit YDPickerDrag(QObject* filter);
    ~YDPickerDrag();
    Q_DISABLE_COPY(YDPickerDrag)

    /// Null for none. A watch goes on in its scene; the picker's cursor is not brought along.
    void SetView(KVDocumentView* view);

    /// From now on presses and releases in the view's scene go through the filter.
    void Watch();
    void EndWatch();
    bool IsWatching(const QObject* scene) const { return scene && scene == m_scene.data(); }

    void ShowPickerCursor();
    void HidePickerCursor();

    /// In scene coordinates. A press of the left button begins to drag.
    void MousePressed(const QPoint& point, Qt::MouseButton button);
    /// The release of the left button ends it and gives the dragged rectangle, both corners included, in
    /// picture pixels; nothing where nobody drags. A drag to the left or upwards by a single pixel gives an
    /// empty rectangle, because QRect::normalized() takes it for one without a width or a height.
    std::optional<QRect> MouseReleased(const QPoint& point, Qt::MouseButton button);

private:
    void EndDrag();
    void LeaveView();

    QObject* const m_filter;
    QPointer<KVDocumentView> m_view;
    QPointer<QGraphicsScene> m_scene; ///< the watched one; null while none is
    bool m_isArmed = false;           ///< between Watch() and EndWatch(), with a scene or without
    bool m_isDragging = false;
    QPoint m_start;
};
