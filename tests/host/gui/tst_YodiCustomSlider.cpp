#include "gui/YodiCustomSlider.h"

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr int Middle = 8; ///< a height inside the slider

/// A mouse event as the system sends it while the left button is held.
void MoveTo(QWidget& widget, double x, Qt::MouseButtons buttons = Qt::LeftButton)
{
    const QPointF to(x, Middle);
    QMouseEvent event(QEvent::MouseMove, to, widget.mapToGlobal(to.toPoint()), Qt::NoButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void Press(QWidget& widget, double x)
{
    QTest::mousePress(&widget, Qt::LeftButton, {}, QPoint(int(x), Middle));
}

void Release(QWidget& widget, double x)
{
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, QPoint(int(x), Middle));
}

/// Turns the wheel over the widget; returns whether the widget took it.
bool TurnWheel(QWidget& widget, int angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWheelEvent event(QPointF(10, Middle), widget.mapToGlobal(QPoint(10, Middle)), QPoint(), QPoint(0, angle),
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    event.ignore();
    QApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

/// A slider 0..255 with two screen units to each value, and focus neighbours on both sides.
struct Fixture
{
    explicit Fixture(const std::vector<int>& values)
    {
        for (const int value : values)
            slider.AddControl(0, 255, value);
        before.setGeometry(0, 0, 50, 20);
        slider.setGeometry(0, 30, 512 + 2 * YodiCustomSlider::ScaleMargin, 16);
        after.setGeometry(0, 60, 50, 20);
        for (QWidget* const each : {&before, &after})
            each->setFocusPolicy(Qt::StrongFocus);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window gets no focus");
    }

    QVector<int> Values() const
    {
        QVector<int> values;
        for (uint handle = 0; handle < slider.ControlCount(); ++handle)
            values.append(slider.Value(handle));
        return values;
    }

    void Key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    void Drag(double from, double to)
    {
        Press(slider, from);
        MoveTo(slider, to);
        Release(slider, to);
    }
    QColor PixelAt(double x, double y)
    {
        const QImage image = slider.grab().toImage();
        const double ratio = image.devicePixelRatioF();
        return image.pixelColor(int(x * ratio), int(y * ratio));
    }

    QWidget window;
    QWidget before{&window};
    YodiCustomSlider slider{&window};
    QWidget after{&window};
};

} // namespace

class TestYodiCustomSlider : public QObject
{
    Q_OBJECT

private slots:
    void HandlesAreNumberedInTheOrderOfAdding();
    void ValuesStayInTheirBounds();
    void ANewBoundMovesTheValueInside();
    void CrossedBoundsAreHarmless();
    void ARangeMovesTheValuesInside();
    void AnyNumbersAreHarmless();
    void UnknownHandlesAreIgnored();
    void OnlyChangesAreAnnounced();

    void EachValueHasAColumnOfTheScale();
    void TheScaleRunsFromLeftToRightInEveryDirection();

    void DraggingMovesAHandle();
    void AHandleIsTakenWhereThePressMeetsIt();
    void APressBesideAllHandlesBringsTheNearest();
    void DraggingStopsAtTheBounds();
    void OfHandlesInOnePlaceTheDragTakesTheOneThatCanMove_data();
    void OfHandlesInOnePlaceTheDragTakesTheOneThatCanMove();
    void APressBesideAStackTakesTheOneThatCanCome();
    void EveryReleaseOfAHandleIsAnnounced();
    void OtherButtonsDoNothing();
    void AReleaseThatWasMissedEndsTheDrag();
    void DisabledItTakesNoMouse();

    void TabGoesFromHandleToHandle();
    void KeysMoveTheCurrentHandle_data();
    void KeysMoveTheCurrentHandle();
    void OtherKeysAreLeftToTheParent();
    void TheWheelTurnsOnlyWithTheFocus();

    void HandlesAreDrawnWithTheirBrush();
    void FocusAndHoverAreVisible();
    void ReadsOnADarkPalette();
    void IsAGroupOfSlidersForAssistiveTechnology();
};

void TestYodiCustomSlider::HandlesAreNumberedInTheOrderOfAdding()
{
    YodiCustomSlider slider;
    QCOMPARE(slider.AddControl(0, 255, 7), 0U);
    QCOMPARE(slider.AddControl(0, 255, 300), 1U);
    QCOMPARE(slider.ControlCount(), 2U);
    QCOMPARE(slider.Value(0), 7);
    QCOMPARE(slider.Value(1), 255);
}

void TestYodiCustomSlider::ValuesStayInTheirBounds()
{
    YodiCustomSlider slider;
    slider.AddControl(10, 200, 50);
    slider.ChangeValue(0, 9);
    QCOMPARE(slider.Value(0), 10);
    slider.ChangeValue(0, 201);
    QCOMPARE(slider.Value(0), 200);
    QCOMPARE(slider.LowestValue(0), 10);
    QCOMPARE(slider.HighestValue(0), 200);
}

void TestYodiCustomSlider::ANewBoundMovesTheValueInside()
{
    YodiCustomSlider slider;
    slider.AddControl(0, 255, 50);
    QSignalSpy changes(&slider, &YodiCustomSlider::ValueChanged);
    slider.SetControlMin(0, 60);
    slider.SetControlMax(0, 70);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.takeFirst(), QVariantList({0U, 60}));
    slider.SetControlMin(0, 0);
    slider.SetControlMax(0, 40);
    QCOMPARE(changes.takeFirst(), QVariantList({0U, 40}));
    QVERIFY(changes.isEmpty());
}

void TestYodiCustomSlider::CrossedBoundsAreHarmless()
{
    YodiCustomSlider slider;
    slider.AddControl(100, 50, 75);
    QCOMPARE(slider.Value(0), 100);
    slider.ChangeValue(0, 20);
    slider.ChangeValue(0, 200);
    QCOMPARE(slider.Value(0), 100);
    slider.SetControlMax(0, 150);
    slider.ChangeValue(0, 200);
    QCOMPARE(slider.Value(0), 150);
    slider.SetControlMin(0, 300); // beyond the scale
    QCOMPARE(slider.Value(0), 255);
}

void TestYodiCustomSlider::ARangeMovesTheValuesInside()
{
    YodiCustomSlider slider;
    slider.AddControl(0, 255, 50);
    slider.AddControl(0, 255, 200);
    QSignalSpy changes(&slider, &YodiCustomSlider::ValueChanged);
    slider.SetRange(0, 100);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.first(), QVariantList({1U, 100}));
    slider.SetRange(60, 40); // a maximum below the minimum counts as the minimum
    QCOMPARE(slider.Maximum(), 60);
    QCOMPARE(slider.Value(0), 60);
}

