#include "gui/YDAngleSlider.h"

#include <QAccessible>
#include <QImage>
#include <QScrollArea>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr int Side = 101; ///< odd, so that a pixel is in the middle
constexpr int Notch = 120;

/// A dial that is shown and has the focus.
struct Fixture
{
    Fixture()
    {
        dial.setFixedSize(Side, Side);
        dial.show();
        dial.activateWindow();
        dial.setFocus();
    }

    YDAngleSlider dial;
    QPoint middle{Side / 2, Side / 2};
};

void Wheel(QWidget& widget, int turned, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent event(middle, widget.mapToGlobal(middle.toPoint()), QPoint(), QPoint(0, turned), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

/// The darkness of the dial's picture at `degrees` and `distance` from its middle.
int Darkness(const QImage& image, double degrees, double distance)
{
    const double radians = degrees * 3.14159265358979 / 180;
    const double ratio = image.devicePixelRatio();
    const int x = int(std::floor((Side / 2.0 + distance * std::cos(radians)) * ratio));
    const int y = int(std::floor((Side / 2.0 + distance * std::sin(radians)) * ratio));
    return 255 - qGray(image.pixel(x, y));
}

} // namespace

/// Run on screens with one and with two device pixels to the unit.
class TestYDAngleSlider : public QObject
{
    Q_OBJECT

private slots:
    void BeginsAtZeroOfAWholeTurn();
    void AngleSetInCodeIsAnnouncedOnce();
    void AnglesOutsideTheRangeAreItsEnds();
    void APressTurnsTheNeedleToTheMouse_data();
    void APressTurnsTheNeedleToTheMouse();
    void ADragFollowsTheMouseAllTheWayRound();
    void AMoveAfterALostReleaseTurnsNothing();
    void TheMiddleIsNoDirection();
    void OnlyTheLeftButtonTurns();
    void ShiftTurnsInSteps_data();
    void ShiftTurnsInSteps();
    void KeysTurn_data();
    void KeysTurn();
    void KeysWithModifiersAreForOthers();
    void TheWheelTurnsWhileFocused();
    void TheWheelScrollsThePageOtherwise();
    void HalfNotchesAddUp();
    void ANarrowRangeHasEnds();
    void FollowsASpinBoxBothWays();
    void TheNeedlePointsWhereATextWouldRun_data();
    void TheNeedlePointsWhereATextWouldRun();
    void TheFocusShows();
    void ADisabledDialIsPaler();
    void ASmallDialIsDrawn();
    void AssistiveTechnologyReadsAndSetsTheAngle();
};

void TestYDAngleSlider::BeginsAtZeroOfAWholeTurn()
{
    const YDAngleSlider dial;
    QCOMPARE(dial.minimum(), -179);
    QCOMPARE(dial.maximum(), 180);
    QCOMPARE(dial.value(), 0);
    QCOMPARE(dial.focusPolicy(), Qt::StrongFocus);
    QVERIFY(dial.sizeHint().width() >= dial.minimumSizeHint().width());
    QCOMPARE(dial.sizeHint().width(), dial.sizeHint().height());
}

void TestYDAngleSlider::AngleSetInCodeIsAnnouncedOnce()
{
    YDAngleSlider dial;
    QSignalSpy changes(&dial, &YDAngleSlider::valueChanged);
    dial.setValue(45);
    dial.setValue(45);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toInt(), 45);
}

void TestYDAngleSlider::AnglesOutsideTheRangeAreItsEnds()
{
    YDAngleSlider dial;
    dial.setValue(1000);
    QCOMPARE(dial.value(), 180);
    dial.setValue(-1000);
    QCOMPARE(dial.value(), -179);
}

