#include "PanelKit.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDReplaceColorWidget.h"
#include "guicore/YDCommonComboBox.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QPushButton>
#include <QSignalSpy>

#include <array>

namespace {

using namespace PanelKit;
using Params = YDReplaceColorWidget::Params;

constexpr std::array<const char*, 4> Positions{"Left top", "Right top", "Left bottom", "Right bottom"};
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
struct Fixture : Panel<YDReplaceColorWidget>
{
    using Panel::Panel;

    YDCommonComboBox* const position = Child<YDCommonComboBox>("m_pPositionType");
    KVSlider* const tolerance = Child<KVSlider>("m_pSourceTolerance");
    KVSpinBox* const toleranceSpin = Child<KVSpinBox>("spinBox");
    KVSlider* const opacity = Child<KVSlider>("m_pDestinationOpacity");
    KVSpinBox* const opacitySpin = Child<KVSpinBox>("spinBox_2");
    QPushButton* const button = Child<QPushButton>("m_pSelectDestinationColor");
};

} // namespace

class TestYDReplaceColorWidget : public QObject
{
    Q_OBJECT

private slots:
    void ThePositionsAreThoseOfTheTable();
    void PositionsAreFoundByIndexAndType();
    void NoItemIsTheLeftTopCorner_data();
    void NoItemIsTheLeftTopCorner();
    void SettingTheColourAnnouncesNothing();
    void APositionThatThereIsNotLeavesNoCurrentItem_data();
    void APositionThatThereIsNotLeavesNoCurrentItem();
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
};

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
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), ByRed(7, YDReplaceColorWidget::LeftTop)));
}

void TestYDReplaceColorWidget::SettingTheColourAnnouncesNothing()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.SetDestinationColor(Blue);
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(0, 0, Blue, 100)));
    QCOMPARE(SwatchOf(*f.button), Blue.rgba());
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

QTEST_MAIN(TestYDReplaceColorWidget)
#include "tst_YDReplaceColorWidget.moc"
