#include "TestPictures.h"
#include "image/YDBlend.h"
#include "overlay/DrawText.h"
#include "overlay/OverlayCanvas.h"
#include "overlay/OverlayFont.h"
#include "overlay/TextOverlay.h"
#include "threads/PoolTasks.h"

#include <QFontMetricsF>
#include <QTest>

#include <atomic>
#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();

using TestPictures::AreEqual;
using TestPictures::Grey;
using TestPictures::Random;

QRect Margins(int left, int top, int right, int bottom) { return {QPoint(left, top), QPoint(right, bottom)}; }

TextOverlay Overlay(const QString& text, int pixels = 40)
{
    TextOverlay overlay;
    overlay.text = text;
    overlay.color = Qt::white;
    overlay.font = QFont(QStringLiteral("DejaVu Sans"));
    overlay.font.setPixelSize(pixels);
    overlay.margins = Margins(0, 0, 0, 0);
    return overlay;
}

/// Drawn on black: the green channel is the coverage.
RGBA32iImage Drawn(const TextOverlay& overlay, const QSize& size)
{
    const RGBA32iImage picture = Grey(size.width(), size.height(), 0);
    const QString error = DrawText(overlay, OverlayCanvas(picture, {}, {}, {}));
    return error.isEmpty() ? picture : RGBA32iImage();
}

/// The rectangle around all ink in `area`.
QRect Ink(const RGBA32iImage& picture, const QRect& area)
{
    QRect ink;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (picture.Row(y)[x].g > 0)
                ink |= QRect(x, y, 1, 1);
    return ink;
}

QRect Ink(const RGBA32iImage& picture)
{
    return Ink(picture, QRect(0, 0, picture.Width(), picture.Height()));
}

/// The most by which the pictures differ in a pixel; 256 where their sizes do.
int Difference(const RGBA32iImage& a, const RGBA32iImage& b)
{
    if (a.Width() != b.Width() || a.Height() != b.Height())
        return 256;
    int most = 0;
    for (int y = 0; y < a.Height(); ++y)
        for (int x = 0; x < a.Width(); ++x)
            most = qMax(most, qAbs(a.Row(y)[x].g - b.Row(y)[x].g));
    return most;
}

RGBA32iImage Turned(const RGBA32iImage& picture, int degrees)
{
    return ImageFromQImage(ImageToQImage(picture).transformed(QTransform().rotate(degrees)));
}

} // namespace

Q_DECLARE_METATYPE(TextOverlay)

class TestDrawText : public QObject
{
    Q_OBJECT

private slots:
    void StandsInTheMiddleOfWhatTheMarginsLeave_data();
    void StandsInTheMiddleOfWhatTheMarginsLeave();
    void EveryCellShowsTheSameText_data();
    void EveryCellShowsTheSameText();
    void TurnsClockwiseAboutTheMiddle_data();
    void TurnsClockwiseAboutTheMiddle();
    void TurnsByAnyAngle_data();
    void TurnsByAnyAngle();
    void IsAntialiased();
    void ColourAndOpacityCount_data();
    void ColourAndOpacityCount();
    void TextsThatMeetAreDrawnOnce();
    void NothingReachesIntoTheMargins();
    void PointsAreFourThirdsOfAPixelOfThePicture();
    void LinesStandOneBelowTheOther();
    void LinesAreCentred();
    void WritesFromRightToLeft();
    void DecoratesTheLetters_data();
    void DecoratesTheLetters();
    void TransparentPicturesBecomeAsOpaqueAsTheText();
    void IsBlendedThroughTheSelection();
    void AWhiteMaskShowsTheSameText();
    void WhatDrawsNothingLeavesThePicture_data();
    void WhatDrawsNothingLeavesThePicture();
    void OddValuesAreHarmless_data();
    void OddValuesAreHarmless();
    void LargeTextsAreDrawnInPieces();
    void SeveralThreadsDrawTheSame();
};

