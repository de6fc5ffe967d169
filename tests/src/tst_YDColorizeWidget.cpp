#include "PanelKit.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDColorizeWidget.h"
#include "image/YDIterativeColorizeTransformation.h"
#include "widgets/KVSpinBox.h"

#include <QSlider>

namespace {

using namespace PanelKit;
using Params = YDColorizeWidget::Params;

const QColor Pink(255, 210, 255);

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDColorizeWidget>
{
    using Panel::Panel;

    QSlider* const slider = Child<QSlider>("horizontalSlider");
    KVSpinBox* const amount = Child<KVSpinBox>("m_pAmount");
};

} // namespace

class TestYDColorizeWidget : public QObject
{
    Q_OBJECT

private slots:
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm();
};

void TestYDColorizeWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<int>("amount");
    QTest::addColumn<quint32>("applied");
    const QByteArray pink = TestColors::Stored(Pink);
    QTest::newRow("as it is") << pink << 25 << Pink.rgba();
    QTest::newRow("lowest amount") << pink << Lowest << Pink.rgba();
    QTest::newRow("highest amount") << pink << Highest << Pink.rgba();
    QTest::newRow("just outside") << pink << 101 << Pink.rgba();
    QTest::newRow("invisible") << TestColors::Stored(QColor(1, 2, 3, 0)) << 100 << 0x00010203u;
    QTest::newRow("no colour") << TestColors::Stored(QColor()) << 100 << 0xff000000u;
    QTest::newRow("no numbers") << TestColors::Stored(TestColors::NoNumbers()) << 100 << 0x00000000u;
    QTest::newRow("far out") << TestColors::Stored(TestColors::FarOut()) << 100 << 0xffff00ffu;
    QTest::newRow("no model there is") << TestColors::Stored(77, {9, 9, 9, 9, 9}) << 100 << 0x00000000u;
}

void TestYDColorizeWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm()
{
    QFETCH(QByteArray, color);
    QFETCH(int, amount);
    QFETCH(quint32, applied);
    QByteArray bytes = QByteArray("KVColorizeFilter 1.00000") + color;
    QDataStream(&bytes, QIODevice::WriteOnly | QIODevice::Append) << amount;
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.widget.GetValue().amount, amount);
    QCOMPARE(f.amount->value(), qBound(0, amount, 100));
    QCOMPARE(f.slider->value(), f.amount->value());
    const RGBA32iImage source = TestPictures::Random(40, 30, 5);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source),
                                   ByRule(YDIterativeColorizeTransformation(applied, amount), source)));
}

QTEST_MAIN(TestYDColorizeWidget)
#include "tst_YDColorizeWidget.moc"
