#include "AdjustmentProbe.h"
#include "TestPictures.h"
#include "YDColorBalanceWidget.h"
#include "image/YDIterativeColorBalanceTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace AdjustmentProbe;

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr int PatienceMs = 20000;

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
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

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

    YDColorBalanceWidget widget;
    KVSlider* const crSlider = Child<KVSlider>(widget, "m_pCRSlider");
    KVSpinBox* const crSpin = Child<KVSpinBox>(widget, "m_pCRSpin");
    KVSlider* const mgSlider = Child<KVSlider>(widget, "m_pMGSlider");
    KVSpinBox* const mgSpin = Child<KVSpinBox>(widget, "m_pMGSpin");
    KVSlider* const ybSlider = Child<KVSlider>(widget, "m_pYBSlider");
    KVSpinBox* const ybSpin = Child<KVSpinBox>(widget, "m_pYBSpin");
    QRadioButton* const shadows = Child<QRadioButton>(widget, "m_pShadows");
    QRadioButton* const midtones = Child<QRadioButton>(widget, "m_pMidtones");
    QRadioButton* const highlights = Child<QRadioButton>(widget, "m_pHighlights");
    QCheckBox* const luminosity = Child<QCheckBox>(widget, "m_pLuminosity");
};

} // namespace

class TestYDColorBalanceWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void TheFormIsAsDesigned();
    void GroovesShowTheColoursOfTheirEnds();
    void ThePanelOpensWithMidtonesAndLuminosity();
    void SlidersAndSpinBoxesFollowEachOther();
    void AnAxisIsStoredInTheSelectedRangeAlone_data();
    void AnAxisIsStoredInTheSelectedRangeAlone();
    void SelectingARangeShowsItsValuesAndStartsNoPreview_data();
    void SelectingARangeShowsItsValuesAndStartsNoPreview();
    void TurningARangeOffDoesNothing();
    void MidtonesAreEditedAndThenShadowsShown();
    void LuminosityIsStoredAndAnnounced();
    void SettingARecordShowsItAndAnnouncesNothing_data();
    void SettingARecordShowsItAndAnnouncesNothing();
    void WithoutARangeNothingCanBeEdited_data();
    void WithoutARangeNothingCanBeEdited();
    void ARangeCanBeSelectedAfterNone();
    void ResetGoesBackToMidtonesAndAnnouncesOnce();
    void ResetStartsAPreview();
    void TheStreamIsTagAndElevenNumbers();
    void AStreamThatCannotBeReadGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void RecordsFromOutsideAreKeptAndApplied_data();
    void RecordsFromOutsideAreKeptAndApplied();
    void JobsUseTheRecord();
};

void TestYDColorBalanceWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDColorBalanceWidget"));
}

void TestYDColorBalanceWidget::TheFormIsAsDesigned()
{
    Fixture f(false);
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Color Balance"));
    QCOMPARE(f.widget.size(), QSize(254, 341));
    const auto* const outer = Child<QGridLayout>(f.widget, "gridLayout_3");
    const auto* const grid = Child<QGridLayout>(f.widget, "gridLayout_2");
    const auto* const buttons = Child<QGridLayout>(f.widget, "gridLayout");
    QCOMPARE(outer->itemAtPosition(0, 0)->layout(), grid);
    const auto right = Qt::AlignRight | Qt::AlignVCenter;
    const auto left = Qt::AlignLeft | Qt::AlignVCenter;
    CheckLabel(f.widget, *grid, 0, 0, "label_2", "Cyan", right);
    CheckSlider(f.widget, *grid, 0, "m_pCRSlider", -100, 100, 0);
    CheckLabel(f.widget, *grid, 0, 2, "label_5", "Red", left);
    CheckSpinBox(f.widget, *grid, 0, 3, "m_pCRSpin", -100, 100, 0);
    CheckLabel(f.widget, *grid, 1, 0, "label_3", "Magenta", right);
    CheckSlider(f.widget, *grid, 1, "m_pMGSlider", -100, 100, 0);
    CheckLabel(f.widget, *grid, 1, 2, "label_6", "Green", left);
    CheckSpinBox(f.widget, *grid, 1, 3, "m_pMGSpin", -100, 100, 0);
    CheckLabel(f.widget, *grid, 2, 0, "label_4", "Yellow", right);
    CheckSlider(f.widget, *grid, 2, "m_pYBSlider", -100, 100, 0);
    CheckLabel(f.widget, *grid, 2, 2, "label_7", "Blue", left);
    CheckSpinBox(f.widget, *grid, 2, 3, "m_pYBSpin", -100, 100, 0);
    for (const KVSpinBox* const spin : {f.crSpin, f.mgSpin, f.ybSpin})
        QVERIFY(spin->alignment() & Qt::AlignRight);
    for (int column = 0; column < 4; ++column)
        QCOMPARE(grid->itemAtPosition(4, column)->layout(), buttons);
    CheckButton<QRadioButton>(f.widget, *buttons, 0, 0, 1, "m_pShadows", "Shadows");
    CheckButton<QRadioButton>(f.widget, *buttons, 0, 1, 1, "m_pMidtones", "Midtones");
    CheckButton<QRadioButton>(f.widget, *buttons, 0, 2, 1, "m_pHighlights", "Highlights");
    CheckButton<QCheckBox>(f.widget, *buttons, 1, 0, 3, "m_pLuminosity", "Preserve Luminosity");
}

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

