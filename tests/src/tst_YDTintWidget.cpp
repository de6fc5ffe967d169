#include "Announcements.h"
#include "ColorDialogDriver.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDTintWidget.h"
#include "guicore/YDCommonComboBox.h"
#include "image/YDTintRGB32.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

#include <limits>

Q_DECLARE_METATYPE(YDTintWidget::Params)

namespace {

using namespace ColorDialogDriver;
using Params = YDTintWidget::Params;

constexpr int PatienceMs = 20000;
constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
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

QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
}

RGBA32iImage Converted(YDTintWidget& widget, const RGBA32iImage& source)
{
    RGBA32iImage image = source.DeepCopy();
    widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    return image;
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
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return widget.findChild<T*>(QString::fromLatin1(name));
    }
    QPushButton* Button(bool isBlack) const { return isBlack ? black : white; }

    YDTintWidget widget;
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
    void TheFormIsAsDesigned();
    void TheTypesAreInOrder();
    void OpensShowingItsRecord();
    void AChangeIsAnnouncedOnce_data();
    void AChangeIsAnnouncedOnce();
    void NoTypeAtAllKeepsTheType();
    void TheBlackTonesDialogIsFollowed_data() { AddRows(Red, Blue); }
    void TheBlackTonesDialogIsFollowed() { FollowTheDialog(true); }
    void TheWhiteTonesDialogIsFollowed_data() { AddRows(Red, Blue); }
    void TheWhiteTonesDialogIsFollowed() { FollowTheDialog(false); }
    void MayBeDestroyedWhileTheDialogIsOpen();
    void SettingARecordAnnouncesTypeAndAmount_data();
    void SettingARecordAnnouncesTypeAndAmount();
    void ResetShowsTheDefaultsAndAnnouncesThem();
    void TheStreamIsTagTonesAmountAndType();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine_data();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void RecordsFromOutsideAreKept_data();
    void RecordsFromOutsideAreKept();
    void EachTypeWeighsTheChannelsItsWay_data();
    void EachTypeWeighsTheChannelsItsWay();
    void TheHostsTintTakesTheAmountInPerCent();
    void HostileTonesAreApplied();
    void AnUnknownTypeHasNoResult();
    void ThePreviewEqualsTheConversion();
    void TheLastOfItsControlsCannotReachIt();

private:
    static void FollowTheDialog(bool isBlack);
};

void TestYDTintWidget::TheFormIsAsDesigned()
{
    const Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Tint"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Tint"));
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
    for (const Cell& cell : {Cell{"label_2", 0, 0, 1, "Black tone:"}, Cell{"m_pBlackTone", 0, 1, 1, nullptr},
                             Cell{"label_3", 0, 3, 1, "White tone:"}, Cell{"m_pWhiteTone", 0, 4, 1, nullptr},
                             Cell{"label", 1, 0, 1, "Amount:"}, Cell{"horizontalSlider", 1, 1, 3, nullptr},
                             Cell{"m_pAmount", 1, 4, 1, nullptr}, Cell{"label_4", 3, 0, 1, "Type:"},
                             Cell{"m_pType", 3, 1, 4, nullptr}}) {
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
    for (const bool isBlack : {false, true}) {
        const QPushButton* const button = f.Button(isBlack);
        QVERIFY(button->text().isEmpty());
        QCOMPARE(button->minimumSize(), QSize(50, 24));
        QCOMPARE(button->maximumSize(), QSize(QWIDGETSIZE_MAX, 24));
        QCOMPARE(button->toolTip(), QStringLiteral("Set the color you want to replace the %1 tone with")
                                        .arg(isBlack ? QStringLiteral("black") : QStringLiteral("white")));
    }
    QCOMPARE(f.slider->orientation(), Qt::Horizontal);
    QCOMPARE(f.slider->minimum(), 0);
    QCOMPARE(f.slider->maximum(), 100);
    QCOMPARE(f.amount->minimum(), 0);
    QCOMPARE(f.amount->maximum(), 100);
    QCOMPARE(f.amount->suffix(), QStringLiteral("%"));
    QCOMPARE(f.amount->minimumWidth(), 50);
}

