#include "TestFiles.h"
#include "TestPictures.h"
#include "image/OverlayRule.h"
#include "image/YDBlend.h"
#include "overlay/DrawStamp.h"
#include "overlay/OverlayCanvas.h"
#include "overlay/Stamp.h"
#include "threads/PoolTasks.h"

#include <QDateTime>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <limits>
#include <sys/stat.h>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr int Width = 100;
constexpr int Height = 80;

using TestPictures::AreEqual;
using TestPictures::Grey;
using TestPictures::Random;

QRect Margins(int left, int top, int right, int bottom) { return {QPoint(left, top), QPoint(right, bottom)}; }

QString DrawOn(const RGBA32iImage& picture, const Stamp& stamp)
{
    return DrawStamp(stamp, OverlayCanvas(picture, {}, {}, {}));
}

/// The smallest rectangle around the pixels that differ.
QRect Changed(const RGBA32iImage& before, const RGBA32iImage& after)
{
    QRect changed;
    for (int y = 0; y < before.Height(); ++y)
        for (int x = 0; x < before.Width(); ++x)
            if (before.Row(y)[x] != after.Row(y)[x])
                changed |= QRect(x, y, 1, 1);
    return changed;
}

} // namespace

class TestDrawStamp : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void StandsByItsAlignmentInsideTheMargins_data();
    void StandsByItsAlignmentInsideTheMargins();
    void IsScaledDownOnlyIfItDoesNotFit_data();
    void IsScaledDownOnlyIfItDoesNotFit();
    void IsScaledSmoothly();
    void IsLaidByTheRuleOfItsModeAndOpacity_data();
    void IsLaidByTheRuleOfItsModeAndOpacity();
    void LeavesTransparentPixelsAroundItAlone();
    void IsBlendedThroughTheSelection_data();
    void IsBlendedThroughTheSelection();
    void AStoredOrientationIsCarriedOut();
    void WhatDrawsNothingIsNoError_data();
    void WhatDrawsNothingIsNoError();
    void AFileThatIsNoPictureIsAnError_data();
    void AFileThatIsNoPictureIsAnError();
    void OddValuesAreHarmless_data();
    void OddValuesAreHarmless();
    void AFileIsDecodedOnceWhileItStaysTheSame();
    void SeveralThreadsDrawTheSame();

private:
    QString Path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    Stamp StampOf(const char* name) const
    {
        Stamp stamp;
        stamp.fileName = Path(name);
        return stamp;
    }
    void SaveStamp(const char* name, const RGBA32iImage& image) const
    {
        QVERIFY(ImageToQImage(image).save(Path(name)));
    }

    QTemporaryDir m_folder;
};

void TestDrawStamp::initTestCase()
{
    SaveStamp("small.png", Grey(20, 11, 200));
    SaveStamp("wide.png", Grey(200, 100, 200));
    SaveStamp("line.png", Grey(1000, 2, 200));
    SaveStamp("noise.png", Random(70, 60, 1));
}

void TestDrawStamp::StandsByItsAlignmentInsideTheMargins_data()
{
    QTest::addColumn<int>("alignment");
    QTest::addColumn<QRect>("margins");
    QTest::addColumn<QRect>("place"); // of 20 x 11 on 100 x 80
    QTest::newRow("left, top") << int(Qt::AlignLeft | Qt::AlignTop) << Margins(5, 6, 7, 8)
                               << QRect(5, 6, 20, 11);
    QTest::newRow("right, bottom") << int(Qt::AlignRight | Qt::AlignBottom) << Margins(5, 6, 7, 8)
                                   << QRect(73, 61, 20, 11);
    QTest::newRow("centre of what the margins leave")
        << int(Qt::AlignCenter) << Margins(5, 6, 7, 8) << QRect(39, 33, 20, 11);
    QTest::newRow("margins that leave just enough")
        << int(Qt::AlignCenter) << Margins(60, 19, 20, 50) << QRect(60, 19, 20, 11);
    QTest::newRow("without margins") << int(Qt::AlignRight | Qt::AlignTop) << Margins(0, 0, 0, 0)
                                     << QRect(80, 0, 20, 11);
    QTest::newRow("no flags") << 0 << Margins(5, 6, 7, 8) << QRect(5, 6, 20, 11);
}

