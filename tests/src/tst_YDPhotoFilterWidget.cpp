#include "Announcements.h"
#include "ColorDialogDriver.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDPhotoFilterWidget.h"
#include "guicore/YDCommonComboBox.h"
#include "image/YDIterativePhotoFilterTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QGridLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

#include <limits>

namespace {

using namespace ColorDialogDriver;
using Params = YDPhotoFilterWidget::Params;

constexpr int PatienceMs = 20000;
constexpr int Custom = 0;
constexpr int DefaultPreset = 3;
const QColor Warming81(0xeb, 0xb1, 0x13);
const QColor NoPreset(0x12, 0x34, 0x56);
const QColor DeepRed(0xff, 0x00, 0x00);
constexpr int DeepRedPreset = 16;

struct Preset
{
    const char* text;
    const char* color;
};

constexpr Preset Presets[] = {
    {"Custom", "#00000000"},
    {"Warming Filter (85)", "#EC8A00"},
    {"Warming Filter (LBA)", "#FA9600"},
    {"Warming Filter (81)", "#EBB113"},
    {"Coolling Filter (80)", "#006DFF"},
    {"Cooling Filter (LBB)", "#005DFF"},
    {"Cooling Filter (82)", "#00B5FF"},
    {"Red", "#EA1A1A"},
    {"Orange", "#F38417"},
    {"Yellow", "#F9E31C"},
    {"Green", "#19C919"},
    {"Cyan", "#1DCBEA"},
    {"Blue", "#1D35EA"},
    {"Violet", "#9B1DEA"},
    {"Magenta", "#E318E3"},
    {"Sepia", "#AC7A33"},
    {"Deep Red", "#FF0000"},
    {"Deep Blue", "#0022CD"},
    {"Deep Emerald", "#008C00"},
    {"Deep Yellow", "#FFD500"},
    {"Underwater", "#00C1B1"},
};
constexpr int PresetCount = int(std::size(Presets));

Params Record(const QColor& color, int density)
{
    Params params;
    params.color = color;
    params.density = density;
    return params;
}

QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
}

RGBA32iImage Converted(YDPhotoFilterWidget& widget, const RGBA32iImage& source)
{
    RGBA32iImage image = source.DeepCopy();
    widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    return image;
}

/// What the rule makes of every pixel, by its pixel form.
RGBA32iImage Expected(const RGBA32iImage& source, QRgb color, int density)
{
    const RGBA32iImage image = source.DeepCopy();
    YDIterativePhotoFilterTransformation rule(color, density);
    for (int y = 0; y < image.Height(); ++y) {
        rule.SetProcessingBuffer(image.Row(y));
        for (int x = 0; x < image.Width(); ++x)
            rule.ProcessPixel(x);
    }
    return image;
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

    YDPhotoFilterWidget widget;
    QPushButton* const button = Child<QPushButton>("m_pColor");
    KVSlider* const slider = Child<KVSlider>("horizontalSlider");
    KVSpinBox* const density = Child<KVSpinBox>("m_pDensity");
    YDCommonComboBox* const presets = Child<YDCommonComboBox>("m_pPresetList");
};

} // namespace

class TestYDPhotoFilterWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheFormIsAsDesigned();
    void ThePresetsAreThoseOfTheTable();
    void OpensShowingItsRecord();
    void AChangeOfTheDensityIsAnnouncedOnce_data();
    void AChangeOfTheDensityIsAnnouncedOnce();
    void APresetSetsTheColour();
    void CustomKeepsTheColour();
    void NoItemAtAllHasNoColour();
    void AnItemOfAnotherKindHasNoColour();
    void WhatControlsCallIsPrivate_data();
    void WhatControlsCallIsPrivate();
    void ARecordSelectsItsPreset_data();
    void ARecordSelectsItsPreset();
    void TheColourDialogIsFollowed_data() { AddRows(DeepRed, NoPreset); }
    void TheColourDialogIsFollowed();
    void MayBeDestroyedWhileTheDialogIsOpen();
    void SettingARecordAnnouncesNothing();
    void ResetShowsTheDefaultsAndAnnouncesThem();
    void TheStreamIsTagColourAndDensity();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine_data();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm();
    void DensityZeroChangesNoPixel();
    void ThePreviewEqualsTheConversion();
};

