#include "PanelKit.h"
#include "TestPictures.h"
#include "YDColorBalanceWidget.h"
#include "image/YDIterativeColorBalanceTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QTest>

#include <algorithm>

namespace {

using namespace PanelKit;

using Params = YDColorBalanceWidget::Params;
using Axis = Params::Axis;

/// Nine values that all differ.
Params Record(int toneRange = 2, bool preserveLuminosity = true)
{
    Params params;
    params.cyanRed = {{11, 12, 13}};
    params.magentaGreen = {{-21, -22, -23}};
    params.yellowBlue = {{31, 32, 33}};
    params.toneRange = toneRange;
    params.preserveLuminosity = preserveLuminosity;
    return params;
}

RGBA32iImage Expected(const Params& params, const RGBA32iImage& source)
{
    return ByRule(YDIterativeColorBalanceTransformation(params.cyanRed.data(), params.magentaGreen.data(),
                                                        params.yellowBlue.data()),
                  source);
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDColorBalanceWidget>
{
    using Panel::Panel;

    /// What the three spin boxes show.
    QVector<int> Shown() const { return {crSpin->value(), mgSpin->value(), ybSpin->value()}; }
    /// How many of the axes' six controls can be used.
    int EnabledControls() const
    {
        const QVector<QWidget*> controls{crSlider, crSpin, mgSlider, mgSpin, ybSlider, ybSpin};
        return int(
            std::count_if(controls.begin(), controls.end(), [](QWidget* each) { return each->isEnabled(); }));
    }
    /// The checked one of shadows, midtones and highlights, from 1; 0 for none, -1 for several.
    int CheckedRange() const
    {
        const bool checked[] = {shadows->isChecked(), midtones->isChecked(), highlights->isChecked()};
        if (int(checked[0]) + int(checked[1]) + int(checked[2]) > 1)
            return -1;
        return checked[0] ? 1 : checked[1] ? 2 : checked[2] ? 3 : 0;
    }

    KVSlider* const crSlider = Child<KVSlider>("m_pCRSlider");
    KVSpinBox* const crSpin = Child<KVSpinBox>("m_pCRSpin");
    KVSlider* const mgSlider = Child<KVSlider>("m_pMGSlider");
    KVSpinBox* const mgSpin = Child<KVSpinBox>("m_pMGSpin");
    KVSlider* const ybSlider = Child<KVSlider>("m_pYBSlider");
    KVSpinBox* const ybSpin = Child<KVSpinBox>("m_pYBSpin");
    QRadioButton* const shadows = Child<QRadioButton>("m_pShadows");
    QRadioButton* const midtones = Child<QRadioButton>("m_pMidtones");
    QRadioButton* const highlights = Child<QRadioButton>("m_pHighlights");
    QCheckBox* const luminosity = Child<QCheckBox>("m_pLuminosity");
};

} // namespace

class TestYDColorBalanceWidget : public QObject
{
    Q_OBJECT

private slots:
    void GroovesShowTheColoursOfTheirEnds();
    void AnAxisIsStoredInTheSelectedRangeAlone_data();
    void AnAxisIsStoredInTheSelectedRangeAlone();
    void SelectingARangeShowsItsValuesAndStartsNoPreview_data();
    void SelectingARangeShowsItsValuesAndStartsNoPreview();
    void TurningARangeOffDoesNothing();
    void MidtonesAreEditedAndThenShadowsShown();
    void WithoutARangeNothingCanBeEdited_data();
    void WithoutARangeNothingCanBeEdited();
    void ARangeCanBeSelectedAfterNone();
    void RecordsFromOutsideAreKeptAndApplied_data();
    void RecordsFromOutsideAreKeptAndApplied();
    void JobsUseTheRecord();
};

void TestYDColorBalanceWidget::GroovesShowTheColoursOfTheirEnds()
{
    const Fixture f;
    const auto between = [](const QColor& left, const QColor& right) {
        QLinearGradient gradient(0, 0, 1, 0);
        gradient.setStops({{0.0, left}, {1.0, right}});
        return GrooveSheet(gradient);
    };
    QCOMPARE(f.crSlider->styleSheet(), between(QColor(0, 255, 255), QColor(255, 0, 0)));
    QCOMPARE(f.mgSlider->styleSheet(), between(QColor(255, 0, 255), QColor(0, 255, 0)));
    QCOMPARE(f.ybSlider->styleSheet(), between(QColor(255, 255, 0), QColor(0, 0, 255)));
}

void TestYDColorBalanceWidget::AnAxisIsStoredInTheSelectedRangeAlone_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("axis");
    QTest::addColumn<int>("toneRange");
    const QStringList ranges{QStringLiteral("shadows"), QStringLiteral("midtones"),
                             QStringLiteral("highlights")};
    const QStringList axes{QStringLiteral("m_pCR"), QStringLiteral("m_pMG"), QStringLiteral("m_pYB")};
    for (int axis = 0; axis < 3; ++axis)
        for (int toneRange = 1; toneRange <= 3; ++toneRange)
            for (const char* const kind : {"Slider", "Spin"}) {
                const QString control = axes[axis] + QString::fromLatin1(kind);
                QTest::addRow("%s, %s", qPrintable(control), qPrintable(ranges[toneRange - 1]))
                    << control << axis << toneRange;
            }
}

