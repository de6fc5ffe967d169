#include "gui/KVDocumentView.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <QWheelEvent>

#include <memory>

namespace {

constexpr QRgb Red = 0xffff0000;
constexpr QRgb Green = 0xff00ff00;
constexpr QRgb Blue = 0xff0000ff;

RGBA32iImage Plain(int width, int height, QRgb color)
{
    RGBA32iImage picture(width, height);
    for (int y = 0; y < height; ++y)
        std::fill_n(picture.Row(y), width, YDRGBA32i(color));
    return picture;
}

/// A picture whose every pixel tells where it lies.
RGBA32iImage Map(int width, int height)
{
    RGBA32iImage picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.Row(y)[x] = qRgb(x & 255, y & 255, x / 256 * 16 + y / 256);
    return picture;
}

/// A view of 400 x 300 without scroll bars, on the screen.
std::unique_ptr<KVDocumentView> ShownView()
{
    auto view = std::make_unique<KVDocumentView>();
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->resize(400, 300);
    view->show();
    view->activateWindow();
    view->setFocus();
    return view;
}

QImage Grabbed(KVDocumentView& view)
{
    return view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// The colour at a place in view coordinates.
QRgb ColorAt(KVDocumentView& view, int x, int y)
{
    const QImage image = Grabbed(view);
    const int ratio = qRound(view.devicePixelRatioF());
    return image.pixel(x * ratio, y * ratio);
}

void Send(KVDocumentView& view, QEvent::Type type, const QPoint& at, Qt::MouseButton button,
          Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QMouseEvent event(type, at, view.viewport()->mapToGlobal(at), button, buttons, modifiers);
    QApplication::sendEvent(view.viewport(), &event);
}

void Press(KVDocumentView& view, const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
{
    Send(view, QEvent::MouseButtonPress, at, button, button);
}

void MoveTo(KVDocumentView& view, const QPoint& at, Qt::MouseButtons buttons = Qt::LeftButton,
            Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    Send(view, QEvent::MouseMove, at, Qt::NoButton, buttons, modifiers);
}

void Release(KVDocumentView& view, const QPoint& at, Qt::MouseButton button = Qt::LeftButton,
             Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    Send(view, QEvent::MouseButtonRelease, at, button, Qt::NoButton, modifiers);
}

void Wheel(KVDocumentView& view, const QPoint& at, int delta, Qt::KeyboardModifiers modifiers)
{
    QWheelEvent event(at, view.viewport()->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &event);
}

QPointF SceneAt(const KVDocumentView& view, const QPoint& at)
{
    return view.viewportTransform().inverted().map(QPointF(at));
}

Qt::CursorShape CursorOf(const KVDocumentView& view) { return view.viewport()->cursor().shape(); }

/// Counts the presses that reach a scene.
class PressCounter : public QObject
{
public:
    int presses = 0;
    QPointF last;

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::GraphicsSceneMousePress) {
            ++presses;
            last = static_cast<QGraphicsSceneMouseEvent*>(event)->scenePos();
        }
        return false;
    }
};

} // namespace

class TestKVDocumentView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<KVDocumentView::SelectionTool>(); }
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void TheSceneIsThePicture();
    void ShowsBeforeAndAfter();
    void HidesTheSplitter();
    void HasNoSplitterWithoutAPreview();
    void DragsTheSplitter();
    void KeepsTheSplitterInsideThePicture();
    void EscapeGivesTheSplitterBack();
    void KeepsTheSplittersShareWhenResized();
    void SetsAndBoundsTheZoom();
    void FitsThePictureUntilZoomed();
    void ZoomsAboutTheMouse();
    void SmallTurnsOfTheWheelAddUp();
    void PlainWheelScrolls();
    void ShiftWheelScrollsSideways();
    void PinchZooms();
    void KeysZoomAndScroll();
    void OnePixelIsOneDevicePixel();
    void PixelsAreSquaresWhenEnlarged();
    void ScalesSmoothlyBelowFullSize();
    void LargeRepaintsShowTheSame();
    void ScrollingLeavesNoTraces();
    void MiddleButtonPans();
    void SpaceAndLeftButtonPan();
    void ALostReleaseEndsThePan();
    void PressesReachTheScene();
    void DragModeIsFreeForOthers();
    void OverrideCursorWins();
    void OverrideCursorHoldsTheToolsBack();
    void DrawsSelections_data();
    void DrawsSelections();
    void ShiftMakesSquares();
    void EscapeCancelsASelection();
    void AClickClearsTheSelection();
    void ShowsWhatIsBeingDrawn();
    void AntsMarchOnlyWhileSeen();
    void AntsAreOnePixelWideAtEveryZoom();
    void AppliedPreviewStaysOnTheScreen();
    void TheFirstPreviewDoesNotFlash();
    void ShowsFlatAndTinyPictures_data();
    void ShowsFlatAndTinyPictures();
    void BearsAnEmptyPicture();
    void IsDestroyedWhileReductionsRun();
    void SurroundingsSuitThePalette();
    void IsNamedForAssistiveTools();
};

