#include "PanelKit.h"
#include "Photographs.h"
#include "SanitizerShare.h"
#include "TestPictures.h"
#include "YDCurvesWidget.h"
#include "geometry/ControlNode.h"
#include "gui/HistogramWidget.h"
#include "gui/KVDocumentView.h"
#include "gui/YDColorWidget.h"
#include "gui/YodiCustomSlider.h"
#include "image/YDIterativeCurvesTransformation.h"

#include <QApplication>
#include <QComboBox>
#include <QGraphicsPathItem>
#include <QGraphicsView>
#include <QLayout>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <QToolButton>
#include <QWindow>

#include <algorithm>
#include <cmath>

using Points = QVector<QPoint>;
using Params = YDCurvesWidget::Params;

Q_DECLARE_METATYPE(Points)
Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

using namespace PanelKit;

const Points Straight{{0, 0}, {255, 255}};

Params WithComposite(const Points& points)
{
    Params params;
    params.curves[0] = points;
    return params;
}

RGBA32iImage Applied(const Params& params, const RGBA32iImage& source)
{
    const RGBA32iImage image = source.DeepCopy();
    const YDIterativeCurvesTransformation rule(params.curves.data(), 100);
    for (int y = 0; y < image.Height(); ++y)
        rule.ProcessRow(image.Row(y), image.Width());
    return image;
}

/// Sends a move with the buttons that are held, which QTest does not know.
void MoveMouse(QWidget* widget, const QPoint& place, Qt::MouseButtons held)
{
    QMouseEvent event(QEvent::MouseMove, place, widget->mapToGlobal(place), Qt::NoButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

/// A shown widget of the adjustment and its controls.
struct Fixture : Panel<YDCurvesWidget>
{
    explicit Fixture(bool isDialog = true) : Panel(isDialog)
    {
        widget.resize(500, 600);
        widget.show();
        widget.activateWindow();
        if (!QTest::qWaitForWindowActive(&widget))
            qFatal("the window does not become active");
        view->setFocus();
    }

    QPoint Place(const QPointF& scenePosition) const { return view->mapFromScene(scenePosition); }
    /// Of a point of a curve.
    QPoint PlaceOf(const QPoint& point) const { return Place(YDCurvesWidget::ToViewPoint(point)); }

    void Press(const QPoint& place) const
    {
        QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::KeyboardModifiers(), place);
    }
    void DragTo(const QPoint& point) const { MoveMouse(view->viewport(), PlaceOf(point), Qt::LeftButton); }
    void Release(const QPoint& place) const
    {
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::KeyboardModifiers(), place);
    }
    void Click(const QPoint& place) const
    {
        Press(place);
        Release(place);
    }
    void ClickScene(double x, double y) const { Click(Place({x, y})); }
    void ClickPoint(const QPoint& point) const { Click(PlaceOf(point)); }

    Points Composite() const { return widget.GetValue().curves[0]; }

    /// The nodes, from left to right.
    QVector<ControlNode*> Nodes() const
    {
        QVector<ControlNode*> nodes;
        const auto items = view->scene()->items();
        for (QGraphicsItem* const item : items)
            if (auto* const node = qgraphicsitem_cast<ControlNode*>(item))
                nodes.append(node);
        std::sort(nodes.begin(), nodes.end(),
                  [](const ControlNode* a, const ControlNode* b) { return a->x() < b->x(); });
        return nodes;
    }
    /// The index of the only sunken node; -1 if there is none.
    int SunkenNode() const
    {
        const auto nodes = Nodes();
        int sunken = -1;
        for (int i = 0; i < nodes.size(); ++i)
            if (nodes[i]->isSunken()) {
                if (sunken >= 0)
                    qFatal("two nodes are sunken");
                sunken = i;
            }
        return sunken;
    }
    QPainterPath Curve() const
    {
        const auto items = view->scene()->items();
        for (const QGraphicsItem* const item : items) {
            const auto* const path = qgraphicsitem_cast<const QGraphicsPathItem*>(item);
            if (path && path->pen().color() == QColor(Qt::gray))
                return path->path();
        }
        return {};
    }
    bool AreDeleteButtonsEnabled() const
    {
        if (delete1->isEnabled() != delete2->isEnabled())
            qFatal("the delete buttons differ");
        return delete1->isEnabled();
    }

    QGraphicsView* const view = Child<QGraphicsView>("m_pCurveView");
    QComboBox* const channel = Child<QComboBox>("m_pChannel");
    YodiCustomSlider* const slider = Child<YodiCustomSlider>("m_pInputSlider");
    QLineEdit* const input = Child<QLineEdit>("m_pInputSpin");
    QLineEdit* const output = Child<QLineEdit>("m_pOutputSpin");
    QToolButton* const delete1 = Child<QToolButton>("m_pDeletePoint1");
    QToolButton* const delete2 = Child<QToolButton>("m_pDeletePoint2");
    QToolButton* const black = Child<QToolButton>("m_pBlack");
    QToolButton* const gray = Child<QToolButton>("m_pGray");
    QToolButton* const white = Child<QToolButton>("m_pWhite");
};

/// A fixture with a picture, and a document view that shows it, a picture pixel a device pixel.
struct PickFixture : Fixture
{
    explicit PickFixture(const RGBA32iImage& picture) : source(picture)
    {
        document.resize(700, 500);
        document.SetImage(source);
        document.show();
        document.SetZoom(document.devicePixelRatioF());
        widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
        widget.SetView(&document);
    }

    QPoint DocumentPlace(const QPoint& pixel) const { return document.mapFromScene(QPointF(pixel)); }

    void DragOnDocument(const QPoint& from, const QPoint& to)
    {
        QWidget* const viewport = document.viewport();
        QTest::mousePress(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), DocumentPlace(from));
        MoveMouse(viewport, DocumentPlace(to), Qt::LeftButton);
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), DocumentPlace(to));
    }
    Qt::CursorShape CursorShape() const { return document.viewport()->cursor().shape(); }

    const RGBA32iImage source;
    KVDocumentView document;
};

/// What a widget announces, a change of its current node too.
struct Told : Announcements
{
    explicit Told(YDCurvesWidget& widget) : Announcements(widget)
    {
        Hear(widget, &YDCurvesWidget::CurrentNodeChanged, "node");
    }
};

} // namespace

class TestYDCurvesWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheCurveLiesOverTheHistogram();
    void StripsGoFromBlackToWhiteAndFromWhiteToBlack_data();
    void StripsGoFromBlackToWhiteAndFromWhiteToBlack();
    void TheNumberFieldsOnlyShow();
    void TheScenesGridIsAtTheQuarters();
    void TheCurveIsOneGrayLineAtAnyScale();
    void TheSliderHasABlackAndAWhiteHandle();
    void IconsAreThoseOfTheTheme_data();
    void IconsAreThoseOfTheTheme();
    void StartsStraightWithNothingSelected();
    void TheCurveLinesUpWithHistogramStripsAndSlider_data();
    void TheCurveLinesUpWithHistogramStripsAndSlider();

    void TheViewFitsItsScene_data();
    void TheViewFitsItsScene();
    void NodesInTheCornersArePressed_data();
    void NodesInTheCornersArePressed();
    void ASplineGoesFromEdgeToEdge_data();
    void ASplineGoesFromEdgeToEdge();

    void AClickOnTheCurveInsertsAndSelects();
    void NothingIsInsertedNextToAPoint();
    void NothingIsInsertedOffTheCurve();
    void InsertingAnnouncesOnlyTheNode();
    void OtherButtonsDoNotEdit();
    void APressOnANodeSelectsItAndShowsItsLevels();
    void APressOnAForeignNodeShowsNothing();
    void APressOnANodeAnnouncesWhatItDoes_data();
    void APressOnANodeAnnouncesWhatItDoes();
    void APressOnANodesRimGrabsIt();
    void APressOnTheCurveFarFromThePointInsertsThoughANodeIsThere();
    void APressOnEmptySpaceDeselects();
    void PressesAreComparedWithPointsThatAreNotFlipped();
    void DraggingMovesThePoint();
    void DraggingStopsFourFromANeighbour();
    void DraggingOutOfTheSceneIsBounded();
    void DraggingWithoutANodeDoesNothing();
    void MovingAnnouncesOnceInOrder();
    void MovingBoundsTheSlider();
    void InsertingAndRemovingBoundTheSlider();
    void NeighboursBoundTheHandlesOfAnyList_data();
    void NeighboursBoundTheHandlesOfAnyList();
    void MovingAMiddlePointLeavesTheHandlesWhereTheyAre();
    void AHandleWhoseMoveIsRefusedGoesBack();
    void NeighboursBoundTheEndPoints();
    void LosingTheFocusDeselects();
    void DeleteRemovesTheCurrentPoint();
    void DeleteButtonsRemoveTheCurrentPoint_data();
    void DeleteButtonsRemoveTheCurrentPoint();
    void EndPointsAreNeverRemoved();
    void DeleteDoesNothingWhileTheMouseIsDown();
    void RemovingAnnouncesOnceInOrder();
    void TheSliderMovesTheEndPoints();
    void LettingGoOfTheSliderDeselects();
    void AChannelShowsItsCurve();
    void ChoosingAChannelAnnouncesNoData();
    void SettingAChannelSpeaksForItsControls();
    void ASliderThatFollowsTheChannelIsHeard();
    void ADragMaySurviveAResetInAListener();

    void ControlsAreHeardOnceAfterARecordWithinARecord();
    void ShortListsCannotBeEdited_data();
    void ShortListsCannotBeEdited();
    void AnyListIsShownAndAppliedWithoutHarm_data();
    void AnyListIsShownAndAppliedWithoutHarm();
    void AnyChannelIsKeptAndShownAsComposite_data();
    void AnyChannelIsKeptAndShownAsComposite();
    void HostileCountsLoadAsDefaults_data();
    void HostileCountsLoadAsDefaults();
    void ListsAreReadWhateverTheyHold();

    void AveragesAreTruncatedMeans();
    void AveragesClipAndFallBack_data();
    void AveragesClipAndFallBack();
    void AveragesOfVeryManyPixelsWrapAround();
    void APickedColourSetsThePoints_data();
    void APickedColourSetsThePoints();
    void APickOnAPhotographSetsThePoints_data();
    void APickOnAPhotographSetsThePoints();
    void AClickPicksOnePixel();
    void ADragBackwardsByOnePixelPicksNothing_data();
    void ADragBackwardsByOnePixelPicksNothing();
    void CornersMayBeAsFarAsIntegersGet();
    void APickOutsideThePictureYieldsTheFallback_data();
    void APickOutsideThePictureYieldsTheFallback();
    void PointsWithEqualXAfterAPickDoNoHarm();
    void APickWhileAnotherRunsFollowsIt();
    void ResetDropsTheRunningPick();
    void AnotherPictureEndsNoPick();
    void OnePickerIsCheckedAtATime();
    void OfSeveralPickersGrayComesFirstThenBlack_data();
    void OfSeveralPickersGrayComesFirstThenBlack();
    void NobodyWatchesTheDocumentAfterUnchecking();
    void APickerTakesAndGivesBackCursorAndDragMode();
    void OtherMouseButtonsDoNotPick();
    void UncheckingWhileDraggingEndsTheDrag();
    void AnotherViewUnchecksThePickers();
    void AnotherViewShowsItsOwnCursor();
    void TheViewMayGoWhileAPickerIsChecked();
    void TheWidgetMayGoWhileAPickerIsChecked_data();
    void TheWidgetMayGoWhileAPickerIsChecked();
    void PickersAreSafeInAPanelWithoutAView();

    void ConversionAndPreviewApplyTheCurves();
    void TheHistogramFollowsTheSourceAndTheChannel();
};

