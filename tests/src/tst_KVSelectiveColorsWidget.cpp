#include "KVSelectiveColorsWidget.h"
#include "PanelKit.h"
#include "TestPictures.h"
#include "core/KVApplication.h"
#include "gpu/SelectiveColorsService.h"
#include "image/KVIterativeSelectiveColorsTransformation.h"

#include <QComboBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

namespace {

using namespace PanelKit;

constexpr float Infinity = std::numeric_limits<float>::infinity();

/// A change of a percentage is announced in an order of its own.
QString OnePercentage() { return QStringLiteral("host data value"); }

/// Settings in which every value differs from every other.
SelectiveParamsList Settings(Mode mode = Mode::Relative)
{
    SelectiveParamsList params;
    params.mode = mode;
    for (int i = 0; i < params.targets.size(); ++i)
        params.targets[i] = {float(10 * i + 1), float(-10 * i - 2), float(5 * i + 3), float(-5 * i - 4)};
    return params;
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<KVSelectiveColorsWidget>
{
    using Panel::Panel;

    /// What the four spin boxes show.
    QString Shown() const
    {
        QStringList values;
        for (const QSpinBox* const spin : spins)
            values.append(QString::number(spin->value()));
        return values.join(QLatin1Char(' '));
    }
    /// The text of the one checked button.
    QString CheckedMode() const
    {
        return relative->isChecked() == absolute->isChecked() ? QString()
               : relative->isChecked()                        ? relative->text()
                                                              : absolute->text();
    }

    QComboBox* const colors = Child<QComboBox>("m_pColors");
    const QVector<QSpinBox*> spins{Child<QSpinBox>("m_pCyan"), Child<QSpinBox>("m_pMagenta"),
                                   Child<QSpinBox>("m_pYellow"), Child<QSpinBox>("m_pBlack")};
    const QVector<QSlider*> sliders{Child<QSlider>("m_pCyanSlider"), Child<QSlider>("m_pMagentaSlider"),
                                    Child<QSlider>("m_pYellowSlider"), Child<QSlider>("m_pBlackSlider")};
    QRadioButton* const relative = Child<QRadioButton>("m_pRelative");
    QRadioButton* const absolute = Child<QRadioButton>("m_pAbsolute");
};

/// A picture and what limits its adjustment.
struct Scene
{
    RGBA32iImage picture;
    RGBA32iImage mask;
    QPoint offset;
    QRect boundingRect;
};

void Show(KVSelectiveColorsWidget& widget, const Scene& scene)
{
    widget.SetImage(scene.picture, scene.mask, scene.offset, scene.boundingRect);
}

/// What ConvertImage() makes of the scene.
RGBA32iImage ConvertedScene(KVSelectiveColorsWidget& widget, const Scene& scene)
{
    RGBA32iImage image = scene.picture.DeepCopy();
    widget.ConvertImage(image, scene.mask, scene.offset, scene.boundingRect);
    return image;
}

bool ShowsWhatIsApplied(KVSelectiveColorsWidget& widget, const Scene& scene)
{
    return TestPictures::AreEqual(widget.AdjustedImage(), ConvertedScene(widget, scene));
}

/// A mask whose coverage differs from pixel to pixel.
RGBA32iImage Mask(int width, int height)
{
    const RGBA32iImage mask = TestPictures::Random(width, height, 11);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const quint8 coverage = mask.Row(y)[x].g;
            mask.Row(y)[x] = {coverage, coverage, coverage, coverage};
        }
    return mask;
}

/// Keeps the GPU service, if there is one, at work for a while on a picture of somebody else.
void OccupyGpu()
{
    auto* const service = dynamic_cast<SelectiveColorsService*>(KVGpuService::get_instance());
    if (!service)
        return;
    static const QObject somebody;
    const RGBA32iImage picture(6000, 4000);
    const quint64 request = service->request_selective_color(
        picture.SharedPixels(), picture.Width(), picture.Height(), Settings().targets, Mode::Absolute,
        nullptr, 0, 0, 0, 0, true, &somebody);
    QVERIFY(request != 0);
}

} // namespace

class TestKVSelectiveColorsWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void PreviewsTakeTheRoadThatIsAskedFor();
    void EachInkHasItsRow();
    void EachTargetHasItsSwatch_data();
    void EachTargetHasItsSwatch();
    void TypesThatTravelThroughSignalsAreKnown();
    void AnEditBelongsToTheChosenTarget();
    void ChoosingATargetShowsItsValuesAndAnnouncesNothing();
    void WithoutATargetNothingHappens();
    void ATargetThatIsNotKnownBeginsWithZeros();
    void TheModeThatIsSetAlreadyIsNotAnnounced();
    void SettingARecordShowsItAndAnnouncesNothing();
    void ListsOfAnyLengthAreTaken_data();
    void ListsOfAnyLengthAreTaken();
    void ValuesFromOutsideAreKeptAndShownBounded_data();
    void ValuesFromOutsideAreKeptAndShownBounded();
    void AnyOtherModeIsShownAsAbsolute();
    void ResettingClearsAllAndAnnouncesOnce();
    void ConvertingFollowsTheRule();
    void ConvertingLeavesTheGpuAlone();
    void PreviewsShowWhatIsApplied_data();
    void PreviewsShowWhatIsApplied();
    void ChoosingTargetOrModeAnewStartsNoPreview();
    void AFastDragEndsWithTheLastValues();
    void APictureWrittenToAndGivenAgainIsSeen();
    void AChangedSelectionIsSeen();
    void TwoWidgetsPreviewTheirOwnPictures();
    void ActivationAndHidingPair();
    void AForeignAnswerIsNotShown();
    void TheRequestSignalIsNeverEmitted();
    void EndingInTheMiddleIsHarmless_data();
    void EndingInTheMiddleIsHarmless();
    void OkIsAnsweredWhileThePreviewIsComputed();
};

void TestKVSelectiveColorsWidget::init() { KVApplication::SetProgressTimeout(20); }

void TestKVSelectiveColorsWidget::PreviewsTakeTheRoadThatIsAskedFor()
{
    KVGpuService* const service = KVGpuService::get_instance();
    QCOMPARE(service != nullptr, qgetenv("ADJUSTMENTGUI_GPU") == "any");
    Fixture f;
    int answers = 0;
    if (service)
        connect(service, &KVGpuService::finished, &f.widget, [&answers] { ++answers; });
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    Show(f.widget, {TestPictures::Noise(50, 40), {}, {}, {}});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(answers, service ? 1 : 0);
}

void TestKVSelectiveColorsWidget::EachInkHasItsRow()
{
    const Fixture f(false);
    const auto* const whole = qobject_cast<QVBoxLayout*>(f.widget.layout());
    QCOMPARE(whole->spacing(), 6);
    for (int row = 0; row < 4; ++row) {
        const auto* const both = qobject_cast<QVBoxLayout*>(whole->itemAt(row + 1)->layout());
        const auto* const top = qobject_cast<QHBoxLayout*>(both->itemAt(0)->layout());
        QCOMPARE(both->spacing(), 3);
        QCOMPARE(top->spacing(), 6);
        QCOMPARE(top->itemAt(1)->widget(), f.spins[row]);
        QCOMPARE(both->itemAt(1)->widget(), f.sliders[row]);
    }
}

void TestKVSelectiveColorsWidget::EachTargetHasItsSwatch_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QColor>("color");
    QTest::newRow("0") << "Reds" << QColor(197, 32, 83);
    QTest::newRow("1") << "Yellows" << QColor(247, 205, 88);
    QTest::newRow("2") << "Greens" << QColor(0, 152, 87);
    QTest::newRow("3") << "Cyans" << QColor(78, 169, 222);
    QTest::newRow("4") << "Blues" << QColor(36, 108, 188);
    QTest::newRow("5") << "Magentas" << QColor(158, 58, 178);
    QTest::newRow("6") << "Whites" << QColor(255, 255, 255);
    QTest::newRow("7") << "Neutrals" << QColor(148, 148, 148);
    QTest::newRow("8") << "Blacks" << QColor(0, 0, 0);
}

void TestKVSelectiveColorsWidget::EachTargetHasItsSwatch()
{
    QFETCH(QString, text);
    QFETCH(QColor, color);
    Fixture f(false);
    const int index = QString::fromLatin1(QTest::currentDataTag()).toInt();
    QCOMPARE(f.colors->itemText(index), text);
    QVERIFY(!f.colors->itemData(index).isValid());
    const QIcon icon = f.colors->itemIcon(index);
    QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(16, 16)});
    const QImage image = icon.pixmap(16, 16).toImage();
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            const bool isOutline = x == 0 || y == 0 || x == 15 || y == 15;
            QCOMPARE(image.pixelColor(x, y), isOutline ? QColor(Qt::black) : color);
        }
}

