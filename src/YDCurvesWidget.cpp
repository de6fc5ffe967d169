#include "YDCurvesWidget.h"

#include "ScopedDisconnect.h"
#include "YDColorPick.h"
#include "YDCurveScene.h"
#include "YDHistogramFeed.h"
#include "YDPickerDrag.h"
#include "geometry/ControlNode.h"
#include "gui/KVDocumentView.h"
#include "ui_CurvesWidget.h"

#include <QAction>
#include <QApplication>
#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>
#include <QLinearGradient>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr uint FirstHandle = 0;
constexpr uint LastHandle = 1;

constexpr YDRGBA32i Black(0, 0, 0, 255);
constexpr YDRGBA32i Gray(128, 128, 128, 255);
constexpr YDRGBA32i White(255, 255, 255, 255);

/// `x` moved by `distance`, or the nearest integer that there is.
int Moved(int x, int distance)
{
    using Limits = std::numeric_limits<int>;
    return int(std::clamp(qint64(x) + distance, qint64(Limits::min()), qint64(Limits::max())));
}

int ToLevel(double coordinate)
{
    return int(std::clamp(std::trunc(coordinate + 0.5), 0.0, double(YDCurvePoints::MaxLevel)));
}

QPoint ToLevels(const QPointF& scenePosition)
{
    return {ToLevel(scenePosition.x()), ToLevel(scenePosition.y())};
}

/// From the origin of what is filled to `end`, in coordinates of its sides.
QBrush Tones(const QPointF& end, const QColor& first, const QColor& last)
{
    QLinearGradient gradient(QPointF(0, 0), end);
    gradient.setCoordinateMode(QGradient::ObjectBoundingMode);
    gradient.setColorAt(0, first);
    gradient.setColorAt(1, last);
    return gradient;
}

} // namespace

YDCurvesWidget::YDCurvesWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::CurvesWidget>()),
      m_drag(std::make_unique<YDPickerDrag>(this)), m_blackPick(MakePick(Black)), m_grayPick(MakePick(Gray)),
      m_whitePick(MakePick(White))
{
    m_ui->setupUi(GetUIContent());
    m_histogramFeed = std::make_unique<YDHistogramFeed>(m_ui->m_pHistogramm);
    SetUpPanel();
    SetUpScene();
    SetUpPickers();
    connect(this, &YDAdjustmentWidget::SourceChanged, this, &YDCurvesWidget::OnSourceChanged);
    connect(this, &YDCurvesWidget::CurrentNodeChanged, this, &YDCurvesWidget::OnCurrentNodeChanged);
    m_links.Add(m_ui->m_pChannel, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &YDCurvesWidget::OnChannelChanged);
    m_links.Add(m_ui->m_pInputSlider, &YodiCustomSlider::ValueChanged, this, &YDCurvesWidget::OnInputChanged);
    SetChannel(m_params.channel);
}

YDCurvesWidget::~YDCurvesWidget() = default;

void YDCurvesWidget::SetUpPanel()
{
    m_ui->m_pInputLabel->SetBackgroundBrush(Tones({1, 0}, Qt::black, Qt::white));
    m_ui->m_pOutputLabel->SetBackgroundBrush(Tones({0, 1}, Qt::white, Qt::black));
    YodiCustomSlider* const slider = m_ui->m_pInputSlider;
    slider->SetRange(0, YDCurvePoints::MaxLevel);
    slider->SetBrush(slider->AddControl(0, YDCurvePoints::MaxLevel, 0), Qt::black);
    slider->SetBrush(slider->AddControl(0, YDCurvePoints::MaxLevel, YDCurvePoints::MaxLevel), Qt::white);
    slider->SetControlName(FirstHandle, tr("Input of the first point"));
    slider->SetControlName(LastHandle, tr("Input of the last point"));
    connect(slider, &YodiCustomSlider::NodeReleased, this, &YDCurvesWidget::OnSliderNodeReleased);
    for (const QToolButton* const button : {m_ui->m_pDeletePoint1, m_ui->m_pDeletePoint2})
        connect(button, &QToolButton::clicked, this, &YDCurvesWidget::OnDeletePoint);
}

