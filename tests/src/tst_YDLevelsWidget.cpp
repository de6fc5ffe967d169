#include "PanelKit.h"
#include "TestPictures.h"
#include "YDLevelsWidget.h"
#include "gui/HistogramWidget.h"
#include "gui/YDColorWidget.h"
#include "gui/YodiCustomSlider.h"
#include "image/YDIterativeLevelsTransformation.h"
#include "widgets/KVDoubleSpinBox.h"
#include "widgets/KVSpinBox.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <cmath>
#include <limits>

namespace {

using namespace PanelKit;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Thousandth = 0.001 + 1e-9; ///< of gamma, in which the middle counts
constexpr double Infinite = std::numeric_limits<double>::infinity();

using Params = YDLevelsWidget::Params;
using Ends = Params::Ends;

/// Whether all of two records is equal, what follows from the fields too.
bool AreSame(const Params& a, const Params& b) { return YDRecord::Equal(a, b) && a.middle == b.middle; }

/// Where the middle handle stands, in the stated arithmetic of 32 bits.
int PlainMiddle(int low, int high, double gamma)
{
    const int mid = (low + high) / 2;
    const int g = int(gamma * 1000.0);
    return g > 1000 ? mid + (low - mid) * (g - 1000) / 8990 : high + (mid - high) * (g - 10) / 990;
}

/// The gamma of a place in the same way; a half without width counts as one wide.
double PlainTone(int low, int high, int place)
{
    const int mid = (low + high) / 2;
    const int upper = high == mid ? 1 : high - mid;
    const int lower = mid == low ? 1 : mid - low;
    const int t = place >= mid ? (mid - place) * 990 / upper + 1000 : (low - place) * 8990 / lower + 9990;
    return t * 0.001;
}

/// From the least to the largest, with those around the middle and ones between two thousandths.
std::vector<double> Gammas()
{
    return {0.01,  0.0105, 0.02, 0.05, 0.1, 0.25, 0.4545, 0.5,    0.75, 0.9, 0.99, 0.999, 1.0, 1.0005,
            1.001, 1.01,   1.1,  1.5,  1.8, 2.0,  2.2,    3.3333, 5.0,  7.5, 9.0,  9.98,  9.99};
}

/// The first range of levels that is at least `width` wide and does not pass; empty: all do.
template <class Check>
QString FirstRangeThatFails(int width, Check&& passes)
{
    for (int low = 0; low < 256; ++low)
        for (int high = 0; high < 256; ++high)
            if (high - low >= width && !passes(low, high))
                return QStringLiteral("%1..%2").arg(low).arg(high);
    return {};
}

/// A picture with the same levels everywhere.
RGBA32iImage Plain(quint8 red, quint8 green, quint8 blue)
{
    const RGBA32iImage image(64, 32);
    for (int y = 0; y < image.Height(); ++y)
        std::fill_n(image.Row(y), image.Width(), YDRGBA32i(blue, green, red, 255));
    return image;
}

/// A mouse event as the system sends it while the left button is held.
void MoveTo(QWidget& widget, const QPoint& to)
{
    QMouseEvent event(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// Drags a handle with the mouse, over a few places, to a level of the scale.
void DragHandle(YodiCustomSlider& slider, uint handle, int level)
{
    const auto placeOf = [&slider](int value) { return QPoint(int(slider.PositionOf(value)), 9); };
    const int from = slider.Value(handle);
    QTest::mousePress(&slider, Qt::LeftButton, {}, placeOf(from));
    for (const int part : {1, 2, 3})
        MoveTo(slider, placeOf(from + (level - from) * part / 3));
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, placeOf(level));
}

struct Fixture : Panel<YDLevelsWidget>
{
    explicit Fixture(bool isDialog = true) : Panel(isDialog)
    {
        widget.resize(600, 400); // more than one screen unit to a level
        widget.show();
    }

    /// Shows a picture and waits until it is counted.
    void SetSource(const RGBA32iImage& image)
    {
        QSignalSpy complete(histogram, &HistogramWidget::HistogrammComplete);
        widget.SetImage(image, RGBA32iImage(), QPoint(), QRect());
        QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 1, PatienceMs);
    }

    Announcements told{widget};
    QComboBox* const channel = Child<QComboBox>("m_pChannel");
    QPushButton* const automatic = Child<QPushButton>("m_pAutoBtn");
    HistogramWidget* const histogram = Child<HistogramWidget>("m_pHistogramm");
    YodiCustomSlider* const input = Child<YodiCustomSlider>("m_pInputSlider");
    YodiCustomSlider* const output = Child<YodiCustomSlider>("m_pOutputSlider");
    KVSpinBox* const lowInput = Child<KVSpinBox>("m_pLowInput");
    KVDoubleSpinBox* const middleInput = Child<KVDoubleSpinBox>("m_pMiddleInput");
    KVSpinBox* const highInput = Child<KVSpinBox>("m_pHighInput");
    KVSpinBox* const lowOutput = Child<KVSpinBox>("m_pLowOutput");
    KVSpinBox* const highOutput = Child<KVSpinBox>("m_pHighOutput");
};

/// A record with something of its own in every field.
Params Full()
{
    Params params;
    params.channel = 2;
    params.input = {Ends{1, 250}, Ends{2, 240}, Ends{3, 230}, Ends{4, 220}};
    params.output = {Ends{5, 210}, Ends{6, 200}, Ends{190, 7}, Ends{8, 180}};
    params.gamma = {1.5, 0.5, 2.0, 9.99};
    params.Derive();
    return params;
}

} // namespace

Q_DECLARE_METATYPE(Ends)