void TestKVDocumentView::TheSceneIsThePicture()
{
    const auto view = ShownView();
    const RGBA32iImage picture = Plain(640, 480, Red);
    view->SetImage(picture);
    QCOMPARE(view->sceneRect(), QRectF(0, 0, 640, 480));
    QVERIFY(view->Image().SharesPixelsWith(picture));
    QVERIFY(view->Preview().IsEmpty());
}

void TestKVDocumentView::ShowsBeforeAndAfter()
{
    const auto view = ShownView();
    view->SetImage(Plain(1000, 800, Red));
    view->SetPreview(Plain(1000, 800, Green));
    view->SetZoom(1);
    view->SetSplitterShare(0.25);
    QCOMPARE(ColorAt(*view, 90, 50), Red);
    QCOMPARE(ColorAt(*view, 110, 50), Green);
    QCOMPARE(ColorAt(*view, 390, 290), Green);
    view->SetZoom(0.3 * view->devicePixelRatioF());
    QTRY_COMPARE(ColorAt(*view, 100, 250), Red); // the picture is 300 wide in the middle
    QTRY_COMPARE(ColorAt(*view, 140, 250), Green);
}

void TestKVDocumentView::HidesTheSplitter()
{
    const auto view = ShownView();
    view->SetImage(Plain(1000, 800, Red));
    view->SetPreview(Plain(1000, 800, Green));
    view->SetZoom(1);
    const QSignalSpy hidden(view.get(), &KVDocumentView::SplitterHiddenChanged);
    QVERIFY(!view->IsSplitterHidden());
    QVERIFY(ColorAt(*view, 200, 50) != Green);
    view->HideSplitter(true);
    QVERIFY(view->IsSplitterHidden());
    view->HideSplitter(true);
    QCOMPARE(hidden.count(), 1);
    const QImage image = Grabbed(*view);
    for (int x = 0; x < image.width(); ++x)
        QCOMPARE(image.pixel(x, 150), Green);
    MoveTo(*view, {200, 50}, Qt::NoButton);
    QCOMPARE(CursorOf(*view), Qt::ArrowCursor);
    view->HideSplitter(false);
    QCOMPARE(hidden.count(), 2);
    QCOMPARE(ColorAt(*view, 10, 50), Red);
}

void TestKVDocumentView::HasNoSplitterWithoutAPreview()
{
    const auto view = ShownView();
    view->SetImage(Plain(1000, 800, Red));
    view->SetZoom(1);
    const QImage image = Grabbed(*view);
    for (int x = 0; x < image.width(); ++x)
        QCOMPARE(image.pixel(x, 150), Red);
}

void TestKVDocumentView::DragsTheSplitter()
{
    const auto view = ShownView();
    view->SetImage(Plain(1000, 800, Red));
    view->SetPreview(Plain(1000, 800, Green));
    view->SetZoom(1);
    QCOMPARE(view->SplitterShare(), 0.5);
    MoveTo(*view, {204, 20}, Qt::NoButton);
    QCOMPARE(CursorOf(*view), Qt::SplitHCursor);
    MoveTo(*view, {230, 20}, Qt::NoButton);
    QCOMPARE(CursorOf(*view), Qt::ArrowCursor);
    PressCounter counter;
    view->scene()->installEventFilter(&counter);
    Press(*view, {203, 20});
    MoveTo(*view, {103, 25});
    QCOMPARE(CursorOf(*view), Qt::SplitHCursor);
    QCOMPARE(view->SplitterShare(), 0.25); // it keeps its distance to the mouse
    Release(*view, {303, 25});
    QCOMPARE(view->SplitterShare(), 0.75);
    QCOMPARE(ColorAt(*view, 250, 250), Red);
    QCOMPARE(ColorAt(*view, 320, 250), Green);
    MoveTo(*view, {100, 25}, Qt::NoButton);
    QCOMPARE(view->SplitterShare(), 0.75);
    QCOMPARE(counter.presses, 0);
    // The grip is wider than the line.
    Press(*view, {310, 150});
    MoveTo(*view, {210, 150});
    Release(*view, {210, 150});
    QCOMPARE(view->SplitterShare(), 0.5);
}