void TestYDColorBalanceWidget::ThePanelOpensWithMidtonesAndLuminosity()
{
    for (const bool isDialog : {false, true}) {
        const Fixture f(isDialog);
        QCOMPARE(f.CheckedRange(), 2);
        QVERIFY(f.luminosity->isChecked());
        QCOMPARE(f.EnabledControls(), 6);
        QCOMPARE(f.Shown(), QVector<int>({0, 0, 0}));
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    }
}

void TestYDColorBalanceWidget::SlidersAndSpinBoxesFollowEachOther()
{
    Fixture f;
    f.crSlider->setValue(10);
    f.mgSlider->setValue(20);
    f.ybSlider->setValue(-30);
    QCOMPARE(f.Shown(), QVector<int>({10, 20, -30}));
    f.crSpin->setValue(-10);
    f.mgSpin->setValue(-20);
    f.ybSpin->setValue(30);
    QCOMPARE(f.crSlider->value(), -10);
    QCOMPARE(f.mgSlider->value(), -20);
    QCOMPARE(f.ybSlider->value(), 30);
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
    Announcements<YDColorBalanceWidget> announcements(f.widget);
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
    Announcements<YDColorBalanceWidget> announcements(f.widget);
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
    Announcements<YDColorBalanceWidget> announcements(f.widget);
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

void TestYDColorBalanceWidget::LuminosityIsStoredAndAnnounced()
{
    Fixture f;
    Announcements<YDColorBalanceWidget> announcements(f.widget);
    f.luminosity->click();
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(!f.widget.GetValue().preserveLuminosity);
    f.luminosity->click();
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(f.widget.GetValue().preserveLuminosity);
}

void TestYDColorBalanceWidget::SettingARecordShowsItAndAnnouncesNothing_data()
{
    QTest::addColumn<int>("toneRange");
    QTest::addColumn<QVector<int>>("shown");
    QTest::newRow("shadows") << 1 << QVector<int>{11, -21, 31};
    QTest::newRow("midtones") << 2 << QVector<int>{12, -22, 32};
    QTest::newRow("highlights") << 3 << QVector<int>{13, -23, 33};
}

void TestYDColorBalanceWidget::SettingARecordShowsItAndAnnouncesNothing()
{
    QFETCH(int, toneRange);
    QFETCH(QVector<int>, shown);
    Fixture f;
    Announcements<YDColorBalanceWidget> announcements(f.widget);
    f.widget.SetValue(Record(toneRange, false));
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(toneRange, false)));
    QCOMPARE(f.CheckedRange(), toneRange);
    QCOMPARE(f.Shown(), shown);
    QVERIFY(!f.luminosity->isChecked());
    f.mgSlider->setValue(0); // the slots are connected again
    QCOMPARE(announcements.Take(), OneChange());
    f.luminosity->setChecked(true);
    QCOMPARE(announcements.Take(), OneChange());
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
        Announcements<YDColorBalanceWidget> announcements(f.widget);
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

void TestYDColorBalanceWidget::ResetGoesBackToMidtonesAndAnnouncesOnce()
{
    for (const int toneRange : {0, 1, 2, 3}) {
        Fixture f;
        f.widget.SetValue(Record(toneRange, false));
        Announcements<YDColorBalanceWidget> announcements(f.widget);
        f.widget.Reset();
        QCOMPARE(announcements.Take(), OneChange());
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
        QCOMPARE(f.CheckedRange(), 2);
        QCOMPARE(f.EnabledControls(), 6);
        QVERIFY(f.luminosity->isChecked());
        QCOMPARE(f.Shown(), QVector<int>({0, 0, 0}));
        f.widget.Reset(); // even if nothing changes
        QCOMPARE(announcements.Take(), OneChange());
    }
}

void TestYDColorBalanceWidget::ResetStartsAPreview()
{
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    Fixture f;
    f.widget.SetValue(Record(1, false));
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(!TestPictures::AreEqual(f.widget.AdjustedImage(), source));
    for (const int previews : {2, 3}) { // even if nothing changes
        f.widget.Reset();
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), previews, PatienceMs);
        QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), source));
    }
}

void TestYDColorBalanceWidget::TheStreamIsTagAndElevenNumbers()
{
    const QByteArray expected =
        Bytes("KVColorBalance 1.00000", {0, 3, 11, 12, 13, -21, -22, -23, 31, 32, 33});
    QCOMPARE(Written(Record(3, false)), expected);
    QCOMPARE(Written(Params()), Bytes("KVColorBalance 1.00000", {1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    QDataStream stream(expected);
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(3, false)));
    QVERIFY(stream.atEnd());
}

void TestYDColorBalanceWidget::AStreamThatCannotBeReadGivesDefaultsAndOneLine()
{
    const QRegularExpression line(
        QStringLiteral("^\\[src/YDColorBalanceWidget:[0-9]+\\] Read color balance data error\\.$"));
    const QByteArray whole = Written(Record(3, false));
    QByteArray otherVersion = whole;
    otherVersion.replace("1.00000", "1.00001");
    QVector<QByteArray> streams{otherVersion};
    for (int length = 0; length < whole.size(); ++length)
        streams.append(whole.left(length));
    for (const QByteArray& bytes : qAsConst(streams)) {
        QDataStream stream(bytes);
        Params params = Record(1, false);
        QTest::ignoreMessage(QtDebugMsg, line);
        stream >> params;
        QVERIFY(YDRecord::Equal(params, Params()));
    }
}

void TestYDColorBalanceWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral(
                             "^\\[src/YDColorBalanceWidget:[0-9]+\\] Write color balance data error\\.$")));
    stream << Params();
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
