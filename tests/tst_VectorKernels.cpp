#include "KernelCheck.h"
#include "image/Luma709.h"
#include "image/YDBlend.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"
#include "simd/VectorKernels.h"
#include "utilities/AVX2LIB.h"

#include <QTest>

#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr int LongestRow = 300; // several steps of the widest vectors, and every end
constexpr int MostOffset = 15;  // with 16 pixels a cache line begins anew
constexpr int GuardPixels = 4;  // behind each row
constexpr YDRGBA32i Guard(1, 2, 3, 4);

struct Kernels
{
    decltype(&MapChannelsRow) map = AVX2LIB::Find<decltype(&MapChannelsRow)>("MapChannelsRow");
    decltype(&BlendBySelectionRow) blend =
        AVX2LIB::Find<decltype(&BlendBySelectionRow)>("BlendBySelectionRow");
    decltype(&SupportedTargets) supported = AVX2LIB::Find<decltype(&SupportedTargets)>("SupportedTargets");
    decltype(&RestrictTargets) restrict = AVX2LIB::Find<decltype(&RestrictTargets)>("RestrictTargets");
    decltype(&TargetName) name = AVX2LIB::Find<decltype(&TargetName)>("TargetName");
};

const Kernels& Module()
{
    static const Kernels kernels;
    return kernels;
}

using KernelCheck::RandomRow;
using KernelCheck::Row;
using KernelCheck::Targets;

/// Coverage as masks have it: stretches of nothing, of everything, and feathered edges.
Row RandomMask(int pixels, std::minstd_rand& random)
{
    Row row;
    while (int(row.size()) < pixels) {
        const quint8 kind = quint8(random() >> 8) % 3;
        for (int i = int(random() >> 8) % 40; i >= 0; --i) {
            const quint8 coverage = kind == 0 ? 0 : kind == 1 ? 255 : quint8(random() >> 8);
            row.emplace_back(coverage, coverage, coverage, coverage);
        }
    }
    row.resize(std::size_t(pixels));
    return row;
}

void SetGuard(Row& row, int first) { std::fill(row.begin() + first, row.end(), Guard); }

std::array<quint8, 768> RandomTables(std::minstd_rand& random)
{
    std::array<quint8, 768> tables{};
    for (quint8& entry : tables)
        entry = quint8(random() >> 8);
    return tables;
}

void MapByPixels(YDRGBA32i* row, int count, const quint8* tables)
{
    for (int x = 0; x < count; ++x)
        row[x] = {tables[row[x].b], tables[256 + row[x].g], tables[512 + row[x].r], row[x].a};
}

void BlendByPixels(const YDRGBA32i* source, YDRGBA32i* destination, const YDRGBA32i* mask, int count)
{
    for (int x = 0; x < count; ++x)
        YDBlend::YDSourceBySelection()(source[x], destination[x], mask[x]);
}

void AddTargets()
{
    QTest::addColumn<qint64>("target");
    for (const qint64 target : Targets())
        QTest::newRow(Module().name(target)) << target;
}

} // namespace

class TestVectorKernels : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void OffersAvx2AndNamesIt();
    void CanBeConfinedToOneInstructionSet();

    void MapsEveryLengthAndAlignment_data() { AddTargets(); }
    void MapsEveryLengthAndAlignment();
    void MapsEveryValueOfEveryChannel_data() { AddTargets(); }
    void MapsEveryValueOfEveryChannel();
    void RowsOfAChannelRuleEqualItsPixels_data() { AddTargets(); }
    void RowsOfAChannelRuleEqualItsPixels();

    void BlendsEveryLengthAndAlignment_data() { AddTargets(); }
    void BlendsEveryLengthAndAlignment();
    void BlendsEveryTripleToTheNearestLevel_data() { AddTargets(); }
    void BlendsEveryTripleToTheNearestLevel();
    void TheAlphaOfTheMaskIsTheCoverage_data() { AddTargets(); }
    void TheAlphaOfTheMaskIsTheCoverage();
    void LumaOfEveryLengthAndAlignment_data() { AddTargets(); }
    void LumaOfEveryLengthAndAlignment();
    void RowsOfTheSelectionBlendEqualItsPixels_data() { AddTargets(); }
    void RowsOfTheSelectionBlendEqualItsPixels();
};

