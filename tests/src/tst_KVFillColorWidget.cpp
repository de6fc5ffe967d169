#include "Announcements.h"
#include "ColorDialogDriver.h"
#include "KVFillColorWidget.h"
#include "SourceOver.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

#include <limits>

namespace {

using namespace ColorDialogDriver;
using Params = KVFillColorWidget::Params;

constexpr int PatienceMs = 20000;
constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
const QColor Black(0, 0, 0);
const QColor Red(200, 10, 20);
const QColor Blue(10, 20, 200);

Params Record(const QColor& color, int opacity)
{
    Params params;
    params.color = color;
    params.opacity = opacity;
    return params;
}

QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
}

RGBA32iImage OnePixel(const YDRGBA32i& pixel)
{
    const RGBA32iImage image(1, 1);
    image.Row(0)[0] = pixel;
    return image;
}

/// `fill` laid over every pixel of `source` within `where`.
RGBA32iImage Filled(const RGBA32iImage& source, const YDRGBA32i& fill, const QRect& where)
{
    const RGBA32iImage image = source.DeepCopy();
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x)
            image.Row(y)[x] = LaidOver(fill, image.Row(y)[x]);
    return image;
}

RGBA32iImage Filled(const RGBA32iImage& source, const YDRGBA32i& fill)
{
    return Filled(source, fill, QRect(0, 0, source.Width(), source.Height()));
}

/// A widget of the adjustment and its controls.
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return widget.findChild<T*>(QString::fromLatin1(name));
    }

    /// What the preview shows of `source`; empty where none comes.
    RGBA32iImage Preview(const RGBA32iImage& source)
    {
        return Preview(source, RGBA32iImage(), QPoint(), QRect());
    }

    RGBA32iImage Preview(const RGBA32iImage& source, const RGBA32iImage& mask, const QPoint& offset,
                         const QRect& bounds)
    {
        QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
        widget.SetImage(source, mask, offset, bounds);
        return ready.wait(PatienceMs) ? widget.AdjustedImage() : RGBA32iImage();
    }

    KVFillColorWidget widget;
    QPushButton* const button = Child<QPushButton>("m_pColor");
    KVSlider* const slider = Child<KVSlider>("horizontalSlider");
    KVSpinBox* const opacity = Child<KVSpinBox>("m_pOpacity");
};

} // namespace

class TestKVFillColorWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheFormIsAsDesigned();
    void OpensShowingItsRecord();
    void AChangeOfTheOpacityIsAnnouncedOnce_data();
    void AChangeOfTheOpacityIsAnnouncedOnce();
    void TheColourDialogIsFollowed_data() { AddRows(Red, Blue); }
    void TheColourDialogIsFollowed();
    void AcceptingWhatIsShownComputesNothing_data();
    void AcceptingWhatIsShownComputesNothing();
    void CancellingComputesTheOldColourOnce();
    void AnAcceptedColourThatIsNotShownAnyMoreIsTaken();
    void AHostileColourIsNoChangeOfItself();
    void MayBeDestroyedWhileTheDialogIsOpen();
    void SettingARecordAnnouncesNothing();
    void ResetShowsTheDefaultsAndAnnouncesThem();
    void TheStreamIsTagColourAndOpacity();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine_data();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void TheOpacityIsTheFillsAlpha_data();
    void TheOpacityIsTheFillsAlpha();
    void TheFillIsLaidOverThePicture();
    void OpacityZeroChangesNoPixel();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm();
    void OnlyWhatIsSelectedIsFilled();
    void TheProgressCountsRows();
    void OnlyThePreviewChangesPixels_data();
    void OnlyThePreviewChangesPixels();
    void ThePreviewFollowsTheDialog();
};

void TestKVFillColorWidget::TheFormIsAsDesigned()
{
    const Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Fill color"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Fill color"));
    QCOMPARE(f.widget.size(), QSize(522, 116));
    QCOMPARE(f.Child<QLabel>("label_2")->text(), QStringLiteral("Color:"));
    QCOMPARE(f.Child<QLabel>("label_2")->buddy(), f.button);
    QCOMPARE(f.Child<QLabel>("label")->text(), QStringLiteral("Opacity:"));
    QCOMPARE(f.Child<QLabel>("label")->buddy(), f.opacity);
    QVERIFY(f.button->text().isEmpty());
    QCOMPARE(f.slider->orientation(), Qt::Horizontal);
    QCOMPARE(f.slider->minimum(), 0);
    QCOMPARE(f.slider->maximum(), 100);
    QCOMPARE(f.opacity->minimum(), 0);
    QCOMPARE(f.opacity->maximum(), 100);
    QCOMPARE(f.opacity->suffix(), QStringLiteral("%"));
}

