#include "PanelKit.h"
#include "TestPictures.h"
#include "YDColorEnhancerWidget.h"
#include "image/YDColorEnhancerTransformation.h"
#include "image/YDHistogrammCalculator.h"
#include "widgets/KVSpinBox.h"

#include <QSignalSpy>
#include <QTest>

#include <array>

namespace {

using namespace PanelKit;

using Params = YDColorEnhancerWidget::Params;

Params Record(int amount, int affected)
{
    Params params;
    params.amount = amount;
    params.affected = affected;
    return params;
}

/// Channels of 40..167, 20..147 and 60..123, brightened, at random.
RGBA32iImage DullPicture(quint32 seed, const QSize& size = {120, 80}, int brighter = 0)
{
    const RGBA32iImage picture = TestPictures::Random(size.width(), size.height(), seed);
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x) {
            YDRGBA32i& pixel = picture.Row(y)[x];
            pixel = YDRGBA32i(quint8(brighter + 60 + pixel.b / 4), quint8(brighter + 20 + pixel.g / 2),
                              quint8(brighter + 40 + pixel.r / 2), pixel.a);
        }
    return picture;
}

/// The adjustment step by step, one pixel at a time, stretched by what `counted` holds.
RGBA32iImage Expected(const Params& params, const RGBA32iImage& source, const RGBA32iImage& counted)
{
    std::array<std::array<int, 256>, 4> tables{};
    YDHistogrammCalculator calculator;
    calculator.SetOutput(tables[0].data(), tables[1].data(), tables[2].data(), tables[3].data());
    for (int y = 0; y < counted.Height(); ++y)
        for (int x = 0; x < counted.Width(); ++x)
            calculator(counted.Row(y)[x]);
    const auto common = YDHistogrammCalculator::Threshold(tables[3].data());
    int input[4][2] = {{0, 255}};
    for (int channel = 1; channel < 4; ++channel) {
        const auto own = YDHistogrammCalculator::Threshold(tables[std::size_t(channel) - 1].data());
        for (int bound = 0; bound < 2; ++bound)
            input[channel][bound] = YDColorEnhancerWidget::InputBound(
                own[std::size_t(bound)], common[std::size_t(bound)], params.affected);
    }
    const int output[4][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    const double gamma[4] = {1, 1, 1, 1};
    YDColorEnhancerTransformation rule;
    rule.SetLevels(YDLevelsTransformation(input, output, gamma, 100));
    rule.SetAmountData(params.amount);
    return ByFunctor(rule, source);
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDColorEnhancerWidget>
{
    explicit Fixture(bool isDialog = false) : Panel(isDialog) {}

    KVSpinBox* const amountSpin = Child<KVSpinBox>("m_pAmount");
};

} // namespace

Q_DECLARE_METATYPE(Params)

class TestYDColorEnhancerWidget : public QObject
{
    Q_OBJECT

private slots:
    void InputBoundsLieBetweenCommonAndOwn_data();
    void InputBoundsLieBetweenCommonAndOwn();
    void RecordsFromOutsideAreKeptAndApplied_data();
    void RecordsFromOutsideAreKeptAndApplied();
    void ConvertsByTheRule();
    void TheSelectionDoesNotLimitTheCount();
    void CountsOnceUntilTheSourceChanges();
    void TheFirstPreviewOfANewSourceUsesItsOwnCounts();
    void MovingASliderCountsNothingAgain();
    void ASourceThatChangesDuringTheCountIsCountedItself_data();
    void ASourceThatChangesDuringTheCountIsCountedItself();
    void AnEmptyPictureIsLeftAlone();
};

void TestYDColorEnhancerWidget::InputBoundsLieBetweenCommonAndOwn_data()
{
    QTest::addColumn<int>("own");
    QTest::addColumn<int>("common");
    QTest::addColumn<int>("affected");
    QTest::addColumn<int>("bound");
    QTest::newRow("common low") << 10 << 20 << 0 << 20;
    QTest::newRow("own low") << 10 << 20 << 100 << 10;
    QTest::newRow("half way, low") << 10 << 20 << 50 << 15;
    QTest::newRow("half way, high") << 240 << 230 << 50 << 235;
    QTest::newRow("rounded toward zero") << 10 << 13 << 50 << 11; // 11.5
    QTest::newRow("any percentage, own above") << 20 << 10 << Highest << 214748374;
    QTest::newRow("any percentage, own below") << 0 << 255 << Highest << Lowest;
    QTest::newRow("any percentage, negative") << 255 << 0 << Lowest << Lowest;
}

void TestYDColorEnhancerWidget::InputBoundsLieBetweenCommonAndOwn()
{
    QFETCH(int, own);
    QFETCH(int, common);
    QFETCH(int, affected);
    QFETCH(int, bound);
    QCOMPARE(YDColorEnhancerWidget::InputBound(own, common, affected), bound);
}

void TestYDColorEnhancerWidget::RecordsFromOutsideAreKeptAndApplied_data()
{
    QTest::addColumn<Params>("params");
    QTest::newRow("below") << Record(-1, -1);
    QTest::newRow("above") << Record(101, 101);
    QTest::newRow("lowest") << Record(Lowest, Lowest);
    QTest::newRow("highest") << Record(Highest, Highest);
}

void TestYDColorEnhancerWidget::RecordsFromOutsideAreKeptAndApplied()
{
    QFETCH(Params, params);
    Fixture f;
    f.widget.SetValue(params);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
    const RGBA32iImage source = DullPicture(1);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Expected(params, source, source)));
}