void TestDrawStamp::StandsByItsAlignmentInsideTheMargins()
{
    QFETCH(int, alignment);
    QFETCH(QRect, margins);
    QFETCH(QRect, place);
    const RGBA32iImage before = Grey(Width, Height, 10);
    const RGBA32iImage picture = before.DeepCopy();
    Stamp stamp = StampOf("small.png");
    stamp.alignment = alignment;
    stamp.margins = margins;
    QCOMPARE(DrawOn(picture, stamp), QString());
    QCOMPARE(Changed(before, picture), place);
    QCOMPARE(QRgb(picture.Row(place.center().y())[place.center().x()]), qRgb(200, 200, 200));
}

void TestDrawStamp::IsScaledDownOnlyIfItDoesNotFit_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QRect>("margins");
    QTest::addColumn<QRect>("place");
    QTest::newRow("it fits") << QByteArray("small.png") << Margins(0, 0, 0, 0) << QRect(80, 69, 20, 11);
    QTest::newRow("too wide: 200 x 100 into 100 x 80")
        << QByteArray("wide.png") << Margins(0, 0, 0, 0) << QRect(0, 30, 100, 50);
    QTest::newRow("into 80 x 60") << QByteArray("wide.png") << Margins(15, 5, 5, 15) << QRect(15, 25, 80, 40);
    QTest::newRow("too high: into 100 x 20")
        << QByteArray("wide.png") << Margins(0, 10, 0, 50) << QRect(60, 10, 40, 20);
    QTest::newRow("a pixel is the least")
        << QByteArray("line.png") << Margins(10, 10, 10, 10) << QRect(10, 69, 80, 1);
    QTest::newRow("into one pixel") << QByteArray("wide.png") << Margins(50, 40, 49, 39)
                                    << QRect(50, 40, 1, 1);
}

void TestDrawStamp::IsScaledDownOnlyIfItDoesNotFit()
{
    QFETCH(QByteArray, name);
    QFETCH(QRect, margins);
    QFETCH(QRect, place);
    const RGBA32iImage before = Grey(Width, Height, 10);
    const RGBA32iImage picture = before.DeepCopy();
    Stamp stamp = StampOf(name.constData());
    stamp.alignment = Qt::AlignRight | Qt::AlignBottom;
    stamp.margins = margins;
    QCOMPARE(DrawOn(picture, stamp), QString());
    QCOMPARE(Changed(before, picture), place);
}

void TestDrawStamp::IsScaledSmoothly()
{
    const RGBA32iImage stripes = Grey(200, 160, 0);
    for (int y = 0; y < stripes.Height(); ++y)
        for (int x = 1; x < stripes.Width(); x += 2)
            stripes.Row(y)[x] = YDRGBA32i(255, 255, 255, 255);
    SaveStamp("stripes.png", stripes);
    const RGBA32iImage picture = Grey(Width, Height, 10);
    QCOMPARE(DrawOn(picture, StampOf("stripes.png")), QString());
    QVERIFY(qAbs(picture.Row(40)[50].g - 128) <= 2);
}

void TestDrawStamp::IsLaidByTheRuleOfItsModeAndOpacity_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("opacity");
    for (const int mode : {0, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23})
        QTest::addRow("mode %d at 65 %%", mode) << mode << 65;
    QTest::newRow("no mode is normal") << 5 << 100;
    QTest::newRow("more than whole") << 0 << Highest;
}

/// By bands on all cores, the same bytes as pixel by pixel.
void TestDrawStamp::IsLaidByTheRuleOfItsModeAndOpacity()
{
    QFETCH(int, mode);
    QFETCH(int, opacity);
    const RGBA32iImage over = Random(70, 60, 1);
    const RGBA32iImage before = Random(Width, Height, 2);
    Stamp stamp = StampOf("noise.png");
    stamp.margins = Margins(7, 3, 0, 0);
    stamp.blendingMode = mode;
    stamp.opacity = opacity;
    const RGBA32iImage expected = before.DeepCopy();
    const OverlayRule rule(mode, opacity / 100.0);
    for (int y = 0; y < over.Height(); ++y)
        for (int x = 0; x < over.Width(); ++x)
            rule(over.Row(y)[x], expected.Row(y + 3)[x + 7]);
    const RGBA32iImage picture = before.DeepCopy();
    QCOMPARE(DrawOn(picture, stamp), QString());
    QVERIFY(AreEqual(picture, expected));
}