void TestKVDocumentView::KeepsTheSplitterInsideThePicture()
{
    const auto view = ShownView();
    view->SetImage(Plain(200, 200, Red));
    view->SetPreview(Plain(200, 200, Green));
    view->SetZoom(1); // columns 100 to 299 of the view, on a screen with one pixel to the unit
    Press(*view, {200, 120});
    MoveTo(*view, {-5000, 120});
    QCOMPARE(view->SplitterShare(), 0.0);
    MoveTo(*view, {5000, 120});
    QCOMPARE(view->SplitterShare(), 1.0);
    Release(*view, {5000, 120});
    // It can be taken at the border, too.
    const int right = qRound(view->viewportTransform().map(QPointF(200, 0)).x());
    Press(*view, {right - 2, 150});
    MoveTo(*view, {200, 150});
    Release(*view, {200, 150});
    QVERIFY(view->SplitterShare() < 0.6);
    view->SetSplitterShare(7);
    QCOMPARE(view->SplitterShare(), 1.0);
}

void TestKVDocumentView::EscapeGivesTheSplitterBack()
{
    const auto view = ShownView();
    view->SetImage(Plain(1000, 800, Red));
    view->SetPreview(Plain(1000, 800, Green));
    view->SetZoom(1);
    Press(*view, {200, 20});
    MoveTo(*view, {300, 20});
    QTest::keyClick(view.get(), Qt::Key_Escape);
    QCOMPARE(view->SplitterShare(), 0.5);
    MoveTo(*view, {310, 20});
    QCOMPARE(view->SplitterShare(), 0.5);
    Release(*view, {310, 20});
    QCOMPARE(view->SplitterShare(), 0.5);
}

void TestKVDocumentView::KeepsTheSplittersShareWhenResized()
{
    const auto view = ShownView();
    view->SetImage(Plain(2000, 1600, Red));
    view->SetPreview(Plain(2000, 1600, Green));
    view->SetZoom(1);
    view->SetSplitterShare(0.25);
    view->resize(800, 300);
    QCOMPARE(view->SplitterShare(), 0.25);
    QCOMPARE(ColorAt(*view, 180, 50), Red);
    QCOMPARE(ColorAt(*view, 220, 50), Green);
}

void TestKVDocumentView::SetsAndBoundsTheZoom()
{
    const auto view = ShownView();
    view->SetImage(Plain(1000, 800, Red));
    const QSignalSpy zooms(view.get(), &ZoomView::ZoomChanged);
    view->SetZoom(2);
    view->SetZoom(2);
    QCOMPARE(zooms.count(), 1);
    QCOMPARE(zooms.last().first().toDouble(), 2.0);
    view->SetZoom(1e9);
    QCOMPARE(view->Zoom(), 64.0);
    view->SetZoom(0);
    QCOMPARE(view->Zoom(), 0.01);
    view->ZoomActual();
    QCOMPARE(view->Zoom(), 1.0);
    view->ZoomIn();
    QCOMPARE(view->Zoom(), 1.5);
    view->ZoomOut();
    view->ZoomOut();
    QCOMPARE(view->Zoom(), 2.0 / 3);
}

void TestKVDocumentView::FitsThePictureUntilZoomed()
{
    const auto view = ShownView();
    view->SetImage(Plain(752, 100, Red));
    QVERIFY(view->IsZoomedToFit());
    const double ratio = view->devicePixelRatioF();
    QCOMPARE(view->Zoom(), 0.5 * ratio); // 400 units less a margin of 12 on both sides, for 752 pixels
    view->resize(776, 300);
    QCOMPARE(view->Zoom(), ratio);
    view->SetImage(Plain(100, 552, Red));
    QCOMPARE(view->Zoom(), 0.5 * ratio);
    view->SetZoom(2);
    QVERIFY(!view->IsZoomedToFit());
    view->resize(400, 300);
    view->SetImage(Plain(752, 100, Red));
    QCOMPARE(view->Zoom(), 2.0);
    view->ZoomToFit();
    QCOMPARE(view->Zoom(), 0.5 * ratio);
}

void TestKVDocumentView::ZoomsAboutTheMouse()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    const QPoint mouse(320, 70);
    const QPointF point = SceneAt(*view, mouse);
    for (const int notches : {1, 1, 3, -2, 4}) {
        Wheel(*view, mouse, notches * 120, Qt::ControlModifier);
        const QPointF shift = view->viewportTransform().map(point) - mouse;
        QVERIFY2(std::abs(shift.x()) <= 3 && std::abs(shift.y()) <= 3, // what rounding to units adds up to
                 qPrintable(QStringLiteral("%1, %2").arg(shift.x()).arg(shift.y())));
    }
    QCOMPARE(view->Zoom(), 12.0); // 1.5; 2; 3, 4, 6; 4, 3; 4, 6, 8, 12
    // The middle stays when no mouse is concerned.
    const QPointF middle = SceneAt(*view, {200, 150});
    view->SetZoom(3);
    QVERIFY(QLineF(view->viewportTransform().map(middle), QPointF(200, 150)).length() <= 1.5);
}

