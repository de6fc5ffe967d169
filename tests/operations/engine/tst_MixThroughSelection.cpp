#include "Machine.h"
#include "MixThroughSelection.h"
#include "TestPictures.h"
#include "image/YDBlend.h"

#include <QTest>

#include <algorithm>
#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr int Opacity = 180;

/// Wider than what is mixed at a time.
const QSize PictureSize(1500, 60);

/// The clipping rules along one axis in the plainest way, in doubles so that nothing can overflow.
struct Axis
{
    double first = 0;  ///< in the picture
    double inMask = 0; ///< what is read of the mask for it
    double count = 0;

    Axis(double begin, double end, double offset, double picture, double mask)
    {
        const double further = std::max(-offset, 0.0);
        first = std::max(begin + offset, 0.0);
        inMask = std::max(begin + further, 0.0);
        count = std::max(
            std::min({std::min(end + offset, picture) - first, std::min(end + further, mask) - inMask}), 0.0);
    }
};

/// The colour of `above` laid over that of `below`, with the alpha of `below`.
YDRGBA32i MixedOver(const YDRGBA32i& above, const YDRGBA32i& below)
{
    const auto mix = [](int over, int under) {
        return quint8((over * Opacity + under * (256 - Opacity) + 128) / 256);
    };
    return {mix(above.b, below.b), mix(above.g, below.g), mix(above.r, below.r), below.a};
}

RGBA32iImage Expected(const YDAdjustmentJob& job, const RGBA32iImage& adjusted)
{
    const QRect& bounds = job.selectionBoundingRect;
    const Axis h(bounds.left(), double(bounds.right()) + 1, job.selectionOffset.x(), job.image.Width(),
                 job.selection.Width());
    const Axis v(bounds.top(), double(bounds.bottom()) + 1, job.selectionOffset.y(), job.image.Height(),
                 job.selection.Height());
    const RGBA32iImage result = job.image.DeepCopy();
    for (int y = 0; y < int(v.count); ++y)
        for (int x = 0; x < int(h.count); ++x) {
            YDRGBA32i& pixel = result.Row(int(v.first) + y)[int(h.first) + x];
            const YDRGBA32i mixed = MixedOver(adjusted.Row(int(v.first) + y)[int(h.first) + x], pixel);
            YDBlend::YDSourceBySelection()(mixed, pixel,
                                           job.selection.Row(int(v.inMask) + y)[int(h.inMask) + x]);
        }
    return result;
}

/// A job for a picture at random, and another picture.
struct Fixture
{
    YDAdjustmentJob job;
    RGBA32iImage adjusted = TestPictures::Random(PictureSize.width(), PictureSize.height(), 2);

    Fixture(const QSize& mask, const QRect& bounds, const QPoint& offset)
    {
        job.image = TestPictures::Random(PictureSize.width(), PictureSize.height(), 1);
        job.selection = TestPictures::Random(mask.width(), mask.height(), 3);
        job.selectionBoundingRect = bounds;
        job.selectionOffset = offset;
    }
};

const QSize MaskSize(1400, 50);
const QRect WholeMask(QPoint(0, 0), MaskSize);

} // namespace

class TestMixThroughSelection : public QObject
{
    Q_OBJECT

private slots:
    void MixesWhatTheMaskCovers_data();
    void MixesWhatTheMaskCovers();
    void WhatLiesBesideThePictureOrTheMaskIsNotMixed_data();
    void WhatLiesBesideThePictureOrTheMaskIsNotMixed();
    void AnAbortedMixChangesNothing();
    void AnyNumberOfCoresMixesTheSame_data();
    void AnyNumberOfCoresMixesTheSame();
};

void TestMixThroughSelection::MixesWhatTheMaskCovers_data()
{
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("offset");
    QTest::newRow("inside") << WholeMask << QPoint(30, 5);
    QTest::newRow("at the origin") << WholeMask << QPoint(0, 0);
    QTest::newRow("over the left edge") << WholeMask << QPoint(-20, 5);
    QTest::newRow("over the top edge") << WholeMask << QPoint(20, -15);
    QTest::newRow("over the last corner") << WholeMask << QPoint(900, 40);
    QTest::newRow("a part of the mask") << QRect(10, 20, 300, 20) << QPoint(40, 5);
    QTest::newRow("a part of the mask over the first corner") << QRect(10, 5, 300, 40) << QPoint(-40, -15);
    QTest::newRow("a part of the mask, offset negative") << QRect(300, 20, 200, 20) << QPoint(-100, -10);
    QTest::newRow("larger than the mask") << QRect(0, 0, 5000, 5000) << QPoint(10, 10);
    QTest::newRow("corner before the mask") << QRect(-10, -5, 300, 40) << QPoint(20, 20);
    QTest::newRow("over everything") << QRect(QPoint(Lowest, Lowest), QPoint(Highest, Highest))
                                     << QPoint(0, 0);
}