void TestYDCurvesWidget::TheCurveLiesOverTheHistogram()
{
    const Fixture f(false);
    QCOMPARE(f.view->styleSheet(), QStringLiteral("QGraphicsView{background: rgba(0, 0, 0, 0);}"));
    QVERIFY(f.Child<QLayout>("m_pHistogrammLayout")->indexOf(f.Child<HistogramWidget>("m_pHistogramm")) >= 0);
}

void TestYDCurvesWidget::StripsGoFromBlackToWhiteAndFromWhiteToBlack_data()
{
    QTest::addColumn<QString>("strip");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<QColor>("first");
    QTest::addColumn<QColor>("last");
    QTest::newRow("input, from left to right")
        << "m_pInputLabel" << QPointF(1, 0) << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("output, from top to bottom")
        << "m_pOutputLabel" << QPointF(0, 1) << QColor(Qt::white) << QColor(Qt::black);
}

void TestYDCurvesWidget::StripsGoFromBlackToWhiteAndFromWhiteToBlack()
{
    QFETCH(QString, strip);
    QFETCH(QPointF, end);
    QFETCH(QColor, first);
    QFETCH(QColor, last);
    Fixture f;
    const QBrush brush = f.Child<YDColorWidget>(qPrintable(strip))->BackgroundBrush();
    QCOMPARE(brush.style(), Qt::LinearGradientPattern);
    const auto* const gradient = static_cast<const QLinearGradient*>(brush.gradient());
    QCOMPARE(gradient->coordinateMode(), QGradient::ObjectBoundingMode);
    QCOMPARE(gradient->start(), QPointF(0, 0));
    QCOMPARE(gradient->finalStop(), end);
    QCOMPARE(gradient->stops(), QGradientStops({{0.0, first}, {1.0, last}}));
}

void TestYDCurvesWidget::TheNumberFieldsOnlyShow()
{
    Fixture f;
    QVERIFY(f.input->isReadOnly() && f.output->isReadOnly());
    QTest::keyClicks(f.input, QStringLiteral("77"));
    QCOMPARE(f.input->text(), QStringLiteral("0"));
    QCOMPARE(f.Composite(), Straight);
}

void TestYDCurvesWidget::TheScenesGridIsAtTheQuarters()
{
    Fixture f;
    QCOMPARE(f.view->scene()->sceneRect(), QRectF(0, 0, 255, 255));
    int grids = 0;
    const auto items = f.view->scene()->items();
    for (const QGraphicsItem* const item : items) {
        const auto* const path = qgraphicsitem_cast<const QGraphicsPathItem*>(item);
        if (!path || path->pen().color() != QColor(128, 128, 128, 80))
            continue;
        ++grids;
        QSet<QString> lines;
        for (int i = 0; i + 1 < path->path().elementCount(); i += 2) {
            const QPointF from = path->path().elementAt(i);
            const QPointF to = path->path().elementAt(i + 1);
            lines.insert(QStringLiteral("%1,%2-%3,%4").arg(from.x()).arg(from.y()).arg(to.x()).arg(to.y()));
        }
        QSet<QString> expected;
        for (const char* const quarter : {"63.75", "127.5", "191.25"}) {
            expected.insert(QStringLiteral("0,%1-255,%1").arg(QLatin1String(quarter)));
            expected.insert(QStringLiteral("%1,0-%1,255").arg(QLatin1String(quarter)));
        }
        QCOMPARE(lines, expected);
        QVERIFY(path->pen().isCosmetic());
        QCOMPARE(path->pen().style(), Qt::SolidLine);
        QCOMPARE(path->pen().brush().style(), Qt::SolidPattern);
        QCOMPARE(path->pen().capStyle(), Qt::SquareCap);
        QCOMPARE(path->pen().joinStyle(), Qt::BevelJoin);
        QCOMPARE(path->brush().style(), Qt::NoBrush);
    }
    QCOMPARE(grids, 1);
}

void TestYDCurvesWidget::TheCurveIsOneGrayLineAtAnyScale()
{
    Fixture f;
    int curves = 0;
    const auto items = f.view->scene()->items();
    for (const QGraphicsItem* const item : items) {
        const auto* const path = qgraphicsitem_cast<const QGraphicsPathItem*>(item);
        if (!path || path->path() != YDCurvesWidget::BuildSpline(Straight))
            continue;
        ++curves;
        QCOMPARE(path->pen().widthF(), 0.0);
        QVERIFY(path->pen().isCosmetic());
        QCOMPARE(path->pen().brush(), QBrush(Qt::gray));
        QCOMPARE(path->pen().style(), Qt::SolidLine);
        QCOMPARE(path->pen().capStyle(), Qt::SquareCap);
        QCOMPARE(path->pen().joinStyle(), Qt::BevelJoin);
        QCOMPARE(path->brush().style(), Qt::NoBrush);
    }
    QCOMPARE(curves, 1);
}

void TestYDCurvesWidget::TheSliderHasABlackAndAWhiteHandle()
{
    Fixture f;
    QCOMPARE(f.slider->Minimum(), 0);
    QCOMPARE(f.slider->Maximum(), 255);
    QCOMPARE(f.slider->ControlCount(), 2U);
    f.widget.SetValue(WithComposite({{60, 0}, {190, 255}}));
    const QImage image = f.slider->grab().toImage();
    const auto fillOf = [&](uint handle) {
        const QRect shape = f.slider->ControlRect(handle);
        const QPoint inside(shape.center().x(), shape.top() + shape.height() * 2 / 3);
        return image.pixelColor(inside * image.devicePixelRatio());
    };
    QCOMPARE(fillOf(0), QColor(Qt::black));
    QCOMPARE(fillOf(1), QColor(Qt::white));
}

void TestYDCurvesWidget::IconsAreThoseOfTheTheme_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("disabledImage");
    QTest::newRow("black") << "m_pBlack"
                           << "picker_black" << QString();
    QTest::newRow("gray") << "m_pGray"
                          << "picker_gray" << QString();
    QTest::newRow("white") << "m_pWhite"
                           << "picker_white" << QString();
    for (const char* const button : {"m_pDeletePoint1", "m_pDeletePoint2"})
        QTest::newRow(button) << button << "deletecurrentpath"
                              << "deletecurrentpath_disabled";
}

void TestYDCurvesWidget::IconsAreThoseOfTheTheme()
{
    QFETCH(QString, button);
    QFETCH(QString, image);
    QFETCH(QString, disabledImage);
    Fixture f;
    const QIcon icon = f.Child<QToolButton>(qPrintable(button))->icon();
    const auto pixels = [](QImage picture) {
        picture.setDevicePixelRatio(1.0);
        return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    const auto shown = [&](QIcon::Mode mode) { return pixels(icon.pixmap(16, mode).toImage()); };
    const auto theme = [&](const QString& name) {
        const QImage picture(QStringLiteral("theme:%1.png").arg(name));
        return picture.isNull() ? QImage() : pixels(picture);
    };
    QVERIFY(!theme(image).isNull());
    QCOMPARE(shown(QIcon::Normal), theme(image));
    if (disabledImage.isEmpty())
        return;
    QVERIFY(theme(disabledImage) != theme(image));
    QCOMPARE(shown(QIcon::Disabled), theme(disabledImage));
}

void TestYDCurvesWidget::StartsStraightWithNothingSelected()
{
    Fixture f;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    for (const Points& points : f.widget.GetValue().curves)
        QCOMPARE(points, Straight);
    QCOMPARE(f.Curve(), YDCurvesWidget::BuildSpline(Straight));
    QCOMPARE(f.Nodes().size(), 2);
    QCOMPARE(f.Nodes()[0]->pos(), QPointF(0, 255));
    QCOMPARE(f.Nodes()[1]->pos(), QPointF(255, 0));
    QCOMPARE(f.SunkenNode(), -1);
    QVERIFY(!f.AreDeleteButtonsEnabled());
    QCOMPARE(f.input->text() + QLatin1Char(' ') + f.output->text(), QStringLiteral("0 0"));
    QCOMPARE(f.slider->Value(0), 0);
    QCOMPARE(f.slider->Value(1), 255);
    QCOMPARE(f.slider->HighestValue(0), 251);
    QCOMPARE(f.slider->LowestValue(1), 4);
}

void TestYDCurvesWidget::TheCurveLinesUpWithHistogramStripsAndSlider_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(300, 430);
    QTest::newRow("odd") << QSize(457, 533);
    QTest::newRow("wide") << QSize(1100, 500);
    QTest::newRow("high") << QSize(320, 900);
}

/// Histogram, strips and slider have a column or a line for each level, the same ones. The curve goes through
/// them, or by less than a unit beside them.
void TestYDCurvesWidget::TheCurveLinesUpWithHistogramStripsAndSlider()
{
    QFETCH(QSize, size);
    Fixture f;
    f.widget.resize(size);
    const auto* const histogram = f.Child<QWidget>("m_pHistogramm");
    const auto* const inputStrip = f.Child<QWidget>("m_pInputLabel");
    const auto* const outputStrip = f.Child<QWidget>("m_pOutputLabel");
    const auto place = [&f](const QWidget* widget, const QPointF& inside) {
        return QPointF(widget->mapTo(&f.widget, QPoint())) + inside;
    };
    const QSizeF seen = histogram->size();
    for (const int level : {0, 64, 128, 255}) {
        const double share = (level + 0.5) / 256;
        const QPointF spot(share * seen.width(), (1 - share) * seen.height());
        const QPointF expected = place(histogram, spot);
        const double inStrip = place(inputStrip, {share * inputStrip->width(), 0}).x();
        const double inSlider = place(f.slider, {f.slider->PositionOf(level), 0}).x();
        const double inOutput = place(outputStrip, {0, (1 - share) * outputStrip->height()}).y();
        QVERIFY(std::abs(inStrip - expected.x()) < 0.01);
        QVERIFY(std::abs(inSlider - expected.x()) < 0.01);
        QVERIFY(std::abs(inOutput - expected.y()) < 0.01);
        const QPointF curve =
            place(f.view->viewport(), f.view->viewportTransform().map(QPointF(level, 255 - level)));
        const QPointF off = curve - expected;
        QVERIFY2(std::abs(off.x()) < seen.width() / 512 + 1 && std::abs(off.y()) < seen.height() / 512 + 1,
                 qPrintable(QStringLiteral("level %1: %2, %3").arg(level).arg(off.x()).arg(off.y())));
    }
}

void TestYDCurvesWidget::TheViewFitsItsScene_data() { TheCurveLinesUpWithHistogramStripsAndSlider_data(); }

/// As any view of the same size does that is told to fit such a scene.
void TestYDCurvesWidget::TheViewFitsItsScene()
{
    QFETCH(QSize, size);
    Fixture f;
    f.widget.resize(size);
    QGraphicsScene scene(0, 0, 255, 255);
    QGraphicsView plain(&scene);
    plain.setFrameShape(QFrame::NoFrame);
    plain.resize(f.view->viewport()->size());
    plain.show();
    QCOMPARE(plain.viewport()->size(), f.view->viewport()->size());
    plain.fitInView(scene.sceneRect(), Qt::IgnoreAspectRatio);
    QVERIFY(qFuzzyCompare(f.view->transform(), plain.transform()));
    QVERIFY(qFuzzyCompare(f.view->viewportTransform(), plain.viewportTransform()));
    // Nor does anything lie over the view.
    QVERIFY(f.view->visibleRegion() == f.view->rect());
}

void TestYDCurvesWidget::NodesInTheCornersArePressed_data()
{
    TheCurveLinesUpWithHistogramStripsAndSlider_data();
}