void TestYDColorEnhancerWidget::ConvertsByTheRule()
{
    const RGBA32iImage source = DullPicture(2);
    for (const Params& params : {Record(100, 100), Record(60, 0), Record(40, 50)}) {
        Fixture f;
        f.widget.SetValue(params);
        const RGBA32iImage converted = Converted(f.widget, source);
        QVERIFY(TestPictures::AreEqual(converted, Expected(params, source, source)));
        QVERIFY(!TestPictures::AreEqual(converted, source));
    }
}

void TestYDColorEnhancerWidget::TheSelectionDoesNotLimitTheCount()
{
    const RGBA32iImage source = DullPicture(3);
    const RGBA32iImage whole = Expected(Record(100, 100), source, source);
    RGBA32iImage mask(10, 10);
    for (int y = 0; y < mask.Height(); ++y)
        std::fill_n(mask.Row(y), mask.Width(), YDRGBA32i(255, 255, 255, 255));
    RGBA32iImage image = source.DeepCopy();
    Fixture f;
    f.widget.ConvertImage(image, mask, QPoint(20, 30), QRect(0, 0, 10, 10));
    QCOMPARE(QRgb(image.Row(35)[25]), QRgb(whole.Row(35)[25]));
    QCOMPARE(QRgb(image.Row(35)[31]), QRgb(source.Row(35)[31]));
}

void TestYDColorEnhancerWidget::CountsOnceUntilTheSourceChanges()
{
    const RGBA32iImage first = DullPicture(4);
    const RGBA32iImage second = TestPictures::Random(90, 90, 5);
    Fixture f;
    f.widget.SetImage(first, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, first), Expected(Params(), first, first)));
    // no change of the source was told, so the counts are those of the first picture
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, second), Expected(Params(), second, first)));
    f.widget.SetImage(second, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, second), Expected(Params(), second, second)));
    emit f.widget.SourceChanged();
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, first), Expected(Params(), first, first)));
}

void TestYDColorEnhancerWidget::TheFirstPreviewOfANewSourceUsesItsOwnCounts()
{
    Fixture f(true);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    int previews = 0;
    for (const RGBA32iImage& source : {DullPicture(6), TestPictures::Random(90, 70, 7), DullPicture(8)}) {
        f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
        ++previews;
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), previews, PatienceMs);
        QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Expected(Params(), source, source)));
        f.amountSpin->setValue(f.amountSpin->value() - 10); // counts nothing again, and finds the same
        ++previews;
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), previews, PatienceMs);
        QVERIFY(
            TestPictures::AreEqual(f.widget.AdjustedImage(), Expected(f.widget.GetValue(), source, source)));
        f.widget.SetValue(Params());
    }
}

/// Pixels that change behind the widget's back show whose counts a preview uses.
void TestYDColorEnhancerWidget::MovingASliderCountsNothingAgain()
{
    Fixture f(true);
    const RGBA32iImage source = DullPicture(9);
    const RGBA32iImage counted = source.DeepCopy();
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(!f.widget.IsProcessing()); // nobody reads the source now
    QVERIFY(source.CopyFrom(DullPicture(9, {120, 80}, 60)));
    f.amountSpin->setValue(60);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Expected(Record(60, 100), source, counted)));
    QVERIFY(!TestPictures::AreEqual(f.widget.AdjustedImage(), Expected(Record(60, 100), source, source)));
    emit f.widget.SourceChanged();
    f.amountSpin->setValue(50);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 3, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Expected(Record(50, 100), source, source)));
}

void TestYDColorEnhancerWidget::ASourceThatChangesDuringTheCountIsCountedItself_data()
{
    QTest::addColumn<int>("pauseMs");
    QTest::newRow("at once") << 0;
    QTest::newRow("while a job runs") << 1;
    QTest::newRow("later in the job") << 5;
}

void TestYDColorEnhancerWidget::ASourceThatChangesDuringTheCountIsCountedItself()
{
    QFETCH(int, pauseMs);
    const QSize large(1500, 900);
    QVector<RGBA32iImage> sources;
    for (int i = 0; i < 6; ++i)
        sources.append(DullPicture(quint32(i), large, 15 * i));
    Fixture f(true);
    QVector<RGBA32iImage> previews;
    QVector<RGBA32iImage> shownFor;
    connect(&f.widget, &YDAdjustmentWidget::ImageReady, this, [&] {
        previews.append(f.widget.AdjustedImage());
        shownFor.append(f.widget.SourceImage());
    });
    for (const RGBA32iImage& source : qAsConst(sources)) {
        f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
        if (pauseMs > 0)
            QTest::qWait(pauseMs);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!shownFor.isEmpty() && shownFor.last().SharesPixelsWith(sources.last()),
                             PatienceMs);
    for (int i = 0; i < previews.size(); ++i)
        QVERIFY(TestPictures::AreEqual(previews[i], Expected(Params(), shownFor[i], shownFor[i])));
}

void TestYDColorEnhancerWidget::AnEmptyPictureIsLeftAlone()
{
    Fixture f;
    QVERIFY(Converted(f.widget, RGBA32iImage()).IsEmpty());
}

QTEST_MAIN(TestYDColorEnhancerWidget)
#include "tst_YDColorEnhancerWidget.moc"
