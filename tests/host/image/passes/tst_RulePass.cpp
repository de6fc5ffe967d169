#include "TestPictures.h"
#include "image/RulePass.h"
#include "image/YDBlend.h"

#include <QTest>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <limits>
#include <vector>

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

/// A picture at random and a selection in it, and another picture to mix it with.
struct Fixture
{
    RGBA32iImage image;
    RGBA32iImage source; ///< empty where the image has its pixels
    RGBA32iImage mask;
    QRect bounds;
    QPoint offset;
    RGBA32iImage adjusted;

    Fixture(const QSize& picture, const QSize& maskSize, const QRect& part, const QPoint& place)
        : image(TestPictures::Random(picture.width(), picture.height(), 1)),
          mask(TestPictures::Random(maskSize.width(), maskSize.height(), 3)), bounds(part), offset(place),
          adjusted(TestPictures::Random(picture.width(), picture.height(), 2))
    {}

    RulePass Pass() const { return {image, source, mask, offset, bounds}; }

    /// Lays the other picture over this one, piece by piece.
    RulePass::Rule Mix() const
    {
        return [this](YDRGBA32i* pixels, int x, int y, int count) {
            YDBlend::YDSourceOver<0>{Opacity}.ProcessRow(adjusted.Row(y) + x, pixels, count);
        };
    }

    /// How many steps were told.
    int Run(const RulePass& pass, const std::atomic<bool>* abort = nullptr) const
    {
        std::atomic<int> steps{0};
        pass.Run(Mix(), abort, [&steps] { ++steps; });
        return steps;
    }

    /// Has the pass make the image of a copy of what it holds.
    void BeginWithACopy()
    {
        source = image;
        image = TestPictures::Random(source.Width(), source.Height(), 99);
    }
};

RGBA32iImage Expected(const Fixture& f)
{
    const RGBA32iImage result = f.image.DeepCopy();
    if (f.bounds.isEmpty()) {
        for (int y = 0; y < result.Height(); ++y)
            for (int x = 0; x < result.Width(); ++x)
                result.Row(y)[x] = MixedOver(f.adjusted.Row(y)[x], result.Row(y)[x]);
        return result;
    }
    const Axis h(f.bounds.left(), double(f.bounds.right()) + 1, f.offset.x(), result.Width(), f.mask.Width());
    const Axis v(f.bounds.top(), double(f.bounds.bottom()) + 1, f.offset.y(), result.Height(),
                 f.mask.Height());
    for (int y = 0; y < int(v.count); ++y)
        for (int x = 0; x < int(h.count); ++x) {
            YDRGBA32i& pixel = result.Row(int(v.first) + y)[int(h.first) + x];
            const YDRGBA32i mixed = MixedOver(f.adjusted.Row(int(v.first) + y)[int(h.first) + x], pixel);
            YDBlend::YDSourceBySelection()(mixed, pixel, f.mask.Row(int(v.inMask) + y)[int(h.inMask) + x]);
        }
    return result;
}

/// Fills the columns from `first` to before `last` of the mask with one coverage.
void Cover(const RGBA32iImage& mask, int first, int last, quint8 coverage)
{
    const int end = std::min(last, mask.Width());
    for (int y = 0; y < mask.Height(); ++y)
        for (int x = std::max(first, 0); x < end; ++x)
            mask.Row(y)[x] = YDRGBA32i(coverage, coverage, coverage, coverage);
}

const QSize MaskSize(1400, 50);
const QRect WholeMask(QPoint(0, 0), MaskSize);

} // namespace

class TestRulePass : public QObject
{
    Q_OBJECT

private slots:
    void MixesWhatTheMaskCovers_data();
    void MixesWhatTheMaskCovers();
    void WhatLiesBesideThePictureOrTheMaskIsNotMixed_data();
    void WhatLiesBesideThePictureOrTheMaskIsNotMixed();
    void AnAbortedPassChangesNothing();
    void AnAbortStopsAtTheNextRow();
    void PiecesLeaveNoSeams_data();
    void PiecesLeaveNoSeams();
    void StepsAreRowsAndWhatIsBlendedOfThem_data();
    void StepsAreRowsAndWhatIsBlendedOfThem();
    void ALimitedPassKeepsTheRest_data();
    void ALimitedPassKeepsTheRest();
    void PixelsElsewhereAreAdjustedAsInThePicture();
};