void TestKVDocumentView::SmallTurnsOfTheWheelAddUp()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    for (int i = 0; i < 7; ++i)
        Wheel(*view, {100, 100}, 15, Qt::ControlModifier);
    QCOMPARE(view->Zoom(), 1.0);
    Wheel(*view, {100, 100}, 15, Qt::ControlModifier);
    QCOMPARE(view->Zoom(), 1.5);
}

void TestKVDocumentView::PlainWheelScrolls()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    const int x = view->horizontalScrollBar()->value();
    const int y = view->verticalScrollBar()->value();
    Wheel(*view, {100, 100}, -120, Qt::NoModifier);
    QCOMPARE(view->Zoom(), 1.0);
    QVERIFY(view->verticalScrollBar()->value() > y);
    QCOMPARE(view->horizontalScrollBar()->value(), x);
}

void TestKVDocumentView::ShiftWheelScrollsSideways()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    const int x = view->horizontalScrollBar()->value();
    const int y = view->verticalScrollBar()->value();
    Wheel(*view, {100, 100}, -120, Qt::ShiftModifier);
    QVERIFY(view->horizontalScrollBar()->value() > x);
    QCOMPARE(view->verticalScrollBar()->value(), y);
}

void TestKVDocumentView::PinchZooms()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    const QPointF mouse(100, 80);
    const QPointF point = SceneAt(*view, mouse.toPoint());
    QNativeGestureEvent pinch(Qt::ZoomNativeGesture, nullptr, mouse, mouse, mouse, 0.25, 0, 0);
    QApplication::sendEvent(view->viewport(), &pinch);
    QCOMPARE(view->Zoom(), 1.25);
    QVERIFY(QLineF(view->viewportTransform().map(point), mouse).length() <= 1.5);
}

void TestKVDocumentView::KeysZoomAndScroll()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    QTest::keyClick(view.get(), Qt::Key_Plus);
    QCOMPARE(view->Zoom(), 1.5);
    QTest::keyClick(view.get(), Qt::Key_Plus, Qt::KeypadModifier);
    QCOMPARE(view->Zoom(), 2.0);
    QTest::keyClick(view.get(), Qt::Key_Minus);
    QCOMPARE(view->Zoom(), 1.5);
    QTest::keyClick(view.get(), Qt::Key_1);
    QCOMPARE(view->Zoom(), 1.0);
    const int x = view->horizontalScrollBar()->value();
    const int y = view->verticalScrollBar()->value();
    QTest::keyClick(view.get(), Qt::Key_Right);
    QVERIFY(view->horizontalScrollBar()->value() > x);
    QTest::keyClick(view.get(), Qt::Key_PageDown);
    QVERIFY(view->verticalScrollBar()->value() >= y + 200);
    QTest::keyClick(view.get(), Qt::Key_0);
    QVERIFY(view->IsZoomedToFit());
}

void TestKVDocumentView::OnePixelIsOneDevicePixel()
{
    const auto view = ShownView();
    view->SetImage(Map(2000, 1500));
    view->SetZoom(1);
    const QImage image = Grabbed(*view);
    QCOMPARE(image.size(), view->viewport()->size() * view->devicePixelRatioF());
    const QPointF corner = SceneAt(*view, {0, 0});
    const QPoint first(qRound(corner.x()), qRound(corner.y()));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE(image.pixel(x, y), QRgb(view->Image().Row(first.y() + y)[first.x() + x]));
}

void TestKVDocumentView::PixelsAreSquaresWhenEnlarged()
{
    const auto view = ShownView();
    view->SetImage(Map(400, 300));
    for (const double zoom : {3.0, 8.0, 64.0}) {
        view->SetZoom(zoom);
        const QImage image = Grabbed(*view);
        const double ratio = view->devicePixelRatioF();
        for (int y = 0; y < image.height(); y += 7)
            for (int x = 0; x < image.width(); x += 3) {
                const QPointF scene =
                    view->viewportTransform().inverted().map(QPointF(x + 0.5, y + 0.5) / ratio);
                QCOMPARE(image.pixel(x, y), QRgb(view->Image().Row(int(scene.y()))[int(scene.x())]));
            }
    }
}

void TestKVDocumentView::ScalesSmoothlyBelowFullSize()
{
    RGBA32iImage picture(1000, 800); // black and white columns, seen at half size as their mean
    for (int y = 0; y < 800; ++y)
        for (int x = 0; x < 1000; ++x)
            picture.Row(y)[x] = x % 2 == 0 ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
    const auto view = ShownView();
    view->SetImage(picture);
    for (const double zoom : {0.5, 0.25}) {
        view->SetZoom(zoom);
        QTRY_VERIFY(std::abs(qGreen(ColorAt(*view, 200, 150)) - 128) <= 2);
    }
}