void TestYodiCustomSlider::AnyNumbersAreHarmless()
{
    Fixture f({});
    f.slider.SetRange(Lowest, Highest);
    f.slider.AddControl(Lowest, Highest, 0);
    f.slider.AddControl(Highest, Lowest, Highest);
    for (const int value : {Lowest, Highest, 0, -1})
        f.slider.ChangeValue(0, value);
    f.Drag(f.slider.PositionOf(-1), 1e9);
    f.slider.ChangeValue(0, Highest);
    f.slider.setFocus();
    f.Key(Qt::Key_PageUp);
    QCOMPARE(f.slider.Value(0), Highest);
    f.Key(Qt::Key_Home);
    f.Key(Qt::Key_PageDown);
    QCOMPARE(f.slider.Value(0), Lowest);
    QCOMPARE(f.slider.ValueAt(-1e300), Lowest);
    QCOMPARE(f.slider.ValueAt(1e300), Highest);
    f.slider.SetControlMax(0, Lowest);
    QCOMPARE(f.slider.Value(0), Lowest);
    QCOMPARE(f.slider.HighestValue(0), Lowest);
    f.slider.SetControlMin(0, Highest);
    QCOMPARE(f.slider.Value(0), Highest);
    QCOMPARE(f.slider.LowestValue(0), Highest);
    f.slider.SetRange(0, 255); // of a scale that has neither
    QCOMPARE(f.slider.Value(0), 255);
    f.slider.SetControlMin(0, Lowest);
    f.slider.ChangeValue(0, 0);
    QCOMPARE(f.slider.Value(0), 0);
    QCOMPARE(f.slider.HighestValue(0), 0);
    f.slider.resize(1, 1); // narrower than its margins
    f.slider.grab();
    f.Drag(0, 1);
}

