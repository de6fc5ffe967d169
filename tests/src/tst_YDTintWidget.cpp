#include "PanelKit.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDTintWidget.h"
#include "guicore/YDCommonComboBox.h"
#include "image/YDTintRGB32.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QPushButton>
#include <QSignalSpy>

Q_DECLARE_METATYPE(YDTintWidget::Params)

namespace {

using namespace PanelKit;
using Params = YDTintWidget::Params;

const QColor Black(5, 6, 8);
const QColor White(170, 209, 255);
const QColor Red(200, 10, 20);
const QColor Blue(10, 20, 200);

Params Record(const QColor& blackTone, const QColor& whiteTone, int amount, int type)
{
    Params params;
    params.blackTone = blackTone;
    params.whiteTone = whiteTone;
    params.amount = amount;
    params.type = type;
    return params;
}

/// What the settings make of one pixel.
YDRGBA32i Tinted(const Params& params, const YDRGBA32i& pixel)
{
    YDTintWidget widget(false, nullptr, Qt::WindowFlags());
    widget.SetValue(params);
    const RGBA32iImage image(1, 1);
    image.Row(0)[0] = pixel;
    return Converted(widget, image).Row(0)[0];
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDTintWidget>
{
    using Panel::Panel;

    QPushButton* const black = Child<QPushButton>("m_pBlackTone");
    QPushButton* const white = Child<QPushButton>("m_pWhiteTone");
    KVSlider* const slider = Child<KVSlider>("horizontalSlider");
    KVSpinBox* const amount = Child<KVSpinBox>("m_pAmount");
    YDCommonComboBox* const type = Child<YDCommonComboBox>("m_pType");
};

} // namespace

class TestYDTintWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheTypesAreInOrder();
    void NoTypeAtAllKeepsTheType();
    void SettingARecordAnnouncesTypeAndAmount_data();
    void SettingARecordAnnouncesTypeAndAmount();
    void RecordsFromOutsideAreKept_data();
    void RecordsFromOutsideAreKept();
    void EachTypeWeighsTheChannelsItsWay_data();
    void EachTypeWeighsTheChannelsItsWay();
    void TheHostsTintTakesTheAmountInPerCent();
    void HostileTonesAreApplied();
    void AnUnknownTypeHasNoResult();
    void TheLastOfItsControlsCannotReachIt();
};

void TestYDTintWidget::TheTypesAreInOrder()
{
    const Fixture f;
    for (int index = 0; index < f.type->count(); ++index) {
        QCOMPARE(f.type->itemData(index), QVariant(index));
        QVERIFY(f.type->itemIcon(index).isNull());
    }
}

void TestYDTintWidget::NoTypeAtAllKeepsTheType()
{
    Fixture f;
    f.type->setCurrentIndex(2);
    Announcements announcements(f.widget);
    f.type->setCurrentIndex(-1);
    f.widget.OnTypeChanged(-1);
    QCOMPARE(announcements.Take(), QString());
    QCOMPARE(f.widget.GetValue().type, 2);
}

void TestYDTintWidget::SettingARecordAnnouncesTypeAndAmount_data()
{
    QTest::addColumn<int>("amount");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("announced");
    QTest::newRow("both") << 40 << 2 << 2;
    QTest::newRow("the amount") << 40 << 0 << 1;
    QTest::newRow("the type") << 75 << 3 << 1;
    QTest::newRow("the tones alone") << 75 << 0 << 0;
    QTest::newRow("a type that there is not") << 75 << 9 << 0;
    QTest::newRow("an amount above the slider") << 500 << 0 << 1;
    QTest::newRow("an amount below the slider") << -7 << 0 << 1;
    QTest::newRow("a type, and an amount above the slider") << 500 << 2 << 2;
    QTest::newRow("no type, and an amount below the slider") << Lowest << 9 << 1;
}

void TestYDTintWidget::SettingARecordAnnouncesTypeAndAmount()
{
    QFETCH(int, amount);
    QFETCH(int, type);
    QFETCH(int, announced);
    Fixture f;
    const Params record = Record(Red, Blue, amount, type);
    Announcements announcements(f.widget);
    int whole = 0; // announcements by when the widget held the whole record
    connect(&f.widget, &YDTintWidget::ValueChanged, this,
            [&] { whole += YDRecord::Equal(f.widget.GetValue(), record) ? 1 : 0; });
    f.widget.SetValue(record);
    QCOMPARE(announcements.Take(), Changes(announced));
    QCOMPARE(whole, announced);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), record));
    QCOMPARE(f.amount->value(), qBound(0, amount, 100));
    QCOMPARE(f.slider->value(), qBound(0, amount, 100));
    QCOMPARE(f.type->currentIndex(), type > 3 ? -1 : type);
    QCOMPARE(SwatchOf(*f.black), Red.rgba());
    QCOMPARE(SwatchOf(*f.white), Blue.rgba());
    f.widget.SetValue(record);
    QCOMPARE(announcements.Take(), QString());
    f.amount->setValue(50); // from here on the control says what the amount is
    QCOMPARE(f.widget.GetValue().amount, 50);
}