void TestVectorKernels::initTestCase()
{
    if (!__builtin_cpu_supports("avx2")) {
        QVERIFY(!AVX2LIB::Instance());
        QSKIP("The module is for processors with AVX2.");
    }
    QVERIFY(AVX2LIB::Instance());
    QVERIFY(Module().map && Module().blend && Module().supported && Module().restrict && Module().name);
}

void TestVectorKernels::cleanup() { Module().restrict(0); }

void TestVectorKernels::OffersAvx2AndNamesIt()
{
    QStringList names;
    for (const qint64 target : Targets())
        names.append(QString::fromLatin1(Module().name(target)));
    QVERIFY2(names.contains(QStringLiteral("AVX2")), qPrintable(names.join(QLatin1Char(' '))));
    QVERIFY(!names.contains(QStringLiteral("Unknown")));
    QCOMPARE(Module().name(3), "Unknown");
}

void TestVectorKernels::CanBeConfinedToOneInstructionSet()
{
    const qint64 all = Module().supported();
    for (const qint64 target : Targets()) {
        Module().restrict(target);
        QCOMPARE(Module().supported(), target);
    }
    Module().restrict(0);
    QCOMPARE(Module().supported(), all);
}

void TestVectorKernels::MapsEveryLengthAndAlignment()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    std::minstd_rand random(7);
    for (int length = 0; length <= LongestRow; ++length) {
        for (int offset = 0; offset <= MostOffset; ++offset) {
            const auto tables = RandomTables(random);
            Row actual = RandomRow(offset + length + GuardPixels, random);
            SetGuard(actual, offset + length);
            Row expected = actual;
            MapByPixels(expected.data() + offset, length, tables.data());
            Module().map(actual.data() + offset, length, tables.data());
            QVERIFY2(actual == expected, qPrintable(QStringLiteral("%1 from %2").arg(length).arg(offset)));
        }
    }
}

void TestVectorKernels::MapsEveryValueOfEveryChannel()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    std::minstd_rand random(8);
    const auto tables = RandomTables(random);
    Row actual;
    for (int v = 0; v < 256; ++v)
        actual.emplace_back(quint8(v), quint8(v + 85), quint8(v + 170), quint8(255 - v));
    Row expected = actual;
    MapByPixels(expected.data(), int(expected.size()), tables.data());
    Module().map(actual.data(), int(actual.size()), tables.data());
    QVERIFY(actual == expected);
}

void TestVectorKernels::RowsOfAChannelRuleEqualItsPixels()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    std::minstd_rand random(9);
    YDIterativeBrightnessContrastTransformation rule(31, -45);
    Row rows = RandomRow(LongestRow, random);
    Row pixels = rows;
    rule.ProcessRow(rows.data(), LongestRow);
    rule.SetProcessingBuffer(pixels.data());
    for (int x = 0; x < LongestRow; ++x)
        rule.ProcessPixel(x);
    QVERIFY(rows == pixels);
}

void TestVectorKernels::BlendsEveryLengthAndAlignment()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    std::minstd_rand random(10);
    for (int length = 0; length <= LongestRow; ++length) {
        for (int offset = 0; offset <= MostOffset; ++offset) {
            const int sourceOffset = (offset * 3) % (MostOffset + 1); // the rows need not be aligned alike
            const int maskOffset = (offset * 5) % (MostOffset + 1);
            const Row source = RandomRow(sourceOffset + length, random);
            const Row mask = RandomMask(maskOffset + length, random);
            Row actual = RandomRow(offset + length + GuardPixels, random);
            SetGuard(actual, offset + length);
            Row expected = actual;
            BlendByPixels(source.data() + sourceOffset, expected.data() + offset, mask.data() + maskOffset,
                          length);
            Module().blend(source.data() + sourceOffset, actual.data() + offset, mask.data() + maskOffset,
                           length);
            QVERIFY2(actual == expected, qPrintable(QStringLiteral("%1 from %2").arg(length).arg(offset)));
        }
    }
}

