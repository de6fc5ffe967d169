#include "IdlePool.h"
#include "KVAdjustmentProcessingTemplate.h"
#include "MemoryLimit.h"
#include "TestPictures.h"
#include "YDAdjustmentProcessingTemplate.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"

#include <QRandomGenerator>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <cmath>
#include <limits>
#include <mutex>
#include <thread>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();

/// A rule whose result differs from its input for every pixel: each colour channel is inverted.
struct Inverted
{
    void operator()(YDRGBA32i& pixel) const
    {
        pixel.b = quint8(255 - pixel.b);
        pixel.g = quint8(255 - pixel.g);
        pixel.r = quint8(255 - pixel.r);
    }
    void operator()(unsigned char* pixels, bool) const
    {
        for (int i = 0; i < 8; ++i)
            (*this)(reinterpret_cast<YDRGBA32i*>(pixels)[i]);
    }
};

/// The same as an iterative transformation, on the path that the parameter chooses.
template <bool Vector>
struct Inversion : BaseTransformation
{
    void ProcessPixel(qsizetype index) const { Inverted()(m_pixels[index]); }
    void ProcessRow(YDRGBA32i* row, int count) const override
    {
        for (int x = 0; x < count; ++x)
            Inverted()(row[x]);
    }
    bool AllowsVectorProcessing() const override { return Vector; }
};

RGBA32iImage RandomMask(int width, int height, quint32 seed)
{
    const RGBA32iImage mask = TestPictures::Random(width, height, seed);
    for (int y = 0; y < mask.Height(); ++y)
        for (int x = 0; x < mask.Width(); ++x) {
            const quint8 coverage = mask.Row(y)[x].b;
            mask.Row(y)[x] = YDRGBA32i(coverage, coverage, coverage, coverage);
        }
    return mask;
}

/// The clipping rules written down in the plainest way, in doubles so that nothing can overflow.
struct Span
{
    double first;
    double count;

    static Span Clipped(double first, double count, double limit)
    {
        const double begin = std::max(first, 0.0);
        const double end = std::min(first + count, limit);
        return {end > begin ? begin : 0.0, std::max(end - begin, 0.0)};
    }
};

struct Axis
{
    Span area;
    Span mask;
    double common;

    Axis(double first, double count, double offset, int pictureLimit, int maskLimit)
        : area(Span::Clipped(first + offset, count, pictureLimit)),
          mask(Span::Clipped(first + std::max(-offset, 0.0), count, maskLimit)),
          common(std::min(area.count, mask.count))
    {}
};

quint8 Mixed(quint8 source, quint8 destination, quint8 coverage)
{
    return quint8(std::lround(destination + (source - destination) * (coverage / 255.0)));
}

/// What a run must make of the job's picture.
RGBA32iImage Expected(const YDAdjustmentJob& job)
{
    const RGBA32iImage result = job.image.DeepCopy();
    const QRect& rect = job.selectionBoundingRect;
    if (rect.isEmpty()) {
        for (int y = 0; y < result.Height(); ++y)
            for (int x = 0; x < result.Width(); ++x)
                Inverted()(result.Row(y)[x]);
        return result;
    }
    const Axis h(rect.left(), double(rect.right()) - rect.left() + 1, job.selectionOffset.x(), result.Width(),
                 job.selection.Width());
    const Axis v(rect.top(), double(rect.bottom()) - rect.top() + 1, job.selectionOffset.y(), result.Height(),
                 job.selection.Height());
    for (int y = 0; y < int(v.common); ++y)
        for (int x = 0; x < int(h.common); ++x) {
            YDRGBA32i& pixel = result.Row(int(v.area.first) + y)[int(h.area.first) + x];
            const quint8 coverage = job.selection.Row(int(v.mask.first) + y)[int(h.mask.first) + x].a;
            YDRGBA32i adjusted = pixel;
            Inverted()(adjusted);
            pixel.b = Mixed(adjusted.b, pixel.b, coverage);
            pixel.g = Mixed(adjusted.g, pixel.g, coverage);
            pixel.r = Mixed(adjusted.r, pixel.r, coverage);
        }
    return result;
}

