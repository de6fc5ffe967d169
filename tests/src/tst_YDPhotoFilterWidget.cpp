#include "DialogDriver.h"
#include "PanelKit.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDPhotoFilterWidget.h"
#include "guicore/YDCommonComboBox.h"
#include "image/YDIterativePhotoFilterTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QMetaMethod>
#include <QPushButton>

namespace {

using namespace PanelKit;
using namespace DialogDriver;
using Params = YDPhotoFilterWidget::Params;

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

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDPhotoFilterWidget>
{
    using Panel::Panel;

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
    void ThePresetsAreThoseOfTheTable();
    void APresetSetsTheColour();
    void CustomKeepsTheColour();
    void NoItemAtAllHasNoColour();
    void AnItemOfAnotherKindHasNoColour();
    void WhatControlsCallIsPrivate_data();
    void WhatControlsCallIsPrivate();
    void ARecordSelectsItsPreset_data();
    void ARecordSelectsItsPreset();
    void ThePresetListFollowsTheColourDialog();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm();
};

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

void TestYDPhotoFilterWidget::APresetSetsTheColour()
{
    Fixture f;
    Announcements announcements(f.widget);
    for (int index = 1; index < PresetCount; ++index) {
        if (index == f.presets->currentIndex())
            continue;
        f.presets->setCurrentIndex(index);
        const QColor color(QLatin1String(Presets[index].color));
        QCOMPARE(announcements.Take(), OneChange());
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
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Warming81, 50)));
    QCOMPARE(SwatchOf(*f.button), Warming81.rgba());
    QCOMPARE(f.presets->currentIndex(), Custom);
    f.presets->setCurrentIndex(DefaultPreset); // the colour that it is
    QCOMPARE(announcements.Take(), QString());
}

void TestYDPhotoFilterWidget::NoItemAtAllHasNoColour()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.presets->setCurrentIndex(-1);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(!f.widget.GetValue().color.isValid());
    QCOMPARE(f.presets->currentIndex(), Custom);
}

void TestYDPhotoFilterWidget::AnItemOfAnotherKindHasNoColour()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.presets->addItem(QStringLiteral("of another kind"), QVariant::fromValue(QPoint(1, 2)));
    f.presets->setCurrentIndex(PresetCount);
    QCOMPARE(announcements.Take(), OneChange());
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
    QCOMPARE(announcements.Take(), QString());
}

void TestYDPhotoFilterWidget::ThePresetListFollowsTheColourDialog()
{
    Fixture f;
    for (const bool isAccepted : {false, true}) {
        InTheDialog([&](KVColorDialog& dialog) {
            Pick(dialog, {DeepRed});
            QCOMPARE(f.presets->currentIndex(), DeepRedPreset);
            Pick(dialog, {NoPreset});
            QCOMPARE(f.presets->currentIndex(), Custom);
            Close(dialog, isAccepted);
        });
        f.button->click();
        QCOMPARE(f.presets->currentIndex(), isAccepted ? Custom : DefaultPreset);
    }
}

void TestYDPhotoFilterWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<int>("density");
    QTest::addColumn<quint32>("applied");
    const QByteArray red = TestColors::Stored(DeepRed);
    QTest::newRow("lowest density") << red << Lowest << DeepRed.rgba();
    QTest::newRow("highest density") << red << Highest << DeepRed.rgba();
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
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source),
                                   ByRule(YDIterativePhotoFilterTransformation(applied, density), source)));
}

QTEST_MAIN(TestYDPhotoFilterWidget)
#include "tst_YDPhotoFilterWidget.moc"