void TestYDPhotoFilterWidget::TheFormIsAsDesigned()
{
    const Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Photo filter"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Photo filter"));
    const auto* const grid = f.Child<QGridLayout>("gridLayout");
    QVERIFY(grid);
    struct Cell
    {
        const char* name;
        int row;
        int column;
        int columns;
        const char* text;
    };
    for (const Cell& cell : {Cell{"label_2", 0, 0, 1, "Color:"}, Cell{"m_pColor", 0, 2, 1, nullptr},
                             Cell{"label", 1, 0, 1, "Density:"}, Cell{"horizontalSlider", 1, 1, 1, nullptr},
                             Cell{"m_pDensity", 1, 2, 1, nullptr}, Cell{"label_3", 3, 0, 1, "Preset:"},
                             Cell{"m_pPresetList", 3, 1, 2, nullptr}}) {
        auto* const widget = f.Child<QWidget>(cell.name);
        QVERIFY2(widget, cell.name);
        int row = -1, column = -1, rows = -1, columns = -1;
        grid->getItemPosition(grid->indexOf(widget), &row, &column, &rows, &columns);
        QCOMPARE(row, cell.row);
        QCOMPARE(column, cell.column);
        QCOMPARE(rows, 1);
        QCOMPARE(columns, cell.columns);
        if (cell.text)
            QCOMPARE(qobject_cast<QLabel*>(widget)->text(), QString::fromLatin1(cell.text));
    }
    QVERIFY(f.button->text().isEmpty());
    QCOMPARE(f.button->minimumHeight(), 24);
    QCOMPARE(f.button->maximumHeight(), 24);
    QCOMPARE(f.button->maximumWidth(), QWIDGETSIZE_MAX);
    QCOMPARE(f.slider->orientation(), Qt::Horizontal);
    QCOMPARE(f.slider->minimum(), 0);
    QCOMPARE(f.slider->maximum(), 100);
    QCOMPARE(f.density->minimum(), 0);
    QCOMPARE(f.density->maximum(), 100);
    QCOMPARE(f.density->suffix(), QStringLiteral("%"));
}

void TestYDPhotoFilterWidget::ThePresetsAreThoseOfTheTable()
{
    const Fixture f;
    QCOMPARE(f.presets->count(), PresetCount);
    for (int index = 0; index < PresetCount; ++index) {
        QCOMPARE(f.presets->itemText(index), QString::fromLatin1(Presets[index].text));
        QCOMPARE(f.presets->itemData(index).userType(), int(QMetaType::QColor));
        QCOMPARE(f.presets->itemData(index).value<QColor>(), QColor(QLatin1String(Presets[index].color)));
    }
    QCOMPARE(f.presets->itemData(Custom).value<QColor>(), QColor(Qt::transparent));
}

void TestYDPhotoFilterWidget::OpensShowingItsRecord()
{
    for (const bool isDialog : {false, true}) {
        const Fixture f(isDialog);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Warming81, 50)));
        QCOMPARE(f.density->value(), 50);
        QCOMPARE(f.slider->value(), 50);
        QCOMPARE(f.presets->currentIndex(), DefaultPreset);
        QCOMPARE(SwatchOf(*f.button), Warming81.rgba());
    }
}

void TestYDPhotoFilterWidget::AChangeOfTheDensityIsAnnouncedOnce_data()
{
    QTest::addColumn<QString>("control");
    QTest::newRow("slider") << "horizontalSlider";
    QTest::newRow("spin box") << "m_pDensity";
}

void TestYDPhotoFilterWidget::AChangeOfTheDensityIsAnnouncedOnce()
{
    QFETCH(QString, control);
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.findChild<QWidget*>(control)->setProperty("value", 60);
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Warming81, 60)));
    QCOMPARE(f.slider->value(), 60);
    QCOMPARE(f.density->value(), 60);
}

void TestYDPhotoFilterWidget::APresetSetsTheColour()
{
    Fixture f;
    Announcements announcements(f.widget);
    for (int index = 1; index < PresetCount; ++index) {
        if (index == f.presets->currentIndex())
            continue;
        f.presets->setCurrentIndex(index);
        const QColor color(QLatin1String(Presets[index].color));
        QCOMPARE(announcements.Take(), 1);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(color, 50)));
        QCOMPARE(SwatchOf(*f.button), color.rgba());
        QCOMPARE(f.presets->currentIndex(), index);
    }
}

void TestYDPhotoFilterWidget::CustomKeepsTheColour()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.presets->setCurrentIndex(Custom);
    QCOMPARE(announcements.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Warming81, 50)));
    QCOMPARE(SwatchOf(*f.button), Warming81.rgba());
    QCOMPARE(f.presets->currentIndex(), Custom);
    f.presets->setCurrentIndex(DefaultPreset); // the colour that it is
    QCOMPARE(announcements.Take(), 0);
}

void TestYDPhotoFilterWidget::NoItemAtAllHasNoColour()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.presets->setCurrentIndex(-1);
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(!f.widget.GetValue().color.isValid());
    QCOMPARE(f.presets->currentIndex(), Custom);
}