void TestYDTintWidget::TheTypesAreInOrder()
{
    const Fixture f;
    const QStringList texts{QStringLiteral("Average"), QStringLiteral("NTSC"), QStringLiteral("LUMA"),
                            QStringLiteral("RGB")};
    QCOMPARE(f.type->count(), texts.size());
    for (int index = 0; index < texts.size(); ++index) {
        QCOMPARE(f.type->itemText(index), texts.at(index));
        QCOMPARE(f.type->itemData(index), QVariant(index));
        QVERIFY(f.type->itemIcon(index).isNull());
    }
}

void TestYDTintWidget::OpensShowingItsRecord()
{
    for (const bool isDialog : {false, true}) {
        const Fixture f(isDialog);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Black, White, 75, 0)));
        QCOMPARE(f.amount->value(), 75);
        QCOMPARE(f.slider->value(), 75);
        QCOMPARE(f.type->currentIndex(), 0);
        QCOMPARE(SwatchOf(*f.black), Black.rgba());
        QCOMPARE(SwatchOf(*f.white), White.rgba());
    }
}

void TestYDTintWidget::AChangeIsAnnouncedOnce_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("amount");
    QTest::addColumn<int>("type");
    QTest::newRow("slider") << "horizontalSlider" << QByteArray("value") << 60 << 60 << 0;
    QTest::newRow("spin box") << "m_pAmount" << QByteArray("value") << 60 << 60 << 0;
    QTest::newRow("type") << "m_pType" << QByteArray("currentIndex") << 3 << 75 << 3;
}

void TestYDTintWidget::AChangeIsAnnouncedOnce()
{
    QFETCH(QString, control);
    QFETCH(QByteArray, property);
    QFETCH(int, value);
    QFETCH(int, amount);
    QFETCH(int, type);
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.findChild<QWidget*>(control)->setProperty(property.constData(), value);
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Black, White, amount, type)));
    QCOMPARE(f.slider->value(), amount);
    QCOMPARE(f.amount->value(), amount);
    QCOMPARE(f.type->currentIndex(), type);
}

void TestYDTintWidget::NoTypeAtAllKeepsTheType()
{
    Fixture f;
    f.type->setCurrentIndex(2);
    Announcements announcements(f.widget);
    f.type->setCurrentIndex(-1);
    f.widget.OnTypeChanged(-1);
    QCOMPARE(announcements.Take(), 0);
    QCOMPARE(f.widget.GetValue().type, 2);
}

void TestYDTintWidget::FollowTheDialog(bool isBlack)
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(int, before);
    QFETCH(int, after);
    Fixture f;
    const QColor begin = isBlack ? Black : White;
    const auto record = [isBlack](const QColor& tone) {
        return isBlack ? Record(tone, White, 75, 0) : Record(Black, tone, 75, 0);
    };
    Announcements announcements(f.widget);
    InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(),
                 isBlack ? QStringLiteral("Select a black tone") : QStringLiteral("Select a white tone"));
        QCOMPARE(dialog.GetColor(), begin);
        QCOMPARE(dialog.parentWidget(), &f.widget);
        for (const QColor& color : picks) {
            Pick(dialog, {color});
            QVERIFY(YDRecord::Equal(f.widget.GetValue(), record(color)));
            QCOMPARE(SwatchOf(*f.Button(isBlack)), color.rgba());
        }
        QCOMPARE(announcements.Take(), before);
        Close(dialog, isAccepted);
    });
    f.Button(isBlack)->click();
    QCOMPARE(announcements.Take(), after);
    const QColor result = isAccepted && !picks.isEmpty() ? picks.last() : begin;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), record(result)));
    QCOMPARE(SwatchOf(*f.Button(isBlack)), result.rgba());
    QCOMPARE(SwatchOf(*f.Button(!isBlack)), (isBlack ? White : Black).rgba());
}

