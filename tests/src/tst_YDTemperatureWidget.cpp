#include "PanelKit.h"
#include "TestPictures.h"
#include "YDTemperatureWidget.h"
#include "image/YDTemperatureCorrection.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QTest>

namespace {

using namespace PanelKit;

using Params = YDTemperatureWidget::Params;

Params Record(int temperature, int tint, int strength)
{
    Params params;
    params.temperature = temperature;
    params.tint = tint;
    params.strength = strength;
    return params;
}

/// What the pixel form makes of `source`.
RGBA32iImage Expected(const Params& params, const RGBA32iImage& source)
{
    YDTemperatureCorrection rule;
    rule.SetData(params.temperature, params.strength, params.tint);
    return ByFunctor(rule, source);
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDTemperatureWidget>
{
    using Panel::Panel;

    KVSlider* const temperatureSlider = Child<KVSlider>("ColorTemperatureSlider");
    KVSpinBox* const temperatureSpin = Child<KVSpinBox>("m_pTemperature");
    KVSlider* const strengthSlider = Child<KVSlider>("m_pStrengthSldr");
    KVSpinBox* const strengthSpin = Child<KVSpinBox>("m_pStrength");
    KVSlider* const tintSlider = Child<KVSlider>("TintSlider");
    KVSpinBox* const tintSpin = Child<KVSpinBox>("m_pTint");
};

} // namespace

class TestYDTemperatureWidget : public QObject
{
    Q_OBJECT

private slots:
    void InATallerPanelTheRowsStayTogetherAtTheTop();
    void ResetAnnouncesThroughTheControlsAlone();
    void ResetBringsBackAStrengthThatNoControlShows();
    void RecordsFromOutsideAreKeptAndApplied_data();
    void RecordsFromOutsideAreKeptAndApplied();
    void JobsUseTheRecord();
};

void TestYDTemperatureWidget::InATallerPanelTheRowsStayTogetherAtTheTop()
{
    for (const bool isDialog : {false, true}) {
        Fixture f(isDialog);
        const QVector<QWidget*> controls{f.temperatureSlider, f.temperatureSpin, f.strengthSlider,
                                         f.strengthSpin,      f.tintSlider,      f.tintSpin};
        const auto places = [&controls] {
            QVector<QRect> all;
            for (const QWidget* const control : controls)
                all.append(control->geometry());
            return all;
        };
        const QSize fitting = f.widget.sizeHint().expandedTo(QSize(300, 0));
        f.widget.resize(fitting);
        f.widget.show();
        const QVector<QRect> compact = places();
        f.widget.resize(fitting + QSize(0, 300));
        QTRY_COMPARE(f.widget.height(), fitting.height() + 300);
        QCOMPARE(places(), compact);
        f.widget.resize(fitting + QSize(100, 0)); // and what is wider is as wide as the panel
        QTRY_VERIFY(f.tintSpin->geometry().right() > compact.last().right());
    }
}

Q_DECLARE_METATYPE(Params)

void TestYDTemperatureWidget::ResetAnnouncesThroughTheControlsAlone()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.Reset();
    QCOMPARE(announcements.Take(), QString());
    f.widget.SetValue(Record(3000, -20, 50));
    f.widget.Reset();
    QCOMPARE(announcements.Take(), OneChange() + QLatin1Char(' ') + OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    QCOMPARE(f.temperatureSlider->value(), 6500);
    QCOMPARE(f.tintSlider->value(), 0);
    f.strengthSpin->setValue(60);
    announcements.Take();
    f.widget.Reset();
    QCOMPARE(announcements.Take(), OneChange());
    QCOMPARE(f.strengthSlider->value(), 50);
}

void TestYDTemperatureWidget::ResetBringsBackAStrengthThatNoControlShows()
{
    Fixture f;
    f.widget.SetValue(Record(6500, 0, 80));
    Announcements announcements(f.widget);
    f.widget.Reset();
    QCOMPARE(announcements.Take(), QString()); // the control showed 50 all the time
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
}

void TestYDTemperatureWidget::RecordsFromOutsideAreKeptAndApplied_data()
{
    QTest::addColumn<Params>("params");
    QTest::addColumn<int>("shownTemperature");
    QTest::addColumn<int>("shownTint");
    QTest::newRow("just below") << Record(999, -101, -1) << 1000 << -100;
    QTest::newRow("just above") << Record(40001, 101, 101) << 40000 << 100;
    QTest::newRow("nothing") << Record(0, 0, 0) << 1000 << 0;
    QTest::newRow("lowest") << Record(Lowest, Lowest, Lowest) << 1000 << -100;
    QTest::newRow("highest") << Record(Highest, Highest, Highest) << 40000 << 100;
    QTest::newRow("both") << Record(Highest, Lowest, Highest) << 40000 << -100;
}

void TestYDTemperatureWidget::RecordsFromOutsideAreKeptAndApplied()
{
    QFETCH(Params, params);
    QFETCH(int, shownTemperature);
    QFETCH(int, shownTint);
    QDataStream stream(Written(params));
    Params read;
    stream >> read;
    Fixture f(false);
    f.widget.SetValue(read);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
    QCOMPARE(f.temperatureSpin->value(), shownTemperature);
    QCOMPARE(f.tintSpin->value(), shownTint);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Expected(params, source)));
    f.widget.Reset();
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
}

void TestYDTemperatureWidget::JobsUseTheRecord()
{
    const RGBA32iImage source = TestPictures::Random(150, 60, 6);
    Fixture f(false);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
    f.widget.SetValue(Record(3000, 20, 80)); // while the control of the strength shows 50
    const RGBA32iImage converted = Converted(f.widget, source);
    QVERIFY(TestPictures::AreEqual(converted, Expected(Record(3000, 20, 80), source)));
    QVERIFY(!TestPictures::AreEqual(converted, Expected(Record(3000, 20, 50), source)));
    QVERIFY(!TestPictures::AreEqual(converted, Expected(Record(3000, 80, 20), source)));
}

QTEST_MAIN(TestYDTemperatureWidget)
#include "tst_YDTemperatureWidget.moc"