void TestDrawText::StandsInTheMiddleOfWhatTheMarginsLeave_data()
{
    QTest::addColumn<QRect>("margins");
    QTest::addColumn<QPoint>("middle"); // of 200 x 100
    QTest::newRow("none") << Margins(0, 0, 0, 0) << QPoint(100, 50);
    QTest::newRow("left and top") << Margins(60, 20, 0, 0) << QPoint(130, 60);
    QTest::newRow("right and bottom") << Margins(0, 0, 60, 20) << QPoint(70, 40);
    QTest::newRow("all") << Margins(10, 20, 30, 10) << QPoint(90, 55);
}

void TestDrawText::StandsInTheMiddleOfWhatTheMarginsLeave()
{
    QFETCH(QRect, margins);
    QFETCH(QPoint, middle);
    TextOverlay overlay = Overlay(QStringLiteral("H")); // as symmetric as letters are
    overlay.margins = margins;
    const QRect ink = Ink(Drawn(overlay, QSize(200, 100)));
    QVERIFY(!ink.isEmpty());
    QVERIFY(qAbs(ink.left() + ink.right() + 1 - 2 * middle.x()) <= 2);
    // The baseline is below the middle by half of what the ascent exceeds the descent.
    const QFontMetricsF metrics(OverlayFont::Typeface(overlay.font, 40));
    const double baseline = middle.y() + (metrics.ascent() - metrics.descent()) / 2;
    QVERIFY(qAbs(ink.bottom() + 1 - baseline) <= 1.0);
    QVERIFY(qAbs(ink.height() - metrics.capHeight()) <= 2.0);
}

void TestDrawText::EveryCellShowsTheSameText_data()
{
    QTest::addColumn<int>("across");
    QTest::addColumn<int>("down");
    QTest::addColumn<int>("angle");
    QTest::newRow("1 x 1") << 1 << 1 << 0;
    QTest::newRow("3 x 2") << 3 << 2 << 0;
    QTest::newRow("9 x 9, turned") << 9 << 9 << 30;
    QTest::newRow("2 x 5, turned") << 2 << 5 << -120;
}

void TestDrawText::EveryCellShowsTheSameText()
{
    QFETCH(int, across);
    QFETCH(int, down);
    QFETCH(int, angle);
    constexpr int CellWidth = 90;
    constexpr int CellHeight = 80;
    TextOverlay overlay = Overlay(QStringLiteral("Rg"), 30);
    overlay.angle = angle;
    const RGBA32iImage cell = Drawn(overlay, QSize(CellWidth, CellHeight));
    QVERIFY(!Ink(cell).isEmpty());
    overlay.hrzTiles = across;
    overlay.vrtTiles = down;
    overlay.margins = Margins(3, 4, 5, 6);
    const RGBA32iImage picture = Drawn(overlay, QSize(CellWidth * across + 8, CellHeight * down + 10));
    for (int y = 0; y < CellHeight * down; ++y)
        for (int x = 0; x < CellWidth * across; ++x)
            QCOMPARE(QRgb(picture.Row(y + 4)[x + 3]), QRgb(cell.Row(y % CellHeight)[x % CellWidth]));
}

void TestDrawText::TurnsClockwiseAboutTheMiddle_data()
{
    QTest::addColumn<int>("angle");
    QTest::newRow("90") << 90;
    QTest::newRow("180") << 180;
    QTest::newRow("-90") << -90;
}

void TestDrawText::TurnsClockwiseAboutTheMiddle()
{
    QFETCH(int, angle);
    TextOverlay overlay = Overlay(QStringLiteral("Lo"), 50);
    const RGBA32iImage upright = Drawn(overlay, QSize(120, 120));
    overlay.angle = angle;
    const RGBA32iImage turned = Drawn(overlay, QSize(120, 120));
    QVERIFY(Difference(upright, turned) > 200);
    constexpr int Rounding = 4; // of outlines at 1/64 of a pixel
    QVERIFY(Difference(Turned(upright, angle), turned) <= Rounding);
}