class TestYDLevelsWidget : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void TheStripsGoFromBlackToWhite();
    void TheScalesAgreeWithTheHistogram();
    void FromRightToLeftTheEndsStayBelowTheirHandles();
    void MiddleValueGivesTheHandlesPlace_data();
    void MiddleValueGivesTheHandlesPlace();
    void ToneValueGivesTheGammaOfAPlace_data();
    void ToneValueGivesTheGammaOfAPlace();
    void PlacesAndGammasAreThoseOfTheStatedArithmetic();
    void PlacesFallAsGammasRise();
    void PlacesAndGammasLeadBackToEachOther();
    void AnyArgumentsOfBothAreHarmless();
    void ChannelsHaveMasks();

    void TheRecordHoldsTheValueWhenTheFirstIsTold();
    void TheHandlesFollowTheSpinBoxes();
    void ChoosingAChannelShowsItAndAsksForNoPreview();
    void ChoosingAChannelKeepsItsEndsApart();
    void EachChannelKeepsItsValues();
    void DraggingGivesTheRecordOfTyping();
    void ADraggedLowEndStopsBelowTheHighOne();
    void ADraggedEndGoesOnWhereItsSpinBoxStops_data();
    void ADraggedEndGoesOnWhereItsSpinBoxStops();
    void BeforeAChannelIsShownADraggedEndMeetsTheOther();
    void ADraggedOutputEndIsWhereItsSpinBoxIs();
    void KeysBringTheMiddleOverTheWholeScale();
    void UnknownHandlesAreIgnored();
    void TypedEndsMayMeetAndCross();
    void AnInvertedOutputIsKept();

    void SettingARecordShowsItAndAnnouncesNothing();
    void TheMiddleIs128FromTheStartAnd127WhenRead();
    void RecordsFromOutsideAreKeptAndHarmless_data();
    void RecordsFromOutsideAreKeptAndHarmless();
    void EndsOutsideOfTheScaleBoundTheControls_data();
    void EndsOutsideOfTheScaleBoundTheControls();
    void AnUnknownChannelShowsTheCompositesValues();

    void AutoWaitsForTheHistogram();
    void AutoStretchesTheColours();
    void AutoOnAPictureOfOneColourIsWideEnough();
    void AutoKeepsTheChannel();
    void TheHistogramIsThatOfTheSource();
    void TheHistogramShowsWhatIsAttached();

    void ConversionFollowsTheRule();
};

void TestYDLevelsWidget::TheStripsGoFromBlackToWhite()
{
    Fixture f(false);
    for (const char* const name : {"m_pInputLabel", "m_pOutputLabel"}) {
        const QGradient* const gradient = f.Child<YDColorWidget>(name)->BackgroundBrush().gradient();
        QVERIFY(gradient && gradient->type() == QGradient::LinearGradient);
        QCOMPARE(gradient->coordinateMode(), QGradient::ObjectBoundingMode);
        QCOMPARE(static_cast<const QLinearGradient*>(gradient)->finalStop(), QPointF(1, 0));
        QCOMPARE(gradient->stops(), QGradientStops({{0.0, Qt::black}, {1.0, Qt::white}}));
    }
}

void TestYDLevelsWidget::TheScalesAgreeWithTheHistogram()
{
    Fixture f;
    const auto globalX = [](const QWidget* widget, double x) {
        return widget->mapToGlobal(QPoint()).x() + x;
    };
    const double columnWidth = f.histogram->width() / 256.0;
    for (const int level : {0, 100, 255}) {
        const double column = globalX(f.histogram, (level + 0.5) * columnWidth);
        QVERIFY(std::abs(globalX(f.input, f.input->PositionOf(level)) - column) < 0.01);
        QVERIFY(std::abs(globalX(f.output, f.output->PositionOf(level)) - column) < 0.01);
    }
    QCOMPARE(f.Child<YDColorWidget>("m_pInputLabel")->width(), f.histogram->width());
    QCOMPARE(f.Child<YDColorWidget>("m_pOutputLabel")->width(), f.histogram->width());
}

void TestYDLevelsWidget::FromRightToLeftTheEndsStayBelowTheirHandles()
{
    Fixture f;
    const auto x = [](const QWidget* widget) { return widget->mapToGlobal(QPoint()).x(); };
    f.widget.setLayoutDirection(Qt::RightToLeft);
    QTRY_VERIFY(x(f.Child<QLabel>("label_3")) > x(f.highInput));
    QVERIFY(x(f.lowInput) < x(f.middleInput) && x(f.middleInput) < x(f.highInput));
    QVERIFY(x(f.lowOutput) < x(f.highOutput));
}

void TestYDLevelsWidget::MiddleValueGivesTheHandlesPlace_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::addColumn<double>("gamma");
    QTest::addColumn<int>("expected");
    QTest::newRow("neutral") << 0 << 255 << 1.0 << 127;
    QTest::newRow("largest") << 0 << 255 << 9.99 << 0;
    QTest::newRow("smallest") << 0 << 255 << 0.01 << 255;
    QTest::newRow("brighter") << 0 << 255 << 2.0 << 113; // 127 + (-127 * 1000) / 8990
    QTest::newRow("darker") << 0 << 255 << 0.5 << 192;   // 255 + (-128 * 490) / 990
    QTest::newRow("truncates to neutral") << 0 << 255 << 1.0005 << 127;
    QTest::newRow("part of the scale") << 50 << 151 << 1.0 << 100;
    QTest::newRow("ends meet") << 80 << 80 << 3.0 << 80;
    QTest::newRow("ends cross") << 200 << 100 << 9.99 << 200;
    QTest::newRow("not a number is neutral") << 0 << 255 << Nan << 127;
    QTest::newRow("zero") << 0 << 255 << 0.0 << 256; // 255 + (-128 * -10) / 990
}