void TestYodiCustomSlider::UnknownHandlesAreIgnored()
{
    YodiCustomSlider slider;
    QSignalSpy changes(&slider, &YodiCustomSlider::ValueChanged);
    for (const uint handle : {0U, 5U, std::numeric_limits<uint>::max()}) {
        slider.SetControlMin(handle, 3);
        slider.SetControlMax(handle, 3);
        slider.ChangeValue(handle, 3);
        slider.SetBrush(handle, Qt::red);
        slider.SetControlName(handle, QStringLiteral("name"));
        QCOMPARE(slider.Value(handle), 0);
        QCOMPARE(slider.LowestValue(handle) + slider.HighestValue(handle), 0);
        QVERIFY(slider.ControlName(handle).isEmpty());
        QCOMPARE(slider.Brush(handle), QBrush(Qt::NoBrush));
        QVERIFY(slider.ControlRect(handle).isNull());
    }
    QTest::mouseClick(&slider, Qt::LeftButton);
    QTest::keyClick(&slider, Qt::Key_Right);
    slider.grab();
    QVERIFY(changes.isEmpty());
}

void TestYodiCustomSlider::OnlyChangesAreAnnounced()
{
    YodiCustomSlider slider;
    slider.AddControl(0, 255, 50);
    QSignalSpy changes(&slider, &YodiCustomSlider::ValueChanged);
    slider.ChangeValue(0, 50);
    slider.SetControlMax(0, 50);
    slider.ChangeValue(0, 51);
    QVERIFY(changes.isEmpty());
    slider.ChangeValue(0, 49);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.first(), QVariantList({0U, 49}));
}

void TestYodiCustomSlider::EachValueHasAColumnOfTheScale()
{
    Fixture f({0});
    constexpr int Margin = YodiCustomSlider::ScaleMargin;
    QCOMPARE(f.slider.PositionOf(0), Margin + 1.0);
    QCOMPARE(f.slider.PositionOf(255), Margin + 511.0);
    for (int value = 0; value <= 255; ++value)
        QCOMPARE(f.slider.ValueAt(f.slider.PositionOf(value)), value);
    QCOMPARE(f.slider.ValueAt(Margin + 1.9), 0);
    QCOMPARE(f.slider.ValueAt(Margin + 2.1), 1);
    QCOMPARE(f.slider.ValueAt(-50), 0);
    QCOMPARE(f.slider.ValueAt(5000), 255);
    QCOMPARE(f.slider.sizeHint().width(), 256 + 2 * Margin); // one unit to each of 256 values
}

void TestYodiCustomSlider::TheScaleRunsFromLeftToRightInEveryDirection()
{
    Fixture f({100});
    f.window.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(f.slider.PositionOf(0) < f.slider.PositionOf(255));
    f.Drag(f.slider.PositionOf(100), f.slider.PositionOf(110));
    QCOMPARE(f.slider.Value(0), 110);
    f.slider.setFocus();
    f.Key(Qt::Key_Right);
    QCOMPARE(f.slider.Value(0), 111);
}

void TestYodiCustomSlider::DraggingMovesAHandle()
{
    Fixture f({20, 128, 200});
    QSignalSpy changes(&f.slider, &YodiCustomSlider::ValueChanged);
    f.Drag(f.slider.PositionOf(128), f.slider.PositionOf(140));
    QCOMPARE(f.Values(), QVector<int>({20, 140, 200}));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(f.slider.CurrentControl(), 1U);
    f.Drag(f.slider.PositionOf(140), f.slider.PositionOf(60));
    QCOMPARE(f.Values(), QVector<int>({20, 60, 200}));
    MoveTo(f.slider, f.slider.PositionOf(90)); // the drag is over
    QCOMPARE(f.Values(), QVector<int>({20, 60, 200}));
}

void TestYodiCustomSlider::AHandleIsTakenWhereThePressMeetsIt()
{
    Fixture f({100});
    QSignalSpy changes(&f.slider, &YodiCustomSlider::ValueChanged);
    const double beside = f.slider.PositionOf(100) + 4;
    Press(f.slider, beside);
    QVERIFY(changes.isEmpty());
    MoveTo(f.slider, beside + 20); // ten columns of two units
    QCOMPARE(f.slider.Value(0), 110);
}