void TestDrawText::TurnsByAnyAngle_data()
{
    QTest::addColumn<int>("angle");
    QTest::addColumn<int>("same");
    QTest::newRow("a full turn") << 360 << 0;
    QTest::newRow("many turns") << 3600 + 30 << 30;
    QTest::newRow("the other way round") << -330 << 30;
    QTest::newRow("highest") << Highest << 127;
    QTest::newRow("lowest") << Lowest << -128;
}

void TestDrawText::TurnsByAnyAngle()
{
    QFETCH(int, angle);
    QFETCH(int, same);
    TextOverlay overlay = Overlay(QStringLiteral("Lo"), 50);
    overlay.angle = angle;
    const RGBA32iImage turned = Drawn(overlay, QSize(120, 120));
    overlay.angle = same;
    QVERIFY(Difference(turned, Drawn(overlay, QSize(120, 120))) <= 1);
}

void TestDrawText::IsAntialiased()
{
    TextOverlay overlay = Overlay(QStringLiteral("O"), 60);
    overlay.font.setStyleStrategy(QFont::NoAntialias);
    const RGBA32iImage picture = Drawn(overlay, QSize(100, 100));
    int between = 0;
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x) {
            const YDRGBA32i pixel = picture.Row(y)[x];
            QVERIFY(pixel.b == pixel.g && pixel.g == pixel.r); // and by whole pixels, not by their stripes
            between += pixel.g > 0 && pixel.g < 255 ? 1 : 0;
        }
    QVERIFY(between > 100);
}

void TestDrawText::ColourAndOpacityCount_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("opacity");
    QTest::addColumn<QRgb>("expected"); // where the text covers black whole
    QTest::newRow("white") << QColor(Qt::white) << 100 << qRgb(255, 255, 255);
    QTest::newRow("a colour") << QColor(200, 100, 50) << 100 << qRgb(200, 100, 50);
    QTest::newRow("40 %") << QColor(200, 100, 50) << 40 << qRgb(80, 40, 20);
    QTest::newRow("its alpha") << QColor(200, 100, 50, 51) << 100 << qRgb(40, 20, 10);
    QTest::newRow("both") << QColor(200, 100, 50, 51) << 50 << qRgb(20, 10, 5);
    QTest::newRow("more than whole") << QColor(200, 100, 50) << Highest << qRgb(200, 100, 50);
}

void TestDrawText::ColourAndOpacityCount()
{
    QFETCH(QColor, color);
    QFETCH(int, opacity);
    QFETCH(QRgb, expected);
    TextOverlay overlay = Overlay(QStringLiteral("I"), 300);
    overlay.font.setBold(true);
    overlay.color = color;
    overlay.opacity = opacity;
    QCOMPARE(QRgb(Drawn(overlay, QSize(100, 100)).Row(50)[50]), expected);
}

void TestDrawText::TextsThatMeetAreDrawnOnce()
{
    TextOverlay overlay = Overlay(QStringLiteral("IIII"), 60);
    overlay.hrzTiles = 9;
    overlay.vrtTiles = 9;
    overlay.opacity = 40;
    const RGBA32iImage picture = Drawn(overlay, QSize(90, 90));
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 90; ++x)
            QVERIFY(picture.Row(y)[x].g <= 102); // 40 % of white
}

void TestDrawText::NothingReachesIntoTheMargins()
{
    TextOverlay overlay = Overlay(QStringLiteral("MMMM"), 200);
    overlay.angle = 20;
    overlay.margins = Margins(11, 12, 13, 14);
    QCOMPARE(Ink(Drawn(overlay, QSize(100, 90))), QRect(11, 12, 76, 64));
}

void TestDrawText::PointsAreFourThirdsOfAPixelOfThePicture()
{
    TextOverlay overlay = Overlay(QStringLiteral("Watermark"), 48);
    const RGBA32iImage expected = Drawn(overlay, QSize(300, 80));
    overlay.font.setPointSizeF(36.0);
    QVERIFY(AreEqual(Drawn(overlay, QSize(300, 80)), expected));
}

