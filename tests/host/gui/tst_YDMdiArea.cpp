#include "gui/YDMdiArea.h"

#include <QMainWindow>
#include <QTest>

#include <memory>

class TestYDMdiArea : public QObject
{
    Q_OBJECT

private slots:
    void NamesTheWindowThatHoldsIt();
    void NamesTheWindowOfTheNewest();
    void ShowsDocumentsAsTabs();
};

void TestYDMdiArea::NamesTheWindowThatHoldsIt()
{
    QVERIFY(!YDMdiArea::MainWindow());
    {
        QMainWindow window;
        auto* const middle = new QWidget(&window);
        auto* const area = new YDMdiArea(middle);
        QCOMPARE(YDMdiArea::MainWindow(), &window);
        delete area;
        QVERIFY(!YDMdiArea::MainWindow());
        new YDMdiArea(middle);
        QCOMPARE(YDMdiArea::MainWindow(), &window);
    }
    QVERIFY(!YDMdiArea::MainWindow());
}

void TestYDMdiArea::NamesTheWindowOfTheNewest()
{
    QMainWindow first;
    new YDMdiArea(&first);
    auto second = std::make_unique<QMainWindow>();
    new YDMdiArea(second.get());
    QCOMPARE(YDMdiArea::MainWindow(), second.get());
    second.reset();
    QCOMPARE(YDMdiArea::MainWindow(), &first);
}

void TestYDMdiArea::ShowsDocumentsAsTabs()
{
    YDMdiArea area;
    QCOMPARE(area.viewMode(), QMdiArea::TabbedView);
    QVERIFY(area.documentMode());
    QVERIFY(area.tabsClosable());
    QVERIFY(area.tabsMovable());
}

QTEST_MAIN(TestYDMdiArea)
#include "tst_YDMdiArea.moc"