void TestYodiCustomSlider::APressBesideAllHandlesBringsTheNearest()
{
    Fixture f({20, 128, 200});
    Press(f.slider, f.slider.PositionOf(170));
    QCOMPARE(f.Values(), QVector<int>({20, 128, 170}));
    MoveTo(f.slider, f.slider.PositionOf(172)); // and goes on as a drag
    QCOMPARE(f.Values(), QVector<int>({20, 128, 172}));
    Release(f.slider, f.slider.PositionOf(172));
    Press(f.slider, f.slider.PositionOf(5));
    QCOMPARE(f.Values(), QVector<int>({5, 128, 172}));
}

void TestYodiCustomSlider::DraggingStopsAtTheBounds()
{
    Fixture f({20, 200});
    f.slider.SetControlMax(0, 198);
    f.slider.SetControlMin(1, 22);
    f.Drag(f.slider.PositionOf(20), f.slider.PositionOf(250));
    QCOMPARE(f.Values(), QVector<int>({198, 200}));
    f.Drag(f.slider.PositionOf(198), -1000);
    QCOMPARE(f.Values(), QVector<int>({0, 200}));
}

void TestYodiCustomSlider::OfHandlesInOnePlaceTheDragTakesTheOneThatCanMove_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("distance");
    QTest::addColumn<QVector<int>>("expected");
    QTest::newRow("upwards, the last") << 100 << 10 << QVector<int>{100, 100, 110};
    QTest::newRow("downwards, the first") << 100 << -10 << QVector<int>{90, 100, 100};
    QTest::newRow("upwards from the lower end") << 0 << 10 << QVector<int>{0, 0, 10};
    QTest::newRow("downwards from the upper end") << 255 << -10 << QVector<int>{245, 255, 255};
}

void TestYodiCustomSlider::OfHandlesInOnePlaceTheDragTakesTheOneThatCanMove()
{
    QFETCH(int, place);
    QFETCH(int, distance);
    QFETCH(QVector<int>, expected);
    Fixture f({place, place, place});
    f.Drag(f.slider.PositionOf(place), f.slider.PositionOf(place + distance));
    QCOMPARE(f.Values(), expected);

    // Handles that bar one another: nothing but the free one can go.
    Fixture barred({place, place, place});
    for (const uint fixed : {0U, 2U}) {
        barred.slider.SetControlMin(fixed, place);
        barred.slider.SetControlMax(fixed, place);
    }
    barred.Drag(barred.slider.PositionOf(place), barred.slider.PositionOf(place + distance));
    QCOMPARE(barred.Values(), QVector<int>({place, place + distance, place}));
}

void TestYodiCustomSlider::APressBesideAStackTakesTheOneThatCanCome()
{
    Fixture f({100, 100});
    f.slider.SetControlMax(0, 100);
    f.slider.SetControlMin(1, 100);
    Press(f.slider, f.slider.PositionOf(50));
    QCOMPARE(f.Values(), QVector<int>({50, 100}));
    Release(f.slider, f.slider.PositionOf(50));
    f.slider.ChangeValue(0, 100);
    Press(f.slider, f.slider.PositionOf(150));
    QCOMPARE(f.Values(), QVector<int>({100, 150}));
}

void TestYodiCustomSlider::EveryReleaseOfAHandleIsAnnounced()
{
    Fixture f({20, 200});
    QSignalSpy released(&f.slider, &YodiCustomSlider::NodeReleased);
    Press(f.slider, f.slider.PositionOf(20));
    MoveTo(f.slider, f.slider.PositionOf(40));
    QVERIFY(released.isEmpty());
    Release(f.slider, f.slider.PositionOf(40));
    QCOMPARE(released.count(), 1);
    QTest::mouseClick(&f.slider, Qt::LeftButton, {}, QPoint(int(f.slider.PositionOf(200)), Middle));
    QCOMPARE(released.count(), 2);
    f.slider.setFocus();
    f.Key(Qt::Key_Right);
    QCOMPARE(released.count(), 2);
}

void TestYodiCustomSlider::OtherButtonsDoNothing()
{
    Fixture f({20, 200});
    QSignalSpy released(&f.slider, &YodiCustomSlider::NodeReleased);
    QTest::mouseClick(&f.slider, Qt::RightButton, {}, QPoint(100, Middle));
    QCOMPARE(f.Values(), QVector<int>({20, 200}));
    Press(f.slider, f.slider.PositionOf(20));
    QTest::mouseClick(&f.slider, Qt::RightButton, {}, QPoint(100, Middle));
    MoveTo(f.slider, f.slider.PositionOf(30)); // still held by the left one
    QCOMPARE(f.Values(), QVector<int>({30, 200}));
    QVERIFY(released.isEmpty());
}

