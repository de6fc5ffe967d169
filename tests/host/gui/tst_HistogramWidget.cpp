#include "TestPictures.h"
#include "gui/HistogramWidget.h"
#include "threads/PoolTasks.h"

#include <QHelpEvent>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <QToolTip>

#include <memory>

namespace {

using Holder = YDSharedImage<RGBA32iImage>;

/// 300 pixels: 200 of red 10, green 20, blue 30, and 100 of red 240, green 20, blue 60.
RGBA32iImage TwoColors()
{
    const RGBA32iImage picture(30, 10);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 30; ++x)
            picture.Row(y)[x] = x < 20 ? YDRGBA32i(30, 20, 10, 255) : YDRGBA32i(60, 20, 240, 255);
    return picture;
}

/// Keeps the tasks of the global pool from running while it lives; then lets them end, without their news.
class BlockedPool
{
public:
    BlockedPool()
    {
        for (int i = 0; i < m_threads; ++i)
            PoolTask<void>::Start([this] { m_go.acquire(); });
    }
    ~BlockedPool()
    {
        m_go.release(m_threads);
        QThreadPool::globalInstance()->waitForDone();
    }
    Q_DISABLE_COPY(BlockedPool)

private:
    const int m_threads = QThreadPool::globalInstance()->maxThreadCount();
    QSemaphore m_go;
};

void WaitForCounts(HistogramWidget& widget)
{
    QSignalSpy complete(&widget, &HistogramWidget::HistogrammComplete);
    QVERIFY(complete.wait());
}

void CompareRange(const HistogramWidget& widget, int channel, int low, int high)
{
    int actualLow = -1;
    int actualHigh = -1;
    widget.GetRange(channel, &actualLow, &actualHigh);
    QCOMPARE(actualLow, low);
    QCOMPARE(actualHigh, high);
}

QPalette PaletteOn(const QColor& base)
{
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    return palette;
}

