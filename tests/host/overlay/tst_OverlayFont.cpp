#include "overlay/OverlayFont.h"

#include <QDataStream>
#include <QTest>

#include <limits>

namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();

/// A font as a stream gives it, with whatever size and with bytes in the place of numbers.
QFont Stored(double points, qint32 pixels, quint8 fill = 0)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << QStringLiteral("DejaVu Sans") << QString() << points << pixels;
    stream << fill << quint16(fill * 257) << quint8(0);              // style hint, strategy, character set
    stream << fill << quint8(0) << quint16(fill * 257) << quint8(0); // weight, flags, stretch, more flags
    stream << qint32(fill * 0x01010101u) << qint32(fill * 0x01010101u) << quint8(0)
           << fill; // spacing, capitals
    stream << QStringList();
    QDataStream reader(bytes);
    reader.setVersion(QDataStream::Qt_5_15);
    QFont font;
    reader >> font;
    return font;
}

} // namespace

class TestOverlayFont : public QObject
{
    Q_OBJECT

private slots:
    void SizesArePixelsOfThePicture_data();
    void SizesArePixelsOfThePicture();
    void KeepsWhatIsInBounds();
    void BoundsWhatIsNot_data();
    void BoundsWhatIsNot();
};

void TestOverlayFont::SizesArePixelsOfThePicture_data()
{
    QTest::addColumn<double>("points");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("pixels");
    QTest::newRow("pixels") << -1.0 << 40 << 40;
    QTest::newRow("pixels before points") << 12.0 << 40 << 40;
    QTest::newRow("72 points are an inch") << 72.0 << -1 << 96;
    QTest::newRow("9 points") << 9.0 << -1 << 12;
    QTest::newRow("10 points: 13.33") << 10.0 << -1 << 13;
    QTest::newRow("a thousandth of a point") << 0.001 << -1 << 1;
    QTest::newRow("a million points") << 1e6 << -1 << OverlayFont::MaxPixels;
    QTest::newRow("infinite") << Infinite << -1 << OverlayFont::MaxPixels;
    QTest::newRow("highest pixels") << -1.0 << std::numeric_limits<int>::max() << OverlayFont::MaxPixels;
    QTest::newRow("no size") << 0.0 << 0 << 0;
    QTest::newRow("neither") << -1.0 << -1 << 0;
    QTest::newRow("minus infinite") << -Infinite << std::numeric_limits<int>::min() << 0;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0 << 0;
}

void TestOverlayFont::SizesArePixelsOfThePicture()
{
    QFETCH(double, points);
    QFETCH(int, stored);
    QFETCH(int, pixels);
    QCOMPARE(OverlayFont::PixelSize(Stored(points, stored)), pixels);
}

void TestOverlayFont::KeepsWhatIsInBounds()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setItalic(true);
    font.setStretch(150);
    font.setCapitalization(QFont::SmallCaps);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 3);
    font.setWordSpacing(-4);
    font.setUnderline(true);
    const QFont typeface = OverlayFont::Typeface(font, 30);
    QCOMPARE(typeface.family(), font.family());
    QCOMPARE(typeface.pixelSize(), 30);
    QCOMPARE(typeface.weight(), int(QFont::Bold));
    QVERIFY(typeface.italic());
    QCOMPARE(typeface.stretch(), 150);
    QCOMPARE(typeface.capitalization(), QFont::SmallCaps);
    QCOMPARE(typeface.letterSpacing(), 3.0);
    QCOMPARE(typeface.wordSpacing(), -4.0);
    QVERIFY(!typeface.underline());
    font.setLetterSpacing(QFont::PercentageSpacing, 120);
    QCOMPARE(OverlayFont::Typeface(font, 30).letterSpacing(), 120.0);
}

void TestOverlayFont::BoundsWhatIsNot_data()
{
    QTest::addColumn<int>("fill");
    QTest::newRow("zeros") << 0;
    QTest::newRow("large numbers") << 0x7f;
    QTest::newRow("large negative numbers") << 0x80;
    QTest::newRow("ones") << 0xff;
}

void TestOverlayFont::BoundsWhatIsNot()
{
    QFETCH(int, fill);
    constexpr int Pixels = 20;
    const QFont typeface = OverlayFont::Typeface(Stored(12, -1, quint8(fill)), Pixels);
    QVERIFY(typeface.weight() >= 0 && typeface.weight() <= 99);
    QVERIFY(typeface.stretch() >= 0 && typeface.stretch() <= 4000);
    const bool isAbsolute = typeface.letterSpacingType() == QFont::AbsoluteSpacing;
    QVERIFY(qAbs(typeface.letterSpacing()) <= (isAbsolute ? 5 * Pixels : 500));
    QVERIFY(qAbs(typeface.wordSpacing()) <= 5 * Pixels);
    QVERIFY(int(typeface.capitalization()) <= int(QFont::Capitalize));
    const QFont longNames = OverlayFont::Typeface(QFont(QString(10'000'000, QLatin1Char('x'))), Pixels);
    QVERIFY(longNames.family().size() <= 256);
}

QTEST_MAIN(TestOverlayFont)
#include "tst_OverlayFont.moc"