int ExpectedRows(const YDAdjustmentJob& job)
{
    const QRect& rect = job.selectionBoundingRect;
    if (rect.isEmpty())
        return job.image.Height();
    const Axis h(rect.left(), double(rect.right()) - rect.left() + 1, job.selectionOffset.x(),
                 job.image.Width(), job.selection.Width());
    const Axis v(rect.top(), double(rect.bottom()) - rect.top() + 1, job.selectionOffset.y(),
                 job.image.Height(), job.selection.Height());
    if (h.area.count == 0 || v.area.count == 0)
        return 0;
    return int(v.area.count + (h.common == 0 ? 0 : v.common));
}

/// Runs `Processing` over a copy of the job's picture and checks everything that can be seen of it.
template <class Processing, class T>
void Check(YDAdjustmentJob job, const T& transformation)
{
    const RGBA32iImage expected = Expected(job);
    job.image = job.image.DeepCopy();
    std::atomic<bool> abort{false};
    Processing processing(&abort, transformation);
    QSignalSpy range(&processing, &YDAdjustmentProcessing::RangeChanged);
    std::mutex mutex;
    QList<int> progress;
    QObject::connect(
        &processing, &YDAdjustmentProcessing::ProgressChanged, &processing,
        [&](int rows) {
            const std::lock_guard<std::mutex> lock(mutex);
            progress.append(rows);
        },
        Qt::DirectConnection);
    const RGBA32iImage result = processing.Run(job);
    QVERIFY(result.IsEmpty() == job.image.IsEmpty());
    QVERIFY(result.IsEmpty() || result.SharesPixelsWith(job.image));
    QVERIFY(TestPictures::AreEqual(result, expected));
    const int rows = ExpectedRows(job);
    QCOMPARE(range.count(), 1);
    QCOMPARE(range.first(), QVariantList({0, rows}));
    QVERIFY(std::is_sorted(progress.begin(), progress.end()));
    QCOMPARE(progress.isEmpty() ? 0 : progress.last(), rows);
}

void CheckEveryPath(const YDAdjustmentJob& job)
{
    Check<YDAdjustmentProcessingTemplate<Inversion<true>>>(job, Inversion<true>());
    Check<YDAdjustmentProcessingTemplate<Inversion<false>>>(job, Inversion<false>());
    Check<KVAdjustmentProcessingTemplate<Inverted>>(job, Inverted());
}

} // namespace

class TestYDTileRunner : public QObject
{
    Q_OBJECT

private slots:
    void PicturesOfEverySizeAreProcessedWhole_data();
    void PicturesOfEverySizeAreProcessedWhole();
    void SelectionsLimitAndBlend_data();
    void SelectionsLimitAndBlend();
    void RandomSelectionsFollowTheClippingRules();
    void AbortedBeforeItBeginsNothingChanges_data();
    void AbortedBeforeItBeginsNothingChanges();
    void AbortStopsAtTheNextRow_data();
    void AbortStopsAtTheNextRow();
    void PixelsGoToAllButOneOfTheCores_data();
    void PixelsGoToAllButOneOfTheCores();
    void OnTwoCoresPixelsGoToOneTaskOfThePool();
    void BlendingLeavesTheCallersThreadOnlyOnManyCores_data();
    void BlendingLeavesTheCallersThreadOnlyOnManyCores();
    void ASourceIsCopiedOnTheWay_data();
    void ASourceIsCopiedOnTheWay();
    void WithoutRoomForACopyASelectionIsDoneInParts();
    void WorkBoundByMemoryLeavesACoreFree_data() { Machines(); }
    void WorkBoundByMemoryLeavesACoreFree();
    void BothPathsOfARealRuleAgree_data();
    void BothPathsOfARealRuleAgree();

private:
    static void Machines();
    template <bool Vector>
    void RunFromSource(YDAdjustmentJob job);
};

void TestYDTileRunner::PicturesOfEverySizeAreProcessedWhole_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("0 x 0") << 0 << 0;
    QTest::newRow("1 x 1") << 1 << 1;
    QTest::newRow("1 x N") << 1 << 333;
    QTest::newRow("N x 1") << 333 << 1;
    for (const int width : {126, 127, 128, 129, 130, 255, 256, 257})
        QTest::addRow("%d wide", width) << width << 50;
}

void TestYDTileRunner::PicturesOfEverySizeAreProcessedWhole()
{
    QFETCH(int, width);
    QFETCH(int, height);
    YDAdjustmentJob job;
    job.image = TestPictures::Random(width, height, 1);
    CheckEveryPath(job);
}