/// The part of them that is in the view is enough for the mouse.
void TestYDCurvesWidget::NodesInTheCornersArePressed()
{
    QFETCH(QSize, size);
    Fixture f;
    f.widget.resize(size);
    for (const Points& diagonal : {Straight, Points({{0, 255}, {255, 0}})}) {
        f.widget.SetValue(WithComposite(diagonal));
        for (int end = 0; end < 2; ++end) {
            const QPoint corner = f.PlaceOf(diagonal[end]);
            QVERIFY(f.view->viewport()->rect().contains(corner));
            const QPoint inwards(end == 0 ? 4 : -4, 0);
            const QPoint updown(0, diagonal[end].y() == 0 ? -4 : 4);
            for (const QPoint& offset : {QPoint(), inwards, updown}) {
                f.ClickScene(60, 128); // empty space
                QCOMPARE(f.SunkenNode(), -1);
                f.Click(corner + offset);
                QCOMPARE(f.SunkenNode(), end);
            }
        }
        QCOMPARE(f.Composite(), diagonal);
    }
}

void TestYDCurvesWidget::ASplineGoesFromEdgeToEdge_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<QVector<QPointF>>("corners");
    QTest::newRow("straight") << Straight << QVector<QPointF>{{0, 255}, {255, 0}};
    QTest::newRow("flat beside its ends")
        << Points({{30, 10}, {200, 240}}) << QVector<QPointF>{{0, 245}, {30, 245}, {200, 15}, {255, 15}};
    QTest::newRow("one point") << Points({{40, 50}}) << QVector<QPointF>();
    QTest::newRow("no point") << Points() << QVector<QPointF>();
}

void TestYDCurvesWidget::ASplineGoesFromEdgeToEdge()
{
    QFETCH(Points, points);
    QFETCH(QVector<QPointF>, corners);
    QPainterPath expected;
    if (!corners.isEmpty())
        expected.moveTo(corners.first());
    for (const QPointF& corner : corners) // Qt leaves out a line to where the path is already
        expected.lineTo(corner);
    QCOMPARE(YDCurvesWidget::BuildSpline(points), expected);
    QCOMPARE(YDCurvesWidget::BuildSpline(points).isEmpty(), corners.isEmpty());
}

void TestYDCurvesWidget::AClickOnTheCurveInsertsAndSelects()
{
    Fixture f;
    f.ClickScene(5, 250);
    QCOMPARE(f.Composite(), Points({{0, 0}, {5, 5}, {255, 255}}));
    f.ClickScene(100, 156);
    QCOMPARE(f.Composite(), Points({{0, 0}, {5, 5}, {100, 99}, {255, 255}}));
    QCOMPARE(f.Nodes().size(), 4);
    QCOMPARE(f.SunkenNode(), 2);
    QCOMPARE(f.Nodes()[2]->pos(), QPointF(100, 156));
    QVERIFY(f.AreDeleteButtonsEnabled());
    QCOMPARE(f.input->text() + QLatin1Char(' ') + f.output->text(), QStringLiteral("100 99"));
    QCOMPARE(f.Curve(), YDCurvesWidget::BuildSpline(f.Composite()));
}

void TestYDCurvesWidget::NothingIsInsertedNextToAPoint()
{
    Fixture f;
    for (const int x : {2, 4, 251, 253}) {
        f.ClickScene(x, 255 - x);
        QCOMPARE(f.Composite(), Straight);
    }
    QVERIFY(!f.widget.InsertPoint({4, 100}));
    QVERIFY(f.widget.InsertPoint({5, 100}));
    QVERIFY(!f.widget.InsertPoint({100, 256}));
    QVERIFY(!f.widget.InsertPoint({100, -1}));
}

void TestYDCurvesWidget::NothingIsInsertedOffTheCurve()
{
    Fixture f;
    QVERIFY(f.widget.HitTestForInsert({128, 127}, {128, 127}));
    QVERIFY(f.widget.HitTestForInsert({128, 127}, {129.3, 128.3}));    // 1.84 from the curve
    QVERIFY(!f.widget.HitTestForInsert({128, 127}, {130, 128.0 + 2})); // 3.5
    f.ClickScene(128, 140);
    QCOMPARE(f.Composite(), Straight);
    f.ClickScene(50, 50);
    QCOMPARE(f.Composite(), Straight);
}

void TestYDCurvesWidget::InsertingAnnouncesOnlyTheNode()
{
    Fixture f;
    Told told(f.widget);
    QVERIFY(f.widget.InsertPoint({100, 100}));
    QCOMPARE(told.Take(), QStringLiteral("node"));
    f.ClickScene(200, 55);
    QCOMPARE(f.Composite().size(), 4);
    QVERIFY(!told.Take().contains(QStringLiteral("data")));
}

void TestYDCurvesWidget::OtherButtonsDoNotEdit()
{
    Fixture f;
    f.widget.InsertPoint({100, 100});
    QTest::mouseClick(f.view->viewport(), Qt::RightButton, Qt::KeyboardModifiers(), f.PlaceOf({200, 200}));
    QTest::mouseClick(f.view->viewport(), Qt::RightButton, Qt::KeyboardModifiers(), f.PlaceOf({0, 0}));
    QTest::mouseClick(f.view->viewport(), Qt::RightButton, Qt::KeyboardModifiers(), f.PlaceOf({50, 200}));
    QCOMPARE(f.Composite().size(), 3);
    QCOMPARE(f.SunkenNode(), 1);
    MoveMouse(f.view->viewport(), f.PlaceOf({120, 120}), Qt::RightButton);
    QCOMPARE(f.Composite()[1], QPoint(100, 100));
}

void TestYDCurvesWidget::APressOnANodeSelectsItAndShowsItsLevels()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{10, 20}, {100, 150}, {200, 220}}));
    const Points points = f.Composite();
    for (int i : {1, 0, 2}) {
        f.ClickPoint(points[i]);
        QCOMPARE(f.SunkenNode(), i);
        QCOMPARE(f.input->text(), QString::number(points[i].x()));
        QCOMPARE(f.output->text(), QString::number(points[i].y()));
        QCOMPARE(f.AreDeleteButtonsEnabled(), i == 1);
    }
    QCOMPARE(f.Composite(), points);
}

void TestYDCurvesWidget::APressOnAForeignNodeShowsNothing()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{10, 20}, {100, 150}, {200, 220}}));
    f.ClickPoint({100, 150});
    ControlNode foreign;
    f.widget.OnNodePressed(&foreign, Qt::LeftButton);
    QCOMPARE(f.input->text() + QLatin1Char(' ') + f.output->text(), QStringLiteral("100 150"));
    QCOMPARE(f.SunkenNode(), -1);
    QVERIFY(!f.AreDeleteButtonsEnabled());
    QVERIFY(!foreign.isSunken());
}

void TestYDCurvesWidget::APressOnANodeAnnouncesWhatItDoes_data()
{
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<QString>("announced");
    QTest::addColumn<int>("sunken");
    // The curve asks for a point, which is refused so near to another; nothing is deselected.
    QTest::newRow("on the curve") << QPoint(0, 0) << Qt::LeftButton << "node" << 1;
    QTest::newRow("on the curve, beside the point") << QPoint(4, 0) << Qt::LeftButton << "node" << 1;
    // What is no press on the curve deselects, before the node hears of it.
    QTest::newRow("above the curve") << QPoint(0, -5) << Qt::LeftButton << "node node" << 1;
    QTest::newRow("below the curve") << QPoint(0, 5) << Qt::LeftButton << "node node" << 1;
    QTest::newRow("with another button") << QPoint(0, 0) << Qt::RightButton << "" << 0;
}

void TestYDCurvesWidget::APressOnANodeAnnouncesWhatItDoes()
{
    QFETCH(QPoint, offset);
    QFETCH(Qt::MouseButton, button);
    QFETCH(QString, announced);
    QFETCH(int, sunken);
    Fixture f;
    const Points points{{0, 128}, {128, 128}, {255, 128}};
    f.widget.SetValue(WithComposite(points));
    f.ClickPoint(points[0]);
    QCOMPARE(f.SunkenNode(), 0);
    Told told(f.widget);
    QTest::mousePress(f.view->viewport(), button, Qt::KeyboardModifiers(), f.PlaceOf(points[1]) + offset);
    QCOMPARE(told.Take(), announced);
    QCOMPARE(f.SunkenNode(), sunken);
    QTest::mouseRelease(f.view->viewport(), button, Qt::KeyboardModifiers(), f.PlaceOf(points[1]) + offset);
    QCOMPARE(told.Take(), QString());
    QCOMPARE(f.SunkenNode(), sunken); // a released node stays the current one
    QCOMPARE(f.Composite(), points);
}

void TestYDCurvesWidget::APressOnANodesRimGrabsIt()
{
    Fixture f;
    const Points flat{{0, 128}, {128, 128}, {255, 128}};
    f.widget.SetValue(WithComposite(flat));
    f.Press(f.PlaceOf({128, 128}) + QPoint(5, 0));
    f.DragTo({140, 90});
    QCOMPARE(f.Composite(), Points({{0, 128}, {140, 90}, {255, 128}}));
    f.Release(f.PlaceOf({140, 90}));
}

/// In a small view the rim is further from the point than others must be. The new node lies over the old one
/// and hears of the press.
void TestYDCurvesWidget::APressOnTheCurveFarFromThePointInsertsThoughANodeIsThere()
{
    Fixture f;
    f.widget.resize(f.widget.minimumSizeHint());
    f.widget.SetValue(WithComposite({{0, 128}, {128, 128}, {255, 128}}));
    Told told(f.widget);
    f.Press(f.PlaceOf({128, 128}) + QPoint(5, 0));
    QCOMPARE(told.Take(), QStringLiteral("node node"));
    QCOMPARE(f.Composite().size(), 4);
    QCOMPARE(f.Composite()[1], QPoint(128, 128));
    QVERIFY(f.Composite()[2].x() > 132);
    QCOMPARE(f.SunkenNode(), 2);
    f.DragTo({160, 90});
    QCOMPARE(f.Composite()[2], QPoint(160, 90));
    f.Release(f.PlaceOf({160, 90}));
    // Next to the ends of a straight curve a point is inserted as soon as it may be, in a small view as well.
    f.widget.SetValue(Params());
    f.ClickScene(5, 250);
    QCOMPARE(f.Composite(), Points({{0, 0}, {5, 5}, {255, 255}}));
}

void TestYDCurvesWidget::APressOnEmptySpaceDeselects()
{
    Fixture f;
    f.ClickScene(128, 127);
    QCOMPARE(f.SunkenNode(), 1);
    Told told(f.widget);
    f.ClickScene(60, 60);
    QCOMPARE(f.SunkenNode(), -1);
    QVERIFY(!f.AreDeleteButtonsEnabled());
    QCOMPARE(told.Take(), QStringLiteral("node"));
}

/// The point (100, 40) is shown at (100, 215), yet it is a press at (100, 40) that finds it in the list.
void TestYDCurvesWidget::PressesAreComparedWithPointsThatAreNotFlipped()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 0}, {100, 40}, {255, 255}}));
    f.ClickPoint({255, 255});
    QCOMPARE(f.SunkenNode(), 2);
    f.ClickScene(100, 40); // empty space
    QCOMPARE(f.SunkenNode(), 2);
    f.ClickScene(101, 40);
    QCOMPARE(f.SunkenNode(), -1);

    // On the curve as well: a flat one at 127.5 is seen where its points are stored, but for half a level.
    f.widget.SetValue(WithComposite({{0, 128}, {100, 127}, {255, 128}}));
    QVERIFY(!f.widget.HitTestForInsert({100, 127}, {100, 128}));
    QVERIFY(f.widget.HitTestForInsert({101, 127}, {101, 128}));
}