void TestKVSelectiveColorsWidget::TypesThatTravelThroughSignalsAreKnown()
{
    const Fixture f(false);
    for (const char* const name : {"SelectiveParams", "Mode", "RGBA32iImage"})
        QVERIFY2(QMetaType::isRegistered(QMetaType::type(name)), name);
    QCOMPARE(QMetaType::type("RGBA32iImage"), qMetaTypeId<RGBA32iImage>());
}

void TestKVSelectiveColorsWidget::AnEditBelongsToTheChosenTarget()
{
    Fixture f;
    SelectiveParamsList expected;
    for (int target = 0; target < 9; ++target) {
        f.colors->setCurrentIndex(target);
        f.spins[0]->setValue(target + 1);
        f.spins[1]->setValue(-target - 2);
        f.sliders[2]->setValue(target + 3);
        f.sliders[3]->setValue(-target - 4);
        expected.targets[target] = {float(target + 1), float(-target - 2), float(target + 3),
                                    float(-target - 4)};
        QVERIFY(f.widget.GetValue() == expected);
    }
}

void TestKVSelectiveColorsWidget::ChoosingATargetShowsItsValuesAndAnnouncesNothing()
{
    Fixture f;
    f.widget.SetValue(Settings());
    Announcements announcements(f.widget);
    f.colors->setCurrentIndex(3);
    QCOMPARE(f.Shown(), QStringLiteral("31 -32 18 -19"));
    f.colors->setCurrentIndex(8);
    QCOMPARE(f.Shown(), QStringLiteral("81 -82 43 -44"));
    QCOMPARE(f.sliders[1]->value(), -82);
    f.colors->setCurrentIndex(0);
    QCOMPARE(f.Shown(), QStringLiteral("1 -2 3 -4"));
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(f.widget.GetValue() == Settings());
    f.spins[0]->setValue(7); // the slots are connected again
    QCOMPARE(announcements.Take(), OnePercentage());
}

void TestKVSelectiveColorsWidget::WithoutATargetNothingHappens()
{
    Fixture f;
    f.widget.SetValue(Settings());
    Announcements announcements(f.widget);
    f.colors->setCurrentIndex(-1);
    QCOMPARE(f.Shown(), QStringLiteral("1 -2 3 -4"));
    f.spins[0]->setValue(99);
    f.widget.OnValueChanged();
    f.widget.OnTargetColorsChanged();
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(f.widget.GetValue() == Settings());
    f.widget.SetValue(Settings(Mode::Absolute));
    QCOMPARE(f.Shown(), QStringLiteral("99 -2 3 -4"));
    QVERIFY(f.widget.GetValue() == Settings(Mode::Absolute));
    f.widget.Reset();
    QCOMPARE(f.colors->currentIndex(), 0);
    QCOMPARE(f.Shown(), QStringLiteral("0 0 0 0"));
}

void TestKVSelectiveColorsWidget::ATargetThatIsNotKnownBeginsWithZeros()
{
    Fixture f(false);
    f.widget.SetValue(Settings());
    f.colors->addItem(QStringLiteral("Another"));
    f.colors->setCurrentIndex(9);
    QCOMPARE(f.Shown(), QStringLiteral("0 0 0 0"));
    f.spins[0]->setValue(5);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source),
                                   ByRule(KVIterativeSelectiveColorsTransformation(Settings()), source)));
}

void TestKVSelectiveColorsWidget::TheModeThatIsSetAlreadyIsNotAnnounced()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.relative->click();
    f.widget.OnModeChanged();
    QCOMPARE(announcements.Take(), QString());
    f.widget.SetValue(Settings(Mode::Absolute));
    f.absolute->click();
    QCOMPARE(announcements.Take(), QString());
    QCOMPARE(int(f.widget.GetValue().mode), 1);
}