void TestYDTileRunner::SelectionsLimitAndBlend_data()
{
    QTest::addColumn<QSize>("mask");
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("offset");
    const QSize fifty(50, 40);
    const QRect whole(0, 0, 50, 40);
    QTest::newRow("inside") << fifty << whole << QPoint(30, 20);
    QTest::newRow("at the origin") << fifty << whole << QPoint(0, 0);
    QTest::newRow("over the left edge") << fifty << whole << QPoint(-20, 10);
    QTest::newRow("over the top edge") << fifty << whole << QPoint(10, -15);
    QTest::newRow("over the corner") << fifty << whole << QPoint(-20, -15);
    QTest::newRow("over the right edge") << fifty << whole << QPoint(180, 10);
    QTest::newRow("over the bottom edge") << fifty << whole << QPoint(10, 140);
    QTest::newRow("outside to the left") << fifty << whole << QPoint(-60, 0);
    QTest::newRow("outside to the right") << fifty << whole << QPoint(200, 0);
    QTest::newRow("outside below") << fifty << whole << QPoint(0, 150);
    QTest::newRow("rectangle inside the mask") << QSize(100, 90) << QRect(10, 20, 50, 40) << QPoint(5, 5);
    QTest::newRow("rectangle inside, offset negative")
        << QSize(100, 90) << QRect(10, 20, 50, 40) << QPoint(-30, -25);
    QTest::newRow("rectangle larger than the mask") << QSize(20, 10) << whole << QPoint(30, 20);
    QTest::newRow("rectangle beside the mask") << QSize(20, 10) << QRect(40, 0, 10, 10) << QPoint(0, 0);
    QTest::newRow("rectangle with negative corner") << fifty << QRect(-10, -5, 50, 40) << QPoint(20, 20);
    QTest::newRow("mask larger than the picture")
        << QSize(300, 260) << QRect(0, 0, 300, 260) << QPoint(-40, -50);
    QTest::newRow("no mask at all") << QSize(0, 0) << whole << QPoint(10, 10);
    QTest::newRow("one pixel") << QSize(1, 1) << QRect(0, 0, 1, 1) << QPoint(199, 149);
    QTest::newRow("empty rectangle: no selection") << fifty << QRect() << QPoint(10, 10);
    QTest::newRow("negative size: no selection") << fifty << QRect(0, 0, -5, 10) << QPoint(10, 10);
    QTest::newRow("offset as far as it goes left") << fifty << whole << QPoint(Lowest, Lowest);
    QTest::newRow("offset as far as it goes right") << fifty << whole << QPoint(Highest, Highest);
    QTest::newRow("rectangle over everything")
        << fifty << QRect(QPoint(Lowest, Lowest), QPoint(Highest, Highest)) << QPoint(0, 0);
}

void TestYDTileRunner::SelectionsLimitAndBlend()
{
    QFETCH(QSize, mask);
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    YDAdjustmentJob job;
    job.image = TestPictures::Random(200, 150, 2);
    job.selection = RandomMask(mask.width(), mask.height(), 3);
    job.selectionBoundingRect = bounds;
    job.selectionOffset = offset;
    CheckEveryPath(job);
}

void TestYDTileRunner::RandomSelectionsFollowTheClippingRules()
{
    QRandomGenerator random(4);
    for (int round = 0; round < 200; ++round) {
        YDAdjustmentJob job;
        job.image = TestPictures::Random(random.bounded(1, 150), random.bounded(1, 60), random.generate());
        job.selection = RandomMask(random.bounded(0, 200), random.bounded(0, 80), random.generate());
        job.selectionBoundingRect = QRect(random.bounded(-20, 60), random.bounded(-20, 60),
                                          random.bounded(1, 150), random.bounded(1, 80));
        job.selectionOffset = QPoint(random.bounded(-120, 120), random.bounded(-120, 120));
        CheckEveryPath(job);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("round %1").arg(round)));
    }
}

void TestYDTileRunner::AbortedBeforeItBeginsNothingChanges_data()
{
    QTest::addColumn<QRect>("bounds");
    QTest::newRow("without a selection") << QRect();
    QTest::newRow("with a selection") << QRect(0, 0, 50, 40);
}

