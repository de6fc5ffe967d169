#include "YDIterativeAdjustmentTransformation.h"

#include <QTest>

#include <array>
#include <vector>

namespace {

/// Marks each pixel by the form that reached it: red 1 by the pixel form, 8 by the byte form.
struct Marking
{
    std::vector<bool>* aligned;

    void operator()(YDRGBA32i& pixel) const { pixel.r = 1; }
    void operator()(unsigned char* pixels, bool isAligned) const
    {
        aligned->push_back(isAligned);
        for (int i = 0; i < 8; ++i)
            reinterpret_cast<YDRGBA32i*>(pixels)[i].r = 8;
    }
};

/// The same with a row form, which is to be preferred.
struct RowMarking : Marking
{
    using Marking::operator();
    void ProcessRow(YDRGBA32i* row, int count) const
    {
        for (int x = 0; x < count; ++x)
            row[x].r = 99;
    }
};

} // namespace

class TestYDIterativeAdjustmentTransformation : public QObject
{
    Q_OBJECT

private slots:
    void APixelIsFoundByItsIndex();
    void RowsAreCutIntoBlocksOfEight_data();
    void RowsAreCutIntoBlocksOfEight();
    void BlocksKnowWhetherTheyAreAligned();
    void ARowFormIsPreferred();
    void CopiesHaveFunctorAndBufferOfTheirOwn();
    void TheVectorPathIsAllowed();

private:
    std::vector<bool> m_aligned;
};

void TestYDIterativeAdjustmentTransformation::APixelIsFoundByItsIndex()
{
    std::vector<YDRGBA32i> pixels(10);
    YDIterativeAdjustmentTransformation<Marking> transformation(Marking{&m_aligned});
    transformation.SetProcessingBuffer(pixels.data());
    transformation.ProcessPixel(7);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        QCOMPARE(int(pixels[i].r), i == 7 ? 1 : 0);
}

void TestYDIterativeAdjustmentTransformation::RowsAreCutIntoBlocksOfEight_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 7, 8, 9, 15, 16, 17, 127, 128, 129})
        QTest::addRow("%d pixels", count) << count;
}

void TestYDIterativeAdjustmentTransformation::RowsAreCutIntoBlocksOfEight()
{
    QFETCH(int, count);
    std::vector<YDRGBA32i> row(std::size_t(count) + 1);
    const YDIterativeAdjustmentTransformation<Marking> transformation(Marking{&m_aligned});
    transformation.ProcessRow(row.data(), count);
    for (int x = 0; x <= count; ++x)
        QCOMPARE(int(row[std::size_t(x)].r), x < count / 8 * 8 ? 8 : x < count ? 1 : 0);
}

void TestYDIterativeAdjustmentTransformation::BlocksKnowWhetherTheyAreAligned()
{
    alignas(32) std::array<YDRGBA32i, 40> row;
    const YDIterativeAdjustmentTransformation<Marking> transformation(Marking{&m_aligned});
    for (int start = 0; start <= 8; ++start) {
        m_aligned.clear();
        transformation.ProcessRow(row.data() + start, 24);
        QCOMPARE(m_aligned, std::vector<bool>(3, start % 8 == 0));
    }
}

void TestYDIterativeAdjustmentTransformation::ARowFormIsPreferred()
{
    std::vector<YDRGBA32i> row(20);
    const YDIterativeAdjustmentTransformation<RowMarking> transformation(RowMarking{{&m_aligned}});
    transformation.ProcessRow(row.data(), 19);
    QCOMPARE(int(row[0].r), 99);
    QCOMPARE(int(row[18].r), 99);
    QCOMPARE(int(row[19].r), 0);
}

void TestYDIterativeAdjustmentTransformation::CopiesHaveFunctorAndBufferOfTheirOwn()
{
    std::vector<YDRGBA32i> first(2);
    std::vector<YDRGBA32i> second(2);
    YDIterativeAdjustmentTransformation<Marking> original(Marking{&m_aligned});
    original.SetProcessingBuffer(first.data());
    YDIterativeAdjustmentTransformation<Marking> copy = original;
    copy.SetProcessingBuffer(second.data());
    original.ProcessPixel(0);
    copy.ProcessPixel(1);
    QCOMPARE(int(first[0].r) + int(first[1].r), 1);
    QCOMPARE(int(second[1].r), 1);
    QCOMPARE(int(second[0].r), 0);
}

void TestYDIterativeAdjustmentTransformation::TheVectorPathIsAllowed()
{
    QVERIFY(YDIterativeAdjustmentTransformation<Marking>(Marking{&m_aligned}).AllowsVectorProcessing());
}

QTEST_APPLESS_MAIN(TestYDIterativeAdjustmentTransformation)
#include "tst_YDIterativeAdjustmentTransformation.moc"