void TestYDColorBalanceWidget::AnAxisIsStoredInTheSelectedRangeAlone()
{
    QFETCH(QString, control);
    QFETCH(int, axis);
    QFETCH(int, toneRange);
    Fixture f;
    f.widget.SetValue(Record(toneRange));
    Announcements announcements(f.widget);
    Child<QWidget>(f.widget, qPrintable(control))->setProperty("value", 77);
    QCOMPARE(announcements.Take(), OneChange());
    Params expected = Record(toneRange);
    Axis* const axes[] = {&expected.cyanRed, &expected.magentaGreen, &expected.yellowBlue};
    (*axes[axis])[std::size_t(toneRange - 1)] = 77;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), expected));
}

void TestYDColorBalanceWidget::SelectingARangeShowsItsValuesAndStartsNoPreview_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("toneRange");
    QTest::addColumn<QVector<int>>("shown");
    QTest::newRow("shadows") << 2 << "m_pShadows" << 1 << QVector<int>{11, -21, 31};
    QTest::newRow("midtones") << 3 << "m_pMidtones" << 2 << QVector<int>{12, -22, 32};
    QTest::newRow("highlights") << 1 << "m_pHighlights" << 3 << QVector<int>{13, -23, 33};
}

void TestYDColorBalanceWidget::SelectingARangeShowsItsValuesAndStartsNoPreview()
{
    QFETCH(int, from);
    QFETCH(QString, button);
    QFETCH(int, toneRange);
    QFETCH(QVector<int>, shown);
    Fixture f;
    f.widget.SetValue(Record(from));
    Announcements announcements(f.widget);
    Child<QRadioButton>(f.widget, qPrintable(button))->click();
    QCOMPARE(announcements.Take(), QStringLiteral("host value"));
    QCOMPARE(f.CheckedRange(), toneRange);
    QCOMPARE(f.Shown(), shown);
    QCOMPARE(f.crSlider->value(), shown[0]);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(toneRange)));
    f.crSpin->setValue(50); // the slots are connected again
    QCOMPARE(announcements.Take(), OneChange());
    QCOMPARE(f.widget.GetValue().cyanRed[std::size_t(toneRange - 1)], 50);
}

void TestYDColorBalanceWidget::TurningARangeOffDoesNothing()
{
    Fixture f;
    f.widget.SetValue(Record(2));
    Announcements announcements(f.widget);
    f.widget.OnShadowChanged(false);
    f.widget.OnMidtoneChanged(false);
    f.widget.OnHighLightChanged(false);
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(2)));
    QCOMPARE(f.Shown(), QVector<int>({12, -22, 32}));
}

void TestYDColorBalanceWidget::MidtonesAreEditedAndThenShadowsShown()
{
    Fixture f;
    f.crSlider->setValue(40);
    QCOMPARE(f.widget.GetValue().cyanRed, (Axis{{0, 40, 0}}));
    QCOMPARE(f.widget.GetValue().magentaGreen, (Axis{{0, 0, 0}}));
    QCOMPARE(f.widget.GetValue().yellowBlue, (Axis{{0, 0, 0}}));
    f.shadows->setChecked(true);
    QCOMPARE(f.Shown(), QVector<int>({0, 0, 0}));
    QCOMPARE(f.crSlider->value(), 0);
    f.midtones->setChecked(true);
    QCOMPARE(f.Shown(), QVector<int>({40, 0, 0}));
    QCOMPARE(f.widget.GetValue().cyanRed, (Axis{{0, 40, 0}}));
}