void TestKVFillColorWidget::OpensShowingItsRecord()
{
    for (const bool isDialog : {false, true}) {
        const Fixture f(isDialog);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Qt::black, 100)));
        QCOMPARE(f.opacity->value(), 100);
        QCOMPARE(f.slider->value(), 100);
        QCOMPARE(SwatchOf(*f.button), Black.rgba());
    }
}

void TestKVFillColorWidget::AChangeOfTheOpacityIsAnnouncedOnce_data()
{
    QTest::addColumn<QString>("control");
    QTest::newRow("slider") << "horizontalSlider";
    QTest::newRow("spin box") << "m_pOpacity";
}

void TestKVFillColorWidget::AChangeOfTheOpacityIsAnnouncedOnce()
{
    QFETCH(QString, control);
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.findChild<QWidget*>(control)->setProperty("value", 60);
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Black, 60)));
    QCOMPARE(f.slider->value(), 60);
    QCOMPARE(f.opacity->value(), 60);
}

void TestKVFillColorWidget::TheColourDialogIsFollowed()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(int, before);
    QFETCH(int, after);
    Fixture f;
    Announcements announcements(f.widget);
    InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select a color"));
        QCOMPARE(dialog.GetColor(), Black);
        QCOMPARE(dialog.parentWidget(), &f.widget);
        for (const QColor& color : picks) {
            Pick(dialog, {color});
            QCOMPARE(f.widget.GetValue().color, color);
            QCOMPARE(SwatchOf(*f.button), color.rgba());
        }
        QCOMPARE(announcements.Take(), before);
        Close(dialog, isAccepted);
    });
    f.button->click();
    QCOMPARE(announcements.Take(), after);
    const QColor result = isAccepted && !picks.isEmpty() ? picks.last() : Black;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(result, 100)));
    QCOMPARE(SwatchOf(*f.button), result.rgba());
}

void TestKVFillColorWidget::AcceptingWhatIsShownComputesNothing_data()
{
    QTest::addColumn<Colors>("picks");
    QTest::newRow("unchanged") << Colors{};
    QTest::newRow("after live changes") << Colors{Red, Blue};
}

void TestKVFillColorWidget::AcceptingWhatIsShownComputesNothing()
{
    QFETCH(Colors, picks);
    Fixture f;
    QVERIFY(!f.Preview(TestPictures::Noise(20, 10)).IsEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, picks);
        f.widget.FlushPendingChange();
        QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
        dialog.accept();
    });
    f.button->click();
    f.widget.FlushPendingChange(); // would start what waits for more changes
    QVERIFY(!f.widget.IsProcessing());
}

void TestKVFillColorWidget::CancellingComputesTheOldColourOnce()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Noise(20, 10);
    const RGBA32iImage before = f.Preview(source);
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
        dialog.reject();
    });
    f.button->click();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), before));
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    f.widget.FlushPendingChange();
    QVERIFY(!f.widget.IsProcessing());
}

void TestKVFillColorWidget::AnAcceptedColourThatIsNotShownAnyMoreIsTaken()
{
    Fixture f;
    Announcements announcements(f.widget);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        QCOMPARE(announcements.Take(), 1);
        f.widget.SetValue(Record(Blue, 30)); // a preset that is loaded meanwhile
        dialog.accept();
    });
    f.button->click();
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Red, 30)));
}

void TestKVFillColorWidget::AHostileColourIsNoChangeOfItself()
{
    for (const QColor& hostile : {TestColors::NoNumbers(), TestColors::OfNoModel()}) {
        Fixture f;
        f.widget.SetValue(Record(hostile, 25));
        Announcements announcements(f.widget);
        for (const bool isAccepted : {false, true}) {
            InTheDialog([&](KVColorDialog& dialog) { Close(dialog, isAccepted); });
            f.button->click();
            QCOMPARE(announcements.Take(), 0);
            QCOMPARE(TestColors::Stored(f.widget.GetValue().color), TestColors::Stored(hostile));
        }
    }
}