void TestRulePass::MixesWhatTheMaskCovers_data()
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

void TestRulePass::MixesWhatTheMaskCovers()
{
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    Fixture f(PictureSize, MaskSize, bounds, offset);
    const RGBA32iImage before = f.image.DeepCopy();
    const RGBA32iImage expected = Expected(f);
    f.Run(f.Pass());
    QVERIFY(TestPictures::AreEqual(f.image, expected));
    QVERIFY(!TestPictures::AreEqual(f.image, before));
    f.image = before;
    f.BeginWithACopy();
    f.Run(f.Pass());
    QVERIFY(TestPictures::AreEqual(f.image, expected));
}

void TestRulePass::WhatLiesBesideThePictureOrTheMaskIsNotMixed_data()
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

void TestRulePass::WhatLiesBesideThePictureOrTheMaskIsNotMixed()
{
    QFETCH(QSize, mask);
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    Fixture f(PictureSize, mask, bounds, offset);
    const RGBA32iImage before = f.image.DeepCopy();
    f.Run(f.Pass());
    QVERIFY(TestPictures::AreEqual(f.image, before));
    f.BeginWithACopy();
    f.Run(f.Pass());
    QVERIFY(TestPictures::AreEqual(f.image, before));
}

void TestRulePass::AnAbortedPassChangesNothing()
{
    const std::atomic<bool> abort{true};
    const Fixture f(PictureSize, MaskSize, WholeMask, QPoint(10, 5));
    const RGBA32iImage before = f.image.DeepCopy();
    QCOMPARE(f.Run(f.Pass(), &abort), 0);
    QVERIFY(TestPictures::AreEqual(f.image, before));
}

void TestRulePass::AnAbortStopsAtTheNextRow()
{
    constexpr int Rows = 3000;
    std::atomic<bool> abort{false};
    std::atomic<int> begun{0};
    const RGBA32iImage image(8, Rows);
    const RulePass pass(image, {}, {}, {}, {});
    const auto rule = [&](YDRGBA32i*, int, int, int) {
        if (++begun >= 10)
            abort = true;
    };
    pass.Run(rule, &abort, [] {});
    QVERIFY(begun >= 10);
    // Each thread may be in a row of its own when the flag is set.
    QVERIFY2(begun <= 10 + QThread::idealThreadCount(), qPrintable(QString::number(begun)));
}

void TestRulePass::PiecesLeaveNoSeams_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("offset");
    for (const int width : {1, 511, 512, 513, 1300}) {
        const QRect whole(0, 0, width, 5);
        QTest::addRow("%d, all", width) << width << QRect() << QPoint();
        QTest::addRow("%d, a selection of all", width) << width << whole << QPoint();
        QTest::addRow("%d, beyond the left", width) << width << whole << QPoint(-width / 3, 1);
        QTest::addRow("%d, beyond the right", width) << width << whole << QPoint(width / 3, -1);
    }
}

/// Some pieces of the mask are covered in part, one not at all, and one wholly.
void TestRulePass::PiecesLeaveNoSeams()
{
    QFETCH(int, width);
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    constexpr int Piece = RulePass::PiecePixels;
    for (const int uncovered : {-Piece, 0, Piece, 2 * Piece}) {
        Fixture f(QSize(width, 7), QSize(width, 5), bounds, offset);
        Cover(f.mask, uncovered, uncovered + Piece, 0);
        Cover(f.mask, uncovered + Piece, uncovered + 2 * Piece, 255);
        const RGBA32iImage before = f.image.DeepCopy();
        const RGBA32iImage expected = Expected(f);
        f.Run(f.Pass());
        QVERIFY(TestPictures::AreEqual(f.image, expected));
        f.image = before;
        f.BeginWithACopy();
        const RGBA32iImage source = f.source.DeepCopy();
        f.Run(f.Pass());
        QVERIFY(TestPictures::AreEqual(f.image, expected));
        QVERIFY(TestPictures::AreEqual(f.source, source));
    }
}

