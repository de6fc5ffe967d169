#include "PanelKit.h"
#include "TestPictures.h"
#include "YDBlackAndWhiteWidget.h"
#include "image/YDIterativeBlackAndWhiteTransformation.h"
#include "widgets/KVDoubleSpinBox.h"

#include <QRadioButton>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using namespace PanelKit;

using Params = YDBlackAndWhiteWidget::Params;

Params Record(int type, float r = 0.333f, float g = 0.333f, float b = 0.333f)
{
    Params params;
    params.r = r;
    params.g = g;
    params.b = b;
    params.type = type;
    return params;
}

RGBA32iImage Expected(bool isCie, float r, float g, float b, const RGBA32iImage& source)
{
    return ByRule(YDIterativeBlackAndWhiteTransformation(isCie, r, g, b), source);
}

/// The fields of a record with the weights 0.5, 0.25 and 1, whose doubles are short.
QByteArray FieldBytes(int type)
{
    return Bytes("", {type}) + QByteArray::fromHex("3fe0000000000000"
                                                   "3fd0000000000000"
                                                   "3ff0000000000000");
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDBlackAndWhiteWidget>
{
    using Panel::Panel;

    /// What the three spin boxes show.
    QString Shown() const
    {
        return QStringList({red->cleanText(), green->cleanText(), blue->cleanText()}).join(QLatin1Char(' '));
    }
    /// The type whose button is checked; -1 for none, -2 for several.
    int CheckedType() const
    {
        int checked = -1;
        for (int type = 0; type < buttons.size(); ++type)
            if (buttons[type]->isChecked())
                checked = checked == -1 ? type : -2;
        return checked;
    }
    /// How many of the three weights can be edited.
    int EnabledWeights() const
    {
        return int(red->isEnabled()) + int(green->isEnabled()) + int(blue->isEnabled());
    }

    const QVector<QRadioButton*> buttons{
        Child<QRadioButton>("m_pAverage"), Child<QRadioButton>("m_pLuminance"),
        Child<QRadioButton>("m_pD65"),     Child<QRadioButton>("m_pNTSC"),
        Child<QRadioButton>("m_pCIE"),     Child<QRadioButton>("m_pCustom")};
    KVDoubleSpinBox* const red = Child<KVDoubleSpinBox>("m_pRed");
    KVDoubleSpinBox* const green = Child<KVDoubleSpinBox>("m_pGreen");
    KVDoubleSpinBox* const blue = Child<KVDoubleSpinBox>("m_pBlue");
};

} // namespace

class TestYDBlackAndWhiteWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void EverySetHasItsWeights_data();
    void EverySetHasItsWeights();
    void ChoosingASetShowsItsWeightsAndAnnouncesOnce_data() { EverySetHasItsWeights_data(); }
    void ChoosingASetShowsItsWeightsAndAnnouncesOnce();
    void OnlyCustomWeightsCanBeEdited();
    void EditsAreIgnoredWhileAFixedSetIsChosen();
    void CustomBringsTheStoredWeightsBack();
    void AnEditOfCustomWeightsIsStoredAndAnnounced();
    void UncheckingDoesNothing();
    void AnUnknownTypeChecksNoButton_data();
    void AnUnknownTypeChecksNoButton();
    void AnyOtherTagIsRefused_data();
    void AnyOtherTagIsRefused();
    void JobsUseTheSetsWeights_data() { EverySetHasItsWeights_data(); }
    void JobsUseTheSetsWeights();
    void WeightsAreNotNormalised();
    void RecordsFromOutsideAreKeptAndApplied_data();
    void RecordsFromOutsideAreKeptAndApplied();
};

void TestYDBlackAndWhiteWidget::initTestCase() { QLocale::setDefault(QLocale::c()); }

void TestYDBlackAndWhiteWidget::EverySetHasItsWeights_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<float>("r");
    QTest::addColumn<float>("g");
    QTest::addColumn<float>("b");
    QTest::addColumn<QString>("shown");
    QTest::newRow("average") << 0 << 0.333f << 0.333f << 0.333f << "0.333 0.333 0.333";
    QTest::newRow("luminance") << 1 << 0.212671f << 0.71516f << 0.072169f << "0.213 0.715 0.072";
    QTest::newRow("D65") << 2 << 0.212671f << 0.71516f << 0.072169f << "0.213 0.715 0.072";
    QTest::newRow("NTSC") << 3 << 0.3f << 0.59f << 0.11f << "0.300 0.590 0.110";
    QTest::newRow("CIE") << 4 << 0.212671f << 0.71516f << 0.072169f << "0.213 0.715 0.072";
    QTest::newRow("custom") << 5 << 0.5f << 0.25f << 1.0f << "0.500 0.250 1.000";
}