void TestKVDocumentView::LargeRepaintsShowTheSame()
{
    const auto view = ShownView();
    view->resize(1200, 900);
    view->SetImage(Map(3000, 2000));
    view->SetPreview(Plain(3000, 2000, Green));
    for (const double zoom : {0.7, 1.0, 3.0}) {
        view->SetZoom(zoom);
        const QImage whole = Grabbed(*view); // on all cores
        const QRect part(100, 450, 400, 200);
        const QImage alone = view->viewport()->grab(part).toImage().convertToFormat(QImage::Format_RGB32);
        const int ratio = qRound(view->devicePixelRatioF());
        const QImage same = whole.copy(QRect(part.topLeft() * ratio, part.size() * ratio));
        if (zoom >= 1) // smooth scaling interpolates from where the drawn part begins
            QCOMPARE(alone, same);
        int largest = 0;
        for (int y = 0; y < same.height(); ++y)
            for (int x = 0; x < same.width(); ++x)
                largest = std::max(largest, std::abs(qGreen(same.pixel(x, y)) - qGreen(alone.pixel(x, y))));
        QVERIFY2(largest <= 8, qPrintable(QString::number(largest)));
    }
}

void TestKVDocumentView::ScrollingLeavesNoTraces()
{
    const auto view = ShownView();
    view->SetImage(Map(2000, 1500));
    view->SetPreview(Plain(2000, 1500, Green));
    QPainterPath outline;
    outline.addEllipse(700, 500, 600, 500);
    view->SetSelectionOutline(outline);
    view->SetZoom(1);
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    QCoreApplication::processEvents();
    const auto onScreen = [&view] {
        return view->screen()->grabWindow(view->winId()).toImage().convertToFormat(QImage::Format_RGB32);
    };
    view->SetSelectionOutline({}); // its dashes would march on meanwhile
    QCoreApplication::processEvents();
    for (const QPoint& step : {QPoint(37, 0), QPoint(0, -23), QPoint(-150, 60), QPoint(9, 9)}) {
        view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->value() + step.x());
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->value() + step.y());
        QCoreApplication::processEvents();
        const QImage scrolled = onScreen();
        QCOMPARE(scrolled, Grabbed(*view));
    }
}

void TestKVDocumentView::MiddleButtonPans()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    const QPointF point = SceneAt(*view, {200, 150});
    Press(*view, {200, 150}, Qt::MiddleButton);
    QCOMPARE(CursorOf(*view), Qt::ClosedHandCursor);
    MoveTo(*view, {150, 180}, Qt::MiddleButton);
    QCOMPARE(SceneAt(*view, {150, 180}), point);
    Release(*view, {140, 190}, Qt::MiddleButton);
    QCOMPARE(SceneAt(*view, {140, 190}), point);
    QCOMPARE(CursorOf(*view), Qt::ArrowCursor);
    MoveTo(*view, {10, 10}, Qt::NoButton);
    QCOMPARE(SceneAt(*view, {140, 190}), point);
}

void TestKVDocumentView::SpaceAndLeftButtonPan()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetPreview(Plain(4000, 3000, Green));
    view->SetSelectionTool(KVDocumentView::SelectionTool::Rectangle);
    view->SetZoom(1);
    PressCounter counter;
    view->scene()->installEventFilter(&counter);
    const QSignalSpy drawn(view.get(), &KVDocumentView::SelectionDrawn);
    const QPointF point = SceneAt(*view, {200, 150});
    QTest::keyPress(view.get(), Qt::Key_Space);
    QCOMPARE(CursorOf(*view), Qt::OpenHandCursor);
    Press(*view, {200, 150}); // on the splitter even
    QCOMPARE(CursorOf(*view), Qt::ClosedHandCursor);
    MoveTo(*view, {120, 100});
    Release(*view, {120, 100});
    QCOMPARE(SceneAt(*view, {120, 100}), point);
    QCOMPARE(CursorOf(*view), Qt::OpenHandCursor);
    QTest::keyRelease(view.get(), Qt::Key_Space);
    QVERIFY(CursorOf(*view) != Qt::OpenHandCursor);
    QCOMPARE(counter.presses, 0);
    QCOMPARE(drawn.count(), 0);
    QCOMPARE(view->SplitterShare(), 0.5);
}

void TestKVDocumentView::ALostReleaseEndsThePan()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    Press(*view, {200, 150}, Qt::MiddleButton);
    const QPointF point = SceneAt(*view, {200, 150});
    MoveTo(*view, {100, 100}, Qt::NoButton);
    QCOMPARE(SceneAt(*view, {200, 150}), point);
    QCOMPARE(CursorOf(*view), Qt::ArrowCursor);
}