void TestDrawText::LinesStandOneBelowTheOther()
{
    for (const char* const text : {"H\nH", "H\r\nH", "H\rH", "H\xE2\x80\xA8H", "H\xE2\x80\xA9H"}) {
        const TextOverlay overlay = Overlay(QString::fromUtf8(text));
        const RGBA32iImage picture = Drawn(overlay, QSize(200, 200));
        const QRect upper = Ink(picture, QRect(0, 0, 200, 100));
        const QRect lower = Ink(picture, QRect(0, 100, 200, 100));
        const QFontMetricsF metrics(OverlayFont::Typeface(overlay.font, 40));
        QVERIFY(qAbs(lower.top() - upper.top() - metrics.lineSpacing()) <= 1.0);
        QCOMPARE(upper.left(), lower.left());
    }
}

void TestDrawText::LinesAreCentred()
{
    const RGBA32iImage picture = Drawn(Overlay(QStringLiteral("HHHHH\nH")), QSize(300, 200));
    const QRect upper = Ink(picture, QRect(0, 0, 300, 100));
    const QRect lower = Ink(picture, QRect(0, 100, 300, 100));
    QVERIFY(upper.width() > 4 * lower.width());
    QVERIFY(qAbs(upper.left() + upper.right() - lower.left() - lower.right()) <= 2);
}

/// The first letter of a Hebrew word stands on the right, the digits behind it on the left of it.
void TestDrawText::WritesFromRightToLeft()
{
    const QRect whole(0, 0, 300, 100);
    const QChar alef(0x05d0);
    const QRect word = Ink(Drawn(Overlay(QString(3, alef)), whole.size()));
    QVERIFY(qAbs(word.left() + word.right() + 1 - 300) <= 4);
    // An underscore's ink is below the line.
    const RGBA32iImage picture = Drawn(Overlay(QString(3, alef) + QLatin1Char('_')), whole.size());
    const QRect ink = Ink(picture);
    QVERIFY(!ink.isEmpty());
    const QRect below = Ink(picture, QRect(0, ink.bottom() - 1, 300, 2));
    QVERIFY(below.right() < 150);
}

void TestDrawText::DecoratesTheLetters_data()
{
    QTest::addColumn<int>("line");
    QTest::newRow("underlined") << 0;
    QTest::newRow("overlined") << 1;
    QTest::newRow("struck out") << 2;
}

void TestDrawText::DecoratesTheLetters()
{
    QFETCH(int, line);
    TextOverlay overlay = Overlay(QStringLiteral("i i"), 80);
    const RGBA32iImage plain = Drawn(overlay, QSize(200, 120));
    overlay.font.setUnderline(line == 0);
    overlay.font.setOverline(line == 1);
    overlay.font.setStrikeOut(line == 2);
    const RGBA32iImage decorated = Drawn(overlay, QSize(200, 120));
    int rows = 0;
    for (int y = 0; y < 120; ++y)
        rows += decorated.Row(y)[100].g > plain.Row(y)[100].g ? 1 : 0; // between the letters
    QVERIFY(rows >= 1 && rows <= 12);
}

void TestDrawText::TransparentPicturesBecomeAsOpaqueAsTheText()
{
    TextOverlay overlay = Overlay(QStringLiteral("I"), 300);
    overlay.font.setBold(true);
    overlay.color = QColor(200, 100, 50);
    overlay.opacity = 40;
    const RGBA32iImage picture(100, 100);
    for (int y = 0; y < 100; ++y)
        std::fill_n(picture.Row(y), 100, YDRGBA32i(9, 8, 7, 0));
    QCOMPARE(DrawText(overlay, OverlayCanvas(picture, {}, {}, {})), QString());
    QCOMPARE(QRgb(picture.Row(50)[50]), qRgba(200, 100, 50, 102));
    QCOMPARE(QRgb(picture.Row(50)[1]), qRgba(7, 8, 9, 0));
}