void TestYDTintWidget::MayBeDestroyedWhileTheDialogIsOpen()
{
    for (const bool isBlack : {false, true}) {
        auto f = std::make_unique<Fixture>();
        InTheDialog([&f](KVColorDialog& dialog) {
            Pick(dialog, {Red});
            f.reset();
        });
        f->Button(isBlack)->click();
        QVERIFY(!f);
        QVERIFY(!QApplication::activeModalWidget());
    }
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
    QCOMPARE(announcements.Take(), announced);
    QCOMPARE(whole, announced);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), record));
    QCOMPARE(f.amount->value(), qBound(0, amount, 100));
    QCOMPARE(f.slider->value(), qBound(0, amount, 100));
    QCOMPARE(f.type->currentIndex(), type > 3 ? -1 : type);
    QCOMPARE(SwatchOf(*f.black), Red.rgba());
    QCOMPARE(SwatchOf(*f.white), Blue.rgba());
    f.widget.SetValue(record);
    QCOMPARE(announcements.Take(), 0);
    f.amount->setValue(50); // from here on the control says what the amount is
    QCOMPARE(f.widget.GetValue().amount, 50);
}

void TestYDTintWidget::ResetShowsTheDefaultsAndAnnouncesThem()
{
    Fixture f;
    f.widget.SetValue(Record(Red, Blue, 40, 2));
    Announcements announcements(f.widget);
    for (const int announced : {3, 1}) { // type and amount by their controls, then the whole
        f.widget.Reset();
        QCOMPARE(announcements.Take(), announced);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Black, White, 75, 0)));
        QCOMPARE(f.amount->value(), 75);
        QCOMPARE(f.type->currentIndex(), 0);
        QCOMPARE(SwatchOf(*f.black), Black.rgba());
        QCOMPARE(SwatchOf(*f.white), White.rgba());
    }
}

void TestYDTintWidget::TheStreamIsTagTonesAmountAndType()
{
    const QByteArray expected = QByteArray("KVTint 1.00000") + QByteArray::fromHex("01ffff0505060608080000") +
                                QByteArray::fromHex("01ffffaaaad1d1ffff0000") +
                                QByteArray::fromHex("0000004b00000000");
    QCOMPARE(Written(Params()), expected);
    QDataStream stream(expected);
    Params params = Record(Red, Blue, 1, 2);
    QVERIFY(params.Read(stream));
    QVERIFY(stream.atEnd());
    QVERIFY(YDRecord::Equal(params, Record(Black, White, 75, 0)));
}

void TestYDTintWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = Written(Record(Red, Blue, 40, 2));
    for (int length = 0; length < whole.size(); ++length)
        QTest::addRow("%d bytes", length) << whole.left(length);
    QTest::newRow("another version") << QByteArray(whole).replace("1.00000", "1.00001");
    QTest::newRow("another tag") << QByteArray(whole).replace("KVTint", "KVtint");
}

void TestYDTintWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine()
{
    QFETCH(QByteArray, bytes);
    QDataStream stream(bytes);
    Params params = Record(Red, Blue, 1, 2);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral(
                                         "^\\[src/YDTintWidget:[0-9]+\\] Read tint data error\\.$")));
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(Black, White, 75, 0)));
}

void TestYDTintWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral(
                                         "^\\[src/YDTintWidget:[0-9]+\\] Write tint data error\\.$")));
    stream << Params();
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
        const RGBA32iImage expected = source.DeepCopy();
        for (int y = 0; y < expected.Height(); ++y)
            for (int x = 0; x < expected.Width(); ++x)
                rule(expected.Row(y)[x]);
        QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), expected));
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

void TestYDTintWidget::ThePreviewEqualsTheConversion()
{
    for (const int type : {0, 1, 2, 3}) {
        Fixture f;
        const RGBA32iImage source = TestPictures::Random(500, 300, 6);
        const RGBA32iImage mask = TestPictures::Random(200, 100, 7);
        QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
        f.widget.SetValue(Record(Red, Blue, 80, type));
        f.widget.SetImage(source, mask, QPoint(-50, 250), QRect(0, 0, 200, 100));
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        RGBA32iImage converted = source.DeepCopy();
        f.widget.ConvertImage(converted, mask, QPoint(-50, 250), QRect(0, 0, 200, 100));
        QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
        QVERIFY(!TestPictures::AreEqual(converted, source));
    }
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