void TestYDTileRunner::AbortedBeforeItBeginsNothingChanges()
{
    QFETCH(QRect, bounds);
    const std::atomic<bool> abort{true};
    YDAdjustmentJob job;
    job.image = TestPictures::Random(200, 150, 5);
    job.selection = RandomMask(50, 40, 6);
    job.selectionBoundingRect = bounds;
    const RGBA32iImage before = job.image.DeepCopy();
    YDAdjustmentProcessingTemplate<Inversion<true>> vector(&abort, Inversion<true>());
    YDAdjustmentProcessingTemplate<Inversion<false>> pixels(&abort, Inversion<false>());
    QSignalSpy vectorProgress(&vector, &YDAdjustmentProcessing::ProgressChanged);
    QSignalSpy pixelsProgress(&pixels, &YDAdjustmentProcessing::ProgressChanged);
    vector.Run(job);
    pixels.Run(job);
    QVERIFY(TestPictures::AreEqual(job.image, before));
    QCOMPARE(vectorProgress.count(), 0);
    QCOMPARE(pixelsProgress.count(), 0);
}

namespace {

/// Asks for the run to stop once row 10 has begun.
template <bool Vector>
struct StopsItself : Inversion<Vector>
{
    std::atomic<bool>* abort = nullptr;
    std::atomic<int>* rows = nullptr;
    int width = 0;

    void ProcessPixel(qsizetype index) const
    {
        if (index % 256 == 0)
            CountRow();
        Inversion<Vector>::ProcessPixel(index);
    }
    void ProcessRow(YDRGBA32i* row, int count) const override
    {
        CountRow();
        Inversion<Vector>::ProcessRow(row, count);
    }
    void CountRow() const
    {
        if (++*rows == 10)
            *abort = true;
    }
};

template <bool Vector>
int RowsUntilStopped()
{
    std::atomic<bool> abort{false};
    std::atomic<int> rows{0};
    StopsItself<Vector> transformation;
    transformation.abort = &abort;
    transformation.rows = &rows;
    YDAdjustmentJob job;
    job.image = RGBA32iImage(256, 5000);
    YDAdjustmentProcessingTemplate<StopsItself<Vector>> processing(&abort, transformation);
    processing.Run(job);
    return rows;
}

} // namespace

void TestYDTileRunner::AbortStopsAtTheNextRow_data()
{
    QTest::addColumn<bool>("vector");
    QTest::newRow("vector path") << true;
    QTest::newRow("pixel path") << false;
}

void TestYDTileRunner::AbortStopsAtTheNextRow()
{
    QFETCH(bool, vector);
    const int rows = vector ? RowsUntilStopped<true>() : RowsUntilStopped<false>();
    QVERIFY(rows >= 10);
    // Every thread may be in the middle of a row of its own when the flag is set.
    QVERIFY2(rows <= 10 + int(std::thread::hardware_concurrency()), qPrintable(QString::number(rows)));
}

namespace {

struct NotesItsThread : Inversion<false>
{
    std::mutex* mutex = nullptr;
    QSet<QThread*>* threads = nullptr;

    void ProcessPixel(qsizetype index) const
    {
        if (index % 128 == 0) {
            const std::lock_guard<std::mutex> lock(*mutex);
            threads->insert(QThread::currentThread());
        }
        Inversion<false>::ProcessPixel(index);
    }
};

} // namespace

void TestYDTileRunner::Machines()
{
    QTest::addColumn<int>("cores");
    QTest::newRow("one core") << 1;
    QTest::newRow("two cores") << 2;
    QTest::newRow("four cores") << 4;
}

void TestYDTileRunner::PixelsGoToAllButOneOfTheCores_data() { Machines(); }

void TestYDTileRunner::PixelsGoToAllButOneOfTheCores()
{
    QFETCH(int, cores);
    std::mutex mutex;
    QSet<QThread*> threads;
    NotesItsThread transformation;
    transformation.mutex = &mutex;
    transformation.threads = &threads;
    YDAdjustmentJob job;
    job.image = RGBA32iImage(128, 3000);
    const RGBA32iImage before = job.image.DeepCopy();
    YDAdjustmentProcessingTemplate<NotesItsThread> processing(nullptr, transformation, cores);
    processing.Run(job);
    QVERIFY(threads.size() <= cores - 1);
    // With one core there is no worker, and the pixels stay as they are.
    QCOMPARE(TestPictures::AreEqual(job.image, before), cores == 1);
}