/// The widget as it is on the screen, one image pixel to the screen's.
QImage Shown(HistogramWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

void AskForToolTip(HistogramWidget& widget, int x)
{
    const QPoint position(x, 50);
    QHelpEvent event(QEvent::ToolTip, position, widget.mapToGlobal(position));
    QCoreApplication::sendEvent(&widget, &event);
}

void MoveMouse(HistogramWidget& widget, int x)
{
    const QPoint position(x, 50);
    QMouseEvent event(QEvent::MouseMove, position, widget.mapToGlobal(position), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

/// Rows from the bottom up that are not the background, in the column of the middle of `level`.
int HeightAt(const QImage& image, int level, QRgb background)
{
    const int x = int((level + 0.5) * image.width() / 256);
    int height = 0;
    while (height < image.height() && image.pixel(x, image.height() - 1 - height) != background)
        ++height;
    return height;
}

} // namespace

class TestHistogramWidget : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void HasNothingToShowAtFirst();
    void CountsAPicture();
    void CountsAnImage();
    void CountsInTheBackground();
    void AnswersForWhatIsNoChannelOrLevel();
    void CountsWhatWasChangedAtOnce();
    void CountsAgainWhenTold();
    void ForgetsThePictureForNull();
    void ForgetsThePictureForAnEmptyOne();
    void KeepsTheCountsUntilTheNewOnesAreThere();
    void ShowsOnlyTheNewestOfManyPictures();
    void IsDestroyedWhileItCounts();
    void DrawsTheChannelsOfItsMask_data();
    void DrawsTheChannelsOfItsMask();
    void MixesTheColorsOfAllChannels_data();
    void MixesTheColorsOfAllChannels();
    void HeightsAreInProportionToTheCounts();
    void ClippedTonesDoNotFlattenTheOthers();
    void AFewSpikesDoNotFlattenTheOthers();
    void AClickChangesTheScale();
    void OtherButtonsChangeNothing();
    void TheTooltipTellsLevelAndCounts_data();
    void TheTooltipTellsLevelAndCounts();
    void TheTooltipFollowsTheMouse();
    void WithoutAPictureThereIsNoTooltip();
    void DrawsAsManyPixelsAsTheScreenHas();
    void ShowsThePlotPixelByPixel();
    void FollowsThePalette();
    void IsPaleWhenDisabled();
    void CanBeSmallerThanItsLevels();
    void TellsAssistiveTechnologyWhatItIs();
};

void TestHistogramWidget::HasNothingToShowAtFirst()
{
    HistogramWidget widget;
    QCOMPARE(widget.GetPixelsCount(), qint64(0));
    for (int channel = 0; channel < 4; ++channel)
        CompareRange(widget, channel, 255, 0);
    QCOMPARE(widget.GetChannel(), 7);
    QCOMPARE(widget.GetScale(), HistogramWidget::Scale::Linear);
    widget.setPalette(PaletteOn(Qt::white));
    QCOMPARE(Shown(widget).pixel(100, widget.height() - 1), qRgb(255, 255, 255));
}

void TestHistogramWidget::CountsAPicture()
{
    HistogramWidget widget;
    const Holder holder(TwoColors());
    widget.SetImage(&holder);
    WaitForCounts(widget);
    QCOMPARE(widget.GetPixelsCount(), qint64(300));
    QCOMPARE(widget.GetCount(0, 10), qint64(200));
    QCOMPARE(widget.GetCount(0, 240), qint64(100));
    QCOMPARE(widget.GetCount(1, 20), qint64(300));
    QCOMPARE(widget.GetCount(2, 30), qint64(200));
    QCOMPARE(widget.GetCount(2, 60), qint64(100));
    QCOMPARE(widget.GetCount(3, 19), qint64(200)); // luma 2.126 + 14.304 + 2.166 = 18.6
    QCOMPARE(widget.GetCount(3, 70), qint64(100)); // luma 51.024 + 14.304 + 4.332 = 69.7
    CompareRange(widget, 0, 10, 240);
    CompareRange(widget, 1, 20, 20);
    CompareRange(widget, 2, 30, 60);
    CompareRange(widget, 3, 19, 70);
}

void TestHistogramWidget::CountsAnImage()
{
    HistogramWidget widget;
    const YDSharedImage<QImage> holder(ImageToQImage(TwoColors()).convertToFormat(QImage::Format_RGB888));
    widget.SetImage(&holder);
    WaitForCounts(widget);
    QCOMPARE(widget.GetPixelsCount(), qint64(300));
    QCOMPARE(widget.GetCount(0, 240), qint64(100));
}

void TestHistogramWidget::CountsInTheBackground()
{
    HistogramWidget widget;
    const QSignalSpy complete(&widget, &HistogramWidget::HistogrammComplete);
    const Holder holder(TwoColors());
    {
        const BlockedPool blocked;
        widget.SetImage(&holder);
        QCoreApplication::processEvents(); // comes back
        QCOMPARE(complete.count(), 0);
        QCOMPARE(widget.GetPixelsCount(), qint64(0));
    }
    QTRY_COMPARE(complete.count(), 1);
    QCOMPARE(widget.GetPixelsCount(), qint64(300));
}

void TestHistogramWidget::AnswersForWhatIsNoChannelOrLevel()
{
    HistogramWidget widget;
    const Holder holder(TestPictures::Grey(5, 5, 0));
    widget.SetImage(&holder);
    WaitForCounts(widget);
    constexpr int Most = std::numeric_limits<int>::max();
    constexpr int Least = std::numeric_limits<int>::min();
    for (const int channel : {Least, -1, 4, 7, Most}) {
        QCOMPARE(widget.GetCount(channel, 0), qint64(0));
        CompareRange(widget, channel, 255, 0);
    }
    for (const int bin : {Least, -1, 256, Most})
        QCOMPARE(widget.GetCount(0, bin), qint64(0));
    for (const int mask : {Least, -1, 8, Most}) {
        widget.SetChannel(mask);
        QCOMPARE(widget.GetChannel(), mask & 7);
        Shown(widget);
    }
}

void TestHistogramWidget::CountsWhatWasChangedAtOnce()
{
    HistogramWidget widget;
    const RGBA32iImage picture = TestPictures::Grey(5, 5, 100);
    const Holder holder(picture);
    widget.SetImage(&holder);
    std::fill_n(picture.Row(0), 5, YDRGBA32i(200, 200, 200, 255));
    WaitForCounts(widget);
    QCOMPARE(widget.GetCount(0, 200), qint64(5));
}

void TestHistogramWidget::CountsAgainWhenTold()
{
    HistogramWidget widget;
    Holder holder(TestPictures::Grey(5, 5, 100));
    widget.SetImage(&holder);
    WaitForCounts(widget);
    holder.SetImage(TestPictures::Grey(5, 5, 200));
    QCOMPARE(widget.GetCount(0, 200), qint64(0));
    widget.RebuildHistogramm();
    WaitForCounts(widget);
    QCOMPARE(widget.GetCount(0, 100), qint64(0));
    QCOMPARE(widget.GetCount(0, 200), qint64(25));
}

void TestHistogramWidget::ForgetsThePictureForNull()
{
    HistogramWidget widget;
    widget.RebuildHistogramm();
    QCOMPARE(widget.GetPixelsCount(), qint64(0));
    {
        const Holder holder(TestPictures::Grey(5, 5, 100));
        widget.SetImage(&holder);
        WaitForCounts(widget);
        const BlockedPool blocked;
        widget.RebuildHistogramm();
        QCoreApplication::processEvents(); // it is being counted when it is forgotten
        widget.SetImage(static_cast<const Holder*>(nullptr));
    }
    QCOMPARE(widget.GetPixelsCount(), qint64(0));
    const QSignalSpy complete(&widget, &HistogramWidget::HistogrammComplete);
    widget.RebuildHistogramm(); // the holder is gone
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(complete.count(), 0);
    QCOMPARE(widget.GetPixelsCount(), qint64(0));
}

void TestHistogramWidget::ForgetsThePictureForAnEmptyOne()
{
    HistogramWidget widget;
    Holder holder(TestPictures::Grey(5, 5, 100));
    widget.SetImage(&holder);
    WaitForCounts(widget);
    holder.SetImage(RGBA32iImage());
    widget.SetImage(&holder);
    QCOMPARE(widget.GetPixelsCount(), qint64(0));
    CompareRange(widget, 0, 255, 0);
    const YDSharedImage<QImage> none;
    widget.SetImage(&none);
    QCOMPARE(widget.GetPixelsCount(), qint64(0));
}

void TestHistogramWidget::KeepsTheCountsUntilTheNewOnesAreThere()
{
    HistogramWidget widget;
    const Holder first(TestPictures::Grey(5, 5, 100));
    const Holder second(TestPictures::Grey(5, 5, 200));
    widget.SetImage(&first);
    WaitForCounts(widget);
    widget.SetImage(&second);
    QCOMPARE(widget.GetCount(0, 100), qint64(25));
    WaitForCounts(widget);
    QCOMPARE(widget.GetCount(0, 100), qint64(0));
    QCOMPARE(widget.GetCount(0, 200), qint64(25));
}

void TestHistogramWidget::ShowsOnlyTheNewestOfManyPictures()
{
    HistogramWidget widget;
    const QSignalSpy complete(&widget, &HistogramWidget::HistogrammComplete);
    Holder holder;
    for (int level = 0; level < 100; ++level) {
        const BlockedPool blocked; // each is counted to its end, but the next one comes before its news
        holder.SetImage(TestPictures::Grey(400, 300, level));
        widget.SetImage(&holder);
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(complete.count(), 1);
    QCOMPARE(widget.GetCount(0, 99), qint64(120000));
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(complete.count(), 1);
    CompareRange(widget, 0, 99, 99);
}

void TestHistogramWidget::IsDestroyedWhileItCounts()
{
    const Holder holder(TestPictures::Noise(2000, 1000));
    for (int i = 0; i < 20; ++i) {
        auto widget = std::make_unique<HistogramWidget>();
        widget->SetImage(&holder);
        QCoreApplication::processEvents(); // begins the count
        if (i % 2 == 0)
            widget->RebuildHistogramm();
    }
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

void TestHistogramWidget::DrawsTheChannelsOfItsMask_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QVector<int>>("levels"); // of TwoColors()
    QTest::newRow("red") << 1 << QVector<int>{10, 240};
    QTest::newRow("green") << 2 << QVector<int>{20};
    QTest::newRow("blue") << 4 << QVector<int>{30, 60};
    QTest::newRow("all") << 7 << QVector<int>{10, 20, 30, 60, 240};
    QTest::newRow("luma") << 0 << QVector<int>{19, 70};
}

void TestHistogramWidget::DrawsTheChannelsOfItsMask()
{
    QFETCH(int, mask);
    QFETCH(QVector<int>, levels);
    for (const QColor& ground : {QColor(Qt::white), QColor(Qt::black)}) {
        HistogramWidget widget;
        widget.resize(1024, 100); // four columns a level, so that neighbours do not touch
        widget.setPalette(PaletteOn(ground));
        const Holder holder(TwoColors());
        widget.SetImage(&holder);
        WaitForCounts(widget);
        widget.SetChannel(mask);
        const QImage image = Shown(widget);
        for (const int level : {10, 19, 20, 30, 60, 70, 120, 240}) {
            const bool isDrawn = HeightAt(image, level, ground.rgb()) > 20;
            // The slopes of level 20 end at the middle of level 19.
            if (level != 19 || mask == 0)
                QCOMPARE(isDrawn, levels.contains(level));
        }
    }
}

void TestHistogramWidget::MixesTheColorsOfAllChannels_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::newRow("dark") << QColor(Qt::black);
    QTest::newRow("light") << QColor(Qt::white);
}

/// Where all three channels are there, no colour stands out much; each channel alone is its own colour.
void TestHistogramWidget::MixesTheColorsOfAllChannels()
{
    QFETCH(QColor, ground);
    HistogramWidget widget;
    widget.resize(256, 100);
    widget.setPalette(PaletteOn(ground));
    const Holder holder(TestPictures::Grey(10, 10, 128));
    widget.SetImage(&holder);
    WaitForCounts(widget);
    const auto colorOf = [&](int mask) {
        widget.SetChannel(mask);
        return QColor(Shown(widget).pixel(128, 80));
    };
    const QColor all = colorOf(7);
    const auto channels = {all.red(), all.green(), all.blue()};
    QVERIFY(std::max(channels) - std::min(channels) < 40);
    QVERIFY(qAbs(all.lightness() - ground.lightness()) > 80);
    const QColor red = colorOf(1);
    QVERIFY(red.red() > red.green() + 60 && red.red() > red.blue() + 60);
    const QColor green = colorOf(2);
    QVERIFY(green.green() > green.red() + 60 && green.green() > green.blue() + 60);
    const QColor blue = colorOf(4);
    QVERIFY(blue.blue() > blue.red() + 60 && blue.blue() > blue.green() + 60);
    const QColor grey = colorOf(0);
    QVERIFY(grey.red() == grey.green() && grey.green() == grey.blue() && grey != ground);
}

void TestHistogramWidget::HeightsAreInProportionToTheCounts()
{
    HistogramWidget widget;
    widget.resize(1024, 208); // 200 for the tallest level, 4 % headroom
    widget.setPalette(PaletteOn(Qt::black));
    widget.SetChannel(1);
    const Holder holder(TwoColors());
    widget.SetImage(&holder);
    WaitForCounts(widget);
    const QImage image = Shown(widget);
    QVERIFY(qAbs(HeightAt(image, 10, qRgb(0, 0, 0)) - 200) <= 4);
    QVERIFY(qAbs(HeightAt(image, 240, qRgb(0, 0, 0)) - 100) <= 4);
    widget.SetScale(HistogramWidget::Scale::Logarithmic);
    const QImage logarithmic = Shown(widget);
    QVERIFY(qAbs(HeightAt(logarithmic, 10, qRgb(0, 0, 0)) - 200) <= 4);
    QVERIFY(qAbs(HeightAt(logarithmic, 240, qRgb(0, 0, 0)) - 174) <= 4); // log(101) / log(201) = 0.870
}

void TestHistogramWidget::ClippedTonesDoNotFlattenTheOthers()
{
    const RGBA32iImage picture = TestPictures::Grey(100, 10, 0);
    for (int x = 0; x < 10; ++x)
        picture.Row(0)[x] = qRgb(100, 100, 100);
    HistogramWidget widget;
    widget.resize(1024, 104);
    widget.setPalette(PaletteOn(Qt::black));
    const Holder holder(picture);
    widget.SetImage(&holder);
    WaitForCounts(widget);
    const QImage image = Shown(widget);
    QVERIFY(qAbs(HeightAt(image, 100, qRgb(0, 0, 0)) - 100) <= 4);
    QCOMPARE(HeightAt(image, 0, qRgb(0, 0, 0)), 104);
    // With nothing else there, the ends themselves are the measure.
    const Holder ends(TestPictures::Grey(10, 10, 255));
    widget.SetImage(&ends);
    WaitForCounts(widget);
    QVERIFY(qAbs(HeightAt(Shown(widget), 255, qRgb(0, 0, 0)) - 100) <= 4);
}

void TestHistogramWidget::AFewSpikesDoNotFlattenTheOthers()
{
    ChannelHistograms counts;
    std::fill_n(counts.luma.begin() + 50, 100, 1000);
    counts.luma[200] = 1400;
    counts.luma[220] = 1000000;
    HistogramPlot plot;
    plot.channels = 0;
    const QRgb black = qRgb(0, 0, 0);
    const QImage image = plot.Draw(counts, QSizeF(1024, 156), 1.0, PaletteOn(Qt::black));
    QVERIFY(qAbs(HeightAt(image, 100, black) - 100) <= 3); // of 150 that 1500 would reach
    QVERIFY(qAbs(HeightAt(image, 200, black) - 140) <= 3);
    QCOMPARE(HeightAt(image, 220, black), 156);
    counts.luma[220] = 1200; // nothing that stands out
    const QImage gentle = plot.Draw(counts, QSizeF(1024, 156), 1.0, PaletteOn(Qt::black));
    QVERIFY(qAbs(HeightAt(gentle, 200, black) - 150) <= 3);
    plot.scale = HistogramPlot::Scale::Logarithmic;
    counts.luma[220] = 1000000;
    const QImage logarithmic = plot.Draw(counts, QSizeF(1024, 156), 1.0, PaletteOn(Qt::black));
    QVERIFY(qAbs(HeightAt(logarithmic, 220, black) - 150) <= 3);
    QVERIFY(qAbs(HeightAt(logarithmic, 100, black) - 75) <= 3); // half as many digits
}

void TestHistogramWidget::AClickChangesTheScale()
{
    HistogramWidget widget;
    QTest::mouseClick(&widget, Qt::LeftButton);
    QCOMPARE(widget.GetScale(), HistogramWidget::Scale::Logarithmic);
    QTest::mouseClick(&widget, Qt::LeftButton);
    QCOMPARE(widget.GetScale(), HistogramWidget::Scale::Linear);
}

void TestHistogramWidget::OtherButtonsChangeNothing()
{
    HistogramWidget widget;
    widget.resize(100, 50);
    QTest::mouseClick(&widget, Qt::RightButton);
    QCOMPARE(widget.GetScale(), HistogramWidget::Scale::Linear);
    QTest::mousePress(&widget, Qt::LeftButton);
    QTest::mouseRelease(&widget, Qt::LeftButton, Qt::NoModifier, QPoint(150, 20)); // thought better of it
    QCOMPARE(widget.GetScale(), HistogramWidget::Scale::Linear);
}

void TestHistogramWidget::TheTooltipTellsLevelAndCounts_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("x"); // of 512
    QTest::addColumn<QString>("text");
    QTest::newRow("all") << 7 << 40 << "Level 20\nRed: 0\nGreen: 300\nBlue: 0";
    QTest::newRow("red") << 1 << 21 << "Level 10\nRed: 200";
    QTest::newRow("green") << 2 << 41 << "Level 20\nGreen: 300";
    QTest::newRow("blue") << 4 << 60 << "Level 30\nBlue: 200";
    QTest::newRow("luma") << 0 << 38 << "Level 19\nLuma: 200";
    QTest::newRow("left border") << 1 << 0 << "Level 0\nRed: 0";
    QTest::newRow("right border") << 1 << 511 << "Level 255\nRed: 0";
}

