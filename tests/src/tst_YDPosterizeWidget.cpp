#include "TestPictures.h"
#include "YDPosterizeWidget.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QGridLayout>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace {

constexpr int PatienceMs = 20000;

/// A widget of the adjustment, its controls and what it announces.
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return widget.findChild<T*>(QString::fromLatin1(name));
    }

    /// How often each signal was emitted since the last call: host, posterize, data.
    QVector<int> Announced()
    {
        const QVector<int> counts{host.count(), posterize.count(), data.count()};
        host.clear();
        posterize.clear();
        data.clear();
        return counts;
    }

    YDPosterizeWidget widget;
    KVSlider* const slider = Child<KVSlider>("m_pPosterizeSlider");
    KVSpinBox* const spin = Child<KVSpinBox>("m_pPosterizeSpin");
    QSignalSpy host{&widget, &KVAdjustmentWidget::UserParamsChanged};
    QSignalSpy posterize{&widget, &YDPosterizeWidget::PosterizeChanged};
    QSignalSpy data{&widget, &YDAdjustmentWidget::DataChanged};
};

const QVector<int> Nothing{0, 0, 0};
const QVector<int> Once{1, 1, 1};

} // namespace

class TestYDPosterizeWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void TheFormIsAsDesigned();
    void SliderAndSpinBoxFollowEachOtherAndAnnounceOnce();
    void AChangeIsAnnouncedInOrder();
    void SettingTheLevelsAnnouncesNothing();
    void TheLevelsNeverLeaveTheirRange_data();
    void TheLevelsNeverLeaveTheirRange();
    void ResetAnnouncesOnlyRealChanges();
    void ConversionChangesThePixelsHandedIn_data();
    void ConversionChangesThePixelsHandedIn();
    void ThePreviewEqualsTheConversion();
};

void TestYDPosterizeWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDPosterizeWidget"));
}

void TestYDPosterizeWidget::TheFormIsAsDesigned()
{
    Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Posterize"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Posterize"));
    QCOMPARE(f.widget.size(), QSize(267, 63));
    QCOMPARE(f.widget.minimumSize(), QSize(0, 0));
    QCOMPARE(f.widget.maximumSize(), QSize(16777215, 16777215));
    const auto* const grid = f.Child<QGridLayout>("gridLayout");
    const auto* const label = f.Child<QLabel>("label");
    QVERIFY(grid && label && f.slider && f.spin);
    QCOMPARE(f.widget.layout(), grid);
    QCOMPARE(grid->itemAtPosition(0, 0)->widget(), label);
    QCOMPARE(grid->itemAtPosition(0, 1)->widget(), f.slider);
    QCOMPARE(grid->itemAtPosition(0, 2)->widget(), f.spin);
    QCOMPARE(label->text(), QStringLiteral("Posterize:"));
    QCOMPARE(label->alignment(), Qt::AlignRight | Qt::AlignVCenter);
    QCOMPARE(f.slider->orientation(), Qt::Horizontal);
    QCOMPARE(f.slider->minimum(), 2);
    QCOMPARE(f.slider->maximum(), 255);
    QCOMPARE(f.slider->value(), 4);
    QCOMPARE(f.spin->minimum(), 2);
    QCOMPARE(f.spin->maximum(), 255);
    QCOMPARE(f.spin->value(), 4);
    QLayoutItem* const spacer = grid->itemAtPosition(1, 0);
    QVERIFY(spacer && spacer->spacerItem());
    QCOMPARE(spacer->sizeHint(), QSize(120, 16));
    QCOMPARE(spacer->spacerItem()->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void TestYDPosterizeWidget::SliderAndSpinBoxFollowEachOtherAndAnnounceOnce()
{
    Fixture f;
    f.slider->setValue(40);
    QCOMPARE(f.spin->value(), 40);
    QCOMPARE(f.widget.GetPosterize(), 40);
    QCOMPARE(f.Announced(), Once);
    f.spin->setValue(50);
    QCOMPARE(f.slider->value(), 50);
    QCOMPARE(f.widget.GetPosterize(), 50);
    QCOMPARE(f.Announced(), Once);
}

void TestYDPosterizeWidget::AChangeIsAnnouncedInOrder()
{
    Fixture f;
    QStringList order;
    const auto note = [&order](const char* what) { order.append(QString::fromLatin1(what)); };
    connect(&f.widget, &KVAdjustmentWidget::UserParamsChanged, this, [&] { note("host"); });
    connect(&f.widget, &YDPosterizeWidget::PosterizeChanged, this, [&] { note("posterize"); });
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this, [&] { note("data"); });
    f.slider->setValue(9);
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("host posterize data"));
}

void TestYDPosterizeWidget::SettingTheLevelsAnnouncesNothing()
{
    Fixture f;
    f.widget.SetPosterize(12);
    QCOMPARE(f.widget.GetPosterize(), 12);
    QCOMPARE(f.spin->value(), 12);
    QCOMPARE(f.slider->value(), 12);
    QCOMPARE(f.Announced(), Nothing);
    f.slider->setValue(13); // connected again, once
    QCOMPARE(f.Announced(), Once);
}

void TestYDPosterizeWidget::TheLevelsNeverLeaveTheirRange_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("levels");
    QTest::newRow("lowest") << 2 << 2;
    QTest::newRow("too low") << 1 << 2;
    QTest::newRow("below zero") << -1 << 2;
    QTest::newRow("the lowest int") << std::numeric_limits<int>::min() << 2;
    QTest::newRow("highest") << 255 << 255;
    QTest::newRow("too high") << 256 << 255;
    QTest::newRow("the highest int") << std::numeric_limits<int>::max() << 255;
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

void TestYDPosterizeWidget::ResetAnnouncesOnlyRealChanges()
{
    Fixture f;
    f.widget.Reset();
    QCOMPARE(f.Announced(), Nothing);
    f.slider->setValue(50);
    f.Announced();
    f.widget.Reset();
    QCOMPARE(f.Announced(), Once);
    QCOMPARE(f.widget.GetPosterize(), 4);
    QCOMPARE(f.slider->value(), 4);
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

void TestYDPosterizeWidget::ThePreviewEqualsTheConversion()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Noise(700, 500);
    const RGBA32iImage mask = TestPictures::Random(300, 200, 5);
    const QRect bounds(0, 0, 300, 200);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetPosterize(6);
    f.widget.SetImage(source, mask, QPoint(-50, 400), bounds);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage converted = source.DeepCopy();
    f.widget.ConvertImage(converted, mask, QPoint(-50, 400), bounds);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
    QVERIFY(!TestPictures::AreEqual(converted, source));
}

QTEST_MAIN(TestYDPosterizeWidget)
#include "tst_YDPosterizeWidget.moc"