void TestDrawStamp::LeavesTransparentPixelsAroundItAlone()
{
    const RGBA32iImage ring = Grey(9, 9, 50);
    for (int y = 2; y < 7; ++y)
        for (int x = 2; x < 7; ++x)
            ring.Row(y)[x] = YDRGBA32i(1, 2, 3, 0);
    SaveStamp("ring.png", ring);
    const RGBA32iImage picture(20, 20);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
            picture.Row(y)[x] = YDRGBA32i(9, 8, 7, y < 5 ? 0 : 3); // a colour that premultiplying would lose
    const RGBA32iImage before = picture.DeepCopy();
    QCOMPARE(DrawOn(picture, StampOf("ring.png")), QString());
    QCOMPARE(QRgb(picture.Row(4)[4]), QRgb(before.Row(4)[4]));
    QCOMPARE(QRgb(picture.Row(6)[6]), QRgb(before.Row(6)[6]));
    QCOMPARE(QRgb(picture.Row(15)[15]), QRgb(before.Row(15)[15]));
    QCOMPARE(QRgb(picture.Row(0)[0]), qRgb(50, 50, 50));
    QCOMPARE(QRgb(picture.Row(8)[8]), qRgb(50, 50, 50));
}

void TestDrawStamp::IsBlendedThroughTheSelection_data()
{
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<QRect>("bounds");
    QTest::newRow("inside") << QPoint(10, 20) << QRect(0, 0, 40, 30);
    QTest::newRow("a part of the mask") << QPoint(10, 20) << QRect(0, 0, 17, 30);
    QTest::newRow("over the lower right corner") << QPoint(80, 70) << QRect(0, 0, 40, 30);
    QTest::newRow("over the upper left corner") << QPoint(-15, -12) << QRect(0, 0, 40, 30);
    QTest::newRow("beyond the picture") << QPoint(500, 500) << QRect(0, 0, 40, 30);
    QTest::newRow("far beyond it") << QPoint(Highest, Lowest) << QRect(0, 0, 40, 30);
    QTest::newRow("no bounds: everything is selected") << QPoint(10, 20) << QRect();
}

void TestDrawStamp::IsBlendedThroughTheSelection()
{
    QFETCH(QPoint, offset);
    QFETCH(QRect, bounds);
    RGBA32iImage mask(40, 30);
    for (int y = 0; y < mask.Height(); ++y)
        for (int x = 0; x < mask.Width(); ++x) {
            const auto coverage = quint8((x * 7 + y * 5) % 256);
            mask.Row(y)[x] = YDRGBA32i(coverage, coverage, coverage, coverage);
        }
    const RGBA32iImage before = Random(Width, Height, 3);
    Stamp stamp = StampOf("noise.png");
    stamp.blendingMode = int(KVCompositionMode::Screen);
    const RGBA32iImage whole = before.DeepCopy();
    QCOMPARE(DrawOn(whole, stamp), QString());

    const RGBA32iImage picture = before.DeepCopy();
    QCOMPARE(DrawStamp(stamp, OverlayCanvas(picture, mask, offset, bounds)), QString());
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            const QPoint inMask(int(x - qint64(offset.x())), int(y - qint64(offset.y())));
            YDRGBA32i expected = before.Row(y)[x];
            if (bounds.isEmpty())
                expected = whole.Row(y)[x];
            else if (bounds.contains(inMask))
                YDBlend::YDSourceBySelection()(whole.Row(y)[x], expected, mask.Row(inMask.y())[inMask.x()]);
            QCOMPARE(QRgb(picture.Row(y)[x]), QRgb(expected));
        }
    }
}

void TestDrawStamp::AStoredOrientationIsCarriedOut()
{
    QImage lying(30, 10, QImage::Format_RGB32);
    lying.fill(qRgb(0, 0, 200));
    lying.setPixel(0, 0, qRgb(250, 0, 0));
    QImageWriter writer(Path("lying.tif"));
    writer.setTransformation(QImageIOHandler::TransformationRotate90);
    QVERIFY(writer.write(lying));
    const RGBA32iImage before = Grey(Width, Height, 10);
    const RGBA32iImage picture = before.DeepCopy();
    QCOMPARE(DrawOn(picture, StampOf("lying.tif")), QString());
    QCOMPARE(Changed(before, picture), QRect(0, 0, 10, 30));
    QCOMPARE(QRgb(picture.Row(0)[9]), qRgb(250, 0, 0));
}

void TestDrawStamp::WhatDrawsNothingIsNoError_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("opacity");
    QTest::addColumn<QRect>("margins");
    QTest::newRow("no file") << QString() << 100 << Margins(0, 0, 0, 0);
    QTest::newRow("no opacity") << Path("small.png") << 0 << Margins(0, 0, 0, 0);
    QTest::newRow("less than that") << Path("small.png") << Lowest << Margins(0, 0, 0, 0);
    QTest::newRow("nothing left inside the margins") << Path("small.png") << 100 << Margins(50, 0, 50, 0);
}

