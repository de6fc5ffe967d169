#include "YDBlendingModes.h"

#include <QComboBox>
#include <QPainter>
#include <QTest>

#include <limits>

/// The table of blending modes: index, stored value and text.
class TestYDBlendingModes : public QObject
{
    Q_OBJECT

private slots:
    void EveryModeIsFoundByIndexAndByValue_data();
    void EveryModeIsFoundByIndexAndByValue();
    void TheStoredValuesAreThoseOfAPainter_data();
    void TheStoredValuesAreThoseOfAPainter();
    void ABoxOffersTheModesInOrder();
    void AnIndexThatThereIsNotIsTheNormalMode_data();
    void AnIndexThatThereIsNotIsTheNormalMode();
    void AValueThatIsNoModesIsTheNormalModesIndex();
};

namespace {

struct Mode
{
    const char* text;
    int value;
    QPainter::CompositionMode painterMode;
};

constexpr Mode Modes[] = {
    {"Normal", 0, QPainter::CompositionMode_SourceOver},
    {"Multiply", 13, QPainter::CompositionMode_Multiply},
    {"Screen", 14, QPainter::CompositionMode_Screen},
    {"Overlay", 15, QPainter::CompositionMode_Overlay},
    {"Difference", 22, QPainter::CompositionMode_Difference},
    {"Exclusion", 23, QPainter::CompositionMode_Exclusion},
    {"Lighten colors", 17, QPainter::CompositionMode_Lighten},
    {"Darken colors", 16, QPainter::CompositionMode_Darken},
    {"Soft light", 21, QPainter::CompositionMode_SoftLight},
    {"Hard light", 20, QPainter::CompositionMode_HardLight},
    {"Color dodge", 18, QPainter::CompositionMode_ColorDodge},
    {"Color burn", 19, QPainter::CompositionMode_ColorBurn},
    {"Addition", 12, QPainter::CompositionMode_Plus},
};
constexpr int ModeCount = 13;

void AddModes()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < ModeCount; ++index)
        QTest::newRow(Modes[index].text) << index;
}

} // namespace

void TestYDBlendingModes::EveryModeIsFoundByIndexAndByValue_data() { AddModes(); }

void TestYDBlendingModes::EveryModeIsFoundByIndexAndByValue()
{
    QFETCH(int, index);
    QCOMPARE(int(BlendingModeAt(index)), Modes[index].value);
    QCOMPARE(BlendingIndexOf(unsigned(Modes[index].value)), index);
}

void TestYDBlendingModes::TheStoredValuesAreThoseOfAPainter_data() { AddModes(); }

void TestYDBlendingModes::TheStoredValuesAreThoseOfAPainter()
{
    QFETCH(int, index);
    QCOMPARE(int(BlendingModeAt(index)), int(Modes[index].painterMode));
}

void TestYDBlendingModes::ABoxOffersTheModesInOrder()
{
    QComboBox box;
    FillBlendingModes(box);
    QCOMPARE(box.count(), ModeCount);
    for (int index = 0; index < ModeCount; ++index)
        QCOMPARE(box.itemText(index), QString::fromLatin1(Modes[index].text));
    QCOMPARE(box.currentIndex(), 0);
}

void TestYDBlendingModes::AnIndexThatThereIsNotIsTheNormalMode_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("none") << -1;
    QTest::newRow("one past the last") << ModeCount;
    QTest::newRow("lowest") << std::numeric_limits<int>::min();
    QTest::newRow("highest") << std::numeric_limits<int>::max();
}

void TestYDBlendingModes::AnIndexThatThereIsNotIsTheNormalMode()
{
    QFETCH(int, index);
    QCOMPARE(BlendingModeAt(index), KVCompositionMode::Normal);
}

void TestYDBlendingModes::AValueThatIsNoModesIsTheNormalModesIndex()
{
    for (unsigned value = 1; value <= 11; ++value)
        QCOMPARE(BlendingIndexOf(value), 0);
    for (const unsigned value : {24u, 1000u, 0x7fffffffu, 0x80000000u, 0xffffffffu, 0x100u + 12u})
        QCOMPARE(BlendingIndexOf(value), 0);
}

QTEST_MAIN(TestYDBlendingModes)
#include "tst_YDBlendingModes.moc"