void TestYDLevelsWidget::MiddleValueGivesTheHandlesPlace()
{
    QFETCH(int, low);
    QFETCH(int, high);
    QFETCH(double, gamma);
    QFETCH(int, expected);
    QCOMPARE(YDLevelsWidget::MiddleValue(low, high, gamma), expected);
}

void TestYDLevelsWidget::ToneValueGivesTheGammaOfAPlace_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::addColumn<int>("position");
    QTest::addColumn<double>("expected");
    QTest::newRow("middle") << 0 << 255 << 127 << 1.0;
    QTest::newRow("lower end") << 0 << 255 << 0 << 9.99;
    QTest::newRow("upper end") << 0 << 255 << 255 << 0.01;
    QTest::newRow("below the middle") << 0 << 255 << 100 << 2.912; // -100 * 8990 / 127 = -7078.7
    QTest::newRow("above the middle") << 0 << 255 << 200 << 0.436; // -73 * 990 / 128 = -564.6
    QTest::newRow("without width, there") << 100 << 100 << 100 << 1.0;
    QTest::newRow("without width, above") << 100 << 100 << 101 << 0.01; // -990 / 1 + 1000
    QTest::newRow("without width, below") << 100 << 100 << 99 << 18.98; // 8990 / 1 + 9990
}

void TestYDLevelsWidget::ToneValueGivesTheGammaOfAPlace()
{
    QFETCH(int, low);
    QFETCH(int, high);
    QFETCH(int, position);
    QFETCH(double, expected);
    QCOMPARE(YDLevelsWidget::ToneValue(low, high, position), expected);
}

void TestYDLevelsWidget::PlacesAndGammasAreThoseOfTheStatedArithmetic()
{
    std::vector<double> gammas = Gammas();
    gammas.insert(gammas.end(), {-20.0, 0.0, 0.009, 10.0, 100.0});
    const auto areEqual = [&gammas](int low, int high) {
        for (const double gamma : gammas)
            if (YDLevelsWidget::MiddleValue(low, high, gamma) != PlainMiddle(low, high, gamma))
                return false;
        for (int place = 0; place < 256; ++place)
            if (YDLevelsWidget::ToneValue(low, high, place) != PlainTone(low, high, place))
                return false;
        return true;
    };
    QCOMPARE(FirstRangeThatFails(Lowest, areEqual), QString());
}

void TestYDLevelsWidget::PlacesFallAsGammasRise()
{
    const std::vector<double> gammas = Gammas();
    const auto fall = [&gammas](int low, int high) {
        int lastPlace = high;
        for (const double gamma : gammas) {
            const int place = YDLevelsWidget::MiddleValue(low, high, gamma);
            if (place > lastPlace || place < low)
                return false;
            lastPlace = place;
        }
        double lastGamma = Infinite;
        for (int place = 0; place < 256; ++place) {
            const double gamma = YDLevelsWidget::ToneValue(low, high, place);
            if (!(gamma < lastGamma))
                return false;
            lastGamma = gamma;
        }
        return true;
    };
    QCOMPARE(FirstRangeThatFails(0, fall), QString());
}

/// Within a step: a place comes back as itself or its neighbour, and a gamma lies between those of its
/// place's neighbours.
void TestYDLevelsWidget::PlacesAndGammasLeadBackToEachOther()
{
    const auto middle = &YDLevelsWidget::MiddleValue;
    const auto tone = &YDLevelsWidget::ToneValue;
    const std::vector<double> gammas = Gammas();
    const auto leadBack = [&](int low, int high) {
        for (int place = low; place <= high; ++place)
            if (std::abs(middle(low, high, tone(low, high, place)) - place) > 1)
                return false;
        for (const double gamma : gammas) {
            const int place = middle(low, high, gamma);
            if (gamma < tone(low, high, std::min(place + 1, high)) - Thousandth ||
                gamma > tone(low, high, std::max(place - 1, low)) + Thousandth)
                return false;
        }
        return true;
    };
    QCOMPARE(FirstRangeThatFails(2, leadBack), QString());
}

void TestYDLevelsWidget::AnyArgumentsOfBothAreHarmless()
{
    QRandomGenerator random(3);
    const auto any = [&random] {
        const int few[] = {Lowest, Lowest + 1, -1, 0, 1, 255, Highest - 1, Highest};
        return random.bounded(3) ? few[random.bounded(8)] : int(random.generate());
    };
    for (int round = 0; round < 100000; ++round) {
        const int low = any();
        const int high = any();
        QVERIFY(std::isfinite(YDLevelsWidget::ToneValue(low, high, any())));
        const double gammas[] = {Nan, Infinite, -Infinite, 0.0, -1e300, 1e300, double(any())};
        YDLevelsWidget::MiddleValue(low, high, gammas[random.bounded(7)]);
    }
    QCOMPARE(YDLevelsWidget::MiddleValue(Lowest, Highest, 1.0), 0); // (-1) / 2, and half of the range
    QCOMPARE(YDLevelsWidget::MiddleValue(0, Highest, -Infinite), Highest);
    QCOMPARE(YDLevelsWidget::ToneValue(0, 0, Highest), Lowest * 0.001);
}