void TestDrawText::IsBlendedThroughTheSelection()
{
    const RGBA32iImage mask = Random(60, 50, 8);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 60; ++x)
            mask.Row(y)[x] =
                YDRGBA32i(mask.Row(y)[x].a, mask.Row(y)[x].a, mask.Row(y)[x].a, mask.Row(y)[x].a);
    TextOverlay overlay = Overlay(QStringLiteral("MMM"), 60);
    overlay.angle = 40;
    overlay.vrtTiles = 2;
    const RGBA32iImage before = Random(150, 120, 9);
    const RGBA32iImage whole = before.DeepCopy();
    QCOMPARE(DrawText(overlay, OverlayCanvas(whole, {}, {}, {})), QString());
    const RGBA32iImage picture = before.DeepCopy();
    QCOMPARE(DrawText(overlay, OverlayCanvas(picture, mask, QPoint(70, 80), QRect(0, 0, 60, 50))), QString());
    for (int y = 0; y < 120; ++y)
        for (int x = 0; x < 150; ++x) {
            YDRGBA32i expected = before.Row(y)[x];
            if (x >= 70 && x < 130 && y >= 80)
                YDBlend::YDSourceBySelection()(whole.Row(y)[x], expected, mask.Row(y - 80)[x - 70]);
            QCOMPARE(QRgb(picture.Row(y)[x]), QRgb(expected));
        }
}

/// Letters are not cut where the selection ends before they are painted, which would soften other edges.
void TestDrawText::AWhiteMaskShowsTheSameText()
{
    TextOverlay overlay = Overlay(QStringLiteral("Watermark Xyg"), 45);
    overlay.hrzTiles = 2;
    overlay.vrtTiles = 2;
    const QSize size(261, 145);
    const QRect selected(91, 19, 63, 37);
    const RGBA32iImage whole = Drawn(overlay, size);
    const RGBA32iImage part = TestPictures::Grey(size.width(), size.height(), 0);
    const RGBA32iImage mask = TestPictures::Grey(selected.width(), selected.height(), 255);
    QCOMPARE(DrawText(overlay,
                      OverlayCanvas(part, mask, selected.topLeft(), QRect(QPoint(0, 0), selected.size()))),
             QString());
    for (int y = selected.top(); y <= selected.bottom(); ++y)
        for (int x = selected.left(); x <= selected.right(); ++x)
            QCOMPARE(part.Row(y)[x], whole.Row(y)[x]);
}

void TestDrawText::WhatDrawsNothingLeavesThePicture_data()
{
    QTest::addColumn<TextOverlay>("overlay");
    const auto row = [](const char* name, const auto& change) {
        TextOverlay overlay = Overlay(QStringLiteral("MMM"));
        change(overlay);
        QTest::newRow(name) << overlay;
    };
    row("no text", [](TextOverlay& overlay) { overlay.text.clear(); });
    row("spaces and line ends", [](TextOverlay& overlay) { overlay.text = QStringLiteral(" \n\t\r\n "); });
    row("control characters", [](TextOverlay& overlay) { overlay.text = QString(5, QChar(0)); });
    row("no opacity", [](TextOverlay& overlay) { overlay.opacity = 0; });
    row("less than that", [](TextOverlay& overlay) { overlay.opacity = Lowest; });
    row("a colour that cannot be seen", [](TextOverlay& overlay) { overlay.color.setAlpha(0); });
    row("nothing left inside the margins",
        [](TextOverlay& overlay) { overlay.margins = Margins(0, 60, 0, 60); });
    row("the widest margins",
        [](TextOverlay& overlay) { overlay.margins = Margins(Highest, Highest, Highest, Highest); });
    row("a font without a size", [](TextOverlay& overlay) {
        QDataStream nothing(QByteArray(1000, '\0'));
        nothing >> overlay.font;
    });
}

void TestDrawText::WhatDrawsNothingLeavesThePicture()
{
    QFETCH(TextOverlay, overlay);
    const RGBA32iImage picture = Random(120, 120, 10);
    QCOMPARE(DrawText(overlay, OverlayCanvas(picture, {}, {}, {})), QString());
    QVERIFY(AreEqual(picture, Random(120, 120, 10)));
}

