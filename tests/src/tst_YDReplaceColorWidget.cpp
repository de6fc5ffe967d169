#include "Announcements.h"
#include "ColorDialogDriver.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDReplaceColorWidget.h"
#include "guicore/YDCommonComboBox.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

#include <array>
#include <limits>

namespace {

using namespace ColorDialogDriver;
using Params = YDReplaceColorWidget::Params;

constexpr int PatienceMs = 20000;
constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr std::array<const char*, 4> Positions{"Left top", "Right top", "Left bottom", "Right bottom"};
const QColor White(255, 255, 255);
const QColor Red(200, 10, 20);
const QColor Blue(10, 20, 200);
const YDRGBA32i RedPixel(20, 10, 200, 255);

Params Record(int tolerance, int position, const QColor& color, int opacity)
{
    Params params;
    params.tolerance = tolerance;
    params.position = position;
    params.color = color;
    params.opacity = opacity;
    return params;
}

/// Replaces by an opaque red.
Params ByRed(int tolerance, int position = YDReplaceColorWidget::LeftTop)
{
    return Record(tolerance, position, Red, 100);
}

QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
}

/// A picture from a drawing in rows: '.' is a dark pixel, '#' a light one, '+' one that is four levels
/// lighter than the dark one in one channel.
RGBA32iImage Drawn(const std::vector<const char*>& rows)
{
    const RGBA32iImage image(int(qstrlen(rows.front())), int(rows.size()));
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.Width(); ++x) {
            const char sign = rows[std::size_t(y)][x];
            image.Row(y)[x] = sign == '#'   ? YDRGBA32i(250, 240, 230, 255)
                              : sign == '+' ? YDRGBA32i(30, 24, 10, 255)
                              : sign == 'R' ? RedPixel
                                            : YDRGBA32i(30, 20, 10, 255);
        }
    return image;
}

RGBA32iImage OnePixel(const YDRGBA32i& pixel)
{
    const RGBA32iImage image(1, 1);
    image.Row(0)[0] = pixel;
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

    /// What the preview shows of `source`; empty where none comes.
    RGBA32iImage Preview(const RGBA32iImage& source, const RGBA32iImage& mask = {}, const QPoint& offset = {},
                         const QRect& bounds = {})
    {
        QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
        widget.SetImage(source, mask, offset, bounds);
        return ready.wait(PatienceMs) ? widget.AdjustedImage() : RGBA32iImage();
    }

    YDReplaceColorWidget widget;
    YDCommonComboBox* const position = Child<YDCommonComboBox>("m_pPositionType");
    KVSlider* const tolerance = Child<KVSlider>("m_pSourceTolerance");
    KVSpinBox* const toleranceSpin = Child<KVSpinBox>("spinBox");
    KVSlider* const opacity = Child<KVSlider>("m_pDestinationOpacity");
    KVSpinBox* const opacitySpin = Child<KVSpinBox>("spinBox_2");
    QPushButton* const button = Child<QPushButton>("m_pSelectDestinationColor");
};

QGridLayout* GridOf(const QWidget* box) { return qobject_cast<QGridLayout*>(box->layout()); }

} // namespace

class TestYDReplaceColorWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheFormIsAsDesigned();
    void LabelsAreOfOneWidth_data();
    void LabelsAreOfOneWidth();
    void ControlsAreInTheirBoxes();
    void ASpacerClosesThePanel();
    void TabGoesFromTheSourceToTheColour();
    void ThePositionsAreThoseOfTheTable();
    void PositionsAreFoundByIndexAndType();
    void OpensShowingItsRecord();
    void AChangeOfAControlIsAnnouncedOnce_data();
    void AChangeOfAControlIsAnnouncedOnce();
    void NoItemIsTheLeftTopCorner_data();
    void NoItemIsTheLeftTopCorner();
    void TheColourDialogIsFollowed_data() { AddRows(Red, Blue, 1); }
    void TheColourDialogIsFollowed();
    void AcceptingTheSameColourComputesAgain();
    void CancellingComputesTheOldColourOnce();
    void CancellingWithoutAChangeComputesNothing();
    void SettingTheColourAnnouncesNothing();
    void AHostileColourIsNoChangeOfItself();
    void MayBeDestroyedWhileTheDialogIsOpen();
    void SettingARecordAnnouncesNothing();
    void APositionThatThereIsNotLeavesNoCurrentItem_data();
    void APositionThatThereIsNotLeavesNoCurrentItem();
    void ResetShowsTheDefaultsAndAnnouncesThem();
    void TheStreamIsTagAndFields();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine_data();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void TheFillStartsInTheCorner_data();
    void TheFillStartsInTheCorner();
    void APictureOfOnePixelHasOneCorner();
    void ToleranceZeroReplacesTheConnectedColourAlone();
    void TheToleranceHoldsForEachChannel_data();
    void TheToleranceHoldsForEachChannel();
    void TheOpacityIsTheFillsAlpha_data();
    void TheOpacityIsTheFillsAlpha();
    void ASelectionLimitsNothing();
    void NoProgressIsTold();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm();
    void OnlyThePreviewChangesPixels_data();
    void OnlyThePreviewChangesPixels();
};