void TestYDLevelsWidget::ChannelsHaveMasks()
{
    QCOMPARE(YDLevelsWidget::IndexToHistogrammChannel(0), 7);
    QCOMPARE(YDLevelsWidget::IndexToHistogrammChannel(1), 1);
    QCOMPARE(YDLevelsWidget::IndexToHistogrammChannel(2), 2);
    QCOMPARE(YDLevelsWidget::IndexToHistogrammChannel(3), 4);
    for (const int other : {-1, 4, 7, Lowest, Highest})
        QCOMPARE(YDLevelsWidget::IndexToHistogrammChannel(other), 7);
}

void TestYDLevelsWidget::TheRecordHoldsTheValueWhenTheFirstIsTold()
{
    Fixture f;
    f.SetSource(Plain(100, 0, 255));
    std::vector<Params> told;
    connect(&f.widget, &KVAdjustmentWidget::UserParamsChanged, this,
            [&] { told.push_back(f.widget.GetValue()); });
    f.lowInput->setValue(20);
    QCOMPARE(told.back().input[0], (Ends{20, 255}));
    QCOMPARE(told.back().middle[0], 137);
    f.input->ChangeValue(2, 200);
    QCOMPARE(told.back().input[0], (Ends{20, 200}));
    QCOMPARE(told.back().middle[0], 110);
    f.middleInput->setValue(9.99);
    QCOMPARE(told.back().gamma[0], 9.99);
    QCOMPARE(told.back().middle[0], 20);
    f.output->ChangeValue(0, 30);
    QCOMPARE(told.back().output[0], (Ends{30, 255}));
    f.highOutput->setValue(40);
    QCOMPARE(told.back().output[0], (Ends{30, 40}));
    f.channel->setCurrentIndex(3);
    QCOMPARE(told.back().channel, 3);
    f.automatic->click();
    QCOMPARE(told.back().input[3], (Ends{239, 255}));
    f.widget.Reset();
    QVERIFY(AreSame(told.back(), Params()));
    QCOMPARE(told.size(), std::size_t(8));
}

void TestYDLevelsWidget::TheHandlesFollowTheSpinBoxes()
{
    Fixture f;
    f.lowInput->setValue(40);
    QCOMPARE(f.input->Value(0), 40);
    QCOMPARE(f.input->Value(1), 147); // (40 + 255) / 2
    QCOMPARE(f.input->LowestValue(1), 40);
    QCOMPARE(f.input->LowestValue(2), 42);
    f.highInput->setValue(200);
    QCOMPARE(f.input->Value(2), 200);
    QCOMPARE(f.input->Value(1), 120);
    QCOMPARE(f.input->HighestValue(1), 200);
    QCOMPARE(f.input->HighestValue(0), 198);
    f.middleInput->setValue(9.99);
    QCOMPARE(f.input->Value(1), 40);
    QCOMPARE(f.middleInput->value(), 9.99); // the handle does not speak back
    f.lowOutput->setValue(50);
    f.highOutput->setValue(60);
    QCOMPARE(f.output->Value(0), 50);
    QCOMPARE(f.output->Value(1), 60);
    f.told.Take();
    f.input->ChangeValue(0, 41); // the sliders are connected again
    f.output->ChangeValue(0, 51);
    QCOMPARE(f.told.Take(), Changes(2));
}

void TestYDLevelsWidget::ChoosingAChannelShowsItAndAsksForNoPreview()
{
    Fixture f;
    f.widget.SetValue(Full());
    f.channel->setCurrentIndex(3);
    QCOMPARE(f.told.Take(), QStringLiteral("host value"));
    QCOMPARE(f.widget.GetValue().channel, 3);
    QCOMPARE(f.histogram->GetChannel(), 4);
    QCOMPARE(f.lowInput->value(), 4);
    QCOMPARE(f.middleInput->value(), 9.99);
    QCOMPARE(f.highInput->value(), 220);
    QCOMPARE(f.lowOutput->value(), 8);
    QCOMPARE(f.highOutput->value(), 180);
    QCOMPARE(f.input->Value(0), 4);
    QCOMPARE(f.input->Value(1), 4);
    QCOMPARE(f.input->Value(2), 220);
    QCOMPARE(f.output->Value(0), 8);
    QCOMPARE(f.output->Value(1), 180);
}

void TestYDLevelsWidget::ChoosingAChannelKeepsItsEndsApart()
{
    Fixture f;
    f.widget.SetValue(Full());
    f.channel->setCurrentIndex(1); // 2..240
    QCOMPARE(f.lowInput->minimum(), 0);
    QCOMPARE(f.lowInput->maximum(), 238);
    QCOMPARE(f.highInput->minimum(), 4);
    QCOMPARE(f.highInput->maximum(), 255);
    QCOMPARE(f.input->HighestValue(0), 238);
    QCOMPARE(f.input->LowestValue(1), 2);
    QCOMPARE(f.input->HighestValue(1), 240);
    QCOMPARE(f.input->LowestValue(2), 4);
    f.lowInput->setValue(250);
    QCOMPARE(f.widget.GetValue().input[1], (Ends{238, 240}));
}

void TestYDLevelsWidget::EachChannelKeepsItsValues()
{
    Fixture f;
    for (const int channel : {0, 1, 2, 3}) {
        f.channel->setCurrentIndex(channel);
        f.lowInput->setValue(10 + channel);
        f.highInput->setValue(200 + channel);
        f.middleInput->setValue(1.5 + channel);
        f.lowOutput->setValue(30 + channel);
        f.highOutput->setValue(100 + channel);
    }
    Params params;
    params.channel = 3;
    for (const int channel : {0, 1, 2, 3}) {
        params.input[std::size_t(channel)] = {10 + channel, 200 + channel};
        params.gamma[std::size_t(channel)] = 1.5 + channel;
        params.output[std::size_t(channel)] = {30 + channel, 100 + channel};
    }
    params.Derive();
    QVERIFY(AreSame(f.widget.GetValue(), params));
    for (const int channel : {2, 0}) {
        f.channel->setCurrentIndex(channel);
        params.channel = channel;
        QVERIFY(AreSame(f.widget.GetValue(), params));
        QCOMPARE(f.highInput->value(), 200 + channel);
    }
}