void TestYDCurvesWidget::DraggingMovesThePoint()
{
    Fixture f;
    f.Press(f.Place({128, 127}));
    QCOMPARE(f.Composite()[1], QPoint(128, 128));
    f.DragTo({140, 180});
    QCOMPARE(f.Composite(), Points({{0, 0}, {140, 180}, {255, 255}}));
    QCOMPARE(f.input->text() + QLatin1Char(' ') + f.output->text(), QStringLiteral("140 180"));
    QCOMPARE(f.Nodes()[1]->pos(), QPointF(140, 75));
    QCOMPARE(f.Curve(), YDCurvesWidget::BuildSpline(f.Composite()));
    f.DragTo({30, 5});
    f.Release(f.PlaceOf({30, 5}));
    QCOMPARE(f.Composite()[1], QPoint(30, 5));
    QCOMPARE(f.SunkenNode(), 1); // a released node stays the current one
}

void TestYDCurvesWidget::DraggingStopsFourFromANeighbour()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 0}, {100, 100}, {200, 200}, {255, 255}}));
    f.Press(f.PlaceOf({100, 100}));
    f.DragTo({197, 100});
    QCOMPARE(f.Composite()[1], QPoint(100, 100));
    f.DragTo({230, 100}); // past the neighbour
    QCOMPARE(f.Composite()[1], QPoint(100, 100));
    f.DragTo({196, 100});
    QCOMPARE(f.Composite()[1], QPoint(196, 100));
    f.DragTo({3, 90});
    QCOMPARE(f.Composite()[1], QPoint(196, 100));
    QCOMPARE(f.input->text(), QStringLiteral("196"));
    f.DragTo({4, 90});
    QCOMPARE(f.Composite()[1], QPoint(4, 90));
    QCOMPARE(f.Composite().size(), 4);
}

void TestYDCurvesWidget::DraggingOutOfTheSceneIsBounded()
{
    Fixture f;
    f.ClickScene(128, 127);
    f.Press(f.PlaceOf({128, 128}));
    MoveMouse(f.view->viewport(), {f.Place({128, 0}).x(), -5000}, Qt::LeftButton);
    QCOMPARE(f.Composite()[1].y(), 255);
    MoveMouse(f.view->viewport(), {f.Place({128, 0}).x(), 5000}, Qt::LeftButton);
    QCOMPARE(f.Composite()[1].y(), 0);
    f.Release(f.PlaceOf({128, 0}));
    f.Press(f.PlaceOf({255, 255}));
    MoveMouse(f.view->viewport(), {90000, 90000}, Qt::LeftButton);
    QCOMPARE(f.Composite()[2], QPoint(255, 0));
}

void TestYDCurvesWidget::DraggingWithoutANodeDoesNothing()
{
    Fixture f;
    f.Press(f.Place({60, 60}));
    f.DragTo({128, 128});
    QCOMPARE(f.Composite(), Straight);
    f.ClickPoint({0, 0});
    MoveMouse(f.view->viewport(), f.PlaceOf({50, 50}), Qt::NoButton); // no button is held
    QCOMPARE(f.Composite(), Straight);
}

void TestYDCurvesWidget::MovingAnnouncesOnceInOrder()
{
    Fixture f;
    f.widget.InsertPoint({100, 100});
    Told told(f.widget);
    QVERIFY(f.widget.MovePoint(1, {100, 120}));
    QCOMPARE(told.Take(), QStringLiteral("host value data"));
    QVERIFY(!f.widget.MovePoint(1, {100, 120}));
    QVERIFY(!f.widget.MovePoint(1, {2, 120}));
    QVERIFY(!f.widget.MovePoint(-1, {50, 120}));
    QVERIFY(!f.widget.MovePoint(3, {50, 120}));
    QCOMPARE(told.Take(), QString());
    f.widget.MovePoint(0, {7, 0}); // the slider follows without being heard
    QCOMPARE(told.Take(), QStringLiteral("host value data"));
    QCOMPARE(f.slider->Value(0), 7);
}

void TestYDCurvesWidget::MovingBoundsTheSlider()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 0}, {100, 100}, {200, 200}, {255, 255}}));
    QCOMPARE(f.slider->HighestValue(0), 96);
    QCOMPARE(f.slider->LowestValue(1), 204);
    f.widget.MovePoint(1, {50, 100});
    QCOMPARE(f.slider->HighestValue(0), 46);
    f.widget.MovePoint(2, {220, 200});
    QCOMPARE(f.slider->LowestValue(1), 224);
    f.widget.MovePoint(3, {230, 255});
    QCOMPARE(f.slider->Value(1), 230);
    f.widget.SetValue(Params());
    f.widget.MovePoint(0, {40, 0}); // the two ends bound each other
    QCOMPARE(f.slider->LowestValue(1), 44);
    f.widget.MovePoint(1, {200, 255});
    QCOMPARE(f.slider->HighestValue(0), 196);
}

void TestYDCurvesWidget::InsertingAndRemovingBoundTheSlider()
{
    Fixture f;
    const auto bounds = [&f] { return QPoint(f.slider->HighestValue(0), f.slider->LowestValue(1)); };
    Told told(f.widget);
    QVERIFY(f.widget.InsertPoint({100, 100}));
    QCOMPARE(bounds(), QPoint(96, 104));
    QVERIFY(f.widget.InsertPoint({200, 200}));
    QCOMPARE(bounds(), QPoint(96, 204));
    QVERIFY(f.widget.InsertPoint({50, 50}));
    QCOMPARE(bounds(), QPoint(46, 204));
    QCOMPARE(told.Take(), QStringLiteral("node node node"));
    f.slider->ChangeValue(0, 255); // as far as the new point lets both of them
    QCOMPARE(f.slider->Value(0), 46);
    QCOMPARE(f.Composite()[0], QPoint(46, 0));
    f.widget.RemovePoint(1);
    QCOMPARE(bounds(), QPoint(96, 204));
    f.widget.RemovePoint(2);
    QCOMPARE(bounds(), QPoint(96, 104));
    f.widget.RemovePoint(1);
    QCOMPARE(bounds(), QPoint(251, 50));
    QCOMPARE(f.slider->Value(0), 46);
    QCOMPARE(f.slider->Value(1), 255);
}

void TestYDCurvesWidget::NeighboursBoundTheHandlesOfAnyList_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<int>("highestFirst");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("lowestLast");
    QTest::addColumn<int>("last");
    QTest::newRow("as a grey pick leaves them")
        << Points({{10, 0}, {12, 128}, {13, 255}}) << 8 << 8 << 16 << 16;
    QTest::newRow("two ends") << Points({{100, 0}, {101, 255}}) << 97 << 97 << 104 << 104;
    QTest::newRow("equal x") << Points({{0, 0}, {0, 128}, {255, 128}, {255, 255}}) << 0 << 0 << 255 << 255;
    QTest::newRow("at the left") << Points({{1, 0}, {2, 255}}) << 0 << 0 << 5 << 5;
    QTest::newRow("at the right") << Points({{253, 0}, {254, 255}}) << 250 << 250 << 255 << 255;
    QTest::newRow("beyond the levels") << Points({{-50, 0}, {300, 255}}) << 255 << 0 << 0 << 255;
    QTest::newRow("out of order") << Points({{200, 0}, {100, 9}, {50, 255}}) << 96 << 96 << 104 << 104;
    QTest::newRow("as far as integers get")
        << Points({{Lowest, 0}, {Lowest, 9}, {Highest, 9}, {Highest, 0}}) << 0 << 0 << 255 << 255;
    QTest::newRow("no points") << Points() << 251 << 0 << 4 << 255;
    QTest::newRow("one point") << Points({{77, 50}}) << 251 << 0 << 4 << 255;
}

/// Four off the neighbours, whatever the points of the handles are; what the scale does not have is shown at
/// its end. The points stay as they are.
void TestYDCurvesWidget::NeighboursBoundTheHandlesOfAnyList()
{
    QFETCH(Points, points);
    QFETCH(int, highestFirst);
    QFETCH(int, first);
    QFETCH(int, lowestLast);
    QFETCH(int, last);
    Fixture f;
    f.widget.SetValue(WithComposite(points));
    QCOMPARE(f.slider->HighestValue(0), highestFirst);
    QCOMPARE(f.slider->Value(0), first);
    QCOMPARE(f.slider->LowestValue(1), lowestLast);
    QCOMPARE(f.slider->Value(1), last);
    QCOMPARE(f.Composite(), points);
}

void TestYDCurvesWidget::MovingAMiddlePointLeavesTheHandlesWhereTheyAre()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{10, 0}, {12, 128}, {198, 140}, {200, 255}}));
    QCOMPARE(f.slider->Value(0), 8);
    QCOMPARE(f.slider->Value(1), 202);
    QVERIFY(f.widget.MovePoint(1, {50, 128}));
    QCOMPARE(f.slider->HighestValue(0), 46);
    QCOMPARE(f.slider->Value(0), 8);
    QVERIFY(f.widget.MovePoint(2, {150, 140}));
    QCOMPARE(f.slider->LowestValue(1), 154);
    QCOMPARE(f.slider->Value(1), 202);
    QCOMPARE(f.Composite(), Points({{10, 0}, {50, 128}, {150, 140}, {200, 255}}));
    f.slider->ChangeValue(0, 30);
    f.slider->ChangeValue(1, 160);
    QCOMPARE(f.Composite(), Points({{30, 0}, {50, 128}, {150, 140}, {160, 255}}));
}

/// Here to where its point is already.
void TestYDCurvesWidget::AHandleWhoseMoveIsRefusedGoesBack()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{10, 0}, {12, 128}, {200, 255}}));
    f.widget.MovePoint(1, {50, 128});
    QCOMPARE(f.slider->Value(0), 8);
    Told told(f.widget);
    f.slider->ChangeValue(0, 10);
    QCOMPARE(told.Take(), QString());
    QCOMPARE(f.slider->Value(0), 10);
    // The points of a channel that shows no nodes stay, and so do its handles.
    Points many;
    for (int i = 0; i < 5000; ++i)
        many.append({i / 20, 7});
    f.widget.SetValue(WithComposite(many));
    const int last = f.slider->Value(1);
    f.slider->ChangeValue(1, 255);
    QCOMPARE(f.Composite(), many);
    QCOMPARE(f.slider->Value(1), last);
}

void TestYDCurvesWidget::NeighboursBoundTheEndPoints()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 0}, {100, 100}, {255, 255}}));
    QCOMPARE(f.slider->HighestValue(0), 96);
    f.slider->ChangeValue(0, 97);
    QCOMPARE(f.Composite()[0].x(), 96);
    f.slider->ChangeValue(0, 0);
    QVERIFY(!f.widget.MovePoint(0, {97, 0}));
    QVERIFY(f.widget.MovePoint(0, {96, 0}));
    QVERIFY(!f.widget.MovePoint(2, {103, 255}));
    QVERIFY(f.widget.MovePoint(2, {104, 255}));
    QCOMPARE(f.slider->Value(0), 96);
    QCOMPARE(f.slider->Value(1), 104);
    f.slider->ChangeValue(0, 250);
    QCOMPARE(f.Composite()[0].x(), 96);
}

void TestYDCurvesWidget::LosingTheFocusDeselects()
{
    Fixture f;
    f.ClickScene(128, 127);
    QCOMPARE(f.SunkenNode(), 1);
    f.channel->setFocus();
    QCOMPARE(f.SunkenNode(), -1);
    QVERIFY(!f.AreDeleteButtonsEnabled());
}