void TestYDReplaceColorWidget::TheFormIsAsDesigned()
{
    const Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Color Replacement"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Color Replacement"));
    QCOMPARE(f.widget.size(), QSize(300, 246));
    QCOMPARE(f.Child<QGroupBox>("groupBox")->title(), QStringLiteral("Source"));
    QCOMPARE(f.Child<QGroupBox>("groupBox_2")->title(), QStringLiteral("Color"));
    for (const QSlider* const slider : {f.tolerance, f.opacity})
        QCOMPARE(slider->orientation(), Qt::Horizontal);
    QCOMPARE(f.tolerance->minimum(), 0);
    QCOMPARE(f.tolerance->maximum(), 255);
    QCOMPARE(f.toleranceSpin->minimum(), 0);
    QCOMPARE(f.toleranceSpin->maximum(), 255);
    QVERIFY(f.toleranceSpin->suffix().isEmpty());
    QCOMPARE(f.opacity->minimum(), 0);
    QCOMPARE(f.opacity->maximum(), 100);
    QCOMPARE(f.opacitySpin->minimum(), 0);
    QCOMPARE(f.opacitySpin->maximum(), 100);
    QCOMPARE(f.opacitySpin->suffix(), QStringLiteral("%"));
    QCOMPARE(f.button->minimumSize(), QSize(24, 24));
    QCOMPARE(f.button->maximumSize(), QSize(24, 24));
    QVERIFY(f.button->text().isEmpty());
    const auto children = f.widget.findChildren<QWidget*>();
    for (const QWidget* const child : children)
        QVERIFY2(child->toolTip().isEmpty(), qPrintable(child->objectName()));
}

void TestYDReplaceColorWidget::LabelsAreOfOneWidth_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("buddy");
    QTest::newRow("label_5") << "Position:"
                             << "m_pPositionType";
    QTest::newRow("label") << "Tolerance:"
                           << "spinBox";
    QTest::newRow("label_4") << "Opacity:"
                             << "spinBox_2";
}

void TestYDReplaceColorWidget::LabelsAreOfOneWidth()
{
    QFETCH(QString, text);
    QFETCH(QString, buddy);
    const Fixture f(false);
    const auto* const label = f.Child<QLabel>(QTest::currentDataTag());
    QVERIFY(label);
    QCOMPARE(label->text(), text);
    QCOMPARE(label->minimumWidth(), 100);
    QCOMPARE(label->maximumWidth(), 100);
    QCOMPARE(label->alignment() & (Qt::AlignHorizontal_Mask ^ Qt::AlignAbsolute), Qt::AlignRight);
    QCOMPARE(label->alignment() & Qt::AlignVertical_Mask, Qt::AlignVCenter);
    QCOMPARE(label->buddy()->objectName(), buddy);
}