void TestYDColorBalanceWidget::WithoutARangeNothingCanBeEdited_data()
{
    QTest::addColumn<int>("toneRange");
    for (const int toneRange : {0, 4, -1, Lowest, Highest})
        QTest::addRow("%d", toneRange) << toneRange;
}

void TestYDColorBalanceWidget::WithoutARangeNothingCanBeEdited()
{
    QFETCH(int, toneRange);
    for (const int before : {1, 2, 3}) {
        Fixture f;
        f.widget.SetValue(Record(before));
        Announcements announcements(f.widget);
        f.widget.SetValue(Record(toneRange));
        QCOMPARE(announcements.Take(), QString());
        QCOMPARE(f.CheckedRange(), 0);
        QCOMPARE(f.EnabledControls(), 0);
        QVERIFY(f.luminosity->isEnabled());
        QCOMPARE(f.Shown(), QVector<int>({0, 0, 0}));
        f.widget.OnCRChanged(5);
        f.widget.OnMGChanged(6);
        f.widget.OnYBChanged(7);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(toneRange)));
        QCOMPARE(announcements.Take(), QStringList({OneChange(), OneChange(), OneChange()}).join(' '));
    }
}

void TestYDColorBalanceWidget::ARangeCanBeSelectedAfterNone()
{
    Fixture f;
    f.widget.SetValue(Record(0));
    f.luminosity->setEnabled(false);
    f.midtones->click();
    QCOMPARE(f.CheckedRange(), 2);
    QCOMPARE(f.EnabledControls(), 6);
    QVERIFY(f.luminosity->isEnabled());
    QCOMPARE(f.Shown(), QVector<int>({12, -22, 32}));
    f.shadows->click();
    QCOMPARE(f.CheckedRange(), 1); // they exclude one another again
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(1)));
}

void TestYDColorBalanceWidget::RecordsFromOutsideAreKeptAndApplied_data()
{
    QTest::addColumn<QVector<int>>("numbers");
    QTest::newRow("lowest") << QVector<int>(9, Lowest);
    QTest::newRow("highest") << QVector<int>(9, Highest);
    QTest::newRow("both") << QVector<int>{Lowest,  Highest, Lowest,  Highest, Lowest,
                                          Highest, Lowest,  Highest, Lowest};
    QTest::newRow("just outside") << QVector<int>{101, -101, 101, -101, 101, -101, 101, -101, 101};
}

void TestYDColorBalanceWidget::RecordsFromOutsideAreKeptAndApplied()
{
    QFETCH(QVector<int>, numbers);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    for (const int toneRange : {Lowest, 0, 1, 2, 3, Highest}) {
        Params params;
        params.toneRange = toneRange;
        for (std::size_t i = 0; i < 3; ++i) {
            params.cyanRed[i] = numbers[int(i)];
            params.magentaGreen[i] = numbers[int(i) + 3];
            params.yellowBlue[i] = numbers[int(i) + 6];
        }
        QDataStream stream(Written(params));
        Params read;
        stream >> read;
        Fixture f(false);
        f.widget.SetValue(read);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
        QVERIFY(f.crSpin->value() >= -100 && f.crSpin->value() <= 100);
        QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Expected(params, source)));
    }
}

void TestYDColorBalanceWidget::JobsUseTheRecord()
{
    const RGBA32iImage source = TestPictures::Random(150, 60, 6);
    Fixture f(false);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
    f.widget.SetValue(Record(3));
    const RGBA32iImage converted = Converted(f.widget, source);
    QVERIFY(TestPictures::AreEqual(converted, Expected(Record(), source)));
    QVERIFY(!TestPictures::AreEqual(converted, source));
    f.shadows->click(); // other values are shown, and the same are applied
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), converted));
    f.widget.SetValue(Record(0, false));
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), converted));
}

QTEST_MAIN(TestYDColorBalanceWidget)
#include "tst_YDColorBalanceWidget.moc"