/// Many times: a pool thread that waits for work is slower to begin than the caller to come back.
void TestYDTileRunner::OnTwoCoresPixelsGoToOneTaskOfThePool()
{
    constexpr int Runs = 500;
    std::mutex mutex;
    YDAdjustmentJob job;
    job.image = RGBA32iImage(128, 5);
    for (int run = 0; run < Runs; ++run) {
        QSet<QThread*> threads;
        NotesItsThread transformation;
        transformation.mutex = &mutex;
        transformation.threads = &threads;
        AwaitIdlePool();
        YDAdjustmentProcessingTemplate<NotesItsThread> processing(nullptr, transformation, 2);
        processing.Run(job);
        QCOMPARE(threads.size(), 1);
        QVERIFY2(!threads.contains(QThread::currentThread()), qPrintable(QString::number(run)));
    }
}

void TestYDTileRunner::BlendingLeavesTheCallersThreadOnlyOnManyCores_data() { Machines(); }

void TestYDTileRunner::BlendingLeavesTheCallersThreadOnlyOnManyCores()
{
    QFETCH(int, cores);
    YDAdjustmentJob job;
    job.image = TestPictures::Random(128, 200, 7);
    job.selection = RandomMask(128, 200, 8);
    job.selectionBoundingRect = QRect(0, 0, 128, 200);
    // With one core no row is transformed by the pixel path.
    const RGBA32iImage expected = cores == 1 ? job.image.DeepCopy() : Expected(job);
    YDAdjustmentProcessingTemplate<Inversion<false>> processing(nullptr, Inversion<false>(), cores);
    const int transformed = cores == 1 ? 0 : 200;
    std::mutex mutex;
    QSet<QThread*> blending;
    connect(
        &processing, &YDAdjustmentProcessing::ProgressChanged, this,
        [&](int rows) {
            const std::lock_guard<std::mutex> lock(mutex);
            if (rows > transformed)
                blending.insert(QThread::currentThread());
        },
        Qt::DirectConnection);
    processing.Run(job);
    QVERIFY(TestPictures::AreEqual(job.image, expected));
    if (cores <= 2)
        QCOMPARE(blending, QSet<QThread*>{QThread::currentThread()});
    else
        QVERIFY(blending.size() <= cores - 1);
}

template <bool Vector>
void TestYDTileRunner::RunFromSource(YDAdjustmentJob job)
{
    const RGBA32iImage expected = Expected(job);
    const RGBA32iImage before = job.image.DeepCopy();
    job.source = job.image;
    job.image = TestPictures::Random(job.source.Width(), job.source.Height(), 99); // of no matter
    YDAdjustmentProcessingTemplate<Inversion<Vector>> processing(nullptr, Inversion<Vector>(), 2);
    QSignalSpy progress(&processing, &YDAdjustmentProcessing::ProgressChanged);
    QSignalSpy range(&processing, &YDAdjustmentProcessing::RangeChanged);
    QVERIFY(processing.Run(job).SharesPixelsWith(job.image));
    QVERIFY(TestPictures::AreEqual(job.image, expected));
    QVERIFY(TestPictures::AreEqual(job.source, before));
    const int rows = range.last().last().toInt();
    QCOMPARE(progress.isEmpty() ? 0 : progress.last().first().toInt(), rows);
}

void TestYDTileRunner::ASourceIsCopiedOnTheWay_data()
{
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("offset");
    QTest::newRow("the whole") << QRect() << QPoint();
    QTest::newRow("inside") << QRect(10, 20, 900, 30) << QPoint(50, 40);
    QTest::newRow("beyond the upper left") << QRect(0, 0, 1000, 120) << QPoint(-300, -30);
    QTest::newRow("beyond the lower right") << QRect(0, 0, 1000, 120) << QPoint(700, 100);
    QTest::newRow("beyond the mask") << QRect(500, 60, 2000, 300) << QPoint(3, 5);
    QTest::newRow("outside") << QRect(0, 0, 10, 10) << QPoint(2000, 2000);
}

void TestYDTileRunner::ASourceIsCopiedOnTheWay()
{
    QFETCH(QRect, bounds);
    QFETCH(QPoint, offset);
    YDAdjustmentJob job;
    job.selection = RandomMask(1000, 120, 8);
    for (int x = 0; x < 1000; ++x) { // rows of full and of no coverage
        job.selection.Row(30)[x] = YDRGBA32i(255, 255, 255, 255);
        job.selection.Row(31)[x] = YDRGBA32i(0, 0, 0, 0);
    }
    job.selectionBoundingRect = bounds;
    job.selectionOffset = offset;
    job.image = TestPictures::Random(1200, 150, 7);
    RunFromSource<true>(job);
    job.image = TestPictures::Random(1200, 150, 7);
    RunFromSource<false>(job);
}