void TestKVDocumentView::PressesReachTheScene()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(2);
    PressCounter counter;
    view->scene()->installEventFilter(&counter);
    Press(*view, {50, 60});
    Release(*view, {50, 60});
    QCOMPARE(counter.presses, 1);
    QVERIFY(QLineF(counter.last, SceneAt(*view, {50, 60})).length() < 1);
}

void TestKVDocumentView::DragModeIsFreeForOthers()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    const QSignalSpy bands(view.get(), &QGraphicsView::rubberBandChanged);
    view->setDragMode(QGraphicsView::RubberBandDrag);
    Press(*view, {50, 60});
    MoveTo(*view, {150, 160});
    QVERIFY(bands.count() > 0);
    QCOMPARE(view->rubberBandRect(), QRect(50, 60, 101, 101));
    Release(*view, {150, 160});
    view->setDragMode(QGraphicsView::NoDrag);
}

void TestKVDocumentView::OverrideCursorWins()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetPreview(Plain(4000, 3000, Green));
    view->SetZoom(1);
    view->SetSelectionTool(KVDocumentView::SelectionTool::Ellipse);
    MoveTo(*view, {50, 50}, Qt::NoButton);
    QCOMPARE(CursorOf(*view), Qt::CrossCursor);
    view->SetOverrideCursor(QCursor(Qt::PointingHandCursor));
    QCOMPARE(CursorOf(*view), Qt::PointingHandCursor);
    MoveTo(*view, {200, 50}, Qt::NoButton);
    QCOMPARE(CursorOf(*view), Qt::PointingHandCursor);
    Press(*view, {50, 50}, Qt::MiddleButton);
    QCOMPARE(CursorOf(*view), Qt::PointingHandCursor);
    Release(*view, {50, 50}, Qt::MiddleButton);
    QTest::keyPress(view.get(), Qt::Key_Space);
    QCOMPARE(CursorOf(*view), Qt::PointingHandCursor);
    QTest::keyRelease(view.get(), Qt::Key_Space);
    view->SetOverrideCursor(QCursor());
    MoveTo(*view, {50, 50}, Qt::NoButton);
    QCOMPARE(CursorOf(*view), Qt::CrossCursor);
}

void TestKVDocumentView::OverrideCursorHoldsTheToolsBack()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetPreview(Plain(4000, 3000, Green));
    view->SetZoom(1);
    view->SetSelectionTool(KVDocumentView::SelectionTool::Rectangle);
    view->SetOverrideCursor(QCursor(Qt::PointingHandCursor));
    PressCounter counter;
    view->scene()->installEventFilter(&counter);
    const QSignalSpy cleared(view.get(), &KVDocumentView::SelectionCleared);
    for (const QPoint& place : {QPoint(50, 60), QPoint(200, 60)}) {
        Press(*view, place);
        Release(*view, place);
    }
    QCOMPARE(counter.presses, 2);
    QCOMPARE(cleared.count(), 0);
}

void TestKVDocumentView::DrawsSelections_data()
{
    QTest::addColumn<KVDocumentView::SelectionTool>("tool");
    QTest::newRow("rectangle") << KVDocumentView::SelectionTool::Rectangle;
    QTest::newRow("ellipse") << KVDocumentView::SelectionTool::Ellipse;
}

void TestKVDocumentView::DrawsSelections()
{
    QFETCH(KVDocumentView::SelectionTool, tool);
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(view->devicePixelRatioF()); // a pixel is a unit
    view->SetSelectionTool(tool);
    const QSignalSpy drawn(view.get(), &KVDocumentView::SelectionDrawn);
    const QSignalSpy cleared(view.get(), &KVDocumentView::SelectionCleared);
    const QPointF corner = SceneAt(*view, {50, 60});
    Press(*view, {150, 100});
    MoveTo(*view, {80, 80});
    QCOMPARE(drawn.count(), 0);
    Release(*view, {50, 60});
    QCOMPARE(drawn.count(), 1);
    QCOMPARE(drawn.first().at(0).toRectF(), QRectF(corner, QSizeF(100, 40)));
    QCOMPARE(drawn.first().at(1).value<KVDocumentView::SelectionTool>(), tool);
    QCOMPARE(cleared.count(), 0);
}

void TestKVDocumentView::ShiftMakesSquares()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(view->devicePixelRatioF());
    view->SetSelectionTool(KVDocumentView::SelectionTool::Ellipse);
    const QSignalSpy drawn(view.get(), &KVDocumentView::SelectionDrawn);
    const QPointF corner = SceneAt(*view, {50, 60});
    Press(*view, {50, 60});
    MoveTo(*view, {150, 100}, Qt::LeftButton, Qt::ShiftModifier);
    Release(*view, {150, 100}, Qt::LeftButton, Qt::ShiftModifier);
    QCOMPARE(drawn.count(), 1);
    QCOMPARE(drawn.first().at(0).toRectF(), QRectF(corner, QSizeF(100, 100)));
}

