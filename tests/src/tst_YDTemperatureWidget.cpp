#include "AdjustmentProbe.h"
#include "TestPictures.h"
#include "YDTemperatureWidget.h"
#include "image/YDTemperatureCorrection.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace AdjustmentProbe;

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr int PatienceMs = 20000;

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
    const RGBA32iImage image = source.DeepCopy();
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.Width(); ++x)
            rule(image.Row(y)[x]);
    return image;
}

/// A widget of the adjustment and its controls.
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    YDTemperatureWidget widget;
    KVSlider* const temperatureSlider = Child<KVSlider>(widget, "ColorTemperatureSlider");
    KVSpinBox* const temperatureSpin = Child<KVSpinBox>(widget, "m_pTemperature");
    KVSlider* const strengthSlider = Child<KVSlider>(widget, "m_pStrengthSldr");
    KVSpinBox* const strengthSpin = Child<KVSpinBox>(widget, "m_pStrength");
    KVSlider* const tintSlider = Child<KVSlider>(widget, "TintSlider");
    KVSpinBox* const tintSpin = Child<KVSpinBox>(widget, "m_pTint");
};

} // namespace

class TestYDTemperatureWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void TheFormIsAsDesigned();
    void InATallerPanelTheRowsStayTogetherAtTheTop();
    void SlidersAndSpinBoxesFollowEachOther();
    void AChangeIsStoredAndAnnouncedOnceInOrder_data();
    void AChangeIsStoredAndAnnouncedOnceInOrder();
    void SettingARecordLeavesTheControlOfTheStrength();
    void ResetAnnouncesThroughTheControlsAlone();
    void ResetBringsBackAStrengthThatNoControlShows();
    void TheStreamIsTagAndThreeNumbers();
    void AStreamThatCannotBeReadGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void RecordsFromOutsideAreKeptAndApplied_data();
    void RecordsFromOutsideAreKeptAndApplied();
    void JobsUseTheRecord();
    void ThePreviewEqualsTheConversion();
};

void TestYDTemperatureWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDTemperatureWidget"));
}

void TestYDTemperatureWidget::TheFormIsAsDesigned()
{
    for (const bool isDialog : {false, true}) {
        Fixture f(isDialog);
        QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Temperature correction"));
        const auto* const grid = qobject_cast<QGridLayout*>(f.temperatureSlider->parentWidget()->layout());
        QVERIFY(grid);
        const auto right = Qt::AlignRight | Qt::AlignVCenter;
        CheckLabel(f.widget, *grid, 0, 0, "labelBrightness", "Temperature:", right);
        CheckSlider(f.widget, *grid, 0, "ColorTemperatureSlider", 1000, 40000, 6500);
        CheckSpinBox(f.widget, *grid, 0, 2, "m_pTemperature", 1000, 40000, 6500);
        CheckLabel(f.widget, *grid, 1, 0, "label", "Strength:", right);
        CheckSlider(f.widget, *grid, 1, "m_pStrengthSldr", 0, 100, 50);
        CheckSpinBox(f.widget, *grid, 1, 2, "m_pStrength", 0, 100, 50);
        CheckLabel(f.widget, *grid, 2, 0, "labelContrast", "Tint:", right);
        CheckSlider(f.widget, *grid, 2, "TintSlider", -100, 100, 0);
        CheckSpinBox(f.widget, *grid, 2, 2, "m_pTint", -100, 100, 0);
        QCOMPARE(grid->rowCount(), 3);
        QCOMPARE(grid->count(), 9);
        QCOMPARE(f.temperatureSpin->suffix(), QStringLiteral("K"));
        QVERIFY(f.strengthSpin->suffix().isEmpty() && f.tintSpin->suffix().isEmpty());
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(6500, 0, 50)));
    }
}

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

void TestYDTemperatureWidget::SlidersAndSpinBoxesFollowEachOther()
{
    Fixture f;
    f.temperatureSlider->setValue(3000);
    QCOMPARE(f.temperatureSpin->value(), 3000);
    f.temperatureSpin->setValue(9000);
    QCOMPARE(f.temperatureSlider->value(), 9000);
    f.strengthSlider->setValue(30);
    QCOMPARE(f.strengthSpin->value(), 30);
    f.strengthSpin->setValue(60);
    QCOMPARE(f.strengthSlider->value(), 60);
    f.tintSlider->setValue(-30);
    QCOMPARE(f.tintSpin->value(), -30);
    f.tintSpin->setValue(60);
    QCOMPARE(f.tintSlider->value(), 60);
}