void TestKVFillColorWidget::MayBeDestroyedWhileTheDialogIsOpen()
{
    auto f = std::make_unique<Fixture>();
    bool wasOpen = false;
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        wasOpen = true;
        f.reset();
    });
    f->button->click();
    QVERIFY(wasOpen);
    QVERIFY(!f);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestKVFillColorWidget::SettingARecordAnnouncesNothing()
{
    Fixture f;
    Announcements announcements(f.widget);
    const QColor seeThrough(10, 20, 200, 7);
    f.widget.SetValue(Record(seeThrough, 70));
    QCOMPARE(announcements.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(seeThrough, 70))); // the alpha is kept
    QCOMPARE(f.opacity->value(), 70);
    QCOMPARE(f.slider->value(), 70);
    f.opacity->setValue(71); // connected again, and once
    QCOMPARE(announcements.Take(), 1);
    InTheDialog([](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        dialog.accept();
    });
    f.button->click();
    QCOMPARE(announcements.Take(), 1);
    QCOMPARE(SwatchOf(*f.button), Red.rgba());
}

void TestKVFillColorWidget::ResetShowsTheDefaultsAndAnnouncesThem()
{
    Fixture f;
    f.widget.SetValue(Record(Blue, 70));
    Announcements announcements(f.widget);
    for (int round = 0; round < 2; ++round) { // the defaults too
        f.widget.Reset();
        QCOMPARE(announcements.Take(), 1);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Black, 100)));
        QCOMPARE(f.opacity->value(), 100);
        QCOMPARE(f.slider->value(), 100);
        QCOMPARE(SwatchOf(*f.button), Black.rgba());
    }
}

void TestKVFillColorWidget::TheStreamIsTagColourAndOpacity()
{
    const QByteArray expected = QByteArray("KVFillColor 1.00000") +
                                QByteArray::fromHex("01ffff0000000000000000") +
                                QByteArray::fromHex("00000064");
    QCOMPARE(Written(Params()), expected);
    QDataStream stream(expected);
    Params params = Record(Blue, 70);
    QVERIFY(params.Read(stream));
    QVERIFY(stream.atEnd());
    QVERIFY(YDRecord::Equal(params, Record(Black, 100)));
}

void TestKVFillColorWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = Written(Record(Blue, 70));
    for (int length = 0; length < whole.size(); ++length)
        QTest::addRow("%d bytes", length) << whole.left(length);
    const int tagSize = int(Params::Tag.size());
    QCOMPARE(tagSize, 19);
    for (int at = 0; at < tagSize; ++at) {
        QByteArray other = whole;
        other[at] = char(other[at] ^ 1);
        QTest::addRow("another byte %d", at) << other;
    }
}

void TestKVFillColorWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine()
{
    QFETCH(QByteArray, bytes);
    QDataStream stream(bytes);
    Params params = Record(Red, 1);
    QTest::ignoreMessage(QtDebugMsg, "[src/KVFillColorWidget:308] Read colorize data error.");
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(Black, 100)));
}

void TestKVFillColorWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg, "[src/KVFillColorWidget:295] Write colorize data error.");
    stream << Params();
}

void TestKVFillColorWidget::TheOpacityIsTheFillsAlpha_data()
{
    QTest::addColumn<int>("opacity");
    QTest::addColumn<int>("alpha");
    QTest::newRow("0 %") << 0 << 0;
    QTest::newRow("1 %") << 1 << 2;
    QTest::newRow("50 %") << 50 << 127;
    QTest::newRow("99 %") << 99 << 252;
    QTest::newRow("100 %") << 100 << 255;
}

/// Over nothing, the fill is what is seen.
void TestKVFillColorWidget::TheOpacityIsTheFillsAlpha()
{
    QFETCH(int, opacity);
    QFETCH(int, alpha);
    Fixture f;
    f.widget.SetValue(Record(QColor(200, 100, 50, 9), opacity)); // the colour's own alpha is lost
    const RGBA32iImage filled = f.Preview(OnePixel(YDRGBA32i(0, 0, 0, 0)));
    QVERIFY(!filled.IsEmpty());
    const YDRGBA32i expected = alpha == 0 ? YDRGBA32i(0, 0, 0, 0) : YDRGBA32i(50, 100, 200, quint8(alpha));
    QCOMPARE(QRgb(filled.Row(0)[0]), QRgb(expected));
}

void TestKVFillColorWidget::TheFillIsLaidOverThePicture()
{
    Fixture f;
    f.widget.SetValue(Record(QColor(200, 100, 50), 50));
    const RGBA32iImage filled = f.Preview(OnePixel(YDRGBA32i(30, 20, 10, 255)));
    QVERIFY(!filled.IsEmpty());
    // (200 * 127 + 10 * 128) / 255 = 104.6, (100 * 127 + 20 * 128) / 255 = 59.8, (50 * 127 + 30 * 128) / 255
    // = 40.0
    QCOMPARE(QRgb(filled.Row(0)[0]), qRgba(105, 60, 40, 255));
}