void TestYDPhotoFilterWidget::AnItemOfAnotherKindHasNoColour()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.presets->addItem(QStringLiteral("of another kind"), QVariant::fromValue(QPoint(1, 2)));
    f.presets->setCurrentIndex(PresetCount);
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(!f.widget.GetValue().color.isValid());
    QCOMPARE(f.presets->currentIndex(), Custom); // no item holds that colour
}

void TestYDPhotoFilterWidget::WhatControlsCallIsPrivate_data()
{
    QTest::addColumn<QByteArray>("signature");
    for (const char* const signature :
         {"OnColor()", "OnCurrentColorChanged(QColor)", "OnDensityChanged(int)", "OnPresetChanged(int)"})
        QTest::newRow(signature) << QByteArray(signature);
}

void TestYDPhotoFilterWidget::WhatControlsCallIsPrivate()
{
    QFETCH(QByteArray, signature);
    const QMetaObject& meta = YDPhotoFilterWidget::staticMetaObject;
    const QMetaMethod slot = meta.method(meta.indexOfSlot(signature));
    QVERIFY(slot.isValid());
    QCOMPARE(slot.access(), QMetaMethod::Private);
}

void TestYDPhotoFilterWidget::ARecordSelectsItsPreset_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("index");
    for (int index = 0; index < PresetCount; ++index)
        QTest::newRow(Presets[index].text) << QColor(QLatin1String(Presets[index].color)) << index;
    QTest::newRow("of no row") << NoPreset << Custom;
    QTest::newRow("nearly one") << QColor(0x00, 0x5d, 0xfe) << Custom;
    QTest::newRow("one, but translucent") << QColor(0x00, 0x5d, 0xff, 254) << Custom;
    QTest::newRow("one of another model") << QColor(0xff, 0x00, 0x00).toHsv() << Custom;
    QTest::newRow("none") << QColor() << Custom;
    QTest::newRow("no numbers") << TestColors::NoNumbers() << Custom;
}

void TestYDPhotoFilterWidget::ARecordSelectsItsPreset()
{
    QFETCH(QColor, color);
    QFETCH(int, index);
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.SetValue(Record(color, 50));
    QCOMPARE(f.presets->currentIndex(), index);
    QCOMPARE(TestColors::Stored(f.widget.GetValue().color), TestColors::Stored(color));
    QCOMPARE(announcements.Take(), 0);
}

void TestYDPhotoFilterWidget::TheColourDialogIsFollowed()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(int, before);
    QFETCH(int, after);
    Fixture f;
    Announcements announcements(f.widget);
    InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select a filter color"));
        QCOMPARE(dialog.GetColor(), Warming81);
        QCOMPARE(dialog.parentWidget(), &f.widget);
        for (const QColor& color : picks) {
            Pick(dialog, {color});
            QCOMPARE(f.widget.GetValue().color, color);
            QCOMPARE(SwatchOf(*f.button), color.rgba());
            QCOMPARE(f.presets->currentIndex(), color == DeepRed ? DeepRedPreset : Custom);
        }
        QCOMPARE(announcements.Take(), before);
        Close(dialog, isAccepted);
    });
    f.button->click();
    QCOMPARE(announcements.Take(), after);
    const QColor result = isAccepted && !picks.isEmpty() ? picks.last() : Warming81;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(result, 50)));
    QCOMPARE(SwatchOf(*f.button), result.rgba());
    QCOMPARE(f.presets->itemData(f.presets->currentIndex()).value<QColor>(),
             result == NoPreset ? QColor(Qt::transparent) : result);
}

void TestYDPhotoFilterWidget::MayBeDestroyedWhileTheDialogIsOpen()
{
    auto f = std::make_unique<Fixture>();
    InTheDialog([&f](KVColorDialog& dialog) {
        Pick(dialog, {DeepRed});
        f.reset();
    });
    f->button->click();
    QVERIFY(!f);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestYDPhotoFilterWidget::SettingARecordAnnouncesNothing()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.SetValue(Record(DeepRed, 70));
    QCOMPARE(announcements.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(DeepRed, 70)));
    QCOMPARE(f.density->value(), 70);
    QCOMPARE(f.slider->value(), 70);
    QCOMPARE(f.presets->currentIndex(), DeepRedPreset);
    QCOMPARE(SwatchOf(*f.button), DeepRed.rgba());
    f.density->setValue(71); // connected again, and once
    QCOMPARE(announcements.Take(), 1);
}