void TestYDReplaceColorWidget::ControlsAreInTheirBoxes()
{
    const Fixture f(false);
    for (const char* const name : {"groupBox", "groupBox_2"}) {
        const QGridLayout* const grid = GridOf(f.Child<QGroupBox>(name));
        QVERIFY(grid);
        QCOMPARE(grid->verticalSpacing(), 9);
        QCOMPARE(grid->contentsMargins().top(), 12);
    }
    const QGridLayout& source = *GridOf(f.Child<QGroupBox>("groupBox"));
    QCOMPARE(source.itemAtPosition(0, 1)->widget(), f.position);
    QCOMPARE(source.itemAtPosition(0, 2)->widget(), f.position);
    QCOMPARE(source.itemAtPosition(1, 1)->widget(), f.tolerance);
    QCOMPARE(source.itemAtPosition(1, 2)->widget(), f.toleranceSpin);
    const QGridLayout& color = *GridOf(f.Child<QGroupBox>("groupBox_2"));
    QCOMPARE(color.itemAtPosition(0, 1)->widget(), f.opacity);
    QCOMPARE(color.itemAtPosition(0, 2)->widget(), f.opacitySpin);
    const QSpacerItem* const gap = color.itemAtPosition(0, 3)->spacerItem();
    QVERIFY(gap);
    QCOMPARE(gap->sizeHint().width(), 3);
    QCOMPARE(gap->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(color.itemAtPosition(0, 4)->widget(), f.button);
}

void TestYDReplaceColorWidget::ASpacerClosesThePanel()
{
    const Fixture f(false);
    const QGridLayout& panel = *GridOf(&f.widget);
    const QSpacerItem* const spacer = panel.itemAtPosition(panel.rowCount() - 1, 0)->spacerItem();
    QVERIFY(spacer);
    QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

void TestYDReplaceColorWidget::TabGoesFromTheSourceToTheColour()
{
    const Fixture f(false);
    QVector<QWidget*> order;
    for (QWidget* next = f.widget.nextInFocusChain(); next != &f.widget; next = next->nextInFocusChain())
        if ((next->focusPolicy() & Qt::TabFocus) && !next->focusProxy() && next->objectName()[0] != 'q')
            order.append(next);
    QCOMPARE(order, (QVector<QWidget*>{f.position, f.tolerance, f.toleranceSpin, f.opacity, f.opacitySpin,
                                       f.button}));
}

void TestYDReplaceColorWidget::ThePositionsAreThoseOfTheTable()
{
    const Fixture f;
    QCOMPARE(f.position->count(), int(Positions.size()));
    for (int index = 0; index < f.position->count(); ++index) {
        QCOMPARE(f.position->itemText(index), QString::fromLatin1(Positions[std::size_t(index)]));
        QCOMPARE(f.position->itemData(index), QVariant(index));
        QVERIFY(f.position->itemIcon(index).isNull());
    }
}

void TestYDReplaceColorWidget::PositionsAreFoundByIndexAndType()
{
    using Type = YDReplaceColorWidget::PositionType;
    Fixture f;
    f.position->insertItem(0, QStringLiteral("before them"), 70);
    QCOMPARE(f.widget.GetPositionIndex(YDReplaceColorWidget::LeftBottom), 3);
    QCOMPARE(f.widget.GetPositionType(3), YDReplaceColorWidget::LeftBottom);
    QCOMPARE(f.widget.GetPositionIndex(Type(70)), 0);
    QCOMPARE(f.widget.GetPositionIndex(Type(4)), -1);
    for (const int index : {-1, 5, Lowest, Highest})
        QCOMPARE(f.widget.GetPositionType(index), YDReplaceColorWidget::LeftTop);
    f.position->clear();
    QCOMPARE(f.widget.GetPositionIndex(YDReplaceColorWidget::LeftTop), -1);
    QCOMPARE(f.widget.GetPositionType(0), YDReplaceColorWidget::LeftTop);
}

void TestYDReplaceColorWidget::OpensShowingItsRecord()
{
    for (const bool isDialog : {false, true}) {
        const Fixture f(isDialog);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(0, 0, Qt::white, 100)));
        QCOMPARE(f.position->currentIndex(), 0);
        QCOMPARE(f.tolerance->value(), 0);
        QCOMPARE(f.toleranceSpin->value(), 0);
        QCOMPARE(f.opacity->value(), 100);
        QCOMPARE(f.opacitySpin->value(), 100);
        QCOMPARE(SwatchOf(*f.button), White.rgba());
    }
}

void TestYDReplaceColorWidget::AChangeOfAControlIsAnnouncedOnce_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("m_pSourceTolerance") << QByteArray("value") << 60 << Written(Record(60, 0, White, 100));
    QTest::newRow("spinBox") << QByteArray("value") << 255 << Written(Record(255, 0, White, 100));
    for (int type = 1; type < 4; ++type)
        QTest::newRow("m_pPositionType")
            << QByteArray("currentIndex") << type << Written(Record(0, type, White, 100));
    QTest::newRow("m_pDestinationOpacity") << QByteArray("value") << 0 << Written(Record(0, 0, White, 0));
    QTest::newRow("spinBox_2") << QByteArray("value") << 42 << Written(Record(0, 0, White, 42));
}