void TestYDCurvesWidget::DeleteRemovesTheCurrentPoint()
{
    Fixture f;
    f.ClickScene(128, 127);
    f.ClickScene(60, 195);
    QCOMPARE(f.Composite().size(), 4);
    QTest::keyClick(f.view, Qt::Key_Delete);
    QCOMPARE(f.Composite(), Points({{0, 0}, {128, 128}, {255, 255}}));
    QCOMPARE(f.Nodes().size(), 3);
    QCOMPARE(f.SunkenNode(), -1);
    QVERIFY(!f.AreDeleteButtonsEnabled());
    QCOMPARE(f.Curve(), YDCurvesWidget::BuildSpline(f.Composite()));
    QTest::keyClick(f.view, Qt::Key_Delete); // nothing is current now
    QCOMPARE(f.Composite().size(), 3);
    f.ClickPoint({128, 128});
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier); // as it comes without a shortcut
    QApplication::sendEvent(f.view->scene(), &key);
    QCOMPARE(f.Composite(), Straight);
}

void TestYDCurvesWidget::DeleteButtonsRemoveTheCurrentPoint_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("beside the fields") << "m_pDeletePoint1";
    QTest::newRow("beside the pickers") << "m_pDeletePoint2";
}

void TestYDCurvesWidget::DeleteButtonsRemoveTheCurrentPoint()
{
    QFETCH(QString, name);
    Fixture f;
    f.ClickScene(128, 127);
    QTest::mouseClick(f.Child<QToolButton>(qPrintable(name)), Qt::LeftButton);
    QCOMPARE(f.Composite(), Straight);
    QVERIFY(!f.AreDeleteButtonsEnabled());
}

void TestYDCurvesWidget::EndPointsAreNeverRemoved()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 0}, {100, 150}, {255, 255}}));
    for (const QPoint& end : {QPoint(0, 0), QPoint(255, 255)}) {
        f.ClickPoint(end);
        QVERIFY(f.SunkenNode() >= 0);
        QVERIFY(!f.AreDeleteButtonsEnabled());
        QTest::keyClick(f.view, Qt::Key_Delete);
        f.widget.OnDeletePoint(false);
        QCOMPARE(f.Composite().size(), 3);
        QVERIFY(!f.AreDeleteButtonsEnabled());
    }
    for (const int index : {-1, 0, 2, 3})
        f.widget.RemovePoint(index);
    QCOMPARE(f.Composite().size(), 3);
}

void TestYDCurvesWidget::DeleteDoesNothingWhileTheMouseIsDown()
{
    Fixture f;
    f.widget.InsertPoint({128, 128});
    QWindow* const window = f.widget.windowHandle();
    const QPoint place = f.view->viewport()->mapTo(&f.widget, f.PlaceOf({128, 128}));
    QTest::mousePress(window, Qt::LeftButton, Qt::KeyboardModifiers(), place); // as the system sends it
    QCOMPARE(QApplication::mouseButtons(), Qt::MouseButtons(Qt::LeftButton));
    QVERIFY(f.view->scene()->hasFocus());
    f.widget.OnDeleteAction();
    QCOMPARE(f.Composite().size(), 3);
    QTest::mouseRelease(window, Qt::LeftButton, Qt::KeyboardModifiers(), place);
    f.widget.OnDeleteAction();
    QCOMPARE(f.Composite().size(), 2);
}

void TestYDCurvesWidget::RemovingAnnouncesOnceInOrder()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 0}, {100, 150}, {255, 255}}));
    Told told(f.widget);
    f.widget.RemovePoint(1);
    QCOMPARE(told.Take(), QStringLiteral("host value data node"));
}

void TestYDCurvesWidget::TheSliderMovesTheEndPoints()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 10}, {100, 150}, {255, 240}}));
    Told told(f.widget);
    f.slider->ChangeValue(0, 30);
    QCOMPARE(f.Composite()[0], QPoint(30, 10));
    QCOMPARE(f.SunkenNode(), 0);
    QCOMPARE(f.input->text() + QLatin1Char(' ') + f.output->text(), QStringLiteral("30 10"));
    QCOMPARE(told.Take(), QStringLiteral("host value data node"));
    f.slider->ChangeValue(1, 222);
    QCOMPARE(f.Composite()[2], QPoint(222, 240));
    QCOMPARE(f.SunkenNode(), 2);
    f.slider->ChangeValue(0, 255);
    QCOMPARE(f.Composite()[0], QPoint(96, 10));
    f.widget.OnInputChanged(2, 50);
    QCOMPARE(f.Composite(), Points({{96, 10}, {100, 150}, {222, 240}}));
}

void TestYDCurvesWidget::LettingGoOfTheSliderDeselects()
{
    Fixture f;
    const QPoint handle(int(f.slider->PositionOf(0)), f.slider->ControlRect(0).center().y());
    QTest::mousePress(f.slider, Qt::LeftButton, Qt::KeyboardModifiers(), handle);
    MoveMouse(f.slider, {int(f.slider->PositionOf(50)), handle.y()}, Qt::LeftButton);
    QVERIFY(std::abs(f.Composite()[0].x() - 50) <= 1);
    QCOMPARE(f.SunkenNode(), 0);
    QTest::mouseRelease(f.slider, Qt::LeftButton, Qt::KeyboardModifiers(), handle);
    QCOMPARE(f.SunkenNode(), -1);
}

void TestYDCurvesWidget::AChannelShowsItsCurve()
{
    Fixture f;
    Params params;
    params.curves[2] = {{20, 30}, {90, 100}, {150, 40}, {210, 220}};
    f.widget.SetValue(params);
    f.ClickPoint({0, 0});
    f.channel->setCurrentIndex(2);
    QCOMPARE(f.widget.GetValue().channel, 2);
    QCOMPARE(f.Nodes().size(), 4);
    QCOMPARE(f.SunkenNode(), -1);
    QCOMPARE(f.Curve(), YDCurvesWidget::BuildSpline(params.curves[2]));
    QCOMPARE(f.slider->Value(0), 20);
    QCOMPARE(f.slider->Value(1), 210);
    QCOMPARE(f.slider->HighestValue(0), 86);
    QCOMPARE(f.slider->LowestValue(1), 154);
    QCOMPARE(f.input->text() + QLatin1Char(' ') + f.output->text(), QStringLiteral("20 30"));
    QCOMPARE(f.Child<HistogramWidget>("m_pHistogramm")->GetChannel(), 2);
    f.ClickPoint({90, 100});
    QTest::keyClick(f.view, Qt::Key_Delete);
    QCOMPARE(f.widget.GetValue().curves[2], Points({{20, 30}, {150, 40}, {210, 220}}));
    QCOMPARE(f.Composite(), Straight);
    f.slider->ChangeValue(1, 180); // the slots are connected again
    QCOMPARE(f.widget.GetValue().curves[2].last(), QPoint(180, 220));
}

void TestYDCurvesWidget::ChoosingAChannelAnnouncesNoData()
{
    Fixture f;
    Told told(f.widget);
    f.channel->setCurrentIndex(3);
    QCOMPARE(told.Take(), QStringLiteral("node host value"));
    QCOMPARE(YDCurvesWidget::IndexToHistogrammChannel(0), 7);
    QCOMPARE(YDCurvesWidget::IndexToHistogrammChannel(1), 1);
    QCOMPARE(YDCurvesWidget::IndexToHistogrammChannel(2), 2);
    QCOMPARE(YDCurvesWidget::IndexToHistogrammChannel(3), 4);
    QCOMPARE(YDCurvesWidget::IndexToHistogrammChannel(-1), 7);
    QCOMPARE(YDCurvesWidget::IndexToHistogrammChannel(4), 7);
}

/// The channel box is heard, and it shows the channel before anything else follows.
void TestYDCurvesWidget::SettingAChannelSpeaksForItsControls()
{
    Fixture f;
    Params params;
    params.curves[1] = {{200, 0}, {255, 255}};
    params.curves[2] = {{20, 30}, {90, 100}, {150, 40}, {210, 220}};
    params.channel = 1;
    f.widget.SetValue(params);
    params.channel = 2;
    Told told(f.widget);
    f.widget.SetChannel(2);
    QCOMPARE(told.Take(), QStringLiteral("node host value node"));
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
    QCOMPARE(f.channel->currentIndex(), 2);
    QCOMPARE(f.Nodes().size(), 4);
    QCOMPARE(f.slider->Value(0), 20);
    QCOMPARE(f.slider->Value(1), 210);
    f.widget.SetChannel(2);
    QCOMPARE(told.Take(), QStringLiteral("node"));
    f.slider->ChangeValue(0, 30); // heard once, as before
    QCOMPARE(told.Take(), QStringLiteral("host value data node"));
    f.channel->setCurrentIndex(0);
    QCOMPARE(told.Take(), QStringLiteral("node host value"));
    f.widget.SetChannel(Highest); // shown as the composite one, and kept
    QCOMPARE(told.Take(), QStringLiteral("node"));
    QCOMPARE(f.widget.GetValue().channel, Highest);
    f.widget.SetChannel(3);
    f.widget.SetChannel(Lowest);
    QCOMPARE(f.channel->currentIndex(), 0);
    QCOMPARE(f.widget.GetValue().channel, Lowest);
}

/// With the channel box silent nobody else brings the slider along: a handle that a new bound pushes moves
/// its point, and moves it back when it is set to where the point was.
void TestYDCurvesWidget::ASliderThatFollowsTheChannelIsHeard()
{
    Fixture f;
    Params params = WithComposite({{200, 0}, {255, 255}});
    params.curves[1] = {{0, 10}, {100, 100}, {255, 255}};
    f.widget.SetValue(params);
    const QSignalBlocker silence(f.channel);
    Told told(f.widget);
    f.widget.SetChannel(1);
    QCOMPARE(told.Take(), QStringLiteral("host value data node host value data node node"));
    QCOMPARE(f.slider->Value(0), 0);
    params.channel = 1;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
}

/// A listener may take away the very node that is being pressed or dragged.
void TestYDCurvesWidget::ADragMaySurviveAResetInAListener()
{
    Fixture f;
    f.widget.SetValue(WithComposite({{0, 0}, {100, 150}, {255, 255}}));
    const auto reset = [&f] {
        if (f.Composite().size() > 2)
            f.widget.Reset();
    };
    const auto onPress = connect(&f.widget, &YDCurvesWidget::CurrentNodeChanged, this, reset);
    f.Press(f.PlaceOf({100, 150}));
    f.DragTo({110, 150});
    f.Release(f.PlaceOf({110, 150}));
    QCOMPARE(f.Composite(), Straight);
    disconnect(onPress);
    f.widget.SetValue(WithComposite({{0, 0}, {100, 150}, {255, 255}}));
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this, reset);
    f.Press(f.PlaceOf({100, 150}));
    f.DragTo({110, 150});
    f.DragTo({120, 150});
    f.Release(f.PlaceOf({120, 150}));
    QCOMPARE(f.Composite(), Straight);
}

/// Who hears of the current node may set another record while one is being set.
void TestYDCurvesWidget::ControlsAreHeardOnceAfterARecordWithinARecord()
{
    Fixture f;
    connect(&f.widget, &YDCurvesWidget::CurrentNodeChanged, this, [&f] {
        if (f.Composite().size() > 2)
            f.widget.SetValue(Params());
    });
    f.widget.SetValue(WithComposite({{0, 0}, {100, 150}, {255, 255}}));
    QCOMPARE(f.Composite(), Straight);
    Told told(f.widget);
    f.slider->ChangeValue(0, 30);
    QCOMPARE(told.Take(), QStringLiteral("host value data node"));
    f.channel->setCurrentIndex(1);
    QCOMPARE(told.Take(), QStringLiteral("node host value"));
}

void TestYDCurvesWidget::ShortListsCannotBeEdited_data()
{
    QTest::addColumn<Points>("points");
    QTest::newRow("empty") << Points();
    QTest::newRow("one point") << Points({{40, 50}});
}

