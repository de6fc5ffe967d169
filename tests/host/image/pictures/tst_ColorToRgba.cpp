#include "TestColors.h"
#include "image/ColorToRgba.h"

#include <QTest>

#include <array>

class TestColorToRgba : public QObject
{
    Q_OBJECT

private slots:
    void OrdinaryColoursAreAsQtHasThem_data();
    void OrdinaryColoursAreAsQtHasThem();
    void FloatsInRangeAreAsQtHasThem();
    void FloatsOutOfRangeAreTheNearestBound_data();
    void FloatsOutOfRangeAreTheNearestBound();
    void EveryStoredFloatGivesAColour();
    void AModelThatThereIsNotIsBlack();
    void EveryModelGivesAColour();
};

void TestColorToRgba::OrdinaryColoursAreAsQtHasThem_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<quint32>("rgba");
    QTest::newRow("bytes") << QColor(1, 2, 3) << 0xff010203u;
    QTest::newRow("translucent") << QColor(255, 210, 255, 17) << 0x11ffd2ffu;
    QTest::newRow("16 bits, rounded")
        << QColor(QRgba64::fromRgba64(0x80ff, 0x7f00, 0xffff, 0xffff)) << 0xff807fffu;
    QTest::newRow("hue") << QColor::fromHsv(120, 255, 255) << 0xff00ff00u;
    QTest::newRow("lightness") << QColor::fromHsl(240, 255, 128) << 0xff0101ffu;
    QTest::newRow("ink") << QColor::fromCmyk(255, 0, 0, 0) << 0xff00ffffu;
    QTest::newRow("none") << QColor() << 0xff000000u;
}

void TestColorToRgba::OrdinaryColoursAreAsQtHasThem()
{
    QFETCH(QColor, color);
    QFETCH(quint32, rgba);
    QCOMPARE(ColorToRgba(color), rgba);
    QCOMPARE(color.rgba(), rgba);
}

void TestColorToRgba::FloatsInRangeAreAsQtHasThem()
{
    for (quint16 half = 0; half <= TestColors::HalfOfOne; ++half) {
        const QColor color =
            TestColors::OfHalves(TestColors::HalfOfOne, half, TestColors::HalfOfOne - half, 0);
        QCOMPARE(ColorToRgba(color), color.rgba());
    }
}

void TestColorToRgba::FloatsOutOfRangeAreTheNearestBound_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<quint32>("rgba");
    QTest::newRow("twice and minus one") << QColor::fromRgbF(2.0, -1.0, 0.5) << 0xffff0080u;
    QTest::newRow("far out") << TestColors::FarOut() << 0xffff00ffu;
    QTest::newRow("no numbers") << TestColors::NoNumbers() << 0x00000000u;
}

void TestColorToRgba::FloatsOutOfRangeAreTheNearestBound()
{
    QFETCH(QColor, color);
    QFETCH(quint32, rgba);
    QVERIFY(color.isValid());
    QCOMPARE(ColorToRgba(color), rgba);
}

void TestColorToRgba::EveryStoredFloatGivesAColour()
{
    for (int bits = 0; bits <= 0xffff; ++bits) {
        const auto half = quint16(bits);
        const QRgb rgba = ColorToRgba(TestColors::OfHalves(half, half, half, half));
        const bool isNoNumber = (half & 0x7fff) > TestColors::HalfOfInfinity;
        const bool isNegative = (half & 0x8000) != 0;
        if (isNoNumber || isNegative)
            QCOMPARE(rgba, 0u);
        else if (half >= TestColors::HalfOfOne)
            QCOMPARE(rgba, 0xffffffffu);
    }
}

void TestColorToRgba::AModelThatThereIsNotIsBlack()
{
    for (int model = -128; model <= 127; ++model)
        if (model < QColor::Invalid || model > QColor::ExtendedRgb)
            QCOMPARE(ColorToRgba(TestColors::Read(model, {0x8000, 0xffff, 1, 0x7e00, 0xffff})), 0x80000000u);
}

void TestColorToRgba::EveryModelGivesAColour()
{
    constexpr std::array<quint16, 6> Components{0, 1, 0x7e00, 0x8000, 36000, 0xffff};
    for (int model = QColor::Invalid; model <= QColor::ExtendedRgb; ++model)
        for (const quint16 first : Components)
            for (const quint16 second : Components)
                for (const quint16 third : Components)
                    for (const quint16 last : Components) {
                        const QColor color = TestColors::Read(model, {0xffff, first, second, third, last});
                        const QRgb rgba = ColorToRgba(color);
                        QVERIFY(qAlpha(rgba) == 255 || model == QColor::ExtendedRgb);
                    }
}

QTEST_APPLESS_MAIN(TestColorToRgba)
#include "tst_ColorToRgba.moc"
