#include "widgets/KVSlider.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <cstdlib>

namespace {

/// Turns the wheel one notch up over the widget; returns whether the widget took it.
bool TurnWheel(QWidget& widget)
{
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent event(middle, widget.mapToGlobal(middle.toPoint()), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    event.ignore();
    QApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

/// A mouse event as the system sends it while the left button is held.
void Drag(QWidget& widget, const QPoint& to)
{
    QMouseEvent event(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

class OpenSlider : public KVSlider
{
public:
    using KVSlider::KVSlider;
    QRect Handle() const
    {
        QStyleOptionSlider option;
        initStyleOption(&option);
        return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    }
};

} // namespace

class TestKVSlider : public QObject
{
    Q_OBJECT

private slots:
    void TakesTheWheelOnlyWithTheFocus();
    void APressInTheGrooveGoesThere_data();
    void APressInTheGrooveGoesThere();
    void APressInTheGrooveGoesOnAsADrag();
    void APressOnTheHandleChangesNothing();
    void ADoubleClickIsTwoPresses();
    void OtherButtonsChangeNothing();
    void TheSameValueIsNotAnnounced();
    void KeepsItsHandleUnderAStyleSheetForTheGroove();
    void UnderAStyleSheetItIsDimmedWhileDisabled_data();
    void UnderAStyleSheetItIsDimmedWhileDisabled();
    void AFewValuesOnALongGrooveAreReached();
};

void TestKVSlider::TakesTheWheelOnlyWithTheFocus()
{
    QWidget window;
    KVSlider slider(Qt::Horizontal, &window);
    KVSlider other(Qt::Horizontal, &window);
    other.move(0, 50);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    other.setFocus();
    QVERIFY(!TurnWheel(slider));
    QCOMPARE(slider.value(), 0);
    QVERIFY(!slider.hasFocus());
    slider.setFocus();
    QVERIFY(TurnWheel(slider));
    QVERIFY(slider.value() > 0);
}

void TestKVSlider::APressInTheGrooveGoesThere_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<bool>("inverted");
    QTest::addColumn<QString>("styleSheet");
    QTest::addColumn<int>("expected"); // at a quarter of the length from the left or top
    const QString groove = QStringLiteral(
        "QSlider::groove:horizontal{border: 0px solid;height: 4px;background: rgb(0, 0, 255)}");
    QTest::newRow("horizontal") << Qt::Horizontal << Qt::LeftToRight << false << QString() << 250;
    QTest::newRow("right to left") << Qt::Horizontal << Qt::RightToLeft << false << QString() << 750;
    QTest::newRow("inverted") << Qt::Horizontal << Qt::LeftToRight << true << QString() << 750;
    QTest::newRow("vertical") << Qt::Vertical << Qt::LeftToRight << false << QString() << 750;
    QTest::newRow("with a groove of its own") << Qt::Horizontal << Qt::LeftToRight << false << groove << 250;
}

void TestKVSlider::APressInTheGrooveGoesThere()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(bool, inverted);
    QFETCH(QString, styleSheet);
    QFETCH(int, expected);
    KVSlider slider(orientation);
    slider.setLayoutDirection(direction);
    slider.setInvertedAppearance(inverted);
    slider.setStyleSheet(styleSheet);
    slider.setRange(0, 1000);
    slider.setValue(expected > 500 ? 0 : 1000);
    slider.resize(orientation == Qt::Horizontal ? QSize(400, 30) : QSize(30, 400));
    slider.show();
    const QSignalSpy changes(&slider, &QSlider::valueChanged);
    const QPoint place = orientation == Qt::Horizontal ? QPoint(100, 15) : QPoint(15, 100);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, place);
    QVERIFY2(std::abs(slider.value() - expected) <= 20, qPrintable(QString::number(slider.value())));
    QCOMPARE(changes.count(), 1);
    QVERIFY(!slider.isSliderDown());
}

void TestKVSlider::APressInTheGrooveGoesOnAsADrag()
{
    OpenSlider slider(Qt::Horizontal);
    slider.setRange(0, 100);
    slider.resize(400, 30);
    slider.show();
    const QSignalSpy pressed(&slider, &QSlider::sliderPressed);
    const QSignalSpy released(&slider, &QSlider::sliderReleased);
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, {200, 15});
    QCOMPARE(slider.value(), 50);
    QVERIFY(slider.isSliderDown());
    QVERIFY(std::abs(slider.Handle().center().x() - 200) <= 2);
    Drag(slider, {399, 15});
    QCOMPARE(slider.value(), 100);
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, {399, 15});
    QCOMPARE(slider.value(), 100);
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(released.count(), 1);
}

void TestKVSlider::APressOnTheHandleChangesNothing()
{
    OpenSlider slider(Qt::Horizontal);
    slider.setRange(0, 100);
    slider.setValue(30);
    slider.resize(400, 30);
    slider.show();
    const QSignalSpy changes(&slider, &QSlider::valueChanged);
    const QPoint besideTheMiddle = slider.Handle().center() + QPoint(3, 0);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, besideTheMiddle);
    QCOMPARE(slider.value(), 30);
    QCOMPARE(changes.count(), 0);
}

