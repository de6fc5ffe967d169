#include "TestPictures.h"
#include "YDThresholdCache.h"

#include <QTest>

namespace {

using Thresholds = YDThresholdCache::Thresholds;

/// A picture whose red has a hundred levels from `first` on, and green and blue as many from further up, each
/// level of one per cent of the pixels.
RGBA32iImage Ramp(int first)
{
    const RGBA32iImage picture(100, 10);
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x)
            picture.Row(y)[x] =
                YDRGBA32i(quint8(first + 20 + x), quint8(first + 10 + x), quint8(first + x), 255);
    return picture;
}

QList<int> Numbers(const std::optional<Thresholds>& thresholds)
{
    QList<int> numbers;
    if (thresholds)
        for (const LevelRange& range : *thresholds)
            numbers << range.low << range.high;
    return numbers;
}

/// What a cache of its own finds.
QList<int> NumbersOf(const RGBA32iImage& picture) { return Numbers(YDThresholdCache().Of(picture, nullptr)); }

} // namespace

class TestYDThresholdCache : public QObject
{
    Q_OBJECT

private slots:
    void CountsRedGreenBlueAndLuma();
    void RemembersWhatWasCountedFirst();
    void AnAbortedCountIsNotRemembered();
    void WhatIsRememberedIsToldToAnAbortedJobToo();
};

void TestYDThresholdCache::CountsRedGreenBlueAndLuma()
{
    const QList<int> numbers = NumbersOf(Ramp(30));
    QCOMPARE(numbers.mid(0, 6), QList<int>({30, 129, 40, 139, 50, 149}));
    QCOMPARE(numbers.size(), 8);
    QVERIFY(numbers[6] > 30 && numbers[7] < 149); // luma lies between the channels
    QVERIFY(numbers[6] < numbers[7]);
}

void TestYDThresholdCache::RemembersWhatWasCountedFirst()
{
    const RGBA32iImage first = Ramp(30);
    const RGBA32iImage second = Ramp(100);
    YDThresholdCache cache;
    QCOMPARE(Numbers(cache.Of(first, nullptr)), NumbersOf(first));
    QCOMPARE(Numbers(cache.Of(second, nullptr)), NumbersOf(first));
    QVERIFY(NumbersOf(second) != NumbersOf(first));
}

void TestYDThresholdCache::AnAbortedCountIsNotRemembered()
{
    const RGBA32iImage first = Ramp(30);
    const RGBA32iImage second = Ramp(100);
    YDThresholdCache cache;
    std::atomic<bool> abort{true};
    QVERIFY(!cache.Of(first, &abort));
    abort = false;
    QCOMPARE(Numbers(cache.Of(second, &abort)), NumbersOf(second));
    QCOMPARE(Numbers(cache.Of(first, &abort)), NumbersOf(second));
}

void TestYDThresholdCache::WhatIsRememberedIsToldToAnAbortedJobToo()
{
    const RGBA32iImage picture = Ramp(30);
    YDThresholdCache cache;
    QVERIFY(cache.Of(picture, nullptr));
    const std::atomic<bool> abort{true};
    QCOMPARE(Numbers(cache.Of(picture, &abort)), NumbersOf(picture));
}

QTEST_APPLESS_MAIN(TestYDThresholdCache)
#include "tst_YDThresholdCache.moc"