void TestRulePass::StepsAreRowsAndWhatIsBlendedOfThem_data()
{
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<int>("steps");
    QTest::newRow("the whole") << QRect() << QPoint() << 60;
    QTest::newRow("inside") << QRect(10, 5, 300, 20) << QPoint(40, 5) << 20 + 20;
    QTest::newRow("over the top edge") << WholeMask << QPoint(20, -15) << 35 + 35;
    QTest::newRow("larger than the mask") << QRect(0, 0, 5000, 5000) << QPoint(10, 0) << 60 + 50;
    QTest::newRow("beside the picture") << WholeMask << QPoint(1500, 0) << 0;
}

void TestRulePass::StepsAreRowsAndWhatIsBlendedOfThem()
{
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    QFETCH(int, steps);
    Fixture f(PictureSize, MaskSize, bounds, offset);
    QCOMPARE(int(f.Pass().Steps()), steps);
    QCOMPARE(f.Run(f.Pass()), steps);
    f.BeginWithACopy();
    QCOMPARE(f.Run(f.Pass()), steps);
}

void TestRulePass::ALimitedPassKeepsTheRest_data()
{
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QRect>("area");
    const QRect inside(300, 10, 700, 20);
    QTest::newRow("the whole, inside") << QRect() << inside;
    QTest::newRow("the whole, beyond the corner") << QRect() << QRect(-50, -5, 100, 20);
    QTest::newRow("the whole, nothing") << QRect() << QRect();
    QTest::newRow("a selection, inside") << WholeMask << inside;
    QTest::newRow("a selection, beside it") << WholeMask << QRect(0, 0, 30, 60);
}

void TestRulePass::ALimitedPassKeepsTheRest()
{
    QFETCH(QRect, bounds);
    QFETCH(QRect, area);
    Fixture f(PictureSize, MaskSize, bounds, QPoint(30, 5));
    const RGBA32iImage expected = f.image.DeepCopy();
    const RGBA32iImage all = Expected(f);
    for (int y = 0; y < expected.Height(); ++y)
        for (int x = 0; x < expected.Width(); ++x)
            if (area.contains(x, y))
                expected.Row(y)[x] = all.Row(y)[x];
    const RGBA32iImage before = f.image.DeepCopy();
    RulePass pass = f.Pass();
    pass.LimitTo(area);
    f.Run(pass);
    QVERIFY(TestPictures::AreEqual(f.image, expected));
    f.image = before;
    f.BeginWithACopy();
    RulePass copying = f.Pass();
    copying.LimitTo(area);
    f.Run(copying);
    QVERIFY(TestPictures::AreEqual(f.image, expected));
}

void TestRulePass::PixelsElsewhereAreAdjustedAsInThePicture()
{
    const Fixture f(PictureSize, MaskSize, QRect(5, 3, 900, 30), QPoint(100, -10));
    const RGBA32iImage expected = Expected(f);
    const RulePass pass = f.Pass();
    for (int y = 0; y < f.image.Height(); ++y)
        for (int x = 0; x < f.image.Width(); x += 300) {
            const int count = std::min(300, f.image.Width() - x);
            std::vector<YDRGBA32i> pixels(f.image.Row(y) + x, f.image.Row(y) + x + count);
            pass.Adjust(pixels.data(), x, y, count, f.Mix());
            QVERIFY(std::equal(pixels.begin(), pixels.end(), expected.Row(y) + x));
        }
}

QTEST_GUILESS_MAIN(TestRulePass)
#include "tst_RulePass.moc"