void TestYDPhotoFilterWidget::ResetShowsTheDefaultsAndAnnouncesThem()
{
    Fixture f;
    f.widget.SetValue(Record(NoPreset, 70));
    Announcements announcements(f.widget);
    for (int round = 0; round < 2; ++round) { // the defaults too
        f.widget.Reset();
        QCOMPARE(announcements.Take(), 1);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Warming81, 50)));
        QCOMPARE(f.density->value(), 50);
        QCOMPARE(f.presets->currentIndex(), DefaultPreset);
        QCOMPARE(SwatchOf(*f.button), Warming81.rgba());
    }
}

void TestYDPhotoFilterWidget::TheStreamIsTagColourAndDensity()
{
    const QByteArray expected = QByteArray("KVPhotoFilter 1.00000") +
                                QByteArray::fromHex("01ffffebebb1b113130000") +
                                QByteArray::fromHex("00000032");
    QCOMPARE(Written(Params()), expected);
    QDataStream stream(expected);
    Params params = Record(DeepRed, 70);
    QVERIFY(params.Read(stream));
    QVERIFY(stream.atEnd());
    QVERIFY(YDRecord::Equal(params, Record(Warming81, 50)));
}

void TestYDPhotoFilterWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = Written(Record(DeepRed, 70));
    for (int length = 0; length < whole.size(); ++length)
        QTest::addRow("%d bytes", length) << whole.left(length);
    QTest::newRow("another version") << QByteArray(whole).replace("1.00000", "1.00001");
    QTest::newRow("another tag") << QByteArray(whole).replace("KVPhoto", "KVphoto");
}

void TestYDPhotoFilterWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine()
{
    QFETCH(QByteArray, bytes);
    QDataStream stream(bytes);
    Params params = Record(DeepRed, 1);
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral(
                             "^\\[src/YDPhotoFilterWidget:[0-9]+\\] Read photo filter data error\\.$")));
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(Warming81, 50)));
}

void TestYDPhotoFilterWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral(
                             "^\\[src/YDPhotoFilterWidget:[0-9]+\\] Write photo filter data error\\.$")));
    stream << Params();
}

void TestYDPhotoFilterWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<int>("density");
    QTest::addColumn<quint32>("applied");
    const QByteArray red = TestColors::Stored(DeepRed);
    QTest::newRow("lowest density") << red << std::numeric_limits<int>::min() << DeepRed.rgba();
    QTest::newRow("highest density") << red << std::numeric_limits<int>::max() << DeepRed.rgba();
    QTest::newRow("just outside") << red << -1 << DeepRed.rgba();
    QTest::newRow("invisible") << TestColors::Stored(QColor(1, 2, 3, 0)) << 100 << 0x00010203u;
    QTest::newRow("no colour") << TestColors::Stored(QColor()) << 100 << 0xff000000u;
    QTest::newRow("no numbers") << TestColors::Stored(TestColors::NoNumbers()) << 100 << 0x00000000u;
    QTest::newRow("far out") << TestColors::Stored(TestColors::FarOut()) << 100 << 0xffff00ffu;
    QTest::newRow("no model there is") << TestColors::Stored(-1, {9, 9, 9, 9, 9}) << 100 << 0x00000000u;
}

void TestYDPhotoFilterWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm()
{
    QFETCH(QByteArray, color);
    QFETCH(int, density);
    QFETCH(quint32, applied);
    QByteArray bytes = QByteArray("KVPhotoFilter 1.00000") + color;
    QDataStream(&bytes, QIODevice::WriteOnly | QIODevice::Append) << density;
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.widget.GetValue().density, density);
    QCOMPARE(f.density->value(), qBound(0, density, 100));
    QCOMPARE(f.slider->value(), f.density->value());
    const RGBA32iImage source = TestPictures::Random(40, 30, 5);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Expected(source, applied, density)));
}

void TestYDPhotoFilterWidget::DensityZeroChangesNoPixel()
{
    Fixture f(false);
    f.widget.SetValue(Record(DeepRed, 0));
    const RGBA32iImage source = TestPictures::Random(40, 30, 8);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
    QCOMPARE(f.widget.GetValue().density, 0);
}

void TestYDPhotoFilterWidget::ThePreviewEqualsTheConversion()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Random(500, 300, 6);
    const RGBA32iImage mask = TestPictures::Random(200, 100, 7);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetValue(Record(DeepRed, 80));
    f.widget.SetImage(source, mask, QPoint(-50, 250), QRect(0, 0, 200, 100));
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage converted = source.DeepCopy();
    f.widget.ConvertImage(converted, mask, QPoint(-50, 250), QRect(0, 0, 200, 100));
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
    QVERIFY(!TestPictures::AreEqual(converted, source));
}

QTEST_MAIN(TestYDPhotoFilterWidget)
#include "tst_YDPhotoFilterWidget.moc"
