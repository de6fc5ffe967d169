#include "CurveMoveRow.h"

#include "Measurement.h"
#include "YDCurvesWidget.h"

#include <QApplication>
#include <QGraphicsView>
#include <QMouseEvent>

#include <memory>

namespace {

constexpr int Points = 16;
constexpr int DraggedPoint = 8;
constexpr int Step = 17; ///< levels between points

/// A dialog in which the mouse holds a point and moves it up and down.
class CurveDrag
{
public:
    explicit CurveDrag(const RGBA32iImage& picture) : m_dialog(true, nullptr, Qt::WindowFlags())
    {
        YDCurvesWidget::Params params;
        params.curves[0].clear();
        for (int i = 0; i < Points; ++i)
            params.curves[0].append({i * Step, i * Step});
        m_dialog.SetValue(params);
        m_dialog.show();
        m_dialog.SetImage(picture, RGBA32iImage(), QPoint(), QRect());
        m_view = m_dialog.findChild<QGraphicsView*>(QStringLiteral("m_pCurveView"));
        Send(QEvent::MouseButtonPress, Qt::LeftButton, DraggedPoint * Step);
    }

    double TimeMove()
    {
        m_isUp = !m_isUp;
        const int output = DraggedPoint * Step + (m_isUp ? Step : 0);
        return TimeOf([this, output] {
            Send(QEvent::MouseMove, Qt::NoButton, output);
            m_view->viewport()->repaint();
        });
    }

private:
    void Send(QEvent::Type type, Qt::MouseButton button, int output)
    {
        const QPointF place =
            m_view->mapFromScene(YDCurvesWidget::ToViewPoint({DraggedPoint * Step, output}));
        QMouseEvent event(type, place, m_view->viewport()->mapToGlobal(place.toPoint()), button,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_view->viewport(), &event);
    }

    YDCurvesWidget m_dialog;
    QGraphicsView* m_view = nullptr;
    bool m_isUp = false;
};

} // namespace

void RegisterCurveMoveRow(int megapixels)
{
    const auto drag = std::make_shared<std::unique_ptr<CurveDrag>>();
    BenchRow row;
    row.pass = [drag](const BenchPictures& pictures) {
        if (!*drag)
            *drag = std::make_unique<CurveDrag>(pictures.photograph);
        return (*drag)->TimeMove();
    };
    row.finish = [drag] { drag->reset(); };
    row.coversPicture = false;
    RegisterRow(megapixels, "curves/move-of-16-points", row);
}