void TestYDReplaceColorWidget::AChangeOfAControlIsAnnouncedOnce()
{
    QFETCH(QByteArray, property);
    QFETCH(int, value);
    QFETCH(QByteArray, stored);
    Fixture f;
    Announcements announcements(f.widget);
    f.Child<QWidget>(QTest::currentDataTag())->setProperty(property, value);
    QCOMPARE(announcements.Take(), 1);
    QCOMPARE(Written(f.widget.GetValue()), stored);
    QCOMPARE(f.tolerance->value(), f.widget.GetValue().tolerance);
    QCOMPARE(f.toleranceSpin->value(), f.widget.GetValue().tolerance);
    QCOMPARE(f.opacity->value(), f.widget.GetValue().opacity);
    QCOMPARE(f.opacitySpin->value(), f.widget.GetValue().opacity);
}

void TestYDReplaceColorWidget::NoItemIsTheLeftTopCorner_data()
{
    QTest::addColumn<int>("index");
    for (const int index : {-1, 4, Lowest, Highest})
        QTest::addRow("%d", index) << index;
}

void TestYDReplaceColorWidget::NoItemIsTheLeftTopCorner()
{
    QFETCH(int, index);
    Fixture f;
    f.widget.SetValue(ByRed(7, YDReplaceColorWidget::RightBottom));
    Announcements announcements(f.widget);
    f.widget.OnSourcePosTypeChanged(index);
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), ByRed(7, YDReplaceColorWidget::LeftTop)));
}

void TestYDReplaceColorWidget::TheColourDialogIsFollowed()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(int, before);
    QFETCH(int, after);
    Fixture f;
    Announcements announcements(f.widget);
    InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select replacement color"));
        QCOMPARE(dialog.GetColor(), White);
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
    const QColor result = isAccepted && !picks.isEmpty() ? picks.last() : White;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(0, 0, result, 100)));
    QCOMPARE(SwatchOf(*f.button), result.rgba());
}

void TestYDReplaceColorWidget::AcceptingTheSameColourComputesAgain()
{
    Fixture f;
    QVERIFY(!f.Preview(Drawn({"..#", ".##"})).IsEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    InTheDialog([](KVColorDialog& dialog) { dialog.accept(); });
    f.button->click();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
}

void TestYDReplaceColorWidget::CancellingComputesTheOldColourOnce()
{
    Fixture f;
    const RGBA32iImage before = f.Preview(Drawn({"..#", ".##"}));
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Drawn({"RR#", "R##"})));
        QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
        dialog.reject();
    });
    f.button->click();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), before));
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    f.widget.FlushPendingChange(); // would start what waits for more changes
    QVERIFY(!f.widget.IsProcessing());
}

void TestYDReplaceColorWidget::CancellingWithoutAChangeComputesNothing()
{
    Fixture f;
    QVERIFY(!f.Preview(Drawn({"..#", ".##"})).IsEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    InTheDialog([](KVColorDialog& dialog) { dialog.reject(); });
    f.button->click();
    f.widget.FlushPendingChange();
    QVERIFY(!f.widget.IsProcessing());
}

void TestYDReplaceColorWidget::SettingTheColourAnnouncesNothing()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.SetDestinationColor(Blue);
    QCOMPARE(announcements.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(0, 0, Blue, 100)));
    QCOMPARE(SwatchOf(*f.button), Blue.rgba());
}

/// It is announced as what was accepted, and not when it was cancelled.
void TestYDReplaceColorWidget::AHostileColourIsNoChangeOfItself()
{
    for (const QColor& hostile : {TestColors::NoNumbers(), TestColors::OfNoModel()}) {
        Fixture f;
        f.widget.SetValue(Record(0, 0, hostile, 25));
        Announcements announcements(f.widget);
        for (const bool isAccepted : {false, true}) {
            InTheDialog([&](KVColorDialog& dialog) { Close(dialog, isAccepted); });
            f.button->click();
            QCOMPARE(announcements.Take(), isAccepted ? 1 : 0);
            QCOMPARE(TestColors::Stored(f.widget.GetValue().color), TestColors::Stored(hostile));
        }
    }
}

void TestYDReplaceColorWidget::MayBeDestroyedWhileTheDialogIsOpen()
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