void TestYDTintWidget::RecordsFromOutsideAreKept_data()
{
    QTest::addColumn<int>("amount");
    QTest::addColumn<int>("type");
    for (const int value : {Lowest, -1, 4, 101, Highest}) {
        QTest::addRow("amount %d", value) << value << 0;
        QTest::addRow("type %d", value) << 50 << value;
        QTest::addRow("both %d", value) << value << value;
    }
}

void TestYDTintWidget::RecordsFromOutsideAreKept()
{
    QFETCH(int, amount);
    QFETCH(int, type);
    Fixture f;
    const Params record = Record(TestColors::NoNumbers(), TestColors::FarOut(), amount, type);
    f.widget.SetValue(record);
    QCOMPARE(Written(f.widget.GetValue()), Written(record));
    QCOMPARE(f.amount->value(), qBound(0, amount, 100));
    QCOMPARE(f.type->currentIndex(), type == 0 ? 0 : -1);
    const RGBA32iImage source = TestPictures::Random(20, 20, 9);
    const RGBA32iImage image = Converted(f.widget, source);
    QVERIFY(type == 0 || TestPictures::AreEqual(image, source));
}

void TestYDTintWidget::EachTypeWeighsTheChannelsItsWay_data()
{
    QTest::addColumn<Params>("params");
    QTest::addColumn<quint32>("pixel");
    QTest::addColumn<quint32>("tinted");
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    // By the weights the brightness of (10, 200, 30) is 80.12, 124.3 and 147.31.
    QTest::newRow("average") << Record(black, white, 100, 0) << 0x110ac81eu << 0x11505050u;
    QTest::newRow("NTSC") << Record(black, white, 100, 1) << 0x110ac81eu << 0x117c7c7cu;
    QTest::newRow("LUMA") << Record(black, white, 100, 2) << 0x110ac81eu << 0x11939393u;
    // 80 and the channel, half and half, rounded down: 45, 140, 55.
    QTest::newRow("half") << Record(black, white, 50, 0) << 0xff0ac81eu << 0xff2d8c37u;
    QTest::newRow("nothing, average") << Record(Red, Blue, 0, 0) << 0xff0ac81eu << 0xff0ac81eu;
    QTest::newRow("nothing, NTSC") << Record(Red, Blue, 0, 1) << 0xff0ac81eu << 0xff0ac81eu;
    QTest::newRow("nothing, LUMA") << Record(Red, Blue, 0, 2) << 0xff0ac81eu << 0xff0ac81eu;
    QTest::newRow("less than nothing") << Record(Red, Blue, Lowest, 1) << 0xff0ac81eu << 0xff0ac81eu;
    QTest::newRow("more than all") << Record(black, white, Highest, 2) << 0x110ac81eu << 0x11939393u;
    for (const int type : {0, 1, 2}) {
        QTest::addRow("white is the white tone, type %d", type)
            << Record(Black, White, 100, type) << 0xffffffffu << White.rgba();
        QTest::addRow("black is the black tone, type %d", type)
            << Record(Black, White, 100, type) << 0xff000000u << Black.rgba();
    }
}

void TestYDTintWidget::EachTypeWeighsTheChannelsItsWay()
{
    QFETCH(Params, params);
    QFETCH(quint32, pixel);
    QFETCH(quint32, tinted);
    QCOMPARE(quint32(Tinted(params, pixel)), tinted);
}

void TestYDTintWidget::TheHostsTintTakesTheAmountInPerCent()
{
    const RGBA32iImage source = TestPictures::Random(60, 20, 3);
    for (const int amount : {0, 1, 30, 100}) {
        Fixture f(false);
        f.widget.SetValue(Record(Red, Blue, amount, 3));
        const YDTintRGB32 rule(Red.rgba(), Blue.rgba(), amount);
        QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), ByFunctor(rule, source)));
    }
}

void TestYDTintWidget::HostileTonesAreApplied()
{
    // Of no numbers black is left, of what is far out the nearest: (255, 0, 255).
    const Params record = Record(TestColors::NoNumbers(), TestColors::FarOut(), 100, 0);
    QCOMPARE(quint32(Tinted(record, 0xff000000u)), 0xff000000u);
    QCOMPARE(quint32(Tinted(record, 0xffffffffu)), 0xffff00ffu);
}

void TestYDTintWidget::AnUnknownTypeHasNoResult()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Random(50, 40, 2);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(!f.widget.AdjustedImage().IsEmpty());
    f.widget.SetValue(Record(Red, Blue, 75, 4));
    f.widget.StartProcessing();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(f.widget.AdjustedImage().IsEmpty());
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
}

/// The controls outlive the panel's own part, one another too, and may change on the way.
void TestYDTintWidget::TheLastOfItsControlsCannotReachIt()
{
    auto widget = std::make_unique<YDTintWidget>(false, nullptr, Qt::WindowFlags());
    auto* const type = widget->findChild<YDCommonComboBox*>(QStringLiteral("m_pType"));
    connect(widget->findChild<KVSlider*>(QStringLiteral("horizontalSlider")), &QObject::destroyed, type,
            [type] { type->setCurrentIndex(2); });
    QSignalSpy changed(type, QOverload<int>::of(&QComboBox::currentIndexChanged));
    QSignalSpy value(widget.get(), &YDTintWidget::ValueChanged);
    widget.reset();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(value.count(), 0);
}

QTEST_MAIN(TestYDTintWidget)
#include "tst_YDTintWidget.moc"