void TestKVDocumentView::EscapeCancelsASelection()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    view->SetSelectionTool(KVDocumentView::SelectionTool::Rectangle);
    const QSignalSpy drawn(view.get(), &KVDocumentView::SelectionDrawn);
    const QSignalSpy cleared(view.get(), &KVDocumentView::SelectionCleared);
    Press(*view, {50, 60});
    MoveTo(*view, {150, 100});
    QTest::keyClick(view.get(), Qt::Key_Escape);
    MoveTo(*view, {160, 100});
    Release(*view, {160, 100});
    QCOMPARE(drawn.count() + cleared.count(), 0);
    QCOMPARE(ColorAt(*view, 100, 60), Red);
}

void TestKVDocumentView::AClickClearsTheSelection()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    view->SetSelectionTool(KVDocumentView::SelectionTool::Rectangle);
    const QSignalSpy drawn(view.get(), &KVDocumentView::SelectionDrawn);
    const QSignalSpy cleared(view.get(), &KVDocumentView::SelectionCleared);
    Press(*view, {50, 60});
    MoveTo(*view, {51, 61}); // a hand trembles
    Release(*view, {51, 61});
    QCOMPARE(cleared.count(), 1);
    // A drag that comes back to its start is none the less a drag.
    Press(*view, {50, 60});
    MoveTo(*view, {150, 160});
    Release(*view, {51, 61});
    QCOMPARE(drawn.count(), 1);
    QCOMPARE(cleared.count(), 1);
    // Beside the picture there is nothing to select.
    view->SetZoom(0.01);
    Press(*view, {2, 2});
    MoveTo(*view, {40, 40});
    Release(*view, {40, 40});
    QCOMPARE(cleared.count(), 2);
}

void TestKVDocumentView::ShowsWhatIsBeingDrawn()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    view->SetZoom(1);
    view->SetSelectionTool(KVDocumentView::SelectionTool::Rectangle);
    Press(*view, {50, 60});
    MoveTo(*view, {150, 100});
    QVERIFY(ColorAt(*view, 100, 60) != Red);
    QCOMPARE(ColorAt(*view, 100, 80), Red);
    Release(*view, {150, 100});
    QCOMPARE(ColorAt(*view, 100, 60), Red); // the editor shows the outline, if it makes a selection of it
}

void TestKVDocumentView::AntsMarchOnlyWhileSeen()
{
    const auto view = ShownView();
    view->SetImage(Plain(400, 300, Red));
    view->SetZoom(1);
    QPainterPath outline;
    outline.addRect(100, 100, 100, 80);
    view->SetSelectionOutline(outline);
    QCOMPARE(view->SelectionOutline(), outline);
    const QImage first = Grabbed(*view);
    QTRY_VERIFY(Grabbed(*view) != first);
    const auto running = [&view] {
        const auto timers = view->findChildren<QTimer*>();
        return std::count_if(timers.begin(), timers.end(), [](const QTimer* timer) {
            return timer->objectName() == QLatin1String("marchingAnts") && timer->isActive();
        });
    };
    QCOMPARE(running(), 1);
    view->hide();
    QCOMPARE(running(), 0);
    view->show();
    QCOMPARE(running(), 1);
    view->SetSelectionOutline({});
    QCOMPARE(running(), 0);
    QCOMPARE(ColorAt(*view, 150, 100), Red);
}

void TestKVDocumentView::AntsAreOnePixelWideAtEveryZoom()
{
    const auto view = ShownView();
    view->SetImage(Plain(4000, 3000, Red));
    QPainterPath outline;
    outline.addRect(2000, 1500, 1000, 1000);
    view->SetSelectionOutline(outline);
    for (const double zoom : {1.0, 8.0, 64.0}) {
        view->SetZoom(zoom);
        const QImage image = Grabbed(*view);
        const QPoint corner = view->mapFromScene(2000, 1500);
        int line = 0;
        int black = 0;
        int white = 0;
        const int ratio = qRound(view->devicePixelRatioF());
        for (int y = 0; y < image.height(); ++y)
            line += image.pixel((corner.x() + 50) * ratio, y) != Red;
        for (int x = (corner.x() + 10) * ratio; x < (corner.x() + 90) * ratio; ++x) {
            black += image.pixel(x, corner.y() * ratio) == qRgb(0, 0, 0);
            white += image.pixel(x, corner.y() * ratio) == qRgb(255, 255, 255);
        }
        QCOMPARE(line, ratio);
        QCOMPARE(black, 40 * ratio);
        QCOMPARE(white, 40 * ratio);
    }
}