void TestYDCurvesWidget::ShortListsCannotBeEdited()
{
    QFETCH(Points, points);
    Fixture f;
    f.widget.SetValue(WithComposite(points));
    QVERIFY(f.Curve().isEmpty());
    QVERIFY(f.Nodes().isEmpty());
    QVERIFY(!f.slider->isEnabled());
    QVERIFY(!f.widget.InsertPoint({128, 128}));
    QVERIFY(!f.widget.MovePoint(0, {10, 10}));
    f.widget.RemovePoint(0);
    f.widget.OnInputChanged(0, 20);
    f.widget.OnInputChanged(1, 20);
    f.ClickScene(128, 127);
    f.DragTo({60, 60});
    QTest::keyClick(f.view, Qt::Key_Delete);
    QCOMPARE(f.Composite(), points);
    const RGBA32iImage source = TestPictures::Noise(100, 50);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
    f.widget.Reset();
    QVERIFY(f.slider->isEnabled());
    QVERIFY(f.widget.InsertPoint({128, 128}));
}

void TestYDCurvesWidget::AnyListIsShownAndAppliedWithoutHarm_data()
{
    QTest::addColumn<Points>("points");
    QTest::newRow("out of order") << Points({{200, 10}, {100, 20}, {0, 30}});
    QTest::newRow("out of range") << Points({{-50, 300}, {100, -40}, {300, -50}});
    QTest::newRow("one point twice") << Points({{40, 40}, {40, 40}});
    QTest::newRow("far out") << Points({{Lowest, Highest}, {Highest, Lowest}});
    QTest::newRow("far out, in the middle") << Points({{0, 0}, {Lowest, Lowest}, {Highest, 9}, {9, 9}});
    Points many(2000);
    QRandomGenerator random(5);
    for (QPoint& point : many)
        point = {random.bounded(256), random.bounded(256)};
    QTest::newRow("two thousand") << many;
    Points veryMany;
    for (int i = 0; i < 1000 / SanitizerShare; ++i)
        veryMany += many;
    QTest::newRow("very many") << veryMany;
}

void TestYDCurvesWidget::AnyListIsShownAndAppliedWithoutHarm()
{
    QFETCH(Points, points);
    Fixture f;
    const Params params = WithComposite(points);
    f.widget.SetValue(params);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
    QCOMPARE(f.Nodes().size(), points.size() <= 4096 ? points.size() : 0);
    f.widget.grab();
    const RGBA32iImage source = TestPictures::Noise(100, 50);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Applied(params, source)));
    // Every way to edit it, wherever it hits.
    QRandomGenerator gesture(6);
    for (int i = 0; i < 50 / SanitizerShare; ++i) {
        f.Press(f.Place(QPointF(gesture.bounded(256), gesture.bounded(256))));
        f.DragTo({gesture.bounded(256), gesture.bounded(256)});
        if (i % 3 == 0)
            QTest::keyClick(f.view, Qt::Key_Delete);
        f.slider->ChangeValue(uint(i % 2), gesture.bounded(256));
    }
    for (const int index : {-1, 0, 1, points.size() - 1, points.size(), Highest, Lowest}) {
        f.widget.MovePoint(index, {Lowest, Lowest});
        f.widget.MovePoint(index, {Highest, Highest});
        f.widget.RemovePoint(index);
    }
    f.widget.InsertPoint({Highest, 3});
    f.widget.grab();
    QVERIFY(f.Nodes().size() == f.Composite().size() || f.Nodes().isEmpty());
    for (int channel = 3; channel >= 0; --channel)
        f.channel->setCurrentIndex(channel);
    const QSignalBlocker silence(f.channel);
    for (const int channel : {3, 0, 1, 0, Lowest, 2, Highest})
        f.widget.SetChannel(channel);
    f.widget.Reset();
    QCOMPARE(f.Nodes().size(), 2);
}

void TestYDCurvesWidget::AnyChannelIsKeptAndShownAsComposite_data()
{
    QTest::addColumn<int>("channel");
    QTest::newRow("below") << -1;
    QTest::newRow("above") << 4;
    QTest::newRow("lowest") << Lowest;
    QTest::newRow("highest") << Highest;
}

void TestYDCurvesWidget::AnyChannelIsKeptAndShownAsComposite()
{
    QFETCH(int, channel);
    Fixture f;
    Params params = WithComposite({{10, 0}, {100, 100}, {255, 255}});
    params.channel = channel;
    f.widget.SetValue(params);
    QCOMPARE(f.widget.GetValue().channel, channel);
    QCOMPARE(f.channel->currentIndex(), 0);
    QCOMPARE(f.Nodes().size(), 3);
    f.slider->ChangeValue(0, 20);
    QCOMPARE(f.Composite()[0].x(), 20);
    QCOMPARE(f.widget.GetValue().channel, channel);
    f.channel->setCurrentIndex(1);
    QCOMPARE(f.widget.GetValue().channel, 1);
}

void TestYDCurvesWidget::HostileCountsLoadAsDefaults_data()
{
    QTest::addColumn<QByteArray>("count");
    QTest::newRow("2^31 - 1") << QByteArray::fromHex("7fffffff");
    QTest::newRow("2^32 - 1") << QByteArray::fromHex("ffffffff");
    QTest::newRow("what would take 2 GB") << QByteArray::fromHex("0fffffff");
}

void TestYDCurvesWidget::HostileCountsLoadAsDefaults()
{
    QFETCH(QByteArray, count);
    for (int list = 0; list < 4; ++list) {
        const QByteArray bytes = QByteArray("KVCurves 1.00000") + QByteArray(4 + 4 * list, '\0') + count;
        QDataStream stream(bytes);
        Params params = WithComposite({{5, 6}});
        QTest::ignoreMessage(QtDebugMsg, "[src/YDCurvesWidget:1626] Read curves data error.");
        stream >> params;
        QVERIFY(YDRecord::Equal(params, Params()));
        QVERIFY(stream.status() != QDataStream::Ok);
    }
}

void TestYDCurvesWidget::ListsAreReadWhateverTheyHold()
{
    Params params;
    params.channel = -9;
    params.curves = {Points({{300, -5}, {2, 7}}), Points(), Points({{1, 1}}), Points(2000, QPoint(9, 9))};
    const QByteArray bytes = Written(params);
    QDataStream stream(bytes);
    Params read;
    QVERIFY(read.Read(stream));
    QVERIFY(YDRecord::Equal(read, params));
}

void TestYDCurvesWidget::AveragesAreTruncatedMeans()
{
    const RGBA32iImage image(3, 2);
    for (int i = 0; i < 6; ++i)
        image.Row(i / 3)[i % 3] = YDRGBA32i(quint8(10 * i), quint8(i), quint8(255 - i), quint8(i));
    // Over the right four pixels: blue 10, 20, 40, 50; green 1, 2, 4, 5; red 254, 253, 251, 250.
    QVERIFY(YDCurvesWidget::CalcAvgColor(image, QRect(1, 0, 2, 2), YDRGBA32i()) ==
            YDRGBA32i(30, 3, 252, 255));
    // Over the first two: 0 and 10, 0 and 1, 255 and 254, rounded down.
    QVERIFY(YDCurvesWidget::CalcAvgColor(image, QRect(0, 0, 2, 1), YDRGBA32i()) == YDRGBA32i(5, 0, 254, 255));
}

void TestYDCurvesWidget::AveragesClipAndFallBack_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<bool>("isFallback");
    QTest::newRow("empty") << QRect() << true;
    QTest::newRow("without width") << QRect(2, 2, 0, 5) << true;
    QTest::newRow("negative") << QRect(2, 2, -1, 5) << true;
    QTest::newRow("left of it") << QRect(-5, 0, 5, 5) << true;
    QTest::newRow("right of it") << QRect(10, 0, 5, 5) << true;
    QTest::newRow("below it") << QRect(0, 10, 5, 5) << true;
    QTest::newRow("above it") << QRect(0, -5, 5, 5) << true;
    QTest::newRow("over its corner") << QRect(-5, -5, 7, 7) << false;
    QTest::newRow("around it") << QRect(-100, -100, 1000, 1000) << false;
    QTest::newRow("as large as can be") << QRect(QPoint(Lowest, Lowest), QPoint(Highest, Highest)) << false;
}

void TestYDCurvesWidget::AveragesClipAndFallBack()
{
    QFETCH(QRect, rect);
    QFETCH(bool, isFallback);
    const YDRGBA32i fallback(1, 2, 3, 4);
    const YDRGBA32i average = YDCurvesWidget::CalcAvgColor(TestPictures::Grey(10, 10, 77), rect, fallback);
    QVERIFY(average == (isFallback ? fallback : YDRGBA32i(77, 77, 77, 255)));
    QVERIFY(YDCurvesWidget::CalcAvgColor(RGBA32iImage(), rect, fallback) == fallback);
}

/// 4200 x 4100 pixels of 255 sum up to 4 391 100 000, which is 96 132 704 in 32 bits, 5.58 a pixel.
void TestYDCurvesWidget::AveragesOfVeryManyPixelsWrapAround()
{
    const RGBA32iImage image = TestPictures::Grey(4200, 4100, 255);
    QVERIFY(YDCurvesWidget::CalcAvgColor(image, QRect(0, 0, 4200, 4100), YDRGBA32i()) ==
            YDRGBA32i(5, 5, 5, 255));
}

void TestYDCurvesWidget::APickedColourSetsThePoints_data()
{
    QTest::addColumn<QString>("picker");
    QTest::addColumn<QVector<int>>("color"); // red, green, blue
    QTest::addColumn<Points>("red");
    QTest::addColumn<QVector<Points>>("expected");
    QTest::newRow("black on straight curves")
        << "m_pBlack" << QVector<int>{40, 50, 60} << Straight
        << QVector<Points>{{{40, 0}, {255, 255}}, {{50, 0}, {255, 255}}, {{60, 0}, {255, 255}}};
    QTest::newRow("black on an inverted curve")
        << "m_pBlack" << QVector<int>{40, 50, 60} << Points({{0, 255}, {255, 0}})
        << QVector<Points>{{{0, 255}, {40, 0}}, {{50, 0}, {255, 255}}, {{60, 0}, {255, 255}}};
    QTest::newRow("white on straight curves")
        << "m_pWhite" << QVector<int>{240, 230, 220} << Straight
        << QVector<Points>{{{0, 0}, {240, 255}}, {{0, 0}, {230, 255}}, {{0, 0}, {220, 255}}};
    QTest::newRow("gray on five points") << "m_pGray" << QVector<int>{120, 130, 140}
                                         << Points({{0, 0}, {50, 9}, {90, 8}, {200, 7}, {255, 255}})
                                         << QVector<Points>{{{0, 0}, {120, 128}, {255, 255}},
                                                            {{0, 0}, {130, 128}, {255, 255}},
                                                            {{0, 0}, {140, 128}, {255, 255}}};
}

void TestYDCurvesWidget::APickedColourSetsThePoints()
{
    QFETCH(QString, picker);
    QFETCH(QVector<int>, color);
    QFETCH(Points, red);
    QFETCH(QVector<Points>, expected);
    const RGBA32iImage picture(300, 200);
    for (int y = 0; y < picture.Height(); ++y)
        std::fill_n(picture.Row(y), picture.Width(),
                    YDRGBA32i(quint8(color[2]), quint8(color[1]), quint8(color[0]), 255));
    PickFixture f(picture);
    Params params = WithComposite({{3, 4}, {100, 90}, {250, 251}});
    params.channel = 3;
    params.curves[1] = red;
    f.widget.SetValue(params);
    f.Child<QToolButton>(qPrintable(picker))->setChecked(true);
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    f.DragOnDocument({10, 10}, {20, 20});
    QTRY_COMPARE_WITH_TIMEOUT(data.count(), 1, PatienceMs);
    for (int i = 0; i < 3; ++i)
        params.curves[std::size_t(i) + 1] = expected[i];
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
}

