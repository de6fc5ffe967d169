#include "guicore/YDCommonComboBox.h"

#include <QAbstractItemView>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

namespace {

const QString LongText =
    QStringLiteral("An item that is much longer than a panel at the window's side is wide");

} // namespace

class TestYDCommonComboBox : public QObject
{
    Q_OBJECT

private slots:
    void TakesTheWheelOnlyWithTheFocus();
    void AsksForLittleWidthHoweverLongItsItems();
    void DropsAListAsWideAsItsItems();
};

void TestYDCommonComboBox::TakesTheWheelOnlyWithTheFocus()
{
    QWidget window;
    YDCommonComboBox first(&window);
    YDCommonComboBox second(&window);
    second.move(0, 50);
    first.addItems({QStringLiteral("a"), QStringLiteral("b")});
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    second.setFocus();
    const QSignalSpy changes(&first, QOverload<int>::of(&QComboBox::currentIndexChanged));
    for (const bool focused : {false, true}) {
        if (focused)
            first.setFocus();
        QWheelEvent event(QPointF(5, 5), first.mapToGlobal({5, 5}), QPoint(), QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        event.ignore();
        QApplication::sendEvent(&first, &event);
        QCOMPARE(event.isAccepted(), focused);
        QCOMPARE(first.currentIndex(), focused ? 1 : 0);
        QCOMPARE(changes.count(), focused ? 1 : 0);
        QCOMPARE(first.hasFocus(), focused);
    }
}

void TestYDCommonComboBox::AsksForLittleWidthHoweverLongItsItems()
{
    YDCommonComboBox box;
    box.addItem(QStringLiteral("short"));
    const QSize before = box.sizeHint();
    box.addItem(LongText);
    box.setCurrentIndex(1);
    QCOMPARE(box.sizeHint(), before);
    QVERIFY(box.minimumSizeHint().width() < box.fontMetrics().horizontalAdvance(LongText) / 2);
    QCOMPARE(box.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(box.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

void TestYDCommonComboBox::DropsAListAsWideAsItsItems()
{
    YDCommonComboBox box;
    box.addItem(LongText);
    box.resize(100, box.sizeHint().height());
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    box.showPopup();
    QTRY_VERIFY(box.view()->isVisible());
    QVERIFY(box.view()->viewport()->width() >= box.view()->sizeHintForColumn(0));
    box.hidePopup();
    box.clear();
    box.showPopup(); // an empty list is none
    QCOMPARE(box.currentIndex(), -1);
}

QTEST_MAIN(TestYDCommonComboBox)
#include "tst_YDCommonComboBox.moc"