void TestYDAngleSlider::APressTurnsTheNeedleToTheMouse_data()
{
    QTest::addColumn<QPoint>("arm");
    QTest::addColumn<int>("angle");
    QTest::newRow("down to the right") << QPoint(30, 30) << 45;
    QTest::newRow("down") << QPoint(0, 30) << 90;
    QTest::newRow("down to the left") << QPoint(-30, 30) << 135;
    QTest::newRow("left") << QPoint(-30, 0) << 180;
    QTest::newRow("up to the left") << QPoint(-30, -30) << -135;
    QTest::newRow("up") << QPoint(0, -30) << -90;
    QTest::newRow("up to the right") << QPoint(30, -30) << -45;
    QTest::newRow("a little above the left") << QPoint(-1000, -1) << 180;   // -179.94
    QTest::newRow("a degree above the left") << QPoint(-1000, -17) << -179; // -179.03
    QTest::newRow("outside") << QPoint(0, 500) << 90;
    QTest::newRow("next to the middle") << QPoint(1, 1) << 45;
}

void TestYDAngleSlider::APressTurnsTheNeedleToTheMouse()
{
    QFETCH(QPoint, arm);
    QFETCH(int, angle);
    Fixture f;
    f.dial.setValue(7);
    QSignalSpy changes(&f.dial, &YDAngleSlider::valueChanged);
    QTest::mousePress(&f.dial, Qt::LeftButton, {}, f.middle + arm);
    QCOMPARE(f.dial.value(), angle);
    QCOMPARE(changes.count(), 1);
    QVERIFY(f.dial.isSliderDown());
    QTest::mouseRelease(&f.dial, Qt::LeftButton, {}, f.middle + arm);
    QCOMPARE(f.dial.value(), angle);
    QCOMPARE(changes.count(), 1);
    QVERIFY(!f.dial.isSliderDown());
}

void TestYDAngleSlider::ADragFollowsTheMouseAllTheWayRound()
{
    Fixture f;
    QTest::mousePress(&f.dial, Qt::LeftButton, {}, f.middle + QPoint(40, 0));
    const auto dragTo = [&f](const QPoint& arm) {
        QMouseEvent move(QEvent::MouseMove, f.middle + arm, Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&f.dial, &move);
        return f.dial.value();
    };
    QCOMPARE(dragTo({40, 40}), 45);
    QCOMPARE(dragTo({-40, 0}), 180);
    QCOMPARE(dragTo({-40, -40}), -135);
    QCOMPARE(dragTo({40, -40}), -45);
    QCOMPARE(dragTo({40, 0}), 0);
    QTest::mouseRelease(&f.dial, Qt::LeftButton, {}, f.middle);
    QCOMPARE(dragTo({-40, 0}), 0);
}

void TestYDAngleSlider::AMoveAfterALostReleaseTurnsNothing()
{
    Fixture f;
    f.dial.setMouseTracking(true);
    QTest::mousePress(&f.dial, Qt::LeftButton, {}, f.middle + QPoint(0, 40));
    QMouseEvent move(QEvent::MouseMove, f.middle + QPoint(-40, 0), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(&f.dial, &move);
    QCOMPARE(f.dial.value(), 90);
}

void TestYDAngleSlider::TheMiddleIsNoDirection()
{
    Fixture f;
    f.dial.setValue(33);
    QMouseEvent press(QEvent::MouseButtonPress, f.middle, Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(&f.dial, &press);
    QCOMPARE(f.dial.value(), 33);
}

void TestYDAngleSlider::OnlyTheLeftButtonTurns()
{
    Fixture f;
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        QTest::mouseClick(&f.dial, button, {}, f.middle + QPoint(0, 30));
        QCOMPARE(f.dial.value(), 0);
    }
}

void TestYDAngleSlider::ShiftTurnsInSteps_data()
{
    QTest::addColumn<QPoint>("arm");
    QTest::addColumn<int>("angle");
    QTest::newRow("down to a step") << QPoint(1000, 122) << 0; // 6.96
    QTest::newRow("up to a step") << QPoint(1000, 141) << 15;  // 8.03
    QTest::newRow("above the right") << QPoint(1000, -141) << -15;
    QTest::newRow("from above onto the left") << QPoint(-1000, -122) << 180;
}

void TestYDAngleSlider::ShiftTurnsInSteps()
{
    QFETCH(QPoint, arm);
    QFETCH(int, angle);
    Fixture f;
    QTest::mouseClick(&f.dial, Qt::LeftButton, Qt::ShiftModifier, f.middle + arm);
    QCOMPARE(f.dial.value(), angle);
}

void TestYDAngleSlider::KeysTurn_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("after");
    QTest::newRow("right") << 0 << int(Qt::Key_Right) << 1;
    QTest::newRow("up") << 0 << int(Qt::Key_Up) << 1;
    QTest::newRow("left") << 0 << int(Qt::Key_Left) << -1;
    QTest::newRow("down") << 0 << int(Qt::Key_Down) << -1;
    QTest::newRow("page up") << 0 << int(Qt::Key_PageUp) << 15;
    QTest::newRow("page down") << 0 << int(Qt::Key_PageDown) << -15;
    QTest::newRow("on past the highest") << 180 << int(Qt::Key_Right) << -179;
    QTest::newRow("on past the lowest") << -179 << int(Qt::Key_Left) << 180;
    QTest::newRow("a page past the highest") << 175 << int(Qt::Key_PageUp) << -170;
    QTest::newRow("a page past the lowest") << -170 << int(Qt::Key_PageDown) << 175;
    QTest::newRow("home") << 0 << int(Qt::Key_Home) << -179;
    QTest::newRow("end") << 0 << int(Qt::Key_End) << 180;
    QTest::newRow("another key") << 5 << int(Qt::Key_A) << 5;
}