void TestDrawStamp::WhatDrawsNothingIsNoError()
{
    QFETCH(QString, path);
    QFETCH(int, opacity);
    QFETCH(QRect, margins);
    const RGBA32iImage picture = Random(Width, Height, 4);
    Stamp stamp;
    stamp.fileName = path;
    stamp.opacity = opacity;
    stamp.margins = margins;
    QCOMPARE(DrawOn(picture, stamp), QString());
    QVERIFY(AreEqual(picture, Random(Width, Height, 4)));
}

void TestDrawStamp::AFileThatIsNoPictureIsAnError_data()
{
    QTest::addColumn<QString>("path");
    TestFiles::Store(Path("text.png"), "this is no picture");
    TestFiles::Store(Path("empty.png"), QByteArray());
    TestFiles::Store(Path("cut.png"), TestFiles::BytesOf(Path("noise.png")).left(3000));
    // A bitmap's head that promises 60000 x 60000 pixels.
    TestFiles::Store(Path("huge.bmp"), QByteArray::fromHex("424d36000000000000003600000028000000"
                                                           "60ea000060ea00000100180000000000") +
                                           QByteArray(60, '\0'));
    QCOMPARE(::mkfifo(QFile::encodeName(Path("pipe.png")).constData(), 0600), 0);
    QTest::newRow("missing") << Path("missing.png");
    QTest::newRow("a folder") << m_folder.path();
    QTest::newRow("a pipe") << Path("pipe.png");
    QTest::newRow("a text") << Path("text.png");
    QTest::newRow("empty") << Path("empty.png");
    QTest::newRow("cut") << Path("cut.png");
    QTest::newRow("too many pixels") << Path("huge.bmp");
}

void TestDrawStamp::AFileThatIsNoPictureIsAnError()
{
    QFETCH(QString, path);
    const RGBA32iImage picture = Random(Width, Height, 5);
    Stamp stamp;
    stamp.fileName = path;
    const QString error = DrawOn(picture, stamp);
    QVERIFY2(error.startsWith(path + QStringLiteral(": ")), qPrintable(error));
    QVERIFY(AreEqual(picture, Random(Width, Height, 5)));
}

void TestDrawStamp::OddValuesAreHarmless_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("lowest") << Lowest;
    QTest::newRow("-1") << -1;
    QTest::newRow("highest") << Highest;
}

void TestDrawStamp::OddValuesAreHarmless()
{
    QFETCH(int, value);
    const RGBA32iImage picture = Random(Width, Height, 6);
    Stamp stamp = StampOf("noise.png");
    stamp.alignment = value;
    stamp.blendingMode = value;
    QCOMPARE(DrawOn(picture, stamp), QString());
    stamp.margins = Margins(value, value, value, value);
    QCOMPARE(DrawOn(picture, stamp), QString());
    stamp.opacity = value;
    QCOMPARE(DrawOn(picture, stamp), QString());
    QCOMPARE(DrawOn(RGBA32iImage(), stamp), QString());
}

void TestDrawStamp::AFileIsDecodedOnceWhileItStaysTheSame()
{
    const QString path = Path("changing.bmp");
    const auto store = [&path](int grey, const QDateTime& time) {
        QVERIFY(ImageToQImage(Grey(8, 8, grey)).save(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    };
    const auto drawn = [this] {
        const RGBA32iImage picture = Grey(Width, Height, 10);
        return DrawOn(picture, StampOf("changing.bmp")).isEmpty() ? int(picture.Row(0)[0].g) : -1;
    };
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(1'600'000'000'000);
    store(50, time);
    QCOMPARE(drawn(), 50);
    store(60, time); // nothing tells that it is another one
    QCOMPARE(drawn(), 50);
    store(70, time.addSecs(1));
    QCOMPARE(drawn(), 70);
    QVERIFY(QFile::remove(path));
    QCOMPARE(drawn(), -1);
}

void TestDrawStamp::SeveralThreadsDrawTheSame()
{
    const Stamp stamp = StampOf("wide.png");
    const RGBA32iImage expected = Random(Width, Height, 7);
    QCOMPARE(DrawOn(expected, stamp), QString());
    std::atomic<int> same{0};
    RunPoolTasks(8, [&] {
        const RGBA32iImage picture = Random(Width, Height, 7);
        same += DrawOn(picture, stamp).isEmpty() && AreEqual(picture, expected) ? 1 : 0;
    });
    QCOMPARE(same.load(), 8);
}

QTEST_GUILESS_MAIN(TestDrawStamp)
#include "tst_DrawStamp.moc"