void TestYDCurvesWidget::APickOnAPhotographSetsThePoints_data()
{
    QTest::addColumn<QString>("picker");
    QTest::newRow("black") << "m_pBlack";
    QTest::newRow("gray") << "m_pGray";
    QTest::newRow("white") << "m_pWhite";
}

void TestYDCurvesWidget::APickOnAPhotographSetsThePoints()
{
    QFETCH(QString, picker);
    PickFixture f(Photographs::Load(QStringLiteral("seeding_by_Clements_Engelhardt.jpg"), 1200));
    const Points composite{{0, 0}, {100, 90}, {255, 255}};
    f.widget.SetValue(WithComposite(composite));
    const QPoint from = f.document.mapToScene(100, 80).toPoint();
    const QPoint to = from + QPoint(60, 40);
    const YDRGBA32i color = YDCurvesWidget::CalcAvgColor(f.source, QRect(from, to), YDRGBA32i());
    Told told(f.widget);
    QTest::mouseClick(f.Child<QToolButton>(qPrintable(picker)), Qt::LeftButton);
    f.DragOnDocument(from, to);
    QTRY_VERIFY_WITH_TIMEOUT(f.widget.GetValue().curves[3] != Straight, PatienceMs);
    const int levels[] = {color.r, color.g, color.b};
    for (std::size_t i = 0; i < 3; ++i) {
        const Points expected = picker == QStringLiteral("m_pBlack") ? Points({{levels[i], 0}, {255, 255}})
                                : picker == QStringLiteral("m_pGray")
                                    ? Points({{0, 0}, {levels[i], 128}, {255, 255}})
                                    : Points({{0, 0}, {levels[i], 255}});
        QCOMPARE(f.widget.GetValue().curves[i + 1], expected);
    }
    QCOMPARE(f.Composite(), composite);
    // Windows that gain and lose the focus deselect nodes besides.
    QCOMPARE(told.Take().remove(QStringLiteral("node")).simplified(), QStringLiteral("host value data"));
    QVERIFY(f.Child<QToolButton>(qPrintable(picker))->isChecked()); // for another one
    // What was picked becomes black, grey or white in the preview.
    f.widget.SetValue([&f] {
        Params params = f.widget.GetValue();
        params.curves[0] = Straight;
        return params;
    }());
    const RGBA32iImage spot(1, 1);
    spot.Row(0)[0] = color;
    const RGBA32iImage converted = Converted(f.widget, spot);
    const int tone = picker == QStringLiteral("m_pBlack")  ? 0
                     : picker == QStringLiteral("m_pGray") ? 128
                                                           : 255;
    QVERIFY(converted.Row(0)[0] == YDRGBA32i(quint8(tone), quint8(tone), quint8(tone), 255));
}

void TestYDCurvesWidget::AClickPicksOnePixel()
{
    PickFixture f(TestPictures::Noise(300, 200));
    f.black->setChecked(true);
    f.DragOnDocument({150, 100}, {150, 100});
    const int red = f.source.Row(100)[150].r;
    QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], Points({{red, 0}, {255, 255}}), PatienceMs);
}

void TestYDCurvesWidget::ADragBackwardsByOnePixelPicksNothing_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("green");
    // Columns 100 to 103 have 0, 20, 80 and 180 of red, lines 60 to 63 as much of green.
    QTest::newRow("down to the right") << QPoint(100, 60) << QPoint(103, 63) << 70 << 70;
    QTest::newRow("down to the left") << QPoint(103, 60) << QPoint(100, 63) << 70 << 70;
    QTest::newRow("up to the right") << QPoint(100, 63) << QPoint(103, 60) << 70 << 70;
    QTest::newRow("up to the left") << QPoint(103, 63) << QPoint(100, 60) << 70 << 70;
    QTest::newRow("right by one pixel") << QPoint(100, 60) << QPoint(101, 63) << 10 << 70;
    QTest::newRow("left by two pixels") << QPoint(102, 60) << QPoint(100, 63) << 33 << 70;
    QTest::newRow("up by two pixels") << QPoint(100, 63) << QPoint(103, 61) << 70 << 93;
    // A rectangle without a width or a height is gray to the gray picker.
    QTest::newRow("left by one pixel") << QPoint(101, 60) << QPoint(100, 63) << 128 << 128;
    QTest::newRow("up by one pixel") << QPoint(100, 61) << QPoint(103, 60) << 128 << 128;
}

void TestYDCurvesWidget::ADragBackwardsByOnePixelPicksNothing()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(int, red);
    QFETCH(int, green);
    const int steps[] = {0, 20, 80, 180};
    const RGBA32iImage picture = TestPictures::Grey(300, 200, 255);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            picture.Row(60 + y)[100 + x] = YDRGBA32i(0, quint8(steps[y]), quint8(steps[x]), 255);
    PickFixture f(picture);
    f.gray->setChecked(true);
    f.DragOnDocument(from, to);
    QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], Points({{0, 0}, {red, 128}, {255, 255}}),
                              PatienceMs);
    QCOMPARE(f.widget.GetValue().curves[2], Points({{0, 0}, {green, 128}, {255, 255}}));
}

void TestYDCurvesWidget::CornersMayBeAsFarAsIntegersGet()
{
    const QPoint corners[] = {{Lowest, Lowest}, {Highest, Highest}};
    for (const int first : {0, 1}) {
        PickFixture f(TestPictures::Grey(100, 50, 200));
        f.gray->setChecked(true);
        f.widget.MousePressed(corners[first], Qt::LeftButton);
        f.widget.MouseReleased(corners[1 - first], Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], Points({{0, 0}, {200, 128}, {255, 255}}),
                                  PatienceMs);
    }
}

void TestYDCurvesWidget::APickOutsideThePictureYieldsTheFallback_data()
{
    QTest::addColumn<QString>("picker");
    QTest::addColumn<Points>("expected");
    QTest::newRow("black") << "m_pBlack" << Points({{0, 0}, {200, 220}});
    QTest::newRow("gray") << "m_pGray" << Points({{30, 40}, {128, 128}, {200, 220}});
    QTest::newRow("white") << "m_pWhite" << Points({{30, 40}, {255, 255}});
}

void TestYDCurvesWidget::APickOutsideThePictureYieldsTheFallback()
{
    QFETCH(QString, picker);
    QFETCH(Points, expected);
    PickFixture f(TestPictures::Grey(100, 50, 200));
    Params params;
    params.curves[1] = {{30, 40}, {200, 220}};
    f.widget.SetValue(params);
    f.Child<QToolButton>(qPrintable(picker))->setChecked(true);
    f.widget.MousePressed({500, 500}, Qt::LeftButton);
    f.widget.MouseReleased({600, 600}, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], expected, PatienceMs);
}

void TestYDCurvesWidget::PointsWithEqualXAfterAPickDoNoHarm()
{
    PickFixture f(TestPictures::Grey(300, 200, 0));
    f.channel->setCurrentIndex(1);
    f.gray->setChecked(true);
    f.DragOnDocument({10, 10}, {20, 20}); // grey goes where black is
    const Points expected{{0, 0}, {0, 128}, {255, 255}};
    QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], expected, PatienceMs);
    QCOMPARE(f.Nodes().size(), 3);
    QCOMPARE(f.Curve(), YDCurvesWidget::BuildSpline(expected));
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, f.source), Applied(f.widget.GetValue(), f.source)));
    QCOMPARE(int(Converted(f.widget, f.source).Row(0)[0].r), 128);
    f.ClickPoint({0, 128});
    f.DragTo({3, 128}); // still too near
    QCOMPARE(f.widget.GetValue().curves[1], expected);
    f.DragTo({4, 120});
    QCOMPARE(f.widget.GetValue().curves[1], Points({{0, 0}, {4, 120}, {255, 255}}));
}

void TestYDCurvesWidget::APickWhileAnotherRunsFollowsIt()
{
    const RGBA32iImage picture = TestPictures::Grey(600, 400, 50);
    for (int y = 200; y < 400; ++y)
        std::fill_n(picture.Row(y), 600, YDRGBA32i(90, 90, 90, 255));
    PickFixture f(picture);
    f.black->setChecked(true);
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    f.DragOnDocument({10, 10}, {500, 190});
    f.DragOnDocument({10, 20}, {500, 150});
    f.DragOnDocument({10, 210}, {500, 390});
    QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], Points({{90, 0}, {255, 255}}), PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(data.count(), 2); // the first, and one for both that came meanwhile
}

/// The pick that runs is of the picture before, the one that waits for it of the new one.
void TestYDCurvesWidget::AnotherPictureEndsNoPick()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    f.white->setChecked(true);
    QVector<int> picked;
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this,
            [&] { picked.append(f.widget.GetValue().curves[1].last().x()); });
    f.DragOnDocument({10, 10}, {200, 190});
    f.DragOnDocument({10, 10}, {200, 190}); // pending
    f.widget.SetImage(TestPictures::Grey(300, 200, 90), RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(picked, QVector<int>({50, 90}), PatienceMs);
}

void TestYDCurvesWidget::ResetDropsTheRunningPick()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    f.white->setChecked(true);
    f.DragOnDocument({10, 10}, {200, 190});
    f.DragOnDocument({10, 10}, {200, 190}); // pending
    f.widget.Reset();
    QThreadPool::globalInstance()->waitForDone();
    QTest::qWait(QuietMs);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    f.DragOnDocument({10, 10}, {200, 190});
    QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], Points({{0, 0}, {50, 255}}), PatienceMs);
}

void TestYDCurvesWidget::OnePickerIsCheckedAtATime()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    QToolButton* const pickers[] = {f.black, f.gray, f.white};
    for (QToolButton* const picker : {f.black, f.gray, f.white, f.black}) {
        QTest::mouseClick(picker, Qt::LeftButton);
        for (const QToolButton* const other : pickers)
            QCOMPARE(other->isChecked(), other == picker);
        QCOMPARE(f.CursorShape(), Qt::BitmapCursor);
    }
    f.DragOnDocument({10, 10}, {20, 20}); // the watch went from one to the next
    QTRY_COMPARE_WITH_TIMEOUT(f.widget.GetValue().curves[1], Points({{50, 0}, {255, 255}}), PatienceMs);
    QTest::mouseClick(f.black, Qt::LeftButton);
    f.widget.SetValue(Params());
    f.DragOnDocument({10, 10}, {20, 20});
    QTest::qWait(QuietMs);
    QCOMPARE(f.widget.GetValue().curves[1], Straight);
}

void TestYDCurvesWidget::OfSeveralPickersGrayComesFirstThenBlack_data()
{
    QTest::addColumn<QStringList>("checked");
    QTest::addColumn<Points>("expected");
    const Points gray{{0, 0}, {50, 128}, {255, 255}};
    const Points black{{50, 0}, {255, 255}};
    const Points white{{0, 0}, {50, 255}};
    QTest::newRow("all") << QStringList({"m_pBlack", "m_pGray", "m_pWhite"}) << gray;
    QTest::newRow("black and gray") << QStringList({"m_pBlack", "m_pGray"}) << gray;
    QTest::newRow("gray and white") << QStringList({"m_pGray", "m_pWhite"}) << gray;
    QTest::newRow("black and white") << QStringList({"m_pBlack", "m_pWhite"}) << black;
    QTest::newRow("white") << QStringList({"m_pWhite"}) << white;
}

