#include "PanelKit.h"
#include "TestPictures.h"
#include "YDPosterizeWidget.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QTest>

namespace {

using namespace PanelKit;

struct Fixture : Panel<YDPosterizeWidget>
{
    using Panel::Panel;

    KVSlider* const slider = Child<KVSlider>("m_pPosterizeSlider");
    KVSpinBox* const spin = Child<KVSpinBox>("m_pPosterizeSpin");
};

} // namespace

class TestYDPosterizeWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheLevelsNeverLeaveTheirRange_data();
    void TheLevelsNeverLeaveTheirRange();
    void ConversionChangesThePixelsHandedIn_data();
    void ConversionChangesThePixelsHandedIn();
};

void TestYDPosterizeWidget::TheLevelsNeverLeaveTheirRange_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("levels");
    QTest::newRow("lowest") << 2 << 2;
    QTest::newRow("too low") << 1 << 2;
    QTest::newRow("below zero") << -1 << 2;
    QTest::newRow("the lowest int") << Lowest << 2;
    QTest::newRow("highest") << 255 << 255;
    QTest::newRow("too high") << 256 << 255;
    QTest::newRow("the highest int") << Highest << 255;
}

void TestYDPosterizeWidget::TheLevelsNeverLeaveTheirRange()
{
    QFETCH(int, given);
    QFETCH(int, levels);
    Fixture f;
    f.widget.SetPosterize(given);
    QCOMPARE(f.widget.GetPosterize(), levels);
    QCOMPARE(f.slider->value(), levels);
    f.widget.Reset();
    f.spin->setValue(given);
    QCOMPARE(f.widget.GetPosterize(), levels);
    f.widget.Reset();
    f.slider->setValue(given);
    QCOMPARE(f.widget.GetPosterize(), levels);
}

void TestYDPosterizeWidget::ConversionChangesThePixelsHandedIn_data()
{
    QTest::addColumn<int>("levels");
    QTest::addColumn<int>("grey");
    QTest::newRow("2 levels") << 2 << 0; // 0, 255
    QTest::newRow("3 levels") << 3 << 128;
    QTest::newRow("4 levels") << 4 << 85; // the second of them
    QTest::newRow("6 levels") << 6 << 102;
    QTest::newRow("255 levels") << 255 << 99;
}

void TestYDPosterizeWidget::ConversionChangesThePixelsHandedIn()
{
    QFETCH(int, levels);
    QFETCH(int, grey);
    Fixture f(false);
    f.widget.SetPosterize(levels);
    RGBA32iImage image = TestPictures::Grey(30, 20, 100);
    const RGBA32iImage shared = image;
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(image.SharesPixelsWith(shared));
    QVERIFY(TestPictures::AreEqual(image, TestPictures::Grey(30, 20, grey)));
}

QTEST_MAIN(TestYDPosterizeWidget)
#include "tst_YDPosterizeWidget.moc"