void YDCurvesWidget::SetUpScene()
{
    QGraphicsView* const view = m_ui->m_pCurveView;
    m_scene = new YDCurveScene(view);
    view->setScene(m_scene);
    m_scene->installEventFilter(this);
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this); // the view hears of its new size before the viewport has it
    view->setRenderHint(QPainter::Antialiasing);
    connect(m_scene, &YDCurveScene::NodePressed, this, &YDCurvesWidget::OnNodePressed);
    connect(m_scene, &YDCurveScene::NodeReleased, this, &YDCurvesWidget::OnNodeReleased);
    auto* const deletion = new QAction(view);
    deletion->setShortcut(Qt::Key_Delete);
    deletion->setShortcutContext(Qt::WidgetShortcut);
    connect(deletion, &QAction::triggered, this, &YDCurvesWidget::OnDeleteAction);
    view->addAction(deletion);
    AddMesh();
}

void YDCurvesWidget::SetUpPickers()
{
    connect(m_ui->m_pBlack, &QToolButton::toggled, this, &YDCurvesWidget::OnBlack);
    connect(m_ui->m_pGray, &QToolButton::toggled, this, &YDCurvesWidget::OnGray);
    connect(m_ui->m_pWhite, &QToolButton::toggled, this, &YDCurvesWidget::OnWhite);
    connect(m_blackPick, &YDColorPick::Picked, this, &YDCurvesWidget::OnBlackFinished);
    connect(m_grayPick, &YDColorPick::Picked, this, &YDCurvesWidget::OnGrayFinished);
    connect(m_whitePick, &YDColorPick::Picked, this, &YDCurvesWidget::OnWhiteFinished);
}

void YDCurvesWidget::SetValue(const Params& params)
{
    Disconnect();
    m_params = params;
    SetChannel(params.channel);
    Connect();
}

void YDCurvesWidget::SetView(KVDocumentView* view)
{
    YDAdjustmentWidget::SetView(view);
    m_drag->SetView(view);
    for (QToolButton* const picker : {m_ui->m_pBlack, m_ui->m_pGray, m_ui->m_pWhite})
        picker->setChecked(false);
}

operations::Task YDCurvesWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDCurvesWidget::Reset()
{
    CancelPicks();
    SetValue(Params());
    AnnounceChange(&YDCurvesWidget::ValueChanged);
}

bool YDCurvesWidget::eventFilter(QObject* watched, QEvent* event)
{
    const QGraphicsView* const view = m_ui->m_pCurveView;
    const bool isResize = event->type() == QEvent::Resize;
    if (watched == m_scene) {
        if (FilterCurveScene(event))
            return false;
    } else if ((watched == view && (isResize || event->type() == QEvent::Show)) ||
               (watched == view->viewport() && isResize)) {
        FitCurveView();
    } else if (m_drag->IsWatching(watched)) {
        FilterDocumentScene(event);
    }
    return YDAdjustmentWidget::eventFilter(watched, event);
}

void YDCurvesWidget::AttachQImage(const YDSharedImage<QImage>* image)
{
    m_histogramFeed->AttachQImage(image);
}

void YDCurvesWidget::AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image)
{
    m_histogramFeed->AttachRGB32iImage(image);
}

void YDCurvesWidget::UpdateHistogramm() { m_histogramFeed->UpdateHistogramm(); }

QPoint YDCurvesWidget::ToViewPoint(const QPoint& point) { return YDCurvePoints::Flipped(point); }

QPoint YDCurvesWidget::FromViewPoint(const QPoint& point) { return YDCurvePoints::Flipped(point); }

QPainterPath YDCurvesWidget::BuildSpline(const QVector<QPoint>& points)
{
    return YDCurvePoints::PathOf(points);
}

int YDCurvesWidget::IndexToHistogrammChannel(int channel)
{
    return YDHistogramFeed::IndexToHistogrammChannel(channel);
}

YDRGBA32i YDCurvesWidget::CalcAvgColor(const RGBA32iImage& image, const QRect& rect,
                                       const YDRGBA32i& fallback)
{
    return YDColorPick::AverageOf(image, rect, fallback);
}

bool YDCurvesWidget::InsertPoint(const QPoint& p)
{
    const int index = YDCurvePoints::IndexForInsert(Points(), p);
    if (index < 0 || m_scene->NodeCount() != Points().size())
        return false;
    Points().insert(index, p);
    InsertNode(index);
    m_scene->SetCurrentIndex(index);
    ShowEndsQuietly();
    RebuildCurve();
    emit CurrentNodeChanged();
    return true;
}