void TestYDCurvesWidget::OfSeveralPickersGrayComesFirstThenBlack()
{
    QFETCH(QStringList, checked);
    QFETCH(Points, expected);
    PickFixture f(TestPictures::Grey(300, 200, 50));
    for (const QString& name : checked) {
        auto* const picker = f.Child<QToolButton>(qPrintable(name));
        const QSignalBlocker blocker(picker); // or it would uncheck the others
        picker->setChecked(true);
    }
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    f.widget.MousePressed({10, 10}, Qt::LeftButton);
    f.widget.MouseReleased({20, 20}, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(data.count(), 1, PatienceMs);
    QCOMPARE(f.widget.GetValue().curves[1], expected);
    QTest::qWait(QuietMs);
    QCOMPARE(data.count(), 1); // the others have not picked as well
}

void TestYDCurvesWidget::NobodyWatchesTheDocumentAfterUnchecking()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    QWidget* const viewport = f.document.viewport();
    for (QToolButton* const picker : {f.black, f.gray, f.white}) {
        picker->setChecked(true);
        QTest::mousePress(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
        QCOMPARE(f.document.dragMode(), QGraphicsView::RubberBandDrag);
        picker->setChecked(false);
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
        QTest::mousePress(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
        QCOMPARE(f.document.dragMode(), QGraphicsView::NoDrag);
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
    }
}

void TestYDCurvesWidget::APickerTakesAndGivesBackCursorAndDragMode()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    QCOMPARE(f.CursorShape(), Qt::ArrowCursor);
    f.gray->setChecked(true);
    QCOMPARE(f.CursorShape(), Qt::BitmapCursor);
    QCOMPARE(f.document.viewport()->cursor().hotSpot(), QPoint(2, 14));
    // There are images for one and for two pixels to the unit; a screen between them takes the finer one.
    QCOMPARE(f.document.viewport()->cursor().pixmap().devicePixelRatio(),
             std::ceil(f.document.devicePixelRatioF()));
    QCOMPARE(f.document.dragMode(), QGraphicsView::NoDrag);
    QWidget* const viewport = f.document.viewport();
    QTest::mousePress(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
    QCOMPARE(f.document.dragMode(), QGraphicsView::RubberBandDrag);
    MoveMouse(viewport, f.DocumentPlace({90, 70}), Qt::LeftButton);
    QVERIFY(!f.document.rubberBandRect().isEmpty());
    QCOMPARE(f.CursorShape(), Qt::BitmapCursor);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({90, 70}));
    QCOMPARE(f.document.dragMode(), QGraphicsView::NoDrag);
    QVERIFY(f.document.rubberBandRect().isEmpty());
    f.gray->setChecked(false);
    QCOMPARE(f.CursorShape(), Qt::ArrowCursor);
}

void TestYDCurvesWidget::OtherMouseButtonsDoNotPick()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    f.black->setChecked(true);
    QWidget* const viewport = f.document.viewport();
    QTest::mouseClick(viewport, Qt::RightButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
    QCOMPARE(f.document.dragMode(), QGraphicsView::NoDrag);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
    QTest::qWait(QuietMs);
    QCOMPARE(f.widget.GetValue().curves[1], Straight);
}

void TestYDCurvesWidget::UncheckingWhileDraggingEndsTheDrag()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    f.black->setChecked(true);
    QWidget* const viewport = f.document.viewport();
    QTest::mousePress(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({20, 20}));
    f.black->setChecked(false);
    QCOMPARE(f.document.dragMode(), QGraphicsView::NoDrag);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({90, 90}));
    f.black->setChecked(true);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::KeyboardModifiers(), f.DocumentPlace({90, 90}));
    QTest::qWait(QuietMs);
    QCOMPARE(f.widget.GetValue().curves[1], Straight);
}

void TestYDCurvesWidget::AnotherViewUnchecksThePickers()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    KVDocumentView other;
    other.SetImage(f.source);
    f.black->setChecked(true);
    f.widget.SetView(&other);
    QVERIFY(!f.black->isChecked());
    QCOMPARE(f.CursorShape(), Qt::ArrowCursor);
    f.DragOnDocument({10, 10}, {20, 20}); // the old view is not watched any more
    f.white->setChecked(true);
    QCOMPARE(other.viewport()->cursor().shape(), Qt::BitmapCursor);
    QCOMPARE(f.CursorShape(), Qt::ArrowCursor);
    f.widget.SetView(nullptr);
    QVERIFY(!f.white->isChecked());
    QCOMPARE(other.viewport()->cursor().shape(), Qt::ArrowCursor);
    f.gray->setChecked(true);
    f.gray->setChecked(false);
    QTest::qWait(QuietMs);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    // What the shell does with a view is still done.
    f.widget.SetView(&f.document);
    auto* const preview = f.Child<QAbstractButton>("m_pPreviewSlider");
    preview->setChecked(!preview->isChecked());
    QCOMPARE(f.document.IsSplitterHidden(), preview->isChecked());
}

void TestYDCurvesWidget::AnotherViewShowsItsOwnCursor()
{
    PickFixture f(TestPictures::Grey(300, 200, 50));
    KVDocumentView other;
    other.SetImage(f.source);
    other.SetOverrideCursor(Qt::CrossCursor); // of whoever had it before
    f.black->setChecked(true);
    f.widget.MousePressed({1, 1}, Qt::LeftButton);
    f.widget.SetView(&other);
    QCOMPARE(other.viewport()->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(f.CursorShape(), Qt::ArrowCursor);
    QCOMPARE(f.document.dragMode(), QGraphicsView::NoDrag);
    for (KVDocumentView* const view : {&other, &f.document}) { // neither is watched
        QTest::mousePress(view->viewport(), Qt::LeftButton);
        QCOMPARE(view->dragMode(), QGraphicsView::NoDrag);
        QTest::mouseRelease(view->viewport(), Qt::LeftButton);
    }
    // A view without a scene cannot be watched, but had the pipette.
    KVDocumentView bare;
    bare.setScene(nullptr);
    f.widget.SetView(&bare);
    f.white->setChecked(true);
    QCOMPARE(bare.viewport()->cursor().shape(), Qt::BitmapCursor);
    f.widget.SetView(&f.document);
    QCOMPARE(bare.viewport()->cursor().shape(), Qt::ArrowCursor);
}

void TestYDCurvesWidget::TheViewMayGoWhileAPickerIsChecked()
{
    for (const bool isDragging : {false, true}) {
        Fixture f;
        auto view = std::make_unique<KVDocumentView>();
        view->SetImage(TestPictures::Grey(300, 200, 50));
        f.widget.SetView(view.get());
        f.black->setChecked(true);
        if (isDragging)
            f.widget.MousePressed({1, 1}, Qt::LeftButton);
        view.reset();
        f.widget.MouseReleased({5, 5}, Qt::LeftButton); // of no picture: the fallback
        f.gray->setChecked(true);
        f.widget.SetView(nullptr);
        QVERIFY(!f.gray->isChecked());
    }
    Fixture f;
    KVDocumentView view;
    f.widget.SetView(&view);
    f.white->setChecked(true);
    delete view.scene();
    f.gray->setChecked(true);
    f.gray->setChecked(false);
    QGraphicsScene scene;
    view.setScene(&scene);
    f.gray->setChecked(true);
    QTest::mousePress(view.viewport(), Qt::LeftButton);
    f.widget.SetView(nullptr);
    QCOMPARE(view.dragMode(), QGraphicsView::NoDrag);
}

void TestYDCurvesWidget::TheWidgetMayGoWhileAPickerIsChecked_data()
{
    QTest::addColumn<int>("picks");
    QTest::newRow("dragging") << 0;
    QTest::newRow("one runs") << 1;
    QTest::newRow("one runs, one is pending") << 2;
}

void TestYDCurvesWidget::TheWidgetMayGoWhileAPickerIsChecked()
{
    QFETCH(int, picks);
    KVDocumentView view;
    view.SetImage(TestPictures::Grey(300, 200, 50));
    {
        YDCurvesWidget widget(true, nullptr, Qt::WindowFlags());
        widget.SetImage(TestPictures::Noise(2000, 1500), RGBA32iImage(), QPoint(), QRect());
        widget.SetView(&view);
        widget.findChild<QToolButton*>(QStringLiteral("m_pGray"))->setChecked(true);
        for (int i = 0; i < picks; ++i) {
            widget.MousePressed({0, 0}, Qt::LeftButton);
            widget.MouseReleased({1999, 1499}, Qt::LeftButton);
        }
        widget.MousePressed({0, 0}, Qt::LeftButton);
        QCOMPARE(view.dragMode(), QGraphicsView::RubberBandDrag);
    }
    QCOMPARE(view.dragMode(), QGraphicsView::NoDrag);
    QCOMPARE(view.viewport()->cursor().shape(), Qt::ArrowCursor);
    QTest::mouseClick(view.viewport(), Qt::LeftButton);
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

void TestYDCurvesWidget::PickersAreSafeInAPanelWithoutAView()
{
    Fixture f(false);
    for (QToolButton* const picker : {f.black, f.gray, f.white}) {
        picker->setChecked(true);
        f.widget.MousePressed({1, 1}, Qt::LeftButton);
        f.widget.MouseReleased({9, 9}, Qt::LeftButton);
    }
    f.widget.SetView(nullptr);
    KVDocumentView view;
    f.widget.SetView(&view);
    f.white->setChecked(true);
    f.widget.SetView(nullptr);
    f.widget.OnBlackFinished(); // nothing has run
    QVERIFY(!f.white->isChecked());
    QThreadPool::globalInstance()->waitForDone();
}

void TestYDCurvesWidget::ConversionAndPreviewApplyTheCurves()
{
    Fixture f;
    Params params = WithComposite({{0, 20}, {90, 60}, {255, 240}});
    params.curves[1] = {{10, 0}, {255, 255}};
    params.curves[3] = {{0, 255}, {255, 0}};
    f.widget.SetValue(params);
    const RGBA32iImage source = TestPictures::Noise(500, 300);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Applied(params, source)));
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Applied(params, source)));
    QVERIFY(!TestPictures::AreEqual(Applied(params, source), source));
    f.Press(f.PlaceOf({90, 60})); // a drag has a preview follow
    f.DragTo({120, 200});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    params.curves[0][1] = {120, 200};
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Applied(params, source)));
}

void TestYDCurvesWidget::TheHistogramFollowsTheSourceAndTheChannel()
{
    Fixture f;
    auto* const histogram = f.Child<HistogramWidget>("m_pHistogramm");
    QCOMPARE(histogram->GetChannel(), 7);
    f.widget.SetImage(TestPictures::Grey(30, 20, 5), RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(histogram->GetCount(0, 5), qint64(600), PatienceMs);
    YDSharedImage<RGBA32iImage> attached(TestPictures::Grey(10, 10, 9));
    f.widget.AttachRGB32iImage(&attached);
    QTRY_COMPARE_WITH_TIMEOUT(histogram->GetCount(2, 9), qint64(100), PatienceMs);
    attached.SetImage(TestPictures::Grey(20, 10, 8));
    f.widget.UpdateHistogramm();
    QTRY_COMPARE_WITH_TIMEOUT(histogram->GetCount(2, 8), qint64(200), PatienceMs);
    QImage image(5, 5, QImage::Format_RGB32);
    image.fill(qRgb(1, 2, 3));
    YDSharedImage<QImage> attachedImage(image);
    f.widget.AttachQImage(&attachedImage);
    QTRY_COMPARE_WITH_TIMEOUT(histogram->GetCount(2, 3), qint64(25), PatienceMs);
    f.channel->setCurrentIndex(3);
    QCOMPARE(histogram->GetChannel(), 4);
    f.widget.SetImage(RGBA32iImage(), RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(histogram->GetPixelsCount(), qint64(0), PatienceMs);
}

QTEST_MAIN(TestYDCurvesWidget)
#include "tst_YDCurvesWidget.moc"