void TestYDReplaceColorWidget::SettingARecordAnnouncesNothing()
{
    Fixture f;
    Announcements announcements(f.widget);
    const Params params = Record(30, YDReplaceColorWidget::LeftBottom, Blue, 70);
    f.widget.SetValue(params);
    QCOMPARE(announcements.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
    QCOMPARE(f.tolerance->value(), 30);
    QCOMPARE(f.toleranceSpin->value(), 30);
    QCOMPARE(f.position->currentIndex(), 2);
    QCOMPARE(f.opacity->value(), 70);
    QCOMPARE(f.opacitySpin->value(), 70);
    QCOMPARE(SwatchOf(*f.button), Blue.rgba());
    f.tolerance->setValue(31); // all are connected again, and once
    QCOMPARE(announcements.Take(), 1);
    f.position->setCurrentIndex(3);
    QCOMPARE(announcements.Take(), 1);
    f.opacity->setValue(71);
    QCOMPARE(announcements.Take(), 1);
    InTheDialog([](KVColorDialog& dialog) { dialog.accept(); });
    f.button->click();
    QCOMPARE(announcements.Take(), 1);
}

void TestYDReplaceColorWidget::APositionThatThereIsNotLeavesNoCurrentItem_data()
{
    QTest::addColumn<int>("position");
    for (const int position : {-1, 4, Lowest, Highest})
        QTest::addRow("%d", position) << position;
}

void TestYDReplaceColorWidget::APositionThatThereIsNotLeavesNoCurrentItem()
{
    QFETCH(int, position);
    Fixture f;
    f.widget.SetValue(ByRed(0, position));
    QCOMPARE(f.position->currentIndex(), -1);
    QCOMPARE(f.widget.GetValue().position, position);
    QVERIFY(TestPictures::AreEqual(f.Preview(Drawn({".#.", "#.#"})), Drawn({"R#.", "#.#"})));
}

void TestYDReplaceColorWidget::ResetShowsTheDefaultsAndAnnouncesThem()
{
    Fixture f;
    f.widget.SetValue(Record(30, 70, Blue, 70));
    Announcements announcements(f.widget);
    for (int round = 0; round < 2; ++round) { // the defaults too
        f.widget.Reset();
        QCOMPARE(announcements.Take(), 1);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(0, 0, White, 100)));
        QCOMPARE(f.tolerance->value(), 0);
        QCOMPARE(f.position->currentIndex(), 0);
        QCOMPARE(f.opacity->value(), 100);
        QCOMPARE(SwatchOf(*f.button), White.rgba());
    }
}

void TestYDReplaceColorWidget::TheStreamIsTagAndFields()
{
    const auto expected = [](const char* position) {
        return QByteArray("KVReplaceColor 1.00000") + QByteArray::fromHex("00000000") +
               QByteArray::fromHex(position) + QByteArray::fromHex("01ffffffffffffffff0000") +
               QByteArray::fromHex("00000064");
    };
    QCOMPARE(Written(Params()), expected("00000000"));
    QCOMPARE(Written(Record(0, 3, White, 100)), expected("00000003"));
    QDataStream stream(expected("00000002"));
    Params params = Record(1, 1, Blue, 70);
    QVERIFY(params.Read(stream));
    QVERIFY(stream.atEnd());
    QVERIFY(YDRecord::Equal(params, Record(0, 2, White, 100)));
}

void TestYDReplaceColorWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = Written(Record(3, 3, Blue, 70));
    for (int length = 0; length < whole.size(); ++length)
        QTest::addRow("%d bytes", length) << whole.left(length);
    const int tagSize = int(Params::Tag.size());
    QCOMPARE(tagSize, 22);
    for (int at = 0; at < tagSize; ++at) {
        QByteArray other = whole;
        other[at] = char(other[at] ^ 1);
        QTest::addRow("another byte %d", at) << other;
    }
}

void TestYDReplaceColorWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine()
{
    QFETCH(QByteArray, bytes);
    QDataStream stream(bytes);
    Params params = Record(1, 1, Red, 1);
    QTest::ignoreMessage(QtDebugMsg, "[src/YDReplaceColorWidget:410] Read sign data error.");
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(0, 0, White, 100)));
}

void TestYDReplaceColorWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg, "[src/YDReplaceColorWidget:397] Write sign data error.");
    stream << Params();
}