void TestKVSelectiveColorsWidget::SettingARecordShowsItAndAnnouncesNothing()
{
    Fixture f;
    f.colors->setCurrentIndex(4);
    Announcements announcements(f.widget);
    f.widget.SetValue(Settings(Mode::Absolute));
    QCOMPARE(f.colors->currentIndex(), 4);
    QCOMPARE(f.Shown(), QStringLiteral("41 -42 23 -24"));
    QCOMPARE(f.CheckedMode(), QStringLiteral("Absolute"));
    QVERIFY(f.widget.GetValue() == Settings(Mode::Absolute));
    f.widget.SetValue(SelectiveParamsList());
    QCOMPARE(f.Shown(), QStringLiteral("0 0 0 0"));
    QCOMPARE(f.CheckedMode(), QStringLiteral("Relative"));
    QCOMPARE(announcements.Take(), QString());
    f.spins[3]->setValue(1); // the slots are connected again
    QCOMPARE(announcements.Take(), OnePercentage());
    f.absolute->click();
    QCOMPARE(announcements.Take(), OneChange());
}

void TestKVSelectiveColorsWidget::ListsOfAnyLengthAreTaken_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {0, 1, 8, 9, 10, 100000})
        QTest::addRow("%d", length) << length;
}

void TestKVSelectiveColorsWidget::ListsOfAnyLengthAreTaken()
{
    QFETCH(int, length);
    SelectiveParamsList params;
    params.targets.clear();
    for (int i = 0; i < length; ++i)
        params.targets.append({1, 2, 3, float(i)});
    SelectiveParamsList expected;
    for (int i = 0; i < 9; ++i)
        expected.targets[i] = i < length ? params.targets[i] : SelectiveParams();
    Fixture f(false);
    f.widget.SetValue(Settings());
    f.widget.SetValue(params);
    QVERIFY(f.widget.GetValue() == expected);
}

void TestKVSelectiveColorsWidget::ValuesFromOutsideAreKeptAndShownBounded_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<int>("shown");
    QTest::newRow("a fraction") << 12.9f << 12;
    QTest::newRow("a negative fraction") << -12.9f << -12;
    QTest::newRow("less than one") << -0.9f << 0;
    QTest::newRow("just above the greatest") << 100.5f << 100;
    QTest::newRow("below the least") << -101.0f << -100;
    QTest::newRow("large") << 1e30f << 100;
    QTest::newRow("large and negative") << -1e30f << -100;
    QTest::newRow("infinite") << Infinity << 100;
    QTest::newRow("negative infinite") << -Infinity << -100;
    QTest::newRow("no number") << std::numeric_limits<float>::quiet_NaN() << 0;
    QTest::newRow("smallest") << std::numeric_limits<float>::denorm_min() << 0;
}

void TestKVSelectiveColorsWidget::ValuesFromOutsideAreKeptAndShownBounded()
{
    QFETCH(float, value);
    QFETCH(int, shown);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    for (const Mode mode : {Mode::Relative, Mode::Absolute}) {
        SelectiveParamsList params;
        params.mode = mode;
        for (SelectiveParams& target : params.targets)
            target = {value, 3, value, value};
        Fixture f(false);
        f.widget.SetValue(params);
        QCOMPARE(f.spins[0]->value(), shown);
        QCOMPARE(f.spins[1]->value(), 3);
        QCOMPARE(f.spins[2]->value(), shown);
        QCOMPARE(f.spins[3]->value(), shown);
        f.colors->setCurrentIndex(5);
        QCOMPARE(f.spins[3]->value(), shown);
        const float kept = f.widget.GetValue().targets[5].black;
        QVERIFY(std::isnan(value) ? std::isnan(kept) : kept == value);
        QVERIFY(TestPictures::AreEqual(Converted(f.widget, source),
                                       ByRule(KVIterativeSelectiveColorsTransformation(params), source)));
    }
}

void TestKVSelectiveColorsWidget::AnyOtherModeIsShownAsAbsolute()
{
    for (const int number : {2, -1, Lowest, Highest}) {
        Fixture f;
        f.widget.SetValue(Settings(Mode(number)));
        QCOMPARE(f.CheckedMode(), QStringLiteral("Absolute"));
        QCOMPARE(int(f.widget.GetValue().mode), number);
        Announcements announcements(f.widget);
        f.relative->click();
        QCOMPARE(announcements.Take(), OneChange());
        QCOMPARE(int(f.widget.GetValue().mode), 0);
    }
}