void TestDrawText::OddValuesAreHarmless_data()
{
    QTest::addColumn<TextOverlay>("overlay");
    const auto row = [](const char* name, const auto& change) {
        TextOverlay overlay = Overlay(QStringLiteral("MMM"));
        change(overlay);
        QTest::newRow(name) << overlay;
    };
    row("no tiles", [](TextOverlay& overlay) { overlay.hrzTiles = overlay.vrtTiles = 0; });
    row("lowest tiles", [](TextOverlay& overlay) { overlay.hrzTiles = overlay.vrtTiles = Lowest; });
    row("highest tiles", [](TextOverlay& overlay) { overlay.hrzTiles = overlay.vrtTiles = Highest; });
    row("lowest margins",
        [](TextOverlay& overlay) { overlay.margins = Margins(Lowest, Lowest, Lowest, Lowest); });
    row("a mode that there is not", [](TextOverlay& overlay) { overlay.blendingMode = Lowest; });
    row("a million points", [](TextOverlay& overlay) { overlay.font.setPointSizeF(1e6); });
    row("infinite points",
        [](TextOverlay& overlay) { overlay.font.setPointSizeF(std::numeric_limits<double>::infinity()); });
    row("ten million letters",
        [](TextOverlay& overlay) { overlay.text = QString(10'000'000, QLatin1Char('W')); });
    row("ten million large letters", [](TextOverlay& overlay) {
        overlay.text = QString(10'000'000, QChar(0xfdfd)); // a wide one
        overlay.font.setPixelSize(Highest);
        overlay.font.setStretch(4000);
        overlay.font.setLetterSpacing(QFont::AbsoluteSpacing, 1e6);
    });
    row("ten million lines", [](TextOverlay& overlay) {
        overlay.text = QStringLiteral("|\n").repeated(10'000'000);
        overlay.font.setPixelSize(1);
    });
    row("ten million accents",
        [](TextOverlay& overlay) { overlay.text = QString(10'000'000, QChar(0x0301)); });
    row("halves of characters", [](TextOverlay& overlay) { overlay.text = QString(5000, QChar(0xd83d)); });
    row("a huge text in every cell", [](TextOverlay& overlay) {
        overlay.font.setPixelSize(Highest);
        overlay.hrzTiles = overlay.vrtTiles = 9;
        overlay.angle = 45;
    });
}

void TestDrawText::OddValuesAreHarmless()
{
    QFETCH(TextOverlay, overlay);
    const RGBA32iImage picture = Random(120, 120, 11);
    QCOMPARE(DrawText(overlay, OverlayCanvas(picture, {}, {}, {})), QString());
    QCOMPARE(DrawText(overlay, OverlayCanvas(RGBA32iImage(), {}, {}, {})), QString());
    const RGBA32iImage pixel = Random(1, 1, 12);
    QCOMPARE(DrawText(overlay, OverlayCanvas(pixel, {}, {}, {})), QString());
}

/// A painter reaches 32767 pixels far.
void TestDrawText::LargeTextsAreDrawnInPieces()
{
    TextOverlay overlay = Overlay(QString(60, QLatin1Char('H')), 1000);
    const RGBA32iImage picture = Drawn(overlay, QSize(40000, 4));
    QVERIFY(!Ink(picture, QRect(0, 0, 1000, 4)).isEmpty());
    QVERIFY(!Ink(picture, QRect(39000, 0, 1000, 4)).isEmpty());
    for (int x = 0; x < 20000; ++x)
        QVERIFY(qAbs(picture.Row(0)[x].g - picture.Row(0)[39999 - x].g) <= 4); // the text is symmetric
}

void TestDrawText::SeveralThreadsDrawTheSame()
{
    TextOverlay overlay = Overlay(QStringLiteral("Watermark"));
    overlay.angle = 30;
    overlay.hrzTiles = 2;
    const RGBA32iImage expected = Drawn(overlay, QSize(300, 200));
    std::atomic<int> same{0};
    RunPoolTasks(8, [&] { same += AreEqual(Drawn(overlay, QSize(300, 200)), expected) ? 1 : 0; });
    QCOMPARE(same.load(), 8);
}

QTEST_MAIN(TestDrawText)
#include "tst_DrawText.moc"