void TestYDReplaceColorWidget::TheFillStartsInTheCorner_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<RGBA32iImage>("expected");
    QTest::newRow("left top") << 0 << Drawn({"RR#.", "R###", "#.#.", "..#."});
    QTest::newRow("right top") << 1 << Drawn({"..#R", ".###", "#.#.", "..#."});
    QTest::newRow("left bottom") << 2 << Drawn({"..#.", ".###", "#R#.", "RR#."});
    QTest::newRow("right bottom") << 3 << Drawn({"..#.", ".###", "#.#R", "..#R"});
}

void TestYDReplaceColorWidget::TheFillStartsInTheCorner()
{
    QFETCH(int, position);
    QFETCH(RGBA32iImage, expected);
    Fixture f;
    f.widget.SetValue(ByRed(0, position));
    QVERIFY(TestPictures::AreEqual(f.Preview(Drawn({"..#.", ".###", "#.#.", "..#."})), expected));
}

void TestYDReplaceColorWidget::APictureOfOnePixelHasOneCorner()
{
    for (int position = 0; position < 4; ++position) {
        Fixture f;
        f.widget.SetValue(ByRed(0, position));
        QVERIFY(TestPictures::AreEqual(f.Preview(Drawn({"."})), OnePixel(RedPixel)));
    }
}

void TestYDReplaceColorWidget::ToleranceZeroReplacesTheConnectedColourAlone()
{
    Fixture f;
    f.widget.SetValue(ByRed(0));
    const RGBA32iImage source = Drawn({"...+..", ".#.#..", "+....+", "######", "......"});
    const RGBA32iImage expected = Drawn({"RRR+RR", "R#R#RR", "+RRRR+", "######", "......"});
    QVERIFY(TestPictures::AreEqual(f.Preview(source), expected));
}

void TestYDReplaceColorWidget::TheToleranceHoldsForEachChannel_data()
{
    QTest::addColumn<int>("tolerance");
    QTest::addColumn<int>("replaced"); ///< of the five pixels
    QTest::newRow("none") << 0 << 1;
    QTest::newRow("below") << 9 << 1;
    QTest::newRow("just so") << 10 << 4;
    QTest::newRow("all") << 255 << 5;
}

void TestYDReplaceColorWidget::TheToleranceHoldsForEachChannel()
{
    QFETCH(int, tolerance);
    QFETCH(int, replaced);
    const RGBA32iImage source(5, 1);
    source.Row(0)[0] = YDRGBA32i(100, 100, 100, 255);
    source.Row(0)[1] = YDRGBA32i(110, 100, 100, 255);
    source.Row(0)[2] = YDRGBA32i(100, 90, 100, 255);
    source.Row(0)[3] = YDRGBA32i(110, 110, 90, 255);
    source.Row(0)[4] = YDRGBA32i(100, 100, 111, 255);
    Fixture f;
    f.widget.SetValue(ByRed(tolerance));
    const RGBA32iImage result = f.Preview(source);
    QVERIFY(!result.IsEmpty());
    QCOMPARE(std::count(result.Row(0), result.Row(0) + 5, RedPixel), replaced);
}

void TestYDReplaceColorWidget::TheOpacityIsTheFillsAlpha_data()
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
void TestYDReplaceColorWidget::TheOpacityIsTheFillsAlpha()
{
    QFETCH(int, opacity);
    QFETCH(int, alpha);
    Fixture f;
    f.widget.SetValue(Record(0, 0, QColor(200, 100, 50, 9), opacity)); // the colour's own alpha is lost
    const RGBA32iImage filled = f.Preview(OnePixel(YDRGBA32i(0, 0, 0, 0)));
    QVERIFY(!filled.IsEmpty());
    const YDRGBA32i expected = alpha == 0 ? YDRGBA32i(0, 0, 0, 0) : YDRGBA32i(50, 100, 200, quint8(alpha));
    QCOMPARE(QRgb(filled.Row(0)[0]), QRgb(expected));
}

void TestYDReplaceColorWidget::ASelectionLimitsNothing()
{
    Fixture f;
    f.widget.SetValue(ByRed(0));
    const RGBA32iImage source = Drawn({"...", ".#.", "..."});
    const RGBA32iImage expected = Drawn({"RRR", "R#R", "RRR"});
    const RGBA32iImage mask(1, 1); // selects nothing at all
    QVERIFY(TestPictures::AreEqual(f.Preview(source, mask, QPoint(1, 1), QRect(0, 0, 1, 1)), expected));
    QVERIFY(TestPictures::AreEqual(
        f.Preview(source, mask, QPoint(Lowest, Highest), QRect(Lowest, Lowest, Highest, Highest)), expected));
}