void TestYodiCustomSlider::AReleaseThatWasMissedEndsTheDrag()
{
    Fixture f({20, 200});
    Press(f.slider, f.slider.PositionOf(20));
    MoveTo(f.slider, f.slider.PositionOf(30));
    MoveTo(f.slider, f.slider.PositionOf(80), Qt::NoButton);
    MoveTo(f.slider, f.slider.PositionOf(90));
    QCOMPARE(f.Values(), QVector<int>({30, 200}));
}

void TestYodiCustomSlider::DisabledItTakesNoMouse()
{
    Fixture f({20, 200});
    f.slider.setEnabled(false);
    f.Drag(f.slider.PositionOf(20), f.slider.PositionOf(60));
    QCOMPARE(f.Values(), QVector<int>({20, 200}));
}

void TestYodiCustomSlider::TabGoesFromHandleToHandle()
{
    Fixture f({20, 128, 200});
    f.before.setFocus();
    for (const uint expected : {0U, 1U, 2U}) {
        f.Key(Qt::Key_Tab);
        QVERIFY(f.slider.hasFocus());
        QCOMPARE(f.slider.CurrentControl(), expected);
    }
    f.Key(Qt::Key_Tab);
    QVERIFY(f.after.hasFocus());
    for (const uint expected : {2U, 1U, 0U}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QVERIFY(f.slider.hasFocus());
        QCOMPARE(f.slider.CurrentControl(), expected);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QVERIFY(f.before.hasFocus());
}

void TestYodiCustomSlider::KeysMoveTheCurrentHandle_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("left") << Qt::Key_Left << 127;
    QTest::newRow("down") << Qt::Key_Down << 127;
    QTest::newRow("right") << Qt::Key_Right << 129;
    QTest::newRow("up") << Qt::Key_Up << 129;
    QTest::newRow("page down") << Qt::Key_PageDown << 118;
    QTest::newRow("page up") << Qt::Key_PageUp << 138;
    QTest::newRow("home") << Qt::Key_Home << 30;
    QTest::newRow("end") << Qt::Key_End << 190;
}

void TestYodiCustomSlider::KeysMoveTheCurrentHandle()
{
    QFETCH(Qt::Key, key);
    QFETCH(int, expected);
    Fixture f({20, 128, 200});
    f.slider.SetControlMin(1, 30);
    f.slider.SetControlMax(1, 190);
    f.slider.setFocus(Qt::TabFocusReason);
    f.Key(Qt::Key_Tab);
    QSignalSpy changes(&f.slider, &YodiCustomSlider::ValueChanged);
    f.Key(key);
    QCOMPARE(f.Values(), QVector<int>({20, expected, 200}));
    QCOMPARE(changes.count(), 1);
}

void TestYodiCustomSlider::OtherKeysAreLeftToTheParent()
{
    Fixture f({20});
    for (const auto& [key, modifiers] :
         {std::pair(Qt::Key_Escape, Qt::NoModifier), std::pair(Qt::Key_Return, Qt::NoModifier),
          std::pair(Qt::Key_Right, Qt::AltModifier), std::pair(Qt::Key_Home, Qt::ControlModifier)}) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QVERIFY(!QApplication::sendEvent(&f.slider, &press) || !press.isAccepted());
        QCOMPARE(f.slider.Value(0), 20);
    }
}

void TestYodiCustomSlider::TheWheelTurnsOnlyWithTheFocus()
{
    Fixture f({100});
    f.before.setFocus();
    QVERIFY(!TurnWheel(f.slider, 120));
    QCOMPARE(f.slider.Value(0), 100);
    f.slider.setFocus();
    QVERIFY(TurnWheel(f.slider, 120));
    QCOMPARE(f.slider.Value(0), 101);
    TurnWheel(f.slider, -240);
    QCOMPARE(f.slider.Value(0), 99);
    TurnWheel(f.slider, 120, Qt::ShiftModifier);
    QCOMPARE(f.slider.Value(0), 109);
    for (int eighth = 0; eighth < 3; ++eighth)
        TurnWheel(f.slider, 40); // a fine wheel: three thirds of a notch
    QCOMPARE(f.slider.Value(0), 110);
}