void TestYDLevelsWidget::DraggingGivesTheRecordOfTyping()
{
    Fixture dragged;
    Fixture typed;
    for (const int channel : {0, 2}) {
        dragged.channel->setCurrentIndex(channel);
        typed.channel->setCurrentIndex(channel);
        DragHandle(*dragged.input, 0, 30 + channel);
        typed.lowInput->setValue(30 + channel);
        DragHandle(*dragged.input, 2, 220);
        typed.highInput->setValue(220);
        DragHandle(*dragged.input, 1, 90);
        typed.middleInput->setValue(YDLevelsWidget::ToneValue(30 + channel, 220, 90));
        DragHandle(*dragged.output, 0, 200);
        typed.lowOutput->setValue(200);
        DragHandle(*dragged.output, 1, 25); // past the other: nothing holds them apart
        typed.highOutput->setValue(25);
    }
    QVERIFY(AreSame(dragged.widget.GetValue(), typed.widget.GetValue()));
    const Params params = dragged.widget.GetValue();
    QCOMPARE(params.input[0], (Ends{30, 220}));
    QCOMPARE(params.input[2], (Ends{32, 220}));
    QCOMPARE(params.output[0], (Ends{200, 25}));
    QVERIFY(std::abs(params.middle[0] - 90) <= 1);
    QVERIFY(params.gamma[0] > 3.0); // 1000 + (125 - 90) * 8990 / 95 thousandths
}

void TestYDLevelsWidget::ADraggedLowEndStopsBelowTheHighOne()
{
    Fixture f;
    DragHandle(*f.input, 2, 201);
    DragHandle(*f.input, 0, 200);
    QCOMPARE(f.lowInput->value(), 199);
    QCOMPARE(f.widget.GetValue().input[0], (Ends{199, 201}));
    DragHandle(*f.input, 2, 100);
    QCOMPARE(f.widget.GetValue().input[0], (Ends{199, 201}));
}

void TestYDLevelsWidget::ADraggedEndGoesOnWhereItsSpinBoxStops_data()
{
    QTest::addColumn<uint>("first"); // the handle that makes way, and where it goes
    QTest::addColumn<int>("way");
    QTest::addColumn<uint>("second"); // the one that then goes beyond the range of its spin box
    QTest::addColumn<QVector<int>>("levels");
    QTest::addColumn<QVector<int>>("stops");
    QTest::newRow("high") << 0U << 0 << 2U << QVector<int>{150, 103, 50, 50, 101, 2, 104, 50, 255}
                          << QVector<int>{150, 103, 102, 102, 102, 102, 104, 102, 255};
    QTest::newRow("low") << 2U << 255 << 0U << QVector<int>{150, 197, 250, 250, 199, 253, 196, 250, 0}
                         << QVector<int>{150, 197, 198, 198, 198, 198, 196, 198, 0};
}

/// The spin boxes keep the ranges that they got with a record of 100..200. One that is at its end says
/// nothing of what is dragged beyond, and nothing holds the handle back.
void TestYDLevelsWidget::ADraggedEndGoesOnWhereItsSpinBoxStops()
{
    QFETCH(uint, first);
    QFETCH(int, way);
    QFETCH(uint, second);
    QFETCH(QVector<int>, levels);
    QFETCH(QVector<int>, stops);
    Fixture f;
    Params params;
    params.input[0] = {100, 200};
    params.Derive();
    f.widget.SetValue(params);
    DragHandle(*f.input, first, way);
    for (int i = 0; i < levels.size(); ++i) {
        DragHandle(*f.input, second, levels[i]);
        const Ends ends = f.widget.GetValue().input[0];
        QCOMPARE(ends[second == 0 ? 0 : 1], stops[i]);
        QCOMPARE(ends[second == 0 ? 1 : 0], way);
        QCOMPARE(ends, (Ends{f.lowInput->value(), f.highInput->value()}));
        QCOMPARE(f.input->Value(second), levels[i]);
        QCOMPARE(f.input->Value(1), (ends[0] + ends[1]) / 2);
        QCOMPARE(f.widget.GetValue().middle[0], f.input->Value(1));
    }
}

void TestYDLevelsWidget::BeforeAChannelIsShownADraggedEndMeetsTheOther()
{
    Fixture fresh;
    DragHandle(*fresh.input, 0, 255);
    QCOMPARE(fresh.widget.GetValue().input[0], (Ends{255, 255}));
    Fixture shown;
    shown.widget.SetValue(Params());
    DragHandle(*shown.input, 0, 255);
    QCOMPARE(shown.widget.GetValue().input[0], (Ends{253, 255}));
    Fixture moved;
    DragHandle(*moved.input, 2, 254);
    DragHandle(*moved.input, 0, 255);
    QCOMPARE(moved.widget.GetValue().input[0], (Ends{252, 254}));
}

