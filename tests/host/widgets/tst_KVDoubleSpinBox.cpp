#include "widgets/KVDoubleSpinBox.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

class TestKVDoubleSpinBox : public QObject
{
    Q_OBJECT

private slots:
    void TakesCommaAndPointInEveryLocale_data();
    void TakesCommaAndPointInEveryLocale();
    void RefusesASecondSeparator();
    void LeavesPrefixAndSuffixAlone();
    void LeavesGroupsToTheLocale();
    void LeavesItsSpecialTextAlone();
    void TakesTheWheelOnlyWithTheFocus();
    void SelectsItsTextWhenTabbedTo();
    void TheSameValueIsNotAnnounced();
};

void TestKVDoubleSpinBox::TakesCommaAndPointInEveryLocale_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    const QLocale german(QLocale::German, QLocale::Germany);
    const QLocale swiss(QLocale::German, QLocale::Switzerland);
    QTest::newRow("point in English") << english << "1.25"
                                      << "1.25";
    QTest::newRow("comma in English") << english << "1,25"
                                      << "1.25";
    QTest::newRow("point in German") << german << "1.25"
                                     << "1,25";
    QTest::newRow("comma in German") << german << "1,25"
                                     << "1,25";
    QTest::newRow("comma in Swiss German") << swiss << "1,25"
                                           << "1.25";
}

void TestKVDoubleSpinBox::TakesCommaAndPointInEveryLocale()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    KVDoubleSpinBox box;
    box.setLocale(locale);
    const QSignalSpy changes(&box, QOverload<double>::of(&QDoubleSpinBox::valueChanged));
    box.selectAll();
    QTest::keyClicks(&box, typed);
    QCOMPARE(box.value(), 1.25);
    QCOMPARE(box.findChild<QLineEdit*>()->text(), shown);
    QCOMPARE(changes.count(), 3); // 1, 1.2 and 1.25
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(box.value(), 1.25);
}

void TestKVDoubleSpinBox::RefusesASecondSeparator()
{
    KVDoubleSpinBox box;
    box.setLocale(QLocale::c());
    box.selectAll();
    QTest::keyClicks(&box, QStringLiteral("1,2.5"));
    QCOMPARE(box.findChild<QLineEdit*>()->text(), QStringLiteral("1.25"));
}

void TestKVDoubleSpinBox::LeavesPrefixAndSuffixAlone()
{
    KVDoubleSpinBox box;
    box.setLocale(QLocale(QLocale::German, QLocale::Germany));
    box.setPrefix(QStringLiteral("ca. "));
    box.setSuffix(QStringLiteral(" Bl."));
    box.selectAll();
    QTest::keyClicks(&box, QStringLiteral("2.5"));
    QCOMPARE(box.value(), 2.5);
    QCOMPARE(box.findChild<QLineEdit*>()->text(), QStringLiteral("ca. 2,5 Bl."));
}

void TestKVDoubleSpinBox::LeavesGroupsToTheLocale()
{
    KVDoubleSpinBox box;
    box.setLocale(QLocale(QLocale::German, QLocale::Germany));
    box.setGroupSeparatorShown(true);
    box.setMaximum(10000);
    QCOMPARE(box.valueFromText(QStringLiteral("1.234,5")), 1234.5);
}

void TestKVDoubleSpinBox::LeavesItsSpecialTextAlone()
{
    KVDoubleSpinBox box;
    box.setLocale(QLocale(QLocale::German, QLocale::Germany));
    box.setSpecialValueText(QStringLiteral("Aut."));
    QString text = QStringLiteral("Aut.");
    int position = 0;
    QDoubleSpinBox plain;
    plain.setSpecialValueText(QStringLiteral("Aut."));
    QCOMPARE(box.validate(text, position), plain.validate(text, position));
    QCOMPARE(text, QStringLiteral("Aut."));
}

void TestKVDoubleSpinBox::TakesTheWheelOnlyWithTheFocus()
{
    QWidget window;
    KVDoubleSpinBox first(&window);
    KVDoubleSpinBox second(&window);
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
        QCOMPARE(first.value(), focused ? 1.0 : 0.0);
    }
}

void TestKVDoubleSpinBox::SelectsItsTextWhenTabbedTo()
{
    QWidget window;
    KVDoubleSpinBox first(&window);
    KVDoubleSpinBox second(&window);
    second.setLocale(QLocale::c());
    second.setValue(4.5);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Tab);
    QVERIFY(second.hasFocus());
    QCOMPARE(second.findChild<QLineEdit*>()->selectedText(), QStringLiteral("4.50"));
}

void TestKVDoubleSpinBox::TheSameValueIsNotAnnounced()
{
    KVDoubleSpinBox box;
    QVERIFY(box.keyboardTracking());
    const QSignalSpy changes(&box, QOverload<double>::of(&QDoubleSpinBox::valueChanged));
    box.setValue(5.5);
    box.setValue(5.5);
    QCOMPARE(changes.count(), 1);
}

QTEST_MAIN(TestKVDoubleSpinBox)
#include "tst_KVDoubleSpinBox.moc"