void TestKVFillColorWidget::OpacityZeroChangesNoPixel()
{
    Fixture f;
    f.widget.SetValue(Record(Red, 0));
    const RGBA32iImage source = TestPictures::Random(300, 200, 3);
    QVERIFY(TestPictures::AreEqual(f.Preview(source), source));
}

void TestKVFillColorWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<int>("opacity");
    QTest::addColumn<quint32>("fill");
    const QByteArray red = TestColors::Stored(Red);
    QTest::newRow("lowest opacity") << red << Lowest << 0x00c80a14u;
    QTest::newRow("negative") << red << -1 << 0x00c80a14u;
    QTest::newRow("highest opacity") << red << Highest << 0xffc80a14u;
    QTest::newRow("just outside") << red << 101 << 0xffc80a14u;
    QTest::newRow("invisible") << TestColors::Stored(QColor(1, 2, 3, 0)) << 100 << 0xff010203u;
    QTest::newRow("no colour") << TestColors::Stored(QColor()) << 100 << 0xff000000u;
    QTest::newRow("no numbers") << TestColors::Stored(TestColors::NoNumbers()) << 100 << 0xff000000u;
    QTest::newRow("far out") << TestColors::Stored(TestColors::FarOut()) << 100 << 0xffff00ffu;
    QTest::newRow("no model there is") << TestColors::Stored(77, {9, 9, 9, 9, 9}) << 100 << 0xff000000u;
}

void TestKVFillColorWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm()
{
    QFETCH(QByteArray, color);
    QFETCH(int, opacity);
    QFETCH(quint32, fill);
    QByteArray bytes = QByteArray("KVFillColor 1.00000") + color;
    QDataStream(&bytes, QIODevice::WriteOnly | QIODevice::Append) << opacity;
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.widget.GetValue().opacity, opacity);
    QCOMPARE(f.opacity->value(), qBound(0, opacity, 100));
    QCOMPARE(f.slider->value(), f.opacity->value());
    const RGBA32iImage source = TestPictures::Random(40, 30, 5);
    QVERIFY(TestPictures::AreEqual(f.Preview(source), Filled(source, YDRGBA32i(fill))));
}

void TestKVFillColorWidget::OnlyWhatIsSelectedIsFilled()
{
    Fixture f;
    f.widget.SetValue(Record(Red, 100));
    const RGBA32iImage source = TestPictures::Noise(60, 50);
    const RGBA32iImage mask(20, 10);
    for (int y = 0; y < mask.Height(); ++y)
        std::fill_n(mask.Row(y), mask.Width(), YDRGBA32i(0xffffffffu));
    const RGBA32iImage filled = f.Preview(source, mask, QPoint(50, 15), QRect(0, 0, 20, 10));
    QVERIFY(TestPictures::AreEqual(filled, Filled(source, YDRGBA32i(Red.rgba()), QRect(50, 15, 10, 10))));
}

void TestKVFillColorWidget::TheProgressCountsRows()
{
    Fixture f;
    QSignalSpy ranges(&f.widget, &YDAdjustmentWidget::ProgressRangeChanged);
    QVERIFY(!f.Preview(TestPictures::Noise(30, 70)).IsEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(ranges.contains(QVariantList{0, 70}), PatienceMs);
}

void TestKVFillColorWidget::OnlyThePreviewChangesPixels_data()
{
    QTest::addColumn<bool>("isDialog");
    QTest::newRow("panel") << false;
    QTest::newRow("dialog") << true;
}

void TestKVFillColorWidget::OnlyThePreviewChangesPixels()
{
    QFETCH(bool, isDialog);
    Fixture f(isDialog);
    f.widget.SetValue(Record(Red, 100));
    const RGBA32iImage source = TestPictures::Noise(30, 20);
    RGBA32iImage image = source.DeepCopy();
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(image, source));
    f.widget.SetImage(image, RGBA32iImage(), QPoint(), QRect());
    QCOMPARE(f.widget.IsProcessing(), isDialog);
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    QVERIFY(TestPictures::AreEqual(image, source)); // the preview works on a copy
}

void TestKVFillColorWidget::ThePreviewFollowsTheDialog()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Random(500, 300, 6);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Blue});
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
        QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Filled(source, YDRGBA32i(Blue.rgba()))));
        dialog.reject();
    });
    f.button->click();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 3, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Filled(source, YDRGBA32i(Black.rgba()))));
}

QTEST_MAIN(TestKVFillColorWidget)
#include "tst_KVFillColorWidget.moc"