void TestYDLevelsWidget::ADraggedOutputEndIsWhereItsSpinBoxIs()
{
    Fixture f;
    Params params;
    params.output[0] = {-10, 300};
    f.widget.SetValue(params);
    for (const int level : {0, 255, 255, 1, 0, 0, 254}) {
        DragHandle(*f.output, 0, level);
        DragHandle(*f.output, 1, 255 - level);
        QCOMPARE((Ends{f.output->Value(0), f.output->Value(1)}),
                 (Ends{f.lowOutput->value(), f.highOutput->value()}));
    }
    QCOMPARE(f.widget.GetValue().output[0], (Ends{254, 1}));
}

/// The gamma counts in hundredths, of which some stand for two places: a handle that went back to the one
/// where the gamma puts it could not pass.
void TestYDLevelsWidget::KeysBringTheMiddleOverTheWholeScale()
{
    Fixture f;
    Params params;
    params.Derive();
    f.widget.SetValue(params);
    f.widget.activateWindow();
    f.input->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(f.input->hasFocus());
    QTest::keyClick(f.input, Qt::Key_Tab); // from the low handle
    QCOMPARE(f.input->CurrentControl(), 1U);
    const auto press = [&f](Qt::Key key, int target) {
        for (int times = 0; times < 1000 && f.input->Value(1) != target; ++times) {
            QTest::keyClick(f.input, key);
            const int place = YDLevelsWidget::MiddleValue(0, 255, f.middleInput->value());
            if (std::abs(place - f.input->Value(1)) > 1 || place != f.widget.GetValue().middle[0])
                return false;
        }
        return f.input->Value(1) == target;
    };
    QVERIFY(press(Qt::Key_Left, 0));
    QCOMPARE(f.widget.GetValue().gamma[0], 9.99);
    QVERIFY(press(Qt::Key_Right, 255));
    QCOMPARE(f.widget.GetValue().gamma[0], 0.01);
    QVERIFY(press(Qt::Key_Left, 127));
}

void TestYDLevelsWidget::UnknownHandlesAreIgnored()
{
    Fixture f;
    for (const uint handle : {3U, 1000U, std::numeric_limits<uint>::max()}) {
        f.widget.OnInputChanged(handle, 50);
        f.widget.OnOutputChanged(handle, 50);
    }
    f.widget.OnOutputChanged(2, 50);
    QVERIFY(AreSame(f.widget.GetValue(), Params()));
    QCOMPARE(f.told.Take(), QString());
}

void TestYDLevelsWidget::TypedEndsMayMeetAndCross()
{
    Fixture f;
    f.highInput->setValue(100);
    f.lowInput->setValue(100);
    QCOMPARE(f.widget.GetValue().input[0], (Ends{100, 100}));
    QCOMPARE(f.widget.GetValue().middle[0], 100);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, Plain(99, 100, 101)), Plain(0, 255, 255)));
    f.widget.OnInputChanged(1, 100); // a place in a range without width
    QCOMPARE(f.middleInput->value(), 1.0);
    f.lowInput->setValue(150);
    QCOMPARE(f.widget.GetValue().input[0], (Ends{150, 100}));
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, Plain(149, 150, 151)), Plain(0, 255, 255)));
    for (int place = 0; place < 256; ++place)
        f.widget.OnInputChanged(1, place);
    f.channel->setCurrentIndex(1);
    f.channel->setCurrentIndex(0);
    QCOMPARE(f.widget.GetValue().input[0], (Ends{150, 100}));
}

void TestYDLevelsWidget::AnInvertedOutputIsKept()
{
    Fixture f;
    f.lowOutput->setValue(255);
    f.highOutput->setValue(0);
    QCOMPARE(f.widget.GetValue().output[0], (Ends{255, 0}));
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, Plain(0, 100, 255)), Plain(255, 155, 0)));
}

void TestYDLevelsWidget::SettingARecordShowsItAndAnnouncesNothing()
{
    Fixture f;
    f.SetSource(Plain(1, 2, 3));
    f.told.Take();
    Params params = Full();
    params.middle[2] = 77; // as it came
    f.widget.SetValue(params);
    QVERIFY(AreSame(f.widget.GetValue(), params));
    QCOMPARE(f.channel->currentIndex(), 2);
    QCOMPARE(f.histogram->GetChannel(), 2);
    QCOMPARE(f.lowInput->value(), 3);
    QCOMPARE(f.input->Value(1), 77);
    QCOMPARE(f.middleInput->value(), 2.0);
    QCOMPARE(f.lowOutput->value(), 190);
    QTest::qWait(QuietMs);
    QCOMPARE(f.told.Take(), QString());
    f.lowInput->setValue(9); // the slots are connected again
    QCOMPARE(f.told.Take(), OneChange());
}

void TestYDLevelsWidget::TheMiddleIs128FromTheStartAnd127WhenRead()
{
    Params params;
    QCOMPARE(params.middle[3], 128);
    QDataStream stream(Written(params));
    stream >> params;
    for (const int middle : params.middle)
        QCOMPARE(middle, 127);
}

void TestYDLevelsWidget::RecordsFromOutsideAreKeptAndHarmless_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::addColumn<double>("gamma");
    QTest::newRow("inverted") << 200 << 100 << 1.0;
    QTest::newRow("the widest") << Lowest << Highest << 1.0;
    QTest::newRow("the widest, inverted") << Highest << Lowest << 1.0;
    QTest::newRow("far below") << Lowest << Lowest << 1.0;
    QTest::newRow("far above") << Highest << Highest << 1.0;
    QTest::newRow("just outside") << -1 << 256 << 1.0;
    QTest::newRow("gamma 0") << 0 << 255 << 0.0;
    QTest::newRow("gamma negative") << 0 << 255 << -3.0;
    QTest::newRow("gamma huge") << 0 << 255 << 1e300;
    QTest::newRow("gamma infinite") << 10 << 20 << Infinite;
    QTest::newRow("gamma not a number") << 0 << 255 << Nan;
}