/// But for what every job says when it has ended.
void TestYDReplaceColorWidget::NoProgressIsTold()
{
    Fixture f;
    QSignalSpy ranges(&f.widget, &YDAdjustmentWidget::ProgressRangeChanged);
    QVERIFY(!f.Preview(TestPictures::Grey(300, 200, 7)).IsEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    QCOMPARE(ranges.count(), 1);
    QCOMPARE(ranges.first(), (QVariantList{0, 100}));
}

void TestYDReplaceColorWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data()
{
    QTest::addColumn<int>("tolerance");
    QTest::addColumn<int>("position");
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<int>("opacity");
    QTest::addColumn<quint32>("pixel"); ///< what the corner's pixel becomes
    QTest::addColumn<bool>("isWhole");  ///< whether a pixel of another colour is replaced too
    const QByteArray red = TestColors::Stored(Red);
    QTest::newRow("lowest") << Lowest << Lowest << red << Lowest << 0xff0a141eu << false;
    QTest::newRow("highest") << Highest << Highest << red << Highest << 0xffc80a14u << true;
    QTest::newRow("just below") << -1 << -1 << red << -1 << 0xff0a141eu << false;
    QTest::newRow("just above") << 256 << 4 << red << 101 << 0xffc80a14u << true;
    QTest::newRow("invisible") << 0 << 0 << TestColors::Stored(QColor(1, 2, 3, 0)) << 100 << 0xff010203u
                               << false;
    QTest::newRow("no colour") << 0 << 0 << TestColors::Stored(QColor()) << 100 << 0xff000000u << false;
    QTest::newRow("no numbers") << 0 << 0 << TestColors::Stored(TestColors::NoNumbers()) << 100 << 0xff000000u
                                << false;
    QTest::newRow("far out") << 0 << 0 << TestColors::Stored(TestColors::FarOut()) << 100 << 0xffff00ffu
                             << false;
    QTest::newRow("no model there is")
        << 0 << 0 << TestColors::Stored(77, {9, 9, 9, 9, 9}) << 100 << 0xff000000u << false;
}

void TestYDReplaceColorWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm()
{
    QFETCH(int, tolerance);
    QFETCH(int, position);
    QFETCH(QByteArray, color);
    QFETCH(int, opacity);
    QFETCH(quint32, pixel);
    QFETCH(bool, isWhole);
    QByteArray bytes = "KVReplaceColor 1.00000";
    QDataStream(&bytes, QIODevice::WriteOnly | QIODevice::Append) << tolerance << position;
    bytes += color;
    QDataStream(&bytes, QIODevice::WriteOnly | QIODevice::Append) << opacity;
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.widget.GetValue().tolerance, tolerance);
    QCOMPARE(f.widget.GetValue().position, position);
    QCOMPARE(f.widget.GetValue().opacity, opacity);
    QCOMPARE(f.toleranceSpin->value(), qBound(0, tolerance, 255));
    QCOMPARE(f.opacitySpin->value(), qBound(0, opacity, 100));
    const RGBA32iImage result = f.Preview(Drawn({".#"}));
    QVERIFY(!result.IsEmpty());
    QCOMPARE(QRgb(result.Row(0)[0]), pixel);
    QCOMPARE(result.Row(0)[1] != Drawn({"#"}).Row(0)[0], isWhole);
}

void TestYDReplaceColorWidget::OnlyThePreviewChangesPixels_data()
{
    QTest::addColumn<bool>("isDialog");
    QTest::newRow("panel") << false;
    QTest::newRow("dialog") << true;
}

void TestYDReplaceColorWidget::OnlyThePreviewChangesPixels()
{
    QFETCH(bool, isDialog);
    Fixture f(isDialog);
    f.widget.SetValue(ByRed(255));
    const RGBA32iImage source = TestPictures::Noise(30, 20);
    RGBA32iImage image = source.DeepCopy();
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(image, source));
    f.widget.SetImage(image, RGBA32iImage(), QPoint(), QRect());
    QCOMPARE(f.widget.IsProcessing(), isDialog);
    QTRY_VERIFY_WITH_TIMEOUT(!f.widget.IsProcessing(), PatienceMs);
    QVERIFY(TestPictures::AreEqual(image, source)); // the preview works on a copy
}

QTEST_MAIN(TestYDReplaceColorWidget)
#include "tst_YDReplaceColorWidget.moc"