void TestYodiCustomSlider::HandlesAreDrawnWithTheirBrush()
{
    Fixture f({50, 200});
    QCOMPARE(f.slider.Brush(0), f.slider.palette().button());
    f.slider.SetBrush(0, QColor(200, 30, 30));
    f.slider.SetBrush(1, QColor(30, 30, 200));
    QCOMPARE(f.slider.Brush(0), QBrush(QColor(200, 30, 30)));
    QCOMPARE(f.slider.Brush(1), QBrush(QColor(30, 30, 200)));
    QCOMPARE(f.PixelAt(f.slider.PositionOf(50), 11), QColor(200, 30, 30));
    QCOMPARE(f.PixelAt(f.slider.PositionOf(200), 11), QColor(30, 30, 200));
    QCOMPARE(f.PixelAt(f.slider.PositionOf(120), 11), f.window.palette().color(QPalette::Window));
    f.slider.setEnabled(false);
    QVERIFY(f.PixelAt(f.slider.PositionOf(50), 11) != QColor(200, 30, 30));
    QVERIFY(f.slider.ControlRect(0).contains(int(f.slider.PositionOf(50)), 11));
    QVERIFY(f.slider.rect().contains(f.slider.ControlRect(1)));
}

void TestYodiCustomSlider::FocusAndHoverAreVisible()
{
    Fixture f({50, 200});
    f.before.setFocus();
    const QImage plain = f.slider.grab().toImage();
    MoveTo(f.slider, f.slider.PositionOf(200), Qt::NoButton);
    const QImage hovered = f.slider.grab().toImage();
    QVERIFY(hovered != plain);
    MoveTo(f.slider, f.slider.PositionOf(120), Qt::NoButton);
    QVERIFY(f.slider.grab().toImage() == plain);
    f.slider.setFocus(Qt::TabFocusReason);
    const QImage first = f.slider.grab().toImage();
    f.Key(Qt::Key_Tab);
    const QImage second = f.slider.grab().toImage();
    QVERIFY(first != plain && second != plain && first != second);
}

void TestYodiCustomSlider::ReadsOnADarkPalette()
{
    Fixture f({50});
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    f.window.setPalette(dark);
    f.slider.SetBrush(0, Qt::black);
    const QRect handle = f.slider.ControlRect(0);
    int bright = 0;
    for (int y = handle.top(); y <= handle.bottom(); ++y)
        for (int x = handle.left(); x <= handle.right(); ++x)
            bright += f.PixelAt(x, y).lightness() > 150;
    QVERIFY2(bright > 20, qPrintable(QString::number(bright))); // the outline
}

void TestYodiCustomSlider::IsAGroupOfSlidersForAssistiveTechnology()
{
    Fixture f({20, 200});
    f.slider.SetControlMax(0, 150);
    f.slider.SetControlName(0, QStringLiteral("Black point"));
    QAccessibleInterface* const group = QAccessible::queryAccessibleInterface(&f.slider);
    QVERIFY(group);
    QCOMPARE(group->role(), QAccessible::Grouping);
    QCOMPARE(group->childCount(), 2);
    QVERIFY(!group->child(2) && !group->child(-1));
    QAccessibleInterface* const handle = group->child(0);
    QCOMPARE(group->child(0), handle);
    QCOMPARE(group->indexOfChild(group->child(1)), 1);
    QCOMPARE(handle->role(), QAccessible::Slider);
    QCOMPARE(handle->text(QAccessible::Name), QStringLiteral("Black point"));
    QCOMPARE(handle->text(QAccessible::Value), QStringLiteral("20"));
    QCOMPARE(handle->parent()->object(), &f.slider);
    QCOMPARE(handle->valueInterface()->currentValue().toInt(), 20);
    QCOMPARE(handle->valueInterface()->minimumValue().toInt(), 0);
    QCOMPARE(handle->valueInterface()->maximumValue().toInt(), 150);
    handle->valueInterface()->setCurrentValue(160);
    QCOMPARE(f.slider.Value(0), 150);
    const QPoint there = handle->rect().center();
    QCOMPARE(group->childAt(there.x(), there.y()), handle);
    f.slider.setFocus(Qt::BacktabFocusReason);
    QCOMPARE(group->focusChild(), group->child(1));
    QVERIFY(group->child(1)->state().focused);
    QVERIFY(!handle->state().focused);
}

QTEST_MAIN(TestYodiCustomSlider)
#include "tst_YodiCustomSlider.moc"