void TestYDLevelsWidget::RecordsFromOutsideAreKeptAndHarmless()
{
    QFETCH(int, low);
    QFETCH(int, high);
    QFETCH(double, gamma);
    for (const int channel : {0, 1, 3, 7, -1, Lowest, Highest}) {
        Params params;
        params.channel = channel;
        params.input.fill({low, high});
        params.output.fill({high, low});
        params.gamma.fill(gamma);
        QDataStream stream(Written(params));
        Params read;
        stream >> read;
        QCOMPARE(Written(read), Written(params)); // bytes, for a gamma that is not a number equals nothing
        Fixture f;
        f.widget.SetValue(read);
        QCOMPARE(Written(f.widget.GetValue()), Written(params));
        QVERIFY(f.middleInput->value() >= 0.01 && f.middleInput->value() <= 9.99);
        for (uint handle = 0; handle < f.input->ControlCount(); ++handle)
            QVERIFY(f.input->Value(handle) >= 0 && f.input->Value(handle) <= 255);
        Converted(f.widget, Plain(1, 100, 254));
        f.widget.grab();
        f.input->ChangeValue(1, f.input->Value(1) + 1);
        f.lowInput->setValue(f.lowInput->value() + 1);
        f.highOutput->setValue(120);
        f.channel->setCurrentIndex(2);
        QCOMPARE(f.widget.GetValue().channel, 2);
        Converted(f.widget, Plain(1, 100, 254));
    }
}

void TestYDLevelsWidget::EndsOutsideOfTheScaleBoundTheControls_data()
{
    QTest::addColumn<Ends>("ends");
    QTest::addColumn<QVector<int>>("low");        // minimum, value, maximum of the spin box
    QTest::addColumn<QVector<int>>("lowHandle");  // the same
    QTest::addColumn<QVector<int>>("high");       // the same
    QTest::addColumn<QVector<int>>("highHandle"); // the same
    QTest::addColumn<int>("middleHandle");
    QTest::addColumn<int>("middle"); // of the record
    using Numbers = QVector<int>;
    QTest::newRow("above") << Ends{300, 400} << Numbers{0, 300, 398} << Numbers{0, 255, 255}
                           << Numbers{302, 302, 302} << Numbers{255, 255, 255} << 255 << 350;
    QTest::newRow("from below") << Ends{-50, 100} << Numbers{0, 0, 98} << Numbers{0, 0, 98}
                                << Numbers{-48, 100, 255} << Numbers{0, 100, 255} << 25 << 25;
    QTest::newRow("below") << Ends{-400, -300} << Numbers{0, 0, 0} << Numbers{0, 0, 0}
                           << Numbers{-398, -300, 255} << Numbers{0, 0, 255} << 0 << -350;
    QTest::newRow("to above") << Ends{100, 300} << Numbers{0, 100, 298} << Numbers{0, 100, 255}
                              << Numbers{102, 255, 255} << Numbers{102, 255, 255} << 200 << 200;
    QTest::newRow("the widest") << Ends{Lowest, Highest} << Numbers{0, 0, Highest - 2} << Numbers{0, 0, 255}
                                << Numbers{Lowest + 2, 255, 255} << Numbers{0, 255, 255} << 0 << 0;
    QTest::newRow("the widest, inverted")
        << Ends{Highest, Lowest} << Numbers{0, 0, 0} << Numbers{0, 0, 0} << Numbers{Highest, Highest, Highest}
        << Numbers{255, 255, 255} << 255 << 0;
}

/// Each end bounds the other's controls by itself, and these keep what they cannot show at their own ends.
void TestYDLevelsWidget::EndsOutsideOfTheScaleBoundTheControls()
{
    QFETCH(Ends, ends);
    QFETCH(QVector<int>, low);
    QFETCH(QVector<int>, lowHandle);
    QFETCH(QVector<int>, high);
    QFETCH(QVector<int>, highHandle);
    QFETCH(int, middleHandle);
    QFETCH(int, middle);
    Fixture f;
    Params params;
    params.input[0] = ends;
    params.Derive();
    QCOMPARE(params.middle[0], middle);
    f.widget.SetValue(params);
    const auto shown = [](const KVSpinBox* spin) {
        return QVector<int>{spin->minimum(), spin->value(), spin->maximum()};
    };
    const auto handle = [&f](uint number) {
        return QVector<int>{f.input->LowestValue(number), f.input->Value(number),
                            f.input->HighestValue(number)};
    };
    QCOMPARE(shown(f.lowInput), low);
    QCOMPARE(handle(0), lowHandle);
    QCOMPARE(shown(f.highInput), high);
    QCOMPARE(handle(2), highHandle);
    QCOMPARE(f.input->Value(1), middleHandle);
    QVERIFY(AreSame(f.widget.GetValue(), params));
    f.highOutput->setValue(120); // a control of something else
    params.output[0][1] = 120;
    QVERIFY(AreSame(f.widget.GetValue(), params));
}

void TestYDLevelsWidget::AnUnknownChannelShowsTheCompositesValues()
{
    for (const int channel : {4, 7, -1, Lowest, Highest}) {
        Fixture f;
        Params params = Full();
        params.channel = channel;
        f.widget.SetValue(params);
        QCOMPARE(f.channel->currentIndex(), -1);
        QCOMPARE(f.histogram->GetChannel(), 7);
        QCOMPARE(f.lowInput->value(), 1);
        f.lowInput->setValue(12);
        params.input[0][0] = 12;
        params.middle[0] = YDLevelsWidget::MiddleValue(12, 250, 1.5);
        QVERIFY(AreSame(f.widget.GetValue(), params));
        f.channel->setCurrentIndex(0); // the composite can be chosen from there
        QCOMPARE(f.widget.GetValue().channel, 0);
    }
}