void TestMixThroughSelection::MixesWhatTheMaskCovers()
{
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    const Fixture f(MaskSize, bounds, offset);
    const RGBA32iImage before = f.job.image.DeepCopy();
    const RGBA32iImage expected = Expected(f.job, f.adjusted);
    MixThroughSelection(f.job, f.adjusted, Opacity);
    QVERIFY(TestPictures::AreEqual(f.job.image, expected));
    QVERIFY(!TestPictures::AreEqual(f.job.image, before));
}

void TestMixThroughSelection::WhatLiesBesideThePictureOrTheMaskIsNotMixed_data()
{
    QTest::addColumn<QSize>("mask");
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("offset");
    QTest::newRow("no mask") << QSize(0, 0) << WholeMask << QPoint(10, 10);
    QTest::newRow("left of the picture") << MaskSize << WholeMask << QPoint(-1400, 0);
    QTest::newRow("right of the picture") << MaskSize << WholeMask << QPoint(1500, 0);
    QTest::newRow("below the picture") << MaskSize << WholeMask << QPoint(0, 60);
    QTest::newRow("beside the mask") << MaskSize << QRect(1400, 0, 10, 10) << QPoint(-1390, 0);
    QTest::newRow("offset as far left as it goes") << MaskSize << WholeMask << QPoint(Lowest, Lowest);
    QTest::newRow("offset as far right as it goes") << MaskSize << WholeMask << QPoint(Highest, Highest);
    const QRect first(QPoint(Lowest, Lowest), QSize(10, 10));
    const QRect last(QPoint(Highest - 10, Highest - 10), QPoint(Highest, Highest));
    QTest::newRow("the first rectangle, moved left") << MaskSize << first << QPoint(Lowest, Lowest);
    QTest::newRow("the last rectangle, moved right") << MaskSize << last << QPoint(Highest, Highest);
    // It begins in the mask where 2^31 less 10 would be plus 2^31 less 10.
    QTest::newRow("the last rectangle, moved left") << MaskSize << last << QPoint(10 - Highest, 10 - Highest);
}

void TestMixThroughSelection::WhatLiesBesideThePictureOrTheMaskIsNotMixed()
{
    QFETCH(QSize, mask);
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    const Fixture f(mask, bounds, offset);
    const RGBA32iImage before = f.job.image.DeepCopy();
    MixThroughSelection(f.job, f.adjusted, Opacity);
    QVERIFY(TestPictures::AreEqual(f.job.image, before));
}

void TestMixThroughSelection::AnAbortedMixChangesNothing()
{
    const std::atomic<bool> abort{true};
    Fixture f(MaskSize, WholeMask, QPoint(10, 5));
    f.job.abort = &abort;
    const RGBA32iImage before = f.job.image.DeepCopy();
    MixThroughSelection(f.job, f.adjusted, Opacity);
    QVERIFY(TestPictures::AreEqual(f.job.image, before));
}

void TestMixThroughSelection::AnyNumberOfCoresMixesTheSame_data()
{
    QTest::addColumn<int>("cores");
    QTest::newRow("one core") << 1;
    QTest::newRow("two cores") << 2;
    QTest::newRow("three cores") << 3;
    QTest::newRow("eight cores") << 8;
}

void TestMixThroughSelection::AnyNumberOfCoresMixesTheSame()
{
    QFETCH(int, cores);
    const Machine machine(cores);
    const Fixture f(MaskSize, WholeMask, QPoint(-15, 5));
    const RGBA32iImage expected = Expected(f.job, f.adjusted);
    MixThroughSelection(f.job, f.adjusted, Opacity);
    QVERIFY(TestPictures::AreEqual(f.job.image, expected));
}

QTEST_GUILESS_MAIN(TestMixThroughSelection)
#include "tst_MixThroughSelection.moc"