void TestHistogramWidget::TheTooltipTellsLevelAndCounts()
{
    QFETCH(int, mask);
    QFETCH(int, x);
    QFETCH(QString, text);
    HistogramWidget widget;
    widget.resize(512, 100);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    const Holder holder(TwoColors());
    widget.SetImage(&holder);
    WaitForCounts(widget);
    widget.SetChannel(mask);
    AskForToolTip(widget, x);
    QCOMPARE(QToolTip::text(), text);
    QToolTip::hideText();
}

void TestHistogramWidget::TheTooltipFollowsTheMouse()
{
    HistogramWidget widget;
    widget.resize(512, 100);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    const Holder holder(TwoColors());
    widget.SetImage(&holder);
    WaitForCounts(widget);
    widget.SetChannel(2);
    QTRY_VERIFY(!QToolTip::isVisible());
    MoveMouse(widget, 80);
    QVERIFY(!QToolTip::isVisible()); // it does not come by itself
    AskForToolTip(widget, 80);
    QCOMPARE(QToolTip::text(), QStringLiteral("Level 40\nGreen: 0"));
    MoveMouse(widget, 41);
    QCOMPARE(QToolTip::text(), QStringLiteral("Level 20\nGreen: 300"));
    QToolTip::hideText();
}

void TestHistogramWidget::WithoutAPictureThereIsNoTooltip()
{
    QToolTip::hideText();
    QTRY_VERIFY(!QToolTip::isVisible());
    HistogramWidget widget;
    widget.resize(512, 100);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    AskForToolTip(widget, 80);
    QVERIFY(!QToolTip::isVisible());
}