void TestYDLevelsWidget::AutoWaitsForTheHistogram()
{
    Fixture f(false);
    QVERIFY(!f.automatic->isEnabled());
    f.SetSource(Plain(1, 2, 3));
    QVERIFY(f.automatic->isEnabled());
    f.widget.SetImage(RGBA32iImage(), RGBA32iImage(), QPoint(), QRect());
    QVERIFY(f.automatic->isEnabled());
    f.automatic->click(); // without a picture every colour gets the middle of the scale
    QCOMPARE(f.widget.GetValue().input[1], (Ends{119, 135}));
}

void TestYDLevelsWidget::AutoStretchesTheColours()
{
    Fixture f;
    const RGBA32iImage image(200, 5); // a thousand pixels: red 50..149, green all alike, blue of two levels
    for (int i = 0; i < 1000; ++i)
        image.Row(i / 200)[i % 200] = YDRGBA32i(quint8(i < 1     ? 10
                                                       : i < 500 ? 60
                                                                 : 180),
                                                90, quint8(50 + i % 100), 255);
    f.SetSource(image);
    f.widget.SetValue(Full());
    f.told.Take();
    f.automatic->click();
    QCOMPARE(f.told.Take(), OneChange());
    Params params;
    params.channel = 2;
    params.input = {Ends{0, 255}, Ends{50, 149}, Ends{82, 98}, Ends{59, 180}};
    params.middle = {128, 99, 90, 119};
    QVERIFY(AreSame(f.widget.GetValue(), params));
    QCOMPARE(f.lowInput->value(), 82);
    QCOMPARE(f.input->Value(1), 90);
}

void TestYDLevelsWidget::AutoOnAPictureOfOneColourIsWideEnough()
{
    Fixture f;
    f.SetSource(Plain(100, 0, 255));
    f.automatic->click();
    const Params params = f.widget.GetValue();
    QCOMPARE(params.input[0], (Ends{0, 255}));
    QCOMPARE(params.input[1], (Ends{92, 108}));
    QCOMPARE(params.input[2], (Ends{0, 16}));
    QCOMPARE(params.input[3], (Ends{239, 255}));
    QCOMPARE(params.middle, (std::array<int, 4>{128, 100, 8, 247}));
}

void TestYDLevelsWidget::AutoKeepsTheChannel()
{
    Fixture f;
    f.SetSource(Plain(100, 0, 255));
    f.channel->setCurrentIndex(3);
    f.automatic->click();
    QCOMPARE(f.widget.GetValue().channel, 3);
    QCOMPARE(f.channel->currentIndex(), 3);
    QCOMPARE(f.lowInput->value(), 239);
    QCOMPARE(f.histogram->GetChannel(), 4);
}

void TestYDLevelsWidget::TheHistogramIsThatOfTheSource()
{
    Fixture f;
    f.SetSource(Plain(7, 8, 9));
    QCOMPARE(f.histogram->GetPixelsCount(), qint64(64 * 32));
    QCOMPARE(f.histogram->GetCount(0, 7), qint64(64 * 32));
    QCOMPARE(f.histogram->GetCount(2, 9), qint64(64 * 32));
    f.SetSource(Plain(17, 8, 9));
    QCOMPARE(f.histogram->GetCount(0, 17), qint64(64 * 32));
}

void TestYDLevelsWidget::TheHistogramShowsWhatIsAttached()
{
    Fixture f;
    QSignalSpy complete(f.histogram, &HistogramWidget::HistogrammComplete);
    YDSharedImage<RGBA32iImage> pixels(Plain(5, 6, 7));
    f.widget.AttachRGB32iImage(&pixels);
    QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 1, PatienceMs);
    QCOMPARE(f.histogram->GetCount(0, 5), qint64(64 * 32));
    pixels.SetImage(Plain(50, 6, 7));
    f.widget.UpdateHistogramm();
    QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 2, PatienceMs);
    QCOMPARE(f.histogram->GetCount(0, 50), qint64(64 * 32));
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(QColor(200, 100, 50));
    YDSharedImage<QImage> holder(image);
    f.widget.AttachQImage(&holder);
    QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 3, PatienceMs);
    QCOMPARE(f.histogram->GetCount(0, 200), qint64(6));
    f.widget.AttachQImage(nullptr);
    QCOMPARE(f.histogram->GetPixelsCount(), qint64(0));
}

void TestYDLevelsWidget::ConversionFollowsTheRule()
{
    Fixture f(false);
    const Params params = Full();
    f.widget.SetValue(params);
    const RGBA32iImage source = TestPictures::Noise(300, 50);
    const RGBA32iImage converted = Converted(f.widget, source);
    const int input[4][2] = {{1, 250}, {2, 240}, {3, 230}, {4, 220}};
    const int output[4][2] = {{5, 210}, {6, 200}, {190, 7}, {8, 180}};
    const YDIterativeLevelsTransformation rule(input, output, params.gamma.data(), 100);
    for (int y = 0; y < source.Height(); ++y)
        for (int x = 0; x < source.Width(); ++x) {
            YDRGBA32i expected = source.Row(y)[x];
            rule.Map(expected);
            QVERIFY(converted.Row(y)[x] == expected);
        }
}

QTEST_MAIN(TestYDLevelsWidget)
#include "tst_YDLevelsWidget.moc"