void TestYDTemperatureWidget::AChangeIsStoredAndAnnouncedOnceInOrder_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("value");
    QTest::addColumn<Params>("expected");
    QTest::newRow("temperature slider") << "ColorTemperatureSlider" << 3000 << Record(3000, 0, 50);
    QTest::newRow("temperature spin box") << "m_pTemperature" << 3000 << Record(3000, 0, 50);
    QTest::newRow("strength slider") << "m_pStrengthSldr" << 70 << Record(6500, 0, 70);
    QTest::newRow("strength spin box") << "m_pStrength" << 70 << Record(6500, 0, 70);
    QTest::newRow("tint slider") << "TintSlider" << -20 << Record(6500, -20, 50);
    QTest::newRow("tint spin box") << "m_pTint" << -20 << Record(6500, -20, 50);
}

Q_DECLARE_METATYPE(Params)

void TestYDTemperatureWidget::AChangeIsStoredAndAnnouncedOnceInOrder()
{
    QFETCH(QString, control);
    QFETCH(int, value);
    QFETCH(Params, expected);
    Fixture f;
    Announcements<YDTemperatureWidget> announcements(f.widget);
    Child<QWidget>(f.widget, qPrintable(control))->setProperty("value", value);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), expected));
}

void TestYDTemperatureWidget::SettingARecordLeavesTheControlOfTheStrength()
{
    Fixture f;
    f.strengthSpin->setValue(35);
    Announcements<YDTemperatureWidget> announcements(f.widget);
    f.widget.SetValue(Record(3000, -20, 80));
    QCOMPARE(announcements.Take(), QString());
    QCOMPARE(f.temperatureSpin->value(), 3000);
    QCOMPARE(f.temperatureSlider->value(), 3000);
    QCOMPARE(f.tintSpin->value(), -20);
    QCOMPARE(f.tintSlider->value(), -20);
    QCOMPARE(f.strengthSpin->value(), 35);
    QCOMPARE(f.strengthSlider->value(), 35);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(3000, -20, 80)));
    f.tintSpin->setValue(-21); // the slots are connected again
    f.temperatureSpin->setValue(3001);
    f.strengthSpin->setValue(36);
    QCOMPARE(announcements.Take().count(QStringLiteral("data")), 3);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(3001, -21, 36)));
}

void TestYDTemperatureWidget::ResetAnnouncesThroughTheControlsAlone()
{
    Fixture f;
    Announcements<YDTemperatureWidget> announcements(f.widget);
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
    Announcements<YDTemperatureWidget> announcements(f.widget);
    f.widget.Reset();
    QCOMPARE(announcements.Take(), QString()); // the control showed 50 all the time
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
}

void TestYDTemperatureWidget::TheStreamIsTagAndThreeNumbers()
{
    const QByteArray expected = Bytes("KVTemperature 1.00000", {3000, -20, 80});
    QCOMPARE(Written(Record(3000, -20, 80)), expected);
    QCOMPARE(Written(Params()), Bytes("KVTemperature 1.00000", {6500, 0, 50}));
    QDataStream stream(expected);
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(3000, -20, 80)));
    QVERIFY(stream.atEnd());
}

void TestYDTemperatureWidget::AStreamThatCannotBeReadGivesDefaultsAndOneLine()
{
    const QRegularExpression line(
        QStringLiteral("^\\[src/YDTemperatureWidget:[0-9]+\\] Read temperature data error\\.$"));
    const QByteArray whole = Written(Record(3000, -20, 80));
    QByteArray otherVersion = whole;
    otherVersion.replace("1.00000", "1.00001");
    QVector<QByteArray> streams{otherVersion};
    for (int length = 0; length < whole.size(); ++length)
        streams.append(whole.left(length));
    for (const QByteArray& bytes : qAsConst(streams)) {
        QDataStream stream(bytes);
        Params params = Record(1, 2, 3);
        QTest::ignoreMessage(QtDebugMsg, line);
        stream >> params;
        QVERIFY(YDRecord::Equal(params, Params()));
    }
}

void TestYDTemperatureWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral(
                             "^\\[src/YDTemperatureWidget:[0-9]+\\] Write temperature data error\\.$")));
    stream << Params();
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

void TestYDTemperatureWidget::ThePreviewEqualsTheConversion()
{
    const RGBA32iImage source = TestPictures::Random(300, 200, 7);
    Fixture f;
    f.widget.SetValue(Record(3000, 20, 80));
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Expected(Record(3000, 20, 80), source)));
}

QTEST_MAIN(TestYDTemperatureWidget)
#include "tst_YDTemperatureWidget.moc"