void TestHistogramWidget::DrawsAsManyPixelsAsTheScreenHas()
{
    ChannelHistograms counts;
    counts.red[128] = 1;
    counts.pixels = 1;
    HistogramPlot plot;
    plot.channels = HistogramPlot::Red;
    const QImage image = plot.Draw(counts, QSizeF(256, 100), 2.0, PaletteOn(Qt::black));
    QCOMPARE(image.size(), QSize(512, 200));
    QCOMPARE(image.devicePixelRatio(), 2.0);
    // Level 128 takes the two columns 256 and 257; its slopes reach a level to either side.
    QVERIFY(image.pixel(256, 195) != qRgb(0, 0, 0));
    QVERIFY(image.pixel(257, 195) != qRgb(0, 0, 0));
    QCOMPARE(image.pixel(250, 195), qRgb(0, 0, 0));
    QCOMPARE(image.pixel(264, 195), qRgb(0, 0, 0));
    QVERIFY(plot.Draw(counts, QSizeF(0, 100), 2.0, QPalette()).isNull());
}

/// At every scale of the screen; this runs at 2x too.
void TestHistogramWidget::ShowsThePlotPixelByPixel()
{
    HistogramWidget widget;
    widget.resize(301, 77);
    const RGBA32iImage picture = TestPictures::Noise(50, 50);
    const Holder holder(picture);
    widget.SetImage(&holder);
    WaitForCounts(widget);
    const QImage shown = Shown(widget);
    const double pixelRatio = widget.devicePixelRatioF();
    QCOMPARE(shown.size(), widget.size() * pixelRatio);
    const auto counts = ChannelHistograms::Of(picture, QRect(0, 0, 50, 50));
    QCOMPARE(shown, HistogramPlot().Draw(*counts, widget.size(), pixelRatio, widget.palette()));
}