bool YDCurvesWidget::MovePoint(int index, const QPoint& p)
{
    if (index < 0 || index >= m_scene->NodeCount() || !YDCurvePoints::MayMove(Points(), index, p))
        return false;
    ShowMoveInSlider(index, p.x());
    Points()[index] = p;
    m_scene->MoveNode(index, ToViewPoint(p));
    RebuildCurve();
    AnnounceChange(&YDCurvesWidget::ValueChanged);
    return true;
}

void YDCurvesWidget::RemovePoint(int index)
{
    if (index <= 0 || index >= Points().size() - 1 || index >= m_scene->NodeCount())
        return;
    m_scene->RemoveNode(index);
    Points().remove(index);
    ShowEndsQuietly();
    RebuildCurve();
    AnnounceChange(&YDCurvesWidget::ValueChanged);
    emit CurrentNodeChanged();
}

bool YDCurvesWidget::HitTestForInsert(const QPoint& p, const QPointF& scenePos) const
{
    return !Points().contains(p) && m_scene->IsOnCurve(scenePos);
}

void YDCurvesWidget::SetChannel(int channel)
{
    m_ui->m_pHistogramm->SetChannel(IndexToHistogrammChannel(channel));
    m_ui->m_pChannel->setCurrentIndex(int(CurveOf(channel)));
    m_params.channel = channel; // after the box, whose slot stores the index that is shown
    ShowEndsInSlider();
    RebuildCurve();
    MakeControls();
    ShowPoint(0);
}

void YDCurvesWidget::RebuildCurve() { m_scene->SetCurve(BuildSpline(Points())); }

void YDCurvesWidget::MakeControls()
{
    if (!m_ui->m_pCurveView->scene())
        return;
    m_scene->RemoveAllNodes();
    if (YDCurvePoints::IsEditable(Points()))
        for (int i = 0; i < Points().size(); ++i)
            InsertNode(i);
    emit CurrentNodeChanged();
}

void YDCurvesWidget::MousePressed(const QPoint& point, Qt::MouseButton button)
{
    m_drag->MousePressed(point, button);
}

void YDCurvesWidget::MouseReleased(const QPoint& point, Qt::MouseButton button)
{
    const std::optional<QRect> area = m_drag->MouseReleased(point, button);
    if (!area)
        return;
    if (m_ui->m_pGray->isChecked()) {
        m_grayPick->SetArea(*area);
        StartGrayProcessing();
    } else if (m_ui->m_pBlack->isChecked()) {
        m_blackPick->SetArea(*area);
        StartBlackProcessing();
    } else if (m_ui->m_pWhite->isChecked()) {
        m_whitePick->SetArea(*area);
        StartWhiteProcessing();
    }
}

void YDCurvesWidget::StartBlackProcessing() { m_blackPick->Start(); }

void YDCurvesWidget::StartGrayProcessing() { m_grayPick->Start(); }

void YDCurvesWidget::StartWhiteProcessing() { m_whitePick->Start(); }

void YDCurvesWidget::OnSourceChanged() { m_histogramFeed->OnSourceChanged(SourceImage()); }

void YDCurvesWidget::OnChannelChanged(int channel)
{
    Disconnect();
    SetChannel(channel);
    Connect();
    AboutUserParamsChanged();
    emit ValueChanged();
}

void YDCurvesWidget::OnInputChanged(uint handle, int value)
{
    if (Points().isEmpty() || handle > LastHandle)
        return;
    const int index = handle == FirstHandle ? 0 : Points().size() - 1;
    if (!MovePoint(index, {value, Points()[index].y()})) {
        ShowEndsQuietly(); // the handle goes back to its point
        return;
    }
    ShowPoint(index);
    SetCurrentNode(index);
}

void YDCurvesWidget::OnSliderNodeReleased() { SetCurrentNode(-1); }

void YDCurvesWidget::OnDeleteAction()
{
    if (!m_scene->hasFocus() || !(QApplication::mouseButtons() & Qt::LeftButton))
        RemoveCurrentPoint();
}

void YDCurvesWidget::OnDeletePoint(bool /*checked*/) { RemoveCurrentPoint(); }