void TestYDBlackAndWhiteWidget::EverySetHasItsWeights()
{
    QFETCH(int, type);
    QFETCH(float, r);
    QFETCH(float, g);
    QFETCH(float, b);
    const Params params = Record(type, 0.5f, 0.25f, 1.0f);
    QCOMPARE(params.GetR(), r);
    QCOMPARE(params.GetG(), g);
    QCOMPARE(params.GetB(), b);
}

void TestYDBlackAndWhiteWidget::ChoosingASetShowsItsWeightsAndAnnouncesOnce()
{
    QFETCH(int, type);
    QFETCH(QString, shown);
    Fixture f;
    f.widget.SetValue(Record(type == 3 ? 1 : 3, 0.5f, 0.25f, 1.0f)); // any other
    Announcements announcements(f.widget);
    f.buttons[type]->click();
    QCOMPARE(announcements.Take(), OneChange());
    QCOMPARE(f.CheckedType(), type);
    QCOMPARE(f.Shown(), shown);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(type, 0.5f, 0.25f, 1.0f)));
}

void TestYDBlackAndWhiteWidget::OnlyCustomWeightsCanBeEdited()
{
    Fixture f;
    for (int type = 0; type < 6; ++type) {
        f.buttons[type]->click();
        QCOMPARE(f.EnabledWeights(), type == 5 ? 3 : 0);
    }
    f.buttons[2]->click();
    QCOMPARE(f.EnabledWeights(), 0);
    f.widget.SetValue(Record(5));
    QCOMPARE(f.EnabledWeights(), 3);
    f.widget.SetValue(Record(4));
    QCOMPARE(f.EnabledWeights(), 0);
}

void TestYDBlackAndWhiteWidget::EditsAreIgnoredWhileAFixedSetIsChosen()
{
    for (int type = 0; type < 5; ++type) {
        Fixture f;
        f.widget.SetValue(Record(type, 0.5f, 0.25f, 1.0f));
        Announcements announcements(f.widget);
        f.red->setValue(0.9);
        f.green->setValue(0.8);
        f.blue->setValue(0.7);
        QCOMPARE(announcements.Take(), QString());
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(type, 0.5f, 0.25f, 1.0f)));
    }
}

void TestYDBlackAndWhiteWidget::CustomBringsTheStoredWeightsBack()
{
    Fixture f;
    f.buttons[5]->click();
    f.red->setValue(0.1);
    f.green->setValue(0.2);
    f.blue->setValue(0.4);
    f.buttons[3]->click();
    QCOMPARE(f.Shown(), QStringLiteral("0.300 0.590 0.110"));
    f.buttons[5]->click();
    QCOMPARE(f.Shown(), QStringLiteral("0.100 0.200 0.400"));
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(5, 0.1f, 0.2f, 0.4f)));
}

void TestYDBlackAndWhiteWidget::AnEditOfCustomWeightsIsStoredAndAnnounced()
{
    Fixture f;
    f.widget.SetValue(Record(5));
    Announcements announcements(f.widget);
    f.red->setValue(0.25);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(5, 0.25f)));
    f.green->setValue(0.1);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(5, 0.25f, 0.1f)));
    f.blue->setValue(1);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(5, 0.25f, 0.1f, 1.0f)));
}

void TestYDBlackAndWhiteWidget::UncheckingDoesNothing()
{
    Fixture f;
    f.widget.SetValue(Record(3));
    Announcements announcements(f.widget);
    f.widget.OnAverage(false);
    f.widget.OnLuminance(false);
    f.widget.OnD65(false);
    f.widget.OnNTSC(false);
    f.widget.OnCIE(false);
    f.widget.OnCustom(false);
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(3)));
}

void TestYDBlackAndWhiteWidget::AnUnknownTypeChecksNoButton_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {6, -1, Lowest, Highest})
        QTest::addRow("%d", type) << type;
}

void TestYDBlackAndWhiteWidget::AnUnknownTypeChecksNoButton()
{
    QFETCH(int, type);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    for (const int before : {0, 5}) {
        Fixture f(false);
        f.widget.SetValue(Record(before));
        Announcements announcements(f.widget);
        f.widget.SetValue(Record(type, 0.5f, 0.25f, 0.125f));
        QCOMPARE(f.CheckedType(), -1);
        QCOMPARE(f.EnabledWeights(), 0);
        QCOMPARE(f.Shown(), QStringLiteral("0.500 0.250 0.125"));
        f.red->setValue(0.9);
        QCOMPARE(announcements.Take(), QString());
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(type, 0.5f, 0.25f, 0.125f)));
        QVERIFY(TestPictures::AreEqual(Converted(f.widget, source),
                                       Expected(false, 0.5f, 0.25f, 0.125f, source)));
        f.buttons[1]->click();
        f.buttons[2]->click();
        QCOMPARE(f.CheckedType(), 2); // they exclude one another again
        QCOMPARE(f.widget.GetValue().type, 2);
    }
}