void TestHistogramWidget::FollowsThePalette()
{
    HistogramWidget widget;
    widget.resize(256, 100);
    widget.setPalette(PaletteOn(Qt::white));
    QCOMPARE(Shown(widget).pixel(100, 50), qRgb(255, 255, 255));
    widget.setPalette(PaletteOn(Qt::black));
    QCOMPARE(Shown(widget).pixel(100, 50), qRgb(0, 0, 0));
}

void TestHistogramWidget::IsPaleWhenDisabled()
{
    HistogramWidget widget;
    widget.resize(256, 100);
    QPalette palette = PaletteOn(Qt::black);
    palette.setColor(QPalette::Disabled, QPalette::Base, Qt::black);
    widget.setPalette(palette);
    const Holder holder(TestPictures::Grey(10, 10, 128));
    widget.SetImage(&holder);
    WaitForCounts(widget);
    const QColor enabled = Shown(widget).pixel(128, 90);
    widget.setEnabled(false);
    const QColor disabled = Shown(widget).pixel(128, 90);
    QVERIFY(disabled.lightness() > 0);
    QVERIFY(disabled.lightness() < enabled.lightness());
}

void TestHistogramWidget::CanBeSmallerThanItsLevels()
{
    HistogramWidget widget;
    QVERIFY(widget.minimumSizeHint().width() <= widget.sizeHint().width());
    QVERIFY(widget.minimumSizeHint().height() <= widget.sizeHint().height());
    const Holder holder(TestPictures::Noise(50, 50));
    widget.SetImage(&holder);
    WaitForCounts(widget);
    for (const QSize& size : {QSize(1, 1), QSize(3, 1), QSize(100, 30)}) {
        widget.resize(size);
        QCOMPARE(Shown(widget).size(), size);
    }
}

void TestHistogramWidget::TellsAssistiveTechnologyWhatItIs()
{
    HistogramWidget widget;
    QCOMPARE(widget.accessibleName(), QStringLiteral("Histogram"));
    const QString linear = widget.accessibleDescription();
    QVERIFY(!linear.isEmpty());
    widget.SetScale(HistogramWidget::Scale::Logarithmic);
    QVERIFY(widget.accessibleDescription() != linear);
}

QTEST_MAIN(TestHistogramWidget)
#include "tst_HistogramWidget.moc"