void YDCurvesWidget::OnCurrentNodeChanged()
{
    const int index = m_scene->CurrentIndex();
    const bool isBetweenEnds = index > 0 && index < m_scene->NodeCount() - 1;
    m_ui->m_pDeletePoint1->setEnabled(isBetweenEnds);
    m_ui->m_pDeletePoint2->setEnabled(isBetweenEnds);
}

void YDCurvesWidget::OnNodePressed(ControlNode* node, Qt::MouseButton button)
{
    if (button != Qt::LeftButton)
        return;
    const int index = m_scene->IndexOf(node);
    if (index >= 0)
        ShowPoint(index);
    SetCurrentNode(index);
}

void YDCurvesWidget::OnNodeReleased(ControlNode* /*node*/, Qt::MouseButton /*button*/) {}

void YDCurvesWidget::OnBlack(bool checked) { OnPicker(m_ui->m_pBlack, checked); }

void YDCurvesWidget::OnGray(bool checked) { OnPicker(m_ui->m_pGray, checked); }

void YDCurvesWidget::OnWhite(bool checked) { OnPicker(m_ui->m_pWhite, checked); }

void YDCurvesWidget::OnBlackFinished() { ApplyPick(*m_blackPick, &YDCurvePoints::PickBlack); }

void YDCurvesWidget::OnGrayFinished() { ApplyPick(*m_grayPick, &YDCurvePoints::PickGray); }

void YDCurvesWidget::OnWhiteFinished() { ApplyPick(*m_whitePick, &YDCurvePoints::PickWhite); }

void YDCurvesWidget::AddMesh() { m_scene->AddGrid(); }

void YDCurvesWidget::InsertNode(int index)
{
    if (index >= 0 && index < Points().size() && index <= m_scene->NodeCount())
        m_scene->InsertNode(index, ToViewPoint(Points()[index]));
}

void YDCurvesWidget::SceneMousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint position = ToLevels(event->scenePos());
    if (Points().contains(position))
        return;
    if (HitTestForInsert(position, event->scenePos()))
        InsertPoint(FromViewPoint(position)); // a node in the way refuses it, and is pressed itself then
    else
        SetCurrentNode(-1);
}

void YDCurvesWidget::SceneMouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    const int index = m_scene->CurrentIndex();
    if (!(event->buttons() & Qt::LeftButton) || index < 0)
        return;
    if (MovePoint(index, FromViewPoint(ToLevels(event->scenePos()))))
        ShowPoint(index);
}

void YDCurvesWidget::SceneMouseReleaseEvent(QGraphicsSceneMouseEvent* /*event*/) {}

void YDCurvesWidget::SceneKeyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Delete))
        OnDeleteAction();
}

/// The list that is shown for a channel, the composite one where there is no such channel.
std::size_t YDCurvesWidget::CurveOf(int channel) const
{
    const bool isChannel = channel >= 0 && channel < int(m_params.curves.size());
    return isChannel ? std::size_t(channel) : 0;
}

/// A point's levels in the two fields; nothing where there is no such point.
void YDCurvesWidget::ShowPoint(int index)
{
    const bool isPoint = index >= 0 && index < Points().size();
    m_ui->m_pInputSpin->setText(isPoint ? QString::number(Points()[index].x()) : QString());
    m_ui->m_pOutputSpin->setText(isPoint ? QString::number(Points()[index].y()) : QString());
}

/// Both handles at the end points, each kept off the point next to it. A handle whose end is nearer to that
/// point, or beyond the scale, stands as near to its end as it can.
void YDCurvesWidget::ShowEndsInSlider()
{
    YodiCustomSlider* const slider = m_ui->m_pInputSlider;
    slider->setEnabled(YDCurvePoints::IsEditable(Points()));
    const QVector<QPoint> points = Points().size() >= 2 ? Points() : YDCurvePoints::Straight();
    slider->SetControlMax(FirstHandle, Moved(points[1].x(), -YDCurvePoints::MinDistance));
    slider->ChangeValue(FirstHandle, points.first().x());
    slider->SetControlMin(LastHandle, Moved(points[points.size() - 2].x(), YDCurvePoints::MinDistance));
    slider->ChangeValue(LastHandle, points.last().x());
}

void YDCurvesWidget::ShowEndsQuietly()
{
    const ScopedDisconnect quiet(m_ui->m_pInputSlider, &YodiCustomSlider::ValueChanged, this,
                                 &YDCurvesWidget::OnInputChanged);
    ShowEndsInSlider();
}