void TestYDAngleSlider::KeysTurn()
{
    QFETCH(int, before);
    QFETCH(int, key);
    QFETCH(int, after);
    Fixture f;
    f.dial.setValue(before);
    QSignalSpy changes(&f.dial, &YDAngleSlider::valueChanged);
    QTest::keyClick(&f.dial, Qt::Key(key));
    QCOMPARE(f.dial.value(), after);
    QCOMPARE(changes.count(), before == after ? 0 : 1);
}

void TestYDAngleSlider::KeysWithModifiersAreForOthers()
{
    Fixture f;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_PageUp, Qt::AltModifier | Qt::ControlModifier);
    QApplication::sendEvent(&f.dial, &press);
    QVERIFY(std::abs(f.dial.value()) <= f.dial.pageStep());
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier);
    QApplication::sendEvent(&f.dial, &letter);
    QVERIFY(!letter.isAccepted());
}

void TestYDAngleSlider::TheWheelTurnsWhileFocused()
{
    Fixture f;
    QTRY_VERIFY(f.dial.hasFocus());
    Wheel(f.dial, Notch);
    QCOMPARE(f.dial.value(), 1);
    Wheel(f.dial, -3 * Notch);
    QCOMPARE(f.dial.value(), -2);
    Wheel(f.dial, Notch, Qt::ShiftModifier);
    QCOMPARE(f.dial.value(), 13);
    f.dial.setValue(180);
    Wheel(f.dial, Notch);
    QCOMPARE(f.dial.value(), -179);
    Wheel(f.dial, -Notch, Qt::ControlModifier);
    QCOMPARE(f.dial.value(), 166);
}

void TestYDAngleSlider::TheWheelScrollsThePageOtherwise()
{
    YDAngleSlider dial;
    dial.show();
    dial.clearFocus();
    QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, Notch), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&dial, &event);
    QCOMPARE(dial.value(), 0);
    QVERIFY(!event.isAccepted());
}

void TestYDAngleSlider::HalfNotchesAddUp()
{
    Fixture f;
    QTRY_VERIFY(f.dial.hasFocus());
    Wheel(f.dial, Notch / 2);
    QCOMPARE(f.dial.value(), 0);
    Wheel(f.dial, Notch / 2);
    QCOMPARE(f.dial.value(), 1);
}