void TestKVDocumentView::AppliedPreviewStaysOnTheScreen()
{
    const auto view = ShownView();
    const RGBA32iImage adjusted = Plain(3000, 2000, Green);
    view->SetImage(Plain(3000, 2000, Red));
    view->SetPreview(adjusted);
    view->HideSplitter(true);
    QTRY_COMPARE(ColorAt(*view, 200, 150), Green);
    view->SetImage(adjusted);
    view->SetPreview({});
    QCOMPARE(ColorAt(*view, 200, 150), Green);
    QTest::qWait(50);
    QCOMPARE(ColorAt(*view, 200, 150), Green);
}

void TestKVDocumentView::TheFirstPreviewDoesNotFlash()
{
    const auto view = ShownView();
    view->SetImage(Plain(3000, 2000, Red));
    view->HideSplitter(true);
    QTRY_COMPARE(ColorAt(*view, 200, 150), Red);
    view->SetPreview(Plain(3000, 2000, Green));
    QCOMPARE(ColorAt(*view, 200, 150), Red); // until its copy is there
    QTRY_COMPARE(ColorAt(*view, 200, 150), Green);
}

void TestKVDocumentView::ShowsFlatAndTinyPictures_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("1 x 1") << QSize(1, 1);
    QTest::newRow("1 x N") << QSize(1, 5000);
    QTest::newRow("N x 1") << QSize(5000, 1);
    QTest::newRow("very wide") << QSize(60000, 3);
}

void TestKVDocumentView::ShowsFlatAndTinyPictures()
{
    QFETCH(QSize, size);
    const auto view = ShownView();
    view->SetImage(Plain(size.width(), size.height(), Red));
    view->SetPreview(Plain(size.width(), size.height(), Green));
    for (const double zoom : {0.01, 0.3, 0.7, 1.0, 64.0}) {
        view->SetZoom(zoom);
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        view->SetSplitterShare(1);
        view->HideSplitter(true);
        const QRgb color = ColorAt(*view, 200, 150);
        if (zoom >= 64)
            QCOMPARE(color, Green);
        view->HideSplitter(false);
        Grabbed(*view);
    }
    view->ZoomToFit();
    QVERIFY(view->Zoom() >= 0.01 && view->Zoom() <= 64);
}

void TestKVDocumentView::BearsAnEmptyPicture()
{
    const auto view = ShownView();
    view->SetPreview(Plain(5, 5, Green)); // without a picture there is nothing to compare it with
    Grabbed(*view);
    view->SetImage({});
    view->SetPreview({});
    view->ZoomIn();
    view->ZoomToFit();
    view->SetSelectionTool(KVDocumentView::SelectionTool::Rectangle);
    const QSignalSpy drawn(view.get(), &KVDocumentView::SelectionDrawn);
    Press(*view, {50, 50});
    MoveTo(*view, {150, 150});
    Release(*view, {150, 150});
    QCOMPARE(drawn.count(), 0);
    const QRgb empty = ColorAt(*view, 200, 150);
    view->SetImage(Plain(100, 100, Red));
    view->ZoomToFit();
    QCOMPARE(ColorAt(*view, 200, 150), Red);
    view->SetImage({});
    QCOMPARE(ColorAt(*view, 200, 150), empty);
}

void TestKVDocumentView::IsDestroyedWhileReductionsRun()
{
    const RGBA32iImage picture = Plain(4000, 3000, Red);
    const RGBA32iImage preview = Plain(4000, 3000, Green);
    for (int i = 0; i < 5; ++i) {
        auto view = ShownView();
        view->SetImage(picture);
        view->SetPreview(preview);
        view.reset();
    }
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

void TestKVDocumentView::SurroundingsSuitThePalette()
{
    const auto view = ShownView();
    view->SetImage(Plain(10, 10, Red));
    view->SetZoom(1);
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::white);
    view->setPalette(palette);
    const QColor light(ColorAt(*view, 5, 5));
    palette.setColor(QPalette::Window, QColor(30, 30, 30));
    view->setPalette(palette);
    const QColor dark(ColorAt(*view, 5, 5));
    QVERIFY(light.lightness() > 128 && dark.lightness() < 128);
    for (const QColor& color : {light, dark}) // a tint would mislead the eye about the picture
        QVERIFY(color.red() == color.green() && color.green() == color.blue());
}

void TestKVDocumentView::IsNamedForAssistiveTools()
{
    const KVDocumentView view;
    QVERIFY(!view.accessibleName().isEmpty());
    QCOMPARE(view.focusPolicy(), Qt::StrongFocus);
}

QTEST_MAIN(TestKVDocumentView)
#include "tst_KVDocumentView.moc"
