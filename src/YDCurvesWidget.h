#pragma once

#include "ControlLinks.h"
#include "YDCurvePoints.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "image/YDSharedImage.h"
#include "operations/Curves.h"

#include <QPainterPath>

#include <memory>

class ControlNode;
class QAbstractButton;
class QGraphicsSceneMouseEvent;
class QKeyEvent;
class YDColorPick;
class YDCurveScene;
class YDHistogramFeed;
class YDPickerDrag;

namespace Ui {
class CurvesWidget;
}

/// Tone curves: one for each colour channel and one for all of them, edited as points on a curve over the
/// picture's histogram.
///
/// A press on the curve inserts a point, a drag moves it, Delete removes it; the slider below moves the two
/// end points. Three pickers set points from the average colour of a rectangle dragged on the document view.
/// Inserting alone announces nothing, because the curve stays (nearly) what it was.
///
/// A list with fewer than two points shows and changes nothing and cannot be edited before a reset or a pick.
/// One with more than 4096 is drawn and applied, but has no nodes and cannot be edited either.
class ADJUSTMENTGUI_EXPORT YDCurvesWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Curves;

    YDCurvesWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDCurvesWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    void SetView(KVDocumentView* view) override;
    operations::Task MakeTask() const override;
    void Reset() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Has the histogram show the picture in `image`, which must live until another takes its place.
    void AttachQImage(const YDSharedImage<QImage>* image);
    void AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image);
    void UpdateHistogramm();

    /// From a point of a curve to its place in the editor's scene, and back: (x, 255 - y).
    static QPoint ToViewPoint(const QPoint& point);
    static QPoint FromViewPoint(const QPoint& point);
    /// The curve through `points` in scene coordinates, flat outside them; empty for fewer than two. Points
    /// out of order are sorted first, and what leaves the levels is bounded.
    static QPainterPath BuildSpline(const QVector<QPoint>& points);
    /// The histogram's channel mask for a channel; all channels for any other number.
    static int IndexToHistogrammChannel(int channel);
    /// As YDColorPick::AverageOf() has it.
    static YDRGBA32i CalcAvgColor(const RGBA32iImage& image, const QRect& rect, const YDRGBA32i& fallback);

    /// Edits the list of the channel in the editor, `p` being a point of the curve. False where the list
    /// does not allow it.
    bool InsertPoint(const QPoint& p);
    bool MovePoint(int index, const QPoint& p);
    /// The end points stay.
    void RemovePoint(int index);

    /// Whether a press at `scenePos` inserts a point: on the curve, unless `p`, the scene position in whole
    /// levels, is equal to a point of the list as it is stored. That the latter is not flipped first is
    /// meant.
    bool HitTestForInsert(const QPoint& p, const QPointF& scenePos) const;

    /// Shows a channel in the editor. The channel box and the slider are heard as if the user had moved them:
    /// a box that changes announces it. SetValue() keeps quiet about its channel.
    void SetChannel(int channel);
    /// Draws the curve of the channel in the editor anew.
    void RebuildCurve();
    /// Makes its nodes anew; none is the current one then.
    void MakeControls();

    /// A press or a release in the document's scene while a picker is armed.
    void MousePressed(const QPoint& point, Qt::MouseButton button);
    void MouseReleased(const QPoint& point, Qt::MouseButton button);
    /// Averages the rectangle that was picked last, now or after the pick that runs.
    void StartBlackProcessing();
    void StartGrayProcessing();
    void StartWhiteProcessing();

public slots:
    void OnSourceChanged();
    void OnChannelChanged(int channel);
    void OnInputChanged(uint handle, int value);
    void OnSliderNodeReleased();
    void OnDeleteAction();
    void OnDeletePoint(bool checked);
    void OnCurrentNodeChanged();
    void OnNodePressed(ControlNode* node, Qt::MouseButton button);
    /// Nothing: a released node stays the current one.
    void OnNodeReleased(ControlNode* node, Qt::MouseButton button);
    void OnBlack(bool checked);
    void OnGray(bool checked);
    void OnWhite(bool checked);
    void OnBlackFinished();
    void OnGrayFinished();
    void OnWhiteFinished();

signals:
    void ValueChanged();
    /// Another node, or none, is the one that keys and buttons act upon.
    void CurrentNodeChanged();

protected:
    void AddMesh();
    /// Makes the node of a point that has none yet.
    void InsertNode(int index);

    void SceneMousePressEvent(QGraphicsSceneMouseEvent* event);
    void SceneMouseMoveEvent(QGraphicsSceneMouseEvent* event);
    void SceneMouseReleaseEvent(QGraphicsSceneMouseEvent* event);
    void SceneKeyPressEvent(QKeyEvent* event);

private:
    using PickRule = void (*)(YDCurvePoints::Curves& curves, const YDRGBA32i& color);

    void SetUpPanel();
    void SetUpScene();
    void SetUpPickers();
    /// Not a scope's cut: who hears of the current node may set a record while another is being set, and from
    /// there on the controls are heard.
    void Connect() { m_links.Make(); }
    void Disconnect() { m_links.Break(); }
    void CancelPicks();

    std::size_t CurveOf(int channel) const;
    const QVector<QPoint>& Points() const { return m_params.curves[CurveOf(m_params.channel)]; }
    QVector<QPoint>& Points() { return m_params.curves[CurveOf(m_params.channel)]; }
    void ShowPoint(int index);
    void ShowEndsInSlider();
    void ShowEndsQuietly();
    void ShowMoveInSlider(int index, int x);
    void SetCurrentNode(int index);
    void RemoveCurrentPoint();
    void FitCurveView();

    bool FilterCurveScene(QEvent* event);
    void FilterDocumentScene(QEvent* event);
    void OnPicker(const QAbstractButton* picker, bool checked);
    YDColorPick* MakePick(const YDRGBA32i& fallback);
    void ApplyPick(YDColorPick& pick, PickRule rule);

    const std::unique_ptr<Ui::CurvesWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
    YDCurveScene* m_scene = nullptr; ///< a child of the curve's view
    std::unique_ptr<YDHistogramFeed> m_histogramFeed;
    const std::unique_ptr<YDPickerDrag> m_drag;
    YDColorPick* const m_blackPick;
    YDColorPick* const m_grayPick;
    YDColorPick* const m_whitePick;
};