void TestYDAngleSlider::ANarrowRangeHasEnds()
{
    Fixture f;
    f.dial.setRange(-45, 45);
    QTest::mouseClick(&f.dial, Qt::LeftButton, {}, f.middle + QPoint(0, 30));
    QCOMPARE(f.dial.value(), 45);
    QTest::keyClick(&f.dial, Qt::Key_Right);
    QCOMPARE(f.dial.value(), 45);
    QTest::mouseClick(&f.dial, Qt::LeftButton, {}, f.middle + QPoint(0, -30));
    QCOMPARE(f.dial.value(), -45);
    f.dial.setRange(180, 270);
    QTest::mouseClick(&f.dial, Qt::LeftButton, {}, f.middle + QPoint(0, -30));
    QCOMPARE(f.dial.value(), 270);
}

void TestYDAngleSlider::FollowsASpinBoxBothWays()
{
    Fixture f;
    QSpinBox box;
    box.setRange(-179, 180);
    connect(&box, QOverload<int>::of(&QSpinBox::valueChanged), &f.dial, &YDAngleSlider::setValue);
    connect(&f.dial, &YDAngleSlider::valueChanged, &box, &QSpinBox::setValue);
    QSignalSpy changes(&box, QOverload<int>::of(&QSpinBox::valueChanged));
    QTest::mouseClick(&f.dial, Qt::LeftButton, {}, f.middle + QPoint(0, 30));
    QCOMPARE(box.value(), 90);
    QCOMPARE(changes.count(), 1);
    box.setValue(-120);
    QCOMPARE(f.dial.value(), -120);
    QCOMPARE(changes.count(), 2);
}

void TestYDAngleSlider::TheNeedlePointsWhereATextWouldRun_data()
{
    QTest::addColumn<int>("angle");
    for (const int angle : {0, 30, 90, 135, 180, -30, -90, -150})
        QTest::newRow(qPrintable(QString::number(angle))) << angle;
}

void TestYDAngleSlider::TheNeedlePointsWhereATextWouldRun()
{
    QFETCH(int, angle);
    Fixture f;
    f.dial.setValue(angle);
    const QImage image = f.dial.grab().toImage();
    constexpr double OnTheNeedle = Side * 0.25;
    QVERIFY(Darkness(image, angle, OnTheNeedle) > 100);
    for (const int off : {60, 120, 180, -60, -120})
        QVERIFY(Darkness(image, angle + off, OnTheNeedle) < 40);
}

void TestYDAngleSlider::TheFocusShows()
{
    Fixture f;
    QTRY_VERIFY(f.dial.hasFocus());
    const QImage focused = f.dial.grab().toImage();
    f.dial.clearFocus();
    QVERIFY(focused != f.dial.grab().toImage());
}

void TestYDAngleSlider::ADisabledDialIsPaler()
{
    Fixture f;
    const int before = Darkness(f.dial.grab().toImage(), 0, Side * 0.25);
    f.dial.setEnabled(false);
    QVERIFY(Darkness(f.dial.grab().toImage(), 0, Side * 0.25) < before);
}

void TestYDAngleSlider::ASmallDialIsDrawn()
{
    for (const QSize size : {QSize(1, 1), QSize(3, 40), QSize(40, 3)}) {
        YDAngleSlider dial;
        dial.setFixedSize(size);
        dial.show();
        QCOMPARE(dial.grab().toImage().size(), size * dial.devicePixelRatio());
        QTest::mouseClick(&dial, Qt::LeftButton, {}, QPoint(0, 0));
        QVERIFY(dial.value() >= -179 && dial.value() <= 180);
    }
}

void TestYDAngleSlider::AssistiveTechnologyReadsAndSetsTheAngle()
{
    Fixture f;
    f.dial.setAccessibleName(QStringLiteral("Angle"));
    f.dial.setValue(20);
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&f.dial);
    QVERIFY(spoken);
    QCOMPARE(spoken->role(), QAccessible::Dial);
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("Angle"));
    QAccessibleValueInterface* const value = spoken->valueInterface();
    QVERIFY(value);
    QCOMPARE(value->currentValue().toInt(), 20);
    QCOMPARE(value->minimumValue().toInt(), -179);
    QCOMPARE(value->maximumValue().toInt(), 180);
    value->setCurrentValue(-30);
    QCOMPARE(f.dial.value(), -30);
}

QTEST_MAIN(TestYDAngleSlider)
#include "tst_YDAngleSlider.moc"