void TestYDBlackAndWhiteWidget::AnyOtherTagIsRefused_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("another version") << QByteArray("KVBlackAndWhite 1.00001");
    QTest::newRow("another version of the older") << QByteArray("KVDesaturate 1.00001xyz");
    QTest::newRow("another adjustment") << QByteArray("KVBrightnessContrast 1.");
    QTest::newRow("the end of the current one alone") << QByteArray("xxxxxxxxxxxxxxxxxxxx000");
}

void TestYDBlackAndWhiteWidget::AnyOtherTagIsRefused()
{
    QFETCH(QByteArray, tag);
    QDataStream stream(tag + FieldBytes(3));
    Params params = Record(1, 0.5f, 0.25f, 1.0f);
    QVERIFY(!params.Read(stream));
    QCOMPARE(stream.device()->pos(), qint64(23)); // no further than a tag
    QVERIFY(YDRecord::Equal(params, Record(1, 0.5f, 0.25f, 1.0f)));
}

void TestYDBlackAndWhiteWidget::JobsUseTheSetsWeights()
{
    QFETCH(int, type);
    QFETCH(float, r);
    QFETCH(float, g);
    QFETCH(float, b);
    const RGBA32iImage source = TestPictures::Random(150, 60, 6);
    Fixture f(false);
    f.widget.SetValue(Record(type, 0.5f, 0.25f, 1.0f));
    const RGBA32iImage converted = Converted(f.widget, source);
    QVERIFY(TestPictures::AreEqual(converted, Expected(type == 4, r, g, b, source)));
    // The flag is what tells CIE from the two sets of the same weights.
    QVERIFY(!TestPictures::AreEqual(converted, Expected(type != 4, r, g, b, source)));
}

void TestYDBlackAndWhiteWidget::WeightsAreNotNormalised()
{
    const RGBA32iImage source = TestPictures::Random(150, 60, 7);
    Fixture f(false);
    f.widget.SetValue(Record(5, 1.0f, 1.0f, 1.0f));
    const RGBA32iImage converted = Converted(f.widget, source);
    QVERIFY(TestPictures::AreEqual(converted, Expected(false, 1.0f, 1.0f, 1.0f, source)));
    QVERIFY(!TestPictures::AreEqual(converted, Expected(false, 0.333f, 0.333f, 0.333f, source)));
}

void TestYDBlackAndWhiteWidget::RecordsFromOutsideAreKeptAndApplied_data()
{
    QTest::addColumn<float>("weight");
    QTest::newRow("negative") << -1.0f;
    QTest::newRow("large") << 1e30f;
    QTest::newRow("largest") << std::numeric_limits<float>::max();
    QTest::newRow("infinite") << std::numeric_limits<float>::infinity();
    QTest::newRow("negative infinite") << -std::numeric_limits<float>::infinity();
    QTest::newRow("no number") << std::numeric_limits<float>::quiet_NaN();
    QTest::newRow("smallest") << std::numeric_limits<float>::denorm_min();
}

void TestYDBlackAndWhiteWidget::RecordsFromOutsideAreKeptAndApplied()
{
    QFETCH(float, weight);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    for (const int type : {0, 5, Highest}) {
        QDataStream stream(Written(Record(type, weight, weight, 0.5f)));
        Params params;
        stream >> params;
        Fixture f(false);
        f.widget.SetValue(params);
        const Params kept = f.widget.GetValue();
        QCOMPARE(kept.type, type);
        QVERIFY(std::isnan(weight) ? std::isnan(kept.r) : kept.r == weight);
        if (type != 0) // what is no number counts as 0 in the job too
            QCOMPARE(f.red->value(), std::isnan(weight) ? 0.0 : double(std::clamp(weight, 0.0f, 1.0f)));
        const RGBA32iImage converted = Converted(f.widget, source);
        QVERIFY(TestPictures::AreEqual(converted,
                                       Expected(false, params.GetR(), params.GetG(), params.GetB(), source)));
        f.widget.Reset();
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
        QCOMPARE(f.Shown(), QStringLiteral("0.333 0.333 0.333"));
    }
}

QTEST_MAIN(TestYDBlackAndWhiteWidget)
#include "tst_YDBlackAndWhiteWidget.moc"
