#include "widgets/KVSpinBox.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

class TestKVSpinBox : public QObject
{
    Q_OBJECT

private slots:
    void TakesTheWheelOnlyWithTheFocus();
    void SelectsItsTextWhenTabbedTo();
    void TracksTheKeyboardAndAnnouncesOnce();
};

void TestKVSpinBox::TakesTheWheelOnlyWithTheFocus()
{
    QWidget window;
    KVSpinBox first(&window);
    KVSpinBox second(&window);
    second.move(0, 50);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    second.setFocus();
    for (const bool focused : {false, true}) {
        if (focused)
            first.setFocus();
        QWheelEvent event(QPointF(5, 5), first.mapToGlobal({5, 5}), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        event.ignore();
        QApplication::sendEvent(&first, &event);
        QCOMPARE(event.isAccepted(), focused);
        QCOMPARE(first.value(), focused ? 1 : 0);
        QCOMPARE(first.hasFocus(), focused);
    }
}

void TestKVSpinBox::SelectsItsTextWhenTabbedTo()
{
    QWidget window;
    KVSpinBox first(&window);
    KVSpinBox second(&window);
    second.setValue(42);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Tab);
    QVERIFY(second.hasFocus());
    QCOMPARE(second.findChild<QLineEdit*>()->selectedText(), QStringLiteral("42"));
}

void TestKVSpinBox::TracksTheKeyboardAndAnnouncesOnce()
{
    KVSpinBox box;
    QVERIFY(box.keyboardTracking());
    const QSignalSpy changes(&box, QOverload<int>::of(&QSpinBox::valueChanged));
    box.setValue(5);
    box.setValue(5);
    QCOMPARE(changes.count(), 1);
    box.selectAll();
    QTest::keyClicks(&box, QStringLiteral("12")); // 1, then 12
    QCOMPARE(changes.count(), 3);
    QCOMPARE(box.value(), 12);
}

QTEST_MAIN(TestKVSpinBox)
#include "tst_KVSpinBox.moc"