void TestKVSelectiveColorsWidget::ResettingClearsAllAndAnnouncesOnce()
{
    Fixture f;
    f.widget.SetValue(Settings(Mode::Absolute));
    f.colors->setCurrentIndex(6);
    Announcements announcements(f.widget);
    f.widget.Reset();
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(f.widget.GetValue() == SelectiveParamsList());
    QCOMPARE(f.colors->currentIndex(), 0);
    QCOMPARE(f.Shown(), QStringLiteral("0 0 0 0"));
    QCOMPARE(f.sliders[2]->value(), 0);
    QCOMPARE(f.CheckedMode(), QStringLiteral("Relative"));
    f.spins[2]->setValue(9); // the slots are connected again
    QCOMPARE(announcements.Take(), OnePercentage());
}

void TestKVSelectiveColorsWidget::ConvertingFollowsTheRule()
{
    const RGBA32iImage source = TestPictures::Random(150, 60, 6);
    for (const Mode mode : {Mode::Relative, Mode::Absolute}) {
        Fixture f(false);
        f.widget.SetValue(Settings(mode));
        const RGBA32iImage converted = Converted(f.widget, source);
        QVERIFY(TestPictures::AreEqual(
            converted, ByRule(KVIterativeSelectiveColorsTransformation(Settings(mode)), source)));
        QVERIFY(!TestPictures::AreEqual(converted, source));
    }
}

void TestKVSelectiveColorsWidget::ConvertingLeavesTheGpuAlone()
{
    KVGpuService* const service = KVGpuService::get_instance();
    Fixture f(false);
    int answers = 0;
    if (service)
        connect(service, &KVGpuService::finished, &f.widget, [&answers] { ++answers; });
    f.widget.SetValue(Settings());
    Converted(f.widget, TestPictures::Noise(50, 40));
    QTest::qWait(QuietMs);
    QCOMPARE(answers, 0);
}

void TestKVSelectiveColorsWidget::PreviewsShowWhatIsApplied_data()
{
    QTest::addColumn<QSize>("mask");
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<QRect>("boundingRect");
    const QSize mask(90, 60);
    const QRect all(0, 0, 90, 60);
    QTest::newRow("no selection") << QSize() << QPoint() << QRect();
    QTest::newRow("a mask without a rectangle") << mask << QPoint(3, 4) << QRect();
    QTest::newRow("a rectangle turned over") << mask << QPoint() << QRect(10, 10, -5, -5);
    QTest::newRow("the whole mask") << mask << QPoint() << all;
    QTest::newRow("the whole mask, inside") << mask << QPoint(30, 20) << all;
    QTest::newRow("out at the left and top") << mask << QPoint(-25, -15) << all;
    QTest::newRow("out at the right and bottom") << mask << QPoint(150, 100) << all;
    QTest::newRow("larger than the picture") << QSize(400, 300) << QPoint(-50, -60) << QRect(0, 0, 400, 300);
    QTest::newRow("a part of the mask") << mask << QPoint(30, 20) << QRect(10, 5, 41, 33);
    QTest::newRow("a part, out at the left and top") << mask << QPoint(-13, -7) << QRect(10, 5, 41, 33);
    QTest::newRow("a part, out at the right") << mask << QPoint(160, 20) << QRect(10, 5, 41, 33);
    QTest::newRow("a rectangle beyond the mask") << mask << QPoint(5, 5) << QRect(50, 30, 100, 100);
    QTest::newRow("a rectangle that begins outside") << mask << QPoint(20, 20) << QRect(-10, -12, 50, 40);
    QTest::newRow("one pixel") << mask << QPoint(100, 70) << QRect(40, 30, 1, 1);
    QTest::newRow("beside the picture") << mask << QPoint(2000, 0) << all;
    QTest::newRow("above the picture") << mask << QPoint(0, -2000) << all;
    QTest::newRow("no mask for the rectangle") << QSize() << QPoint() << QRect(0, 0, 50, 50);
    QTest::newRow("far away") << mask << QPoint(INT_MAX, INT_MIN)
                              << QRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
}

void TestKVSelectiveColorsWidget::PreviewsShowWhatIsApplied()
{
    QFETCH(QSize, mask);
    QFETCH(QPoint, offset);
    QFETCH(QRect, boundingRect);
    const Scene scene{TestPictures::Random(200, 130, 3), Mask(mask.width(), mask.height()), offset,
                      boundingRect};
    for (const Mode mode : {Mode::Relative, Mode::Absolute}) {
        Fixture f;
        f.widget.SetupActivation(200, 130);
        f.widget.SetValue(Settings(mode));
        QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
        Show(f.widget, scene);
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        QVERIFY(ShowsWhatIsApplied(f.widget, scene));
        QVERIFY(!f.widget.AdjustedImage().SharesPixelsWith(scene.picture));
        f.spins[0]->setValue(-77); // with what is on the device already
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
        QVERIFY(ShowsWhatIsApplied(f.widget, scene));
        QVERIFY(TestPictures::AreEqual(scene.picture, TestPictures::Random(200, 130, 3)));
    }
}

