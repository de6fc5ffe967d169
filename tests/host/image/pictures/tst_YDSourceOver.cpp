#include "KernelCheck.h"
#include "image/YDBlend.h"

#include <QTest>

#include <cmath>

namespace {

using SourceOver = YDBlend::YDSourceOver<0>;
using KernelCheck::Row;

constexpr int LongestRow = 100;

/// In real numbers.
YDRGBA32i Expected(const YDRGBA32i& source, const YDRGBA32i& destination, int opacity)
{
    const double over = opacity / 256.0;
    const auto mix = [over](int above, int below) {
        return quint8(std::floor(below + (above - below) * over + 0.5));
    };
    return {mix(source.b, destination.b), mix(source.g, destination.g), mix(source.r, destination.r),
            destination.a};
}

} // namespace

class TestYDSourceOver : public QObject
{
    Q_OBJECT

private slots:
    void FullOpacityIsTheSourcesColour();
    void NoOpacityIsTheDestination();
    void EveryPairIsRoundedToTheNearestLevel();
    void TheAlphaOfNeitherWeighs();
    void TheDestinationKeepsItsAlpha();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
};

void TestYDSourceOver::FullOpacityIsTheSourcesColour()
{
    std::minstd_rand random(1);
    for (const YDRGBA32i& destination : KernelCheck::RandomRow(1000, random)) {
        YDRGBA32i result = destination;
        SourceOver{256}(YDRGBA32i(1, 2, 3, 90), result);
        QCOMPARE(QRgb(result), QRgb(YDRGBA32i(1, 2, 3, destination.a)));
    }
}

void TestYDSourceOver::NoOpacityIsTheDestination()
{
    std::minstd_rand random(2);
    for (const YDRGBA32i& destination : KernelCheck::RandomRow(1000, random)) {
        YDRGBA32i result = destination;
        SourceOver{0}(YDRGBA32i(1, 2, 3, 200), result);
        QCOMPARE(QRgb(result), QRgb(destination));
    }
}

void TestYDSourceOver::EveryPairIsRoundedToTheNearestLevel()
{
    for (const int opacity : {0, 1, 127, 128, 129, 255, 256})
        for (int above = 0; above < 256; ++above)
            for (int below = 0; below < 256; ++below) {
                YDRGBA32i result{quint8(below), quint8(below), quint8(below), 255};
                SourceOver{opacity}(YDRGBA32i(quint8(above), quint8(above), quint8(above), 255), result);
                QCOMPARE(int(result.r), int(std::floor(below + (above - below) * opacity / 256.0 + 0.5)));
            }
}

void TestYDSourceOver::TheAlphaOfNeitherWeighs()
{
    std::minstd_rand random(3);
    const Row sources = KernelCheck::RandomRow(20000, random);
    const Row destinations = KernelCheck::RandomRow(20000, random);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const int opacity = int(random() % 257);
        YDRGBA32i result = destinations[i];
        SourceOver{opacity}(sources[i], result);
        QCOMPARE(QRgb(result), QRgb(Expected(sources[i], destinations[i], opacity)));
    }
}

void TestYDSourceOver::TheDestinationKeepsItsAlpha()
{
    for (const int above : {0, 1, 128, 255})
        for (const int below : {0, 1, 128, 255}) {
            YDRGBA32i result(4, 5, 6, quint8(below));
            SourceOver{200}(YDRGBA32i(1, 2, 3, quint8(above)), result);
            QCOMPARE(int(result.a), below);
        }
}

void TestYDSourceOver::RowsEqualPixels_data()
{
    QTest::addColumn<qint64>("target");
    QTest::newRow("all") << qint64(0);
    for (const qint64 target : KernelCheck::Targets())
        QTest::newRow(qPrintable(KernelCheck::NameOf(target))) << target;
}

void TestYDSourceOver::RowsEqualPixels()
{
    QFETCH(qint64, target);
    const KernelCheck::Restriction restriction(target);
    std::minstd_rand random(4);
    for (int count = 0; count <= LongestRow; ++count)
        for (const int opacity : {0, 100, 128, 256}) {
            const Row source = KernelCheck::RandomRow(count, random);
            Row actual = KernelCheck::RandomRow(count + 1, random); // the last pixel is a guard
            Row expected = actual;
            for (std::size_t x = 0; x < source.size(); ++x)
                SourceOver{opacity}(source[x], expected[x]);
            SourceOver{opacity}.ProcessRow(source.data(), actual.data(), count);
            QVERIFY2(actual == expected, qPrintable(QString::number(count)));
        }
}

QTEST_GUILESS_MAIN(TestYDSourceOver)
#include "tst_YDSourceOver.moc"