/// What the selection covers takes 300 MB. It is adjusted and blended all the same, and counted once.
void TestYDTileRunner::WithoutRoomForACopyASelectionIsDoneInParts()
{
    constexpr int Width = 10000;
    constexpr int Height = 7500;
    YDAdjustmentJob job;
    job.image = RGBA32iImage(Width, Height);
    job.selection = RGBA32iImage(Width, Height);
    for (const int y : {0, Height / 2 - 1, Height / 2, Height - 1})
        std::fill_n(job.selection.Row(y), Width, YDRGBA32i(255, 255, 255, 255));
    job.selectionBoundingRect = QRect(0, 0, Width, Height);
    YDAdjustmentProcessingTemplate<Inversion<false>> processing(nullptr, Inversion<false>(), 2);
    QSignalSpy range(&processing, &YDAdjustmentProcessing::RangeChanged);
    QSignalSpy progress(&processing, &YDAdjustmentProcessing::ProgressChanged);
    {
        const MemoryLimit noRoomForACopy;
        QVERIFY(RGBA32iImage::Uninitialized(Width, Height).IsEmpty());
        processing.Run(job);
    }
    for (int y = 0; y < Height; ++y) {
        const bool isSelected = job.selection.Row(y)[0].a != 0;
        const YDRGBA32i expected = isSelected ? YDRGBA32i(255, 255, 255, 0) : YDRGBA32i(0, 0, 0, 0);
        QCOMPARE(job.image.Row(y)[0], expected);
        QCOMPARE(job.image.Row(y)[Width - 1], expected);
    }
    QCOMPARE(range, (QList<QVariantList>{{0, 2 * Height}}));
    QCOMPARE(progress.last(), QVariantList{2 * Height});
}

void TestYDTileRunner::WorkBoundByMemoryLeavesACoreFree()
{
    QFETCH(int, cores);
    std::mutex mutex;
    QList<QThread*> threads; // one entry a worker
    YDTileRunner::RunMemoryBoundTasks(cores, [&] {
        const std::lock_guard<std::mutex> lock(mutex);
        threads.append(QThread::currentThread());
    });
    QCOMPARE(threads.size(), cores <= 2 ? 1 : cores - 1);
    if (cores <= 2)
        QCOMPARE(threads.first(), QThread::currentThread());
}

namespace {

struct BrightnessContrastByPixels : YDIterativeBrightnessContrastTransformation
{
    using YDIterativeBrightnessContrastTransformation::YDIterativeBrightnessContrastTransformation;
    bool AllowsVectorProcessing() const override { return false; }
};

} // namespace

void TestYDTileRunner::BothPathsOfARealRuleAgree_data()
{
    QTest::addColumn<int>("brightness");
    QTest::addColumn<int>("contrast");
    QTest::newRow("neutral") << 0 << 0;
    QTest::newRow("moderate") << 30 << -10;
    QTest::newRow("extreme") << -127 << 127;
}

void TestYDTileRunner::BothPathsOfARealRuleAgree()
{
    QFETCH(int, brightness);
    QFETCH(int, contrast);
    YDAdjustmentJob vectorJob;
    vectorJob.image = TestPictures::Random(777, 99, 9);
    YDAdjustmentJob pixelJob;
    pixelJob.image = vectorJob.image.DeepCopy();
    const RGBA32iImage before = vectorJob.image.DeepCopy();
    using Rule = YDIterativeBrightnessContrastTransformation;
    YDAdjustmentProcessingTemplate<Rule>(nullptr, Rule(brightness, contrast)).Run(vectorJob);
    YDAdjustmentProcessingTemplate<BrightnessContrastByPixels>(
        nullptr, BrightnessContrastByPixels(brightness, contrast))
        .Run(pixelJob);
    QVERIFY(TestPictures::AreEqual(vectorJob.image, pixelJob.image));
    QCOMPARE(TestPictures::AreEqual(vectorJob.image, before), brightness == 0 && contrast == 0);
}

QTEST_MAIN(TestYDTileRunner)
#include "tst_YDTileRunner.moc"