void TestKVSlider::ADoubleClickIsTwoPresses()
{
    KVSlider slider(Qt::Horizontal);
    slider.setRange(0, 100);
    slider.resize(400, 30);
    slider.show();
    const QSignalSpy changes(&slider, &QSlider::valueChanged);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, {200, 15});
    QTest::mouseDClick(&slider, Qt::LeftButton, Qt::NoModifier, {200, 15});
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, {200, 15});
    QCOMPARE(slider.value(), 50);
    QCOMPARE(changes.count(), 1);
    QVERIFY(!slider.isSliderDown());
}

void TestKVSlider::OtherButtonsChangeNothing()
{
    KVSlider slider(Qt::Horizontal);
    slider.resize(400, 30);
    slider.show();
    const QSignalSpy changes(&slider, &QSlider::valueChanged);
    QTest::mouseClick(&slider, Qt::RightButton, Qt::NoModifier, {300, 15});
    QCOMPARE(slider.value(), 0);
    QCOMPARE(changes.count(), 0);
}

void TestKVSlider::TheSameValueIsNotAnnounced()
{
    KVSlider slider;
    QCOMPARE(slider.orientation(), Qt::Vertical); // as QSlider
    const QSignalSpy changes(&slider, &QSlider::valueChanged);
    slider.setValue(7);
    slider.setValue(7);
    QCOMPARE(changes.count(), 1);
}

void TestKVSlider::KeepsItsHandleUnderAStyleSheetForTheGroove()
{
    KVSlider slider(Qt::Horizontal);
    slider.setRange(0, 100);
    slider.setValue(50);
    slider.resize(400, 30);
    slider.setStyleSheet(
        QStringLiteral("QSlider::groove:horizontal{height: 4px;background: rgb(0, 0, 255)}"));
    slider.show();
    const auto isGroove = [&slider](int x) {
        return slider.grab().toImage().pixelColor(x, 15) == QColor(0, 0, 255);
    };
    QVERIFY(isGroove(100));
    QVERIFY(!isGroove(200)); // the handle hides it
    const QSignalSpy pressed(&slider, &QSlider::sliderPressed);
    const QSignalSpy moved(&slider, &QSlider::sliderMoved);
    const QSignalSpy changes(&slider, &QSlider::valueChanged);
    const QSignalSpy released(&slider, &QSlider::sliderReleased);
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, {203, 15});
    QCOMPARE(slider.value(), 50); // taken beside its middle, it stays
    Drag(slider, {303, 15});
    QCOMPARE(slider.value(), 76); // 100 of the 385 pixels that a handle of 15 has to move in
    QVERIFY(slider.isSliderDown());
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, {303, 15});
    QVERIFY(!slider.isSliderDown());
    QVERIFY(!isGroove(300));
    QVERIFY(isGroove(200));
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(released.count(), 1);
}

void TestKVSlider::UnderAStyleSheetItIsDimmedWhileDisabled_data()
{
    QTest::addColumn<QColor>("window");
    QTest::newRow("light") << QColor(239, 239, 239);
    QTest::newRow("dark") << QColor(40, 40, 40);
}

void TestKVSlider::UnderAStyleSheetItIsDimmedWhileDisabled()
{
    QFETCH(QColor, window);
    KVSlider slider(Qt::Horizontal);
    slider.setPalette(QPalette(window));
    slider.setRange(0, 100);
    slider.setValue(50);
    slider.resize(400, 30);
    slider.setStyleSheet(
        QStringLiteral("QSlider::groove:horizontal{height: 4px;background: rgb(0, 0, 255)}"));
    slider.show();
    const QImage enabled = slider.grab().toImage();
    slider.setEnabled(false);
    const QImage disabled = slider.grab().toImage();
    const auto farthest = [&window](const QImage& image, const QRect& area) { // from the background
        int distance = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x) {
                const QColor c = image.pixelColor(x, y);
                distance =
                    std::max({distance, std::abs(c.red() - window.red()),
                              std::abs(c.green() - window.green()), std::abs(c.blue() - window.blue())});
            }
        return distance;
    };
    const QRect groove(50, 0, 100, 30);
    const QRect handle(190, 0, 20, 30);
    for (const QRect& part : {groove, handle}) {
        QVERIFY(farthest(disabled, part) < farthest(enabled, part) / 2);
        QVERIFY(farthest(disabled, part) > 10); // still there
    }
    QVERIFY(disabled.copy(handle) != disabled.copy(handle.translated(-50, 0)));
    slider.setEnabled(true);
    QCOMPARE(slider.grab().toImage(), enabled);
}

void TestKVSlider::AFewValuesOnALongGrooveAreReached()
{
    KVSlider slider(Qt::Horizontal);
    slider.setRange(0, 2);
    slider.resize(400, 30);
    slider.show();
    const QSignalSpy changes(&slider, &QSlider::valueChanged);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, {360, 15});
    QCOMPARE(slider.value(), 2);
    QCOMPARE(changes.count(), 1);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, {180, 15});
    QCOMPARE(slider.value(), 1);
}

QTEST_MAIN(TestKVSlider)
#include "tst_KVSlider.moc"