void TestVectorKernels::BlendsEveryTripleToTheNearestLevel()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    Row source; // every level once, four to a pixel
    for (int v = 0; v < 256; v += 4)
        source.emplace_back(quint8(v), quint8(v + 1), quint8(v + 2), quint8(v + 3));
    for (int coverage = 0; coverage < 256; ++coverage) {
        const Row mask(source.size(), YDRGBA32i(0, 0, 0, quint8(coverage)));
        for (int level = 0; level < 256; ++level) {
            const quint8 d = quint8(level);
            Row actual(source.size(), YDRGBA32i(d, d, d, d));
            Module().blend(source.data(), actual.data(), mask.data(), int(source.size()));
            const auto* const bytes = reinterpret_cast<const quint8*>(actual.data());
            for (int s = 0; s < 256; ++s) {
                const double exact = level + (s - level) * coverage / 255.0;
                if (bytes[s] != std::floor(exact + 0.5))
                    QFAIL(qPrintable(QStringLiteral("%1 over %2, coverage %3: %4")
                                         .arg(s)
                                         .arg(level)
                                         .arg(coverage)
                                         .arg(bytes[s])));
            }
        }
    }
}

void TestVectorKernels::TheAlphaOfTheMaskIsTheCoverage()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    const Row source(LongestRow, YDRGBA32i(10, 20, 30, 40));
    const Row nothing(LongestRow, YDRGBA32i(255, 255, 255, 0));
    const Row everything(LongestRow, YDRGBA32i(0, 0, 0, 255));
    const Row before(LongestRow, YDRGBA32i(110, 120, 130, 140));
    Row actual = before;
    Module().blend(source.data(), actual.data(), nothing.data(), LongestRow);
    QVERIFY(actual == before);
    Module().blend(source.data(), actual.data(), everything.data(), LongestRow);
    QVERIFY(actual == source);
}

void TestVectorKernels::LumaOfEveryLengthAndAlignment()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    const auto kernel = AVX2LIB::Find<decltype(&LumaRow)>("LumaRow");
    QVERIFY(kernel);
    constexpr quint8 LumaGuard = 99;
    std::minstd_rand random(7);
    for (int count = 0; count <= LongestRow; ++count)
        for (int offset = 0; offset <= MostOffset; ++offset) {
            const Row row = RandomRow(offset + count, random);
            std::vector<quint8> actual(std::size_t(count + GuardPixels), LumaGuard);
            std::vector<quint8> expected = actual;
            kernel(row.data() + offset, count, actual.data());
            for (int x = 0; x < count; ++x)
                expected[std::size_t(x)] = quint8(Luma709::Of(row[std::size_t(offset + x)]));
            QVERIFY2(actual == expected, Module().name(target));
        }
}

void TestVectorKernels::RowsOfTheSelectionBlendEqualItsPixels()
{
    QFETCH(qint64, target);
    Module().restrict(target);
    std::minstd_rand random(11);
    const Row source = RandomRow(LongestRow, random);
    const Row mask = RandomMask(LongestRow, random);
    Row rows = RandomRow(LongestRow, random);
    Row pixels = rows;
    YDBlend::YDSourceBySelection::ProcessRow(source.data(), rows.data(), mask.data(), LongestRow);
    BlendByPixels(source.data(), pixels.data(), mask.data(), LongestRow);
    QVERIFY(rows == pixels);
}

QTEST_GUILESS_MAIN(TestVectorKernels)

#include "tst_VectorKernels.moc"