void TestKVSelectiveColorsWidget::ChoosingTargetOrModeAnewStartsNoPreview()
{
    Fixture f;
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    Show(f.widget, {TestPictures::Noise(50, 40), {}, {}, {}});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    f.colors->setCurrentIndex(4);
    f.relative->click();
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 1);
    f.absolute->click();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
}

void TestKVSelectiveColorsWidget::AFastDragEndsWithTheLastValues()
{
    const Scene scene{TestPictures::Random(600, 400, 3), Mask(350, 300), QPoint(200, 100),
                      QRect(10, 20, 300, 250)};
    Fixture f;
    f.widget.SetupActivation(600, 400);
    Show(f.widget, scene);
    f.colors->setCurrentIndex(7);
    for (int value = -100; value <= 100; value += 4) {
        f.sliders[0]->setValue(value);
        f.sliders[3]->setValue(-value / 2);
        if (value % 16 == 0)
            f.widget.FlushPendingChange(); // a job begins, often while another is under way
        QCoreApplication::processEvents();
    }
    QTRY_VERIFY_WITH_TIMEOUT(ShowsWhatIsApplied(f.widget, scene), PatienceMs);
    QTest::qWait(QuietMs); // nothing older comes behind it
    QVERIFY(ShowsWhatIsApplied(f.widget, scene));
}

/// The host may write to its picture as soon as the widget has another, or has been given it anew.
void TestKVSelectiveColorsWidget::APictureWrittenToAndGivenAgainIsSeen()
{
    Scene scene{TestPictures::Random(200, 130, 3), {}, {}, {}};
    Fixture f;
    f.widget.SetupActivation(200, 130);
    f.widget.SetValue(Settings());
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    Show(f.widget, scene);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    for (int y = 0; y < scene.picture.Height(); ++y)
        std::reverse(scene.picture.Row(y), scene.picture.Row(y) + scene.picture.Width());
    Show(f.widget, scene);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(ShowsWhatIsApplied(f.widget, scene));
}

void TestKVSelectiveColorsWidget::AChangedSelectionIsSeen()
{
    Scene scene{TestPictures::Random(200, 130, 3), Mask(90, 60), QPoint(10, 10), QRect(0, 0, 90, 60)};
    Fixture f;
    f.widget.SetupActivation(200, 130);
    f.widget.SetValue(Settings(Mode::Absolute));
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    for (const QRect& rect : {QRect(0, 0, 90, 60), QRect(5, 5, 50, 40), QRect(15, 9, 50, 40), QRect()}) {
        scene.boundingRect = rect;
        ready.clear();
        Show(f.widget, scene);
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        QVERIFY(ShowsWhatIsApplied(f.widget, scene));
    }
}

void TestKVSelectiveColorsWidget::TwoWidgetsPreviewTheirOwnPictures()
{
    const Scene first{TestPictures::Random(600, 400, 3), {}, {}, {}};
    const Scene second{TestPictures::Random(600, 400, 4), {}, {}, {}};
    Fixture f;
    Fixture g;
    f.widget.SetupActivation(600, 400);
    g.widget.SetupActivation(600, 400);
    g.widget.SetValue(Settings(Mode::Absolute));
    Show(f.widget, first);
    Show(g.widget, second);
    for (int value = 10; value < 30; value += 2) {
        f.spins[0]->setValue(value);
        g.spins[0]->setValue(-value);
        f.widget.FlushPendingChange();
        g.widget.FlushPendingChange();
        QCoreApplication::processEvents();
    }
    QTRY_VERIFY_WITH_TIMEOUT(ShowsWhatIsApplied(f.widget, first), PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(ShowsWhatIsApplied(g.widget, second), PatienceMs);
}

void TestKVSelectiveColorsWidget::ActivationAndHidingPair()
{
    const Scene scene{TestPictures::Random(200, 130, 3), {}, {}, {}};
    Fixture f;
    f.widget.SetValue(Settings());
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    for (int round = 1; round <= 3; ++round) {
        f.widget.SetupActivation(200, 130);
        f.widget.SetupActivation(100, 100); // the later one holds
        f.widget.show();
        Show(f.widget, scene);
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2 * round - 1, PatienceMs);
        f.widget.hide();
        f.widget.hide();
        f.widget.show(); // a preview without a filter is one too
        Show(f.widget, scene);
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2 * round, PatienceMs);
        QVERIFY(ShowsWhatIsApplied(f.widget, scene));
        f.widget.hide();
    }
}