/// A point bounds the handle of the end next to it, and an end brings its own handle along.
void YDCurvesWidget::ShowMoveInSlider(int index, int x)
{
    YodiCustomSlider* const slider = m_ui->m_pInputSlider;
    const ScopedDisconnect quiet(slider, &YodiCustomSlider::ValueChanged, this,
                                 &YDCurvesWidget::OnInputChanged);
    const int last = Points().size() - 1;
    if (index + 1 == last)
        slider->SetControlMin(LastHandle, Moved(x, YDCurvePoints::MinDistance));
    if (index == 1)
        slider->SetControlMax(FirstHandle, Moved(x, -YDCurvePoints::MinDistance));
    if (index == 0)
        slider->ChangeValue(FirstHandle, x);
    else if (index == last)
        slider->ChangeValue(LastHandle, x);
}

void YDCurvesWidget::SetCurrentNode(int index)
{
    m_scene->SetCurrentIndex(index);
    emit CurrentNodeChanged();
}

void YDCurvesWidget::RemoveCurrentPoint()
{
    if (m_ui->m_pCurveView->scene())
        RemovePoint(m_scene->CurrentIndex());
}

void YDCurvesWidget::FitCurveView()
{
    m_ui->m_pCurveView->fitInView(m_scene->sceneRect(), Qt::IgnoreAspectRatio);
}

/// Returns whether the event is one that the editor knows; the scene handles it as well.
bool YDCurvesWidget::FilterCurveScene(QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        SceneKeyPressEvent(static_cast<QKeyEvent*>(event));
        return true;
    case QEvent::FocusOut:
        OnSliderNodeReleased();
        return true;
    case QEvent::GraphicsSceneMouseMove:
        SceneMouseMoveEvent(static_cast<QGraphicsSceneMouseEvent*>(event));
        return true;
    case QEvent::GraphicsSceneMousePress:
        SceneMousePressEvent(static_cast<QGraphicsSceneMouseEvent*>(event));
        return true;
    case QEvent::GraphicsSceneMouseRelease:
        SceneMouseReleaseEvent(static_cast<QGraphicsSceneMouseEvent*>(event));
        return true;
    default:
        return false;
    }
}

void YDCurvesWidget::FilterDocumentScene(QEvent* event)
{
    if (event->type() != QEvent::GraphicsSceneMousePress &&
        event->type() != QEvent::GraphicsSceneMouseRelease)
        return;
    const auto* const mouse = static_cast<const QGraphicsSceneMouseEvent*>(event);
    if (event->type() == QEvent::GraphicsSceneMousePress)
        MousePressed(mouse->scenePos().toPoint(), mouse->button());
    else
        MouseReleased(mouse->scenePos().toPoint(), mouse->button());
}

/// At most one picker is checked. The document's scene is watched and its view shows the pipette while one
/// is.
void YDCurvesWidget::OnPicker(const QAbstractButton* picker, bool checked)
{
    bool isOtherChecked = false;
    for (QToolButton* const other : {m_ui->m_pBlack, m_ui->m_pGray, m_ui->m_pWhite})
        isOtherChecked = isOtherChecked || (other != picker && other->isChecked());
    if (!checked) {
        m_drag->HidePickerCursor();
        if (!isOtherChecked)
            m_drag->EndWatch();
        return;
    }
    if (!isOtherChecked)
        m_drag->Watch();
    for (QToolButton* const other : {m_ui->m_pBlack, m_ui->m_pGray, m_ui->m_pWhite})
        if (other != picker)
            other->setChecked(false);
    m_drag->ShowPickerCursor();
}

YDColorPick* YDCurvesWidget::MakePick(const YDRGBA32i& fallback)
{
    return new YDColorPick([this] { return SourceImage(); }, fallback, this);
}

void YDCurvesWidget::ApplyPick(YDColorPick& pick, PickRule rule)
{
    const std::optional<YDRGBA32i> color = pick.TakeColor();
    if (!color)
        return;
    Params params = m_params;
    rule(params.curves, *color);
    SetValue(params);
    AnnounceChange(&YDCurvesWidget::ValueChanged);
}

void YDCurvesWidget::CancelPicks()
{
    for (YDColorPick* const pick : {m_blackPick, m_grayPick, m_whitePick})
        pick->Cancel();
}