void TestKVSelectiveColorsWidget::AForeignAnswerIsNotShown()
{
    const Scene scene{TestPictures::Random(200, 130, 3), {}, {}, {}};
    Fixture f;
    f.widget.SetValue(Settings());
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    Show(f.widget, scene);
    f.widget.OnGpuResultReady(TestPictures::Grey(200, 130, 7));
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(ShowsWhatIsApplied(f.widget, scene));
    f.widget.OnGpuResultReady(TestPictures::Grey(200, 130, 7));
    f.widget.OnGpuResultReady(RGBA32iImage());
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 1);
    QVERIFY(ShowsWhatIsApplied(f.widget, scene));
}

void TestKVSelectiveColorsWidget::TheRequestSignalIsNeverEmitted()
{
    Fixture f;
    int requests = 0;
    connect(&f.widget, &KVSelectiveColorsWidget::RequestGpuProcess, &f.widget, [&requests] { ++requests; });
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    Show(f.widget, {TestPictures::Noise(50, 40), {}, {}, {}});
    f.spins[0]->setValue(5);
    QTRY_VERIFY_WITH_TIMEOUT(ready.count() > 0, PatienceMs);
    Converted(f.widget, TestPictures::Noise(50, 40));
    QCOMPARE(requests, 0);
}

void TestKVSelectiveColorsWidget::EndingInTheMiddleIsHarmless_data()
{
    QTest::addColumn<QString>("how");
    for (const char* const how : {"destroy", "hide", "clear", "cancel", "cancel and wait", "another picture"})
        QTest::newRow(how) << how;
}

void TestKVSelectiveColorsWidget::EndingInTheMiddleIsHarmless()
{
    QFETCH(QString, how);
    Scene scene{TestPictures::Random(1500, 1000, 3), {}, {}, {}};
    const auto f = std::make_unique<Fixture>();
    KVSelectiveColorsWidget& widget = f->widget;
    widget.SetupActivation(1500, 1000);
    widget.SetValue(Settings());
    widget.show();
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    OccupyGpu();
    Show(widget, scene);
    if (how == QLatin1String("destroy"))
        return;
    if (how == QLatin1String("hide")) {
        widget.hide();
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    } else if (how == QLatin1String("clear")) {
        widget.ClearData();
        QTest::qWait(QuietMs);
        QCOMPARE(ready.count(), 0);
        QVERIFY(widget.AdjustedImage().IsEmpty());
        widget.SetValue(Settings());
        Show(widget, scene);
    } else if (how == QLatin1String("another picture")) {
        scene.picture = TestPictures::Random(300, 200, 4);
        Show(widget, scene);
    } else {
        QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
        if (how == QLatin1String("cancel"))
            widget.CancelProcessing();
        else if (!widget.WaitForProcessingFinished(true))
            QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
        QTest::qWait(QuietMs);
        QCOMPARE(ready.count(), 0);
        QVERIFY(widget.WaitForProcessingFinished(false)); // idle
        widget.SetCancelProcessing(false);
        widget.StartProcessing();
    }
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(ShowsWhatIsApplied(widget, scene));
}

void TestKVSelectiveColorsWidget::OkIsAnsweredWhileThePreviewIsComputed()
{
    const Scene scene{TestPictures::Random(1500, 1000, 3), {}, {}, {}};
    Fixture f;
    f.widget.SetupActivation(1500, 1000);
    Show(f.widget, scene);
    OccupyGpu();
    f.spins[2]->setValue(55);
    f.widget.FlushPendingChange();
    QSignalSpy finished(&f.widget, &YDAdjustmentWidget::Finished);
    QVERIFY(!f.widget.WaitForProcessingFinished(false));
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QVERIFY(ShowsWhatIsApplied(f.widget, scene));
}

QTEST_MAIN(TestKVSelectiveColorsWidget)
#include "tst_KVSelectiveColorsWidget.moc"
