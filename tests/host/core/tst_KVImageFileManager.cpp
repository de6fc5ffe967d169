#include "MemoryLimit.h"
#include "TestFiles.h"
#include "core/KVImageFileManager.h"

#include <QBuffer>
#include <QColorSpace>
#include <QElapsedTimer>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <atomic>
#include <csignal>
#include <functional>
#include <limits>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

using TestFiles::BytesOf;
using TestFiles::Store;

namespace {

/// Longer than any of these calls takes when it does not wait for anybody.
constexpr int PromptMs = 5000;

KVImageFileManager::WriteOptions Overwriting()
{
    KVImageFileManager::WriteOptions options;
    options.overwrite = true;
    return options;
}

/// Four quarters in four colours: red and green above, blue and white below.
QImage Quarters(int width = 32, int height = 16)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y,
                           y < height / 2 ? (x < width / 2 ? qRgb(255, 0, 0) : qRgb(0, 255, 0))
                                          : (x < width / 2 ? qRgb(0, 0, 255) : qRgb(255, 255, 255)));
    return image;
}

/// No two neighbours alike, so that no compression makes the file trivially short.
QImage Pattern(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            state = state * 1664525u + 1013904223u;
            image.setPixel(x, y, 0xff000000u | (state >> 8));
        }
    return image;
}

QByteArray Encode(const QImage& image, const char* format, int quality = -1)
{
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    writer.write(image);
    return buffer.data();
}

/// A TIFF structure with one directory: Make "Brush", orientation, resolution 300 dpi.
QByteArray Exif(int orientation)
{
    QByteArray block("II*\0\x08\0\0\0", 8);
    const auto number = [&block](quint32 value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            block.append(char(value >> (8 * i)));
    };
    const auto tag = [&number](int id, int type, int count, quint32 value) {
        number(quint32(id), 2);
        number(quint32(type), 2);
        number(quint32(count), 4);
        number(value, 4);
    };
    constexpr quint32 Values = 8 + 2 + 5 * 12 + 4;
    number(5, 2);
    tag(0x010f, 2, 6, Values);
    tag(0x0112, 3, 1, quint32(orientation));
    tag(0x011a, 5, 1, Values + 6);
    tag(0x011b, 5, 1, Values + 14);
    tag(0x0128, 3, 1, 2);
    number(0, 4);
    block.append("Brush", 6);
    for (int i = 0; i < 2; ++i) {
        number(300, 4);
        number(1, 4);
    }
    return block;
}

/// A JPEG file with the EXIF block in it.
QByteArray JpegWithExif(const QImage& image, const QByteArray& exif)
{
    const QByteArray jpeg = Encode(image, "jpeg", 100);
    const int length = 2 + 6 + exif.size();
    QByteArray segment("\xff\xe1", 2);
    segment.append(char(length >> 8)).append(char(length & 0xff)).append("Exif\0\0", 6).append(exif);
    return jpeg.left(2) + segment + jpeg.mid(2);
}

QByteArray Xmp(const QByteArray& title = "Evening")
{
    return "<?xpacket begin=\"\xef\xbb\xbf\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>"
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
           "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
           "xmlns:tiff=\"http://ns.adobe.com/tiff/1.0/\" tiff:Orientation=\"6\" dc:source=\"" +
           title + "\"/></rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>";
}

/// IIM data set 2:120, the caption "Sea".
QByteArray Iptc() { return QByteArray("\x1c\x02\x78\x00\x03Sea", 8); }

KVImageMetadata FullMetadata()
{
    KVImageMetadata metadata;
    metadata.exif = Exif(1);
    metadata.iptc = Iptc();
    metadata.xmp = Xmp();
    metadata.iccProfile = QColorSpace(QColorSpace::AdobeRgb).iccProfile();
    metadata.texts = {{QStringLiteral("Author"), QStringLiteral("Zoë")}};
    metadata.dotsPerMeterX = 11811; // 300 dpi
    metadata.dotsPerMeterY = 11811;
    return metadata;
}

/// The header and the first rows of a PNG file of any size.
QByteArray PngThatClaims(quint32 width, quint32 height)
{
    QByteArray png = Encode(Quarters(), "png");
    qToBigEndian(width, png.data() + 16);
    qToBigEndian(height, png.data() + 20);
    quint32 crc = 0xffffffffu; // of the chunk's name and its 13 bytes
    for (int i = 12; i < 29; ++i) {
        crc ^= uchar(png[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320u : 0u);
    }
    qToBigEndian(~crc, png.data() + 29);
    return png;
}

int LargestDifference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
        }
    return largest;
}

/// What `work` says for the numbers below `count`, each asked on one of eight threads. Threads of the
/// standard library, whose hand-over the thread sanitizer sees.
QStringList OnManyThreads(int count, const std::function<QString(int)>& work)
{
    std::vector<QString> answers(static_cast<size_t>(count));
    std::atomic<int> next{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            for (int number = next++; number < count; number = next++)
                answers[size_t(number)] = work(number);
        });
    for (std::thread& thread : threads)
        thread.join();
    return QStringList(answers.begin(), answers.end());
}

QString ColorNames(const QImage& image)
{
    const auto name = [&image](int x, int y) {
        const QRgb pixel = image.pixel(x, y);
        const QString code =
            QStringLiteral("%1%2%3").arg(qRed(pixel) > 128).arg(qGreen(pixel) > 128).arg(qBlue(pixel) > 128);
        return code == QLatin1String("100")   ? 'r'
               : code == QLatin1String("010") ? 'g'
               : code == QLatin1String("001") ? 'b'
               : code == QLatin1String("111") ? 'w'
                                              : '?';
    };
    const int right = image.width() - 3;
    const int bottom = image.height() - 3;
    QString names;
    names.append(QLatin1Char(name(2, 2))).append(QLatin1Char(name(right, 2)));
    names.append(QLatin1Char(name(2, bottom))).append(QLatin1Char(name(right, bottom)));
    return names;
}

} // namespace

class TestKVImageFileManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void OffersEveryFormatInTheFileDialog();
    void PixelsSurvive_data();
    void PixelsSurvive();
    void MetadataSurvive_data();
    void MetadataSurvive();
    void NamesTheMetadataThatAFormatCannotHold();
    void TransparencyIsLaidOverWhiteForJpeg();
    void TurnsThePictureUpright_data();
    void TurnsThePictureUpright();
    void TellsReducedDepth_data();
    void TellsReducedDepth();
    void TellsOfFurtherPages();
    void GoesByContentNotByExtension();
    void RefusesOtherKindsOfPictures_data();
    void RefusesOtherKindsOfPictures();
    void ReadsAnotherKindWhenTold();
    void RefusesWhatIsNoPicture_data();
    void RefusesWhatIsNoPicture();
    void APipeIsRefusedAtOnce();
    void AnUnreadableFileIsAnError();
    void RefusesGiantsBeforeDecoding_data();
    void RefusesGiantsBeforeDecoding();
    void BmpFilesMayGoFromTopToBottom_data();
    void BmpFilesMayGoFromTopToBottom();
    void ACutFileIsAnErrorAtEveryByte_data();
    void ACutFileIsAnErrorAtEveryByte();
    void DamagedJpegIsAnError();
    void AnExistingFileIsReplacedOnlyWhenAllowed();
    void OfManyWritersOfOneNewFileOneWins();
    void AFailedWriteLeavesTheOldFileAndNoOther_data();
    void AFailedWriteLeavesTheOldFileAndNoOther();
    void PermissionsStay();
    void WritesThroughASymbolicLink();
    void RefusesTargetsThatAreNoFiles_data();
    void RefusesTargetsThatAreNoFiles();
    void ThreadsReadAndWriteAtOnce();

private:
    QString Path(const QString& name) const { return QDir(m_folder->path()).filePath(name); }
    QStringList Files() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestKVImageFileManager::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestKVImageFileManager::OffersEveryFormatInTheFileDialog()
{
    for (const QString& filter :
         {KVImageFileManager::GetFilterForRead(), KVImageFileManager::GetFilterForWrite()}) {
        for (const char* pattern : {"*.png", "*.jpg", "*.jpeg", "*.tif", "*.webp", "*.bmp", "*.ppm"})
            QVERIFY2(filter.contains(QLatin1String(pattern)), pattern);
        QCOMPARE(filter.count(QStringLiteral(";;")), 6);
        QVERIFY(!filter.contains(QStringLiteral("svg")));
    }
}

void TestKVImageFileManager::PixelsSurvive_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("quality");
    QTest::addColumn<bool>("isTransparent");
    QTest::addColumn<int>("tolerance");
    QTest::newRow("PNG") << "a.png" << -1 << false << 0;
    QTest::newRow("PNG with alpha") << "a.png" << -1 << true << 0;
    QTest::newRow("TIFF") << "a.tif" << -1 << false << 0;
    QTest::newRow("TIFF with alpha") << "a.tiff" << -1 << true << 1;
    QTest::newRow("BMP") << "a.bmp" << -1 << false << 0;
    QTest::newRow("PNM") << "a.ppm" << -1 << false << 0;
    QTest::newRow("lossless WebP") << "a.webp" << 100 << false << 0;
    QTest::newRow("JPEG") << "a.JPG" << 100 << false << 4;
}

void TestKVImageFileManager::PixelsSurvive()
{
    QFETCH(QString, name);
    QFETCH(int, quality);
    QFETCH(bool, isTransparent);
    QFETCH(int, tolerance);
    QImage image = Pattern(61, 33);
    for (int x = 0; tolerance > 0 && x < image.width(); ++x) // what such a format is made for
        for (int y = 0; y < image.height(); ++y)
            image.setPixel(x, y, qRgb(4 * x, 2 * x, 255 - 4 * x));
    if (isTransparent) {
        image = image.convertToFormat(QImage::Format_ARGB32);
        image.setPixel(3, 4, qRgba(10, 200, 30, 77));
    }
    KVImageFileManager::WriteOptions options;
    options.quality = quality;
    const auto written = KVImageFileManager::Write(Path(name), image, {}, options);
    QCOMPARE(written.error, QString());
    QCOMPARE(written.warning, QString());
    const auto result = KVImageFileManager::Read(Path(name));
    QCOMPARE(result.error, QString());
    QCOMPARE(result.metadataError, QString());
    QVERIFY(!result.depthReduced);
    QCOMPARE(result.image.size(), image.size());
    QCOMPARE(result.image.format(), isTransparent ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QVERIFY2(LargestDifference(result.image, image) <= tolerance,
             qPrintable(QString::number(LargestDifference(result.image, image))));
    QVERIFY(result.metadata.iccProfile.isEmpty());
    QCOMPARE(Files(), QStringList(name));
}

void TestKVImageFileManager::MetadataSurvive_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("hasIptc");
    QTest::addColumn<bool>("hasTexts");
    QTest::newRow("PNG") << "a.png" << true << true;
    QTest::newRow("JPEG") << "a.jpg" << true << true;
    QTest::newRow("TIFF") << "a.tif" << true << false;
    QTest::newRow("WebP") << "a.webp" << false << false;
}

void TestKVImageFileManager::MetadataSurvive()
{
    QFETCH(QString, name);
    QFETCH(bool, hasIptc);
    QFETCH(bool, hasTexts);
    KVImageMetadata metadata = FullMetadata();
    for (int round = 0; round < 3; ++round) { // nothing piles up or fades
        const auto written = KVImageFileManager::Write(Path(name), Quarters(), metadata, Overwriting());
        QCOMPARE(written.error, QString());
        const auto result = KVImageFileManager::Read(Path(name));
        QCOMPARE(result.error, QString());
        QCOMPARE(result.metadataError, QString());
        QCOMPARE(result.metadata.iccProfile, FullMetadata().iccProfile);
        QVERIFY(result.metadata.exif.contains("Brush"));
        QVERIFY(result.metadata.xmp.contains("Evening"));
        QVERIFY(result.metadata.xmp.contains("rientation=\"1\"") ||
                result.metadata.xmp.contains("rientation>1<"));
        QCOMPARE(result.metadata.iptc, hasIptc ? Iptc() : QByteArray());
        if (hasTexts)
            QCOMPARE(result.metadata.texts, FullMetadata().texts);
        QCOMPARE(result.metadata.dotsPerMeterX, 11811);
        QCOMPARE(result.metadata.dotsPerMeterY, 11811);
        metadata = result.metadata;
    }
    if (name.endsWith(QLatin1String("png")) || name.endsWith(QLatin1String("jpg")))
        QCOMPARE(QImage(Path(name)).colorSpace().iccProfile().size(), FullMetadata().iccProfile.size());
}

void TestKVImageFileManager::NamesTheMetadataThatAFormatCannotHold()
{
    const auto written =
        KVImageFileManager::Write(Path(QStringLiteral("a.bmp")), Quarters(), FullMetadata(), {});
    QCOMPARE(written.error, QString());
    QVERIFY(written.warning.contains(QStringLiteral("EXIF, IPTC, XMP, ICC")));
    QVERIFY(written.warning.startsWith(Path(QStringLiteral("a.bmp"))));
    QCOMPARE(KVImageFileManager::Read(Path(QStringLiteral("a.bmp"))).metadata.dotsPerMeterX, 11811);
}

void TestKVImageFileManager::TransparencyIsLaidOverWhiteForJpeg()
{
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(qRgba(0, 0, 0, 51)); // a fifth of black over white is 204
    QCOMPARE(KVImageFileManager::Write(Path(QStringLiteral("a.jpg")), image, {}, {}).error, QString());
    const QImage read = KVImageFileManager::Read(Path(QStringLiteral("a.jpg"))).image;
    QVERIFY(std::abs(qRed(read.pixel(8, 8)) - 204) <= 2);
}

void TestKVImageFileManager::TurnsThePictureUpright_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << 0 << "rgbw";
    QTest::newRow("upright") << 1 << "rgbw";
    QTest::newRow("mirrored") << 2 << "grwb";
    QTest::newRow("half a turn") << 3 << "wbgr";
    QTest::newRow("upside down mirrored") << 4 << "bwrg";
    QTest::newRow("transposed") << 5 << "rbgw";
    QTest::newRow("to be turned right") << 6 << "brwg";
    QTest::newRow("transversed") << 7 << "wgbr";
    QTest::newRow("to be turned left") << 8 << "gwrb";
    QTest::newRow("no orientation at all") << 9 << "rgbw";
}

void TestKVImageFileManager::TurnsThePictureUpright()
{
    QFETCH(int, orientation);
    QFETCH(QString, expected);
    const QString path = Path(QStringLiteral("a.jpg"));
    Store(path, JpegWithExif(Quarters(), Exif(orientation)));
    const auto result = KVImageFileManager::Read(path);
    QCOMPARE(result.error, QString());
    QCOMPARE(ColorNames(result.image), expected);
    const bool isQuarterTurn = orientation >= 5 && orientation <= 8;
    QCOMPARE(result.image.size(), isQuarterTurn ? QSize(16, 32) : QSize(32, 16));

    // Written again it needs no more turning, in a program that looks at the tag and in one that does not.
    for (const char* name : {"b.jpg", "b.tif", "b.png", "b.webp"}) {
        const QString copy = Path(QLatin1String(name));
        QCOMPARE(KVImageFileManager::Write(copy, result.image, result.metadata, {}).error, QString());
        QCOMPARE(ColorNames(KVImageFileManager::Read(copy).image), expected);
        QImageReader reader(copy);
        reader.setAutoTransform(true);
        QCOMPARE(ColorNames(reader.read()), expected);
        QCOMPARE(ColorNames(QImage(copy)), expected);
    }
}

void TestKVImageFileManager::TellsReducedDepth_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("depthReduced");
    const auto png = [](QImage::Format format) { return Encode(Quarters().convertToFormat(format), "png"); };
    const auto tiff = [](QImage::Format format) {
        return Encode(Quarters().convertToFormat(format), "tiff");
    };
    QTest::newRow("8-bit PNG") << png(QImage::Format_RGB32) << false;
    QTest::newRow("palette PNG") << png(QImage::Format_Indexed8) << false;
    QTest::newRow("16-bit PNG") << png(QImage::Format_RGBX64) << true;
    QTest::newRow("16-bit PNG with alpha") << png(QImage::Format_RGBA64) << true;
    QTest::newRow("16-bit grey PNG") << png(QImage::Format_Grayscale16) << true;
    QTest::newRow("8-bit TIFF") << tiff(QImage::Format_RGB32) << false;
    QTest::newRow("16-bit TIFF") << tiff(QImage::Format_RGBX64) << true;
    QTest::newRow("8-bit PNM") << QByteArray("P6 # 999\n1 1 255\nabc") << false;
    QTest::newRow("16-bit PNM") << QByteArray("P6 # 12\n1 1 65535\naabbcc") << true;
    QTest::newRow("bitmap PNM") << QByteArray("P1\n2 1\n1 0\n") << false;
}

void TestKVImageFileManager::TellsReducedDepth()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, depthReduced);
    const QString path = Path(QStringLiteral("picture"));
    Store(path, bytes);
    const auto result = KVImageFileManager::Read(path);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.depthReduced, depthReduced);
    QCOMPARE(result.image.depth(), 32);
}

void TestKVImageFileManager::TellsOfFurtherPages()
{
    const QString path = Path(QStringLiteral("a.tif"));
    for (const char* format : {"png", "jpeg", "tiff", "webp", "bmp", "ppm"}) {
        Store(path, Encode(Quarters(), format));
        QVERIFY2(!KVImageFileManager::Read(path).hasMorePictures, format);
    }
    Store(path, TestFiles::WithASecondPage(Encode(Quarters(), "tiff")));
    const auto result = KVImageFileManager::Read(path);
    QCOMPARE(result.error, QString());
    QVERIFY(result.hasMorePictures);
    QCOMPARE(result.image, Quarters());
}

void TestKVImageFileManager::GoesByContentNotByExtension()
{
    const QString path = Path(QStringLiteral("a.png"));
    Store(path, Encode(Quarters(), "jpeg"));
    const auto result = KVImageFileManager::Read(path);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.format, QByteArray("jpeg"));
}

void TestKVImageFileManager::RefusesOtherKindsOfPictures_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("SVG") << QByteArray(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>");
    QTest::newRow("GIF") << QByteArray(
        "GIF89a\x01\0\x01\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\x01\0\x01\0\0\x02\x02"
        "D\x01\0;",
        35);
}

void TestKVImageFileManager::RefusesOtherKindsOfPictures()
{
    QFETCH(QByteArray, bytes);
    const QString path = Path(QStringLiteral("a.png"));
    Store(path, bytes);
    const auto result = KVImageFileManager::Read(path);
    QVERIFY(result.image.isNull());
    QVERIFY2(result.error.startsWith(path) && result.error.contains(QStringLiteral("are not read")),
             qPrintable(result.error));
}

void TestKVImageFileManager::ReadsAnotherKindWhenTold()
{
    const QString path = Path(QStringLiteral("a.xbm"));
    Store(path, Encode(Quarters(), "xbm"));
    KVImageFileManager::ReadOptions options;
    QVERIFY(!KVImageFileManager::Read(path, options).error.isEmpty());
    options.formats.append("xbm");
    const auto result = KVImageFileManager::Read(path, options);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.image.size(), QSize(32, 16));
    options.formats = {"png"};
    QVERIFY(!KVImageFileManager::Read(path, options).error.isEmpty());
}

void TestKVImageFileManager::RefusesWhatIsNoPicture_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing.png");
    QTest::newRow("a folder") << QStringLiteral("/");
    QTest::newRow("a device") << QStringLiteral("/dev/zero");
    QTest::newRow("no name") << QString();
    QTest::newRow("an endless text of the kernel") << QStringLiteral("/proc/self/maps");
}

void TestKVImageFileManager::RefusesWhatIsNoPicture()
{
    QFETCH(QString, name);
    const QString path = name.isEmpty() ? name : Path(name); // an absolute name stays as it is
    const auto result = KVImageFileManager::Read(path);
    QVERIFY(result.image.isNull());
    QVERIFY(result.error.startsWith(path + QStringLiteral(": ")));
    QVERIFY(result.error.size() > path.size() + 2);
}

void TestKVImageFileManager::APipeIsRefusedAtOnce()
{
    const QString path = Path(QStringLiteral("pipe.png"));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!KVImageFileManager::Read(path).error.isEmpty());
    QVERIFY(!KVImageFileManager::Write(path, Quarters(), {}, Overwriting()).error.isEmpty());
    QVERIFY(timer.elapsed() < PromptMs);
}

void TestKVImageFileManager::AnUnreadableFileIsAnError()
{
    const QString path = Path(QStringLiteral("a.png"));
    Store(path, Encode(Quarters(), "png"));
    QVERIFY(QFile::setPermissions(path, QFile::Permissions()));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permission(0x7777)));
    // The superuser may read everything, so the check is made as nobody.
    const bool isSuperuser = ::geteuid() == 0;
    if (isSuperuser)
        QCOMPARE(::seteuid(65534), 0);
    const QString error = KVImageFileManager::Read(path).error;
    if (isSuperuser)
        QCOMPARE(::seteuid(0), 0);
    QVERIFY2(error.contains(QStringLiteral("ermission")), qPrintable(error));
}

void TestKVImageFileManager::RefusesGiantsBeforeDecoding_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const QString allowed = QStringLiteral("more than allowed");
    QTest::newRow("PNG of 3.6 gigapixels") << PngThatClaims(60000, 60000) << allowed;
    QTest::newRow("PNG with a long side") << PngThatClaims(65536, 1) << allowed;
    QTest::newRow("PNM") << QByteArray("P6 60000 60000 255\nabc") << "beyond all bounds";
    QByteArray bmp = Encode(Quarters(), "bmp");
    qToLittleEndian(qint32(60000), bmp.data() + 18);
    qToLittleEndian(qint32(-60000), bmp.data() + 22);
    QTest::newRow("BMP of 3.6 gigapixels") << bmp << "beyond all bounds";
    qToLittleEndian(qint32(100), bmp.data() + 18);
    qToLittleEndian(qint32(-65536), bmp.data() + 22);
    QTest::newRow("BMP with a long side, from top to bottom") << bmp << allowed;
    qToLittleEndian(std::numeric_limits<qint32>::min(), bmp.data() + 22);
    QTest::newRow("BMP of the lowest height") << bmp << "beyond all bounds";
    QByteArray jpeg = Encode(Quarters(), "jpeg");
    const int frame = jpeg.indexOf(QByteArray("\xff\xc0\x00\x11", 4));
    qToBigEndian(quint16(60000), jpeg.data() + frame + 5);
    qToBigEndian(quint16(60000), jpeg.data() + frame + 7);
    QTest::newRow("JPEG") << jpeg << allowed;
}

void TestKVImageFileManager::RefusesGiantsBeforeDecoding()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    const QString path = Path(QStringLiteral("a.png"));
    Store(path, bytes);
    QElapsedTimer timer;
    timer.start();
    const MemoryLimit noRoomForAGiant;
    const auto result = KVImageFileManager::Read(path);
    QVERIFY(timer.elapsed() < PromptMs);
    QVERIFY(result.image.isNull());
    QVERIFY2(result.error.contains(expected), qPrintable(result.error));
    KVImageFileManager::ReadOptions options;
    options.maxPixels = 32 * 16 - 1;
    Store(path, Encode(Quarters(), "png"));
    QVERIFY(!KVImageFileManager::Read(path, options).error.isEmpty());
    options.maxPixels = 32 * 16;
    QCOMPARE(KVImageFileManager::Read(path, options).error, QString());
}

namespace {

/// The BMP file with its rows, of which there are `height`, in the other order.
QByteArray TopDown(const QByteArray& bmp, int height)
{
    const int start = qFromLittleEndian<qint32>(bmp.constData() + 10);
    const int rowSize = (bmp.size() - start) / height;
    QByteArray turned = bmp.left(start);
    qToLittleEndian(qint32(-height), turned.data() + 22);
    for (int y = height - 1; y >= 0; --y)
        turned += bmp.mid(start + y * rowSize, rowSize);
    return turned;
}

} // namespace

void TestKVImageFileManager::BmpFilesMayGoFromTopToBottom_data()
{
    QTest::addColumn<QImage>("image");
    const QImage image = Pattern(19, 13);
    QTest::newRow("24 bits") << image;
    QTest::newRow("palette") << image.convertToFormat(QImage::Format_Indexed8);
    QTest::newRow("two colours") << image.convertToFormat(QImage::Format_Mono);
    QTest::newRow("one row") << Pattern(19, 1);
}

void TestKVImageFileManager::BmpFilesMayGoFromTopToBottom()
{
    QFETCH(QImage, image);
    const QString path = Path(QStringLiteral("a.bmp"));
    Store(path, Encode(image, "bmp"));
    const QImage expected = KVImageFileManager::Read(path).image;
    QVERIFY(!expected.isNull());
    Store(path, TopDown(Encode(image, "bmp"), image.height()));
    const auto result = KVImageFileManager::Read(path);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.image, expected);
}

void TestKVImageFileManager::ACutFileIsAnErrorAtEveryByte_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("harmless"); // bytes at the end that say nothing about pixels
    const QImage image = Pattern(19, 13);
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    QTest::newRow("PNG") << Encode(image, "png") << 4; // checksum of the empty last chunk
    QTest::newRow("JPEG") << Encode(image, "jpeg") << 0;
    QTest::newRow("grey JPEG") << Encode(grey, "jpeg") << 0;
    QBuffer buffer;
    QImageWriter progressive(&buffer, "jpeg");
    progressive.setProgressiveScanWrite(true);
    QVERIFY(progressive.write(image));
    QTest::newRow("progressive JPEG") << buffer.data() << 0;
    QTest::newRow("TIFF") << Encode(image, "tiff") << 0;
    QTest::newRow("WebP") << Encode(image, "webp") << 0;
    QTest::newRow("BMP") << Encode(image, "bmp") << 0;
    QTest::newRow("palette BMP") << Encode(grey, "bmp") << 0;
    QTest::newRow("BMP from top to bottom") << TopDown(Encode(image, "bmp"), 13) << 0;
    QTest::newRow("PPM") << Encode(image, "ppm") << 0;
    QTest::newRow("PGM") << Encode(grey, "pgm") << 0;
    QTest::newRow("text PPM") << QByteArray("P3\n2 2\n255\n1 2 3 4 5 6 7 8 9 10 11 12") << 1; // 1 for 12
}

void TestKVImageFileManager::ACutFileIsAnErrorAtEveryByte()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, harmless);
    const QString path = Path(QStringLiteral("cut"));
    Store(path, bytes);
    const MemoryLimit smallFilesNeedLittle;
    QCOMPARE(KVImageFileManager::Read(path).error, QString());
    for (int length = 0; length < bytes.size() - harmless; ++length) {
        Store(path, bytes.left(length));
        const auto result = KVImageFileManager::Read(path);
        QVERIFY2(!result.error.isEmpty(),
                 qPrintable(QStringLiteral("%1 of %2 bytes").arg(length).arg(bytes.size())));
        QVERIFY(result.image.isNull());
    }
}

void TestKVImageFileManager::DamagedJpegIsAnError()
{
    const QString path = Path(QStringLiteral("a.jpg"));
    QByteArray bytes = Encode(Pattern(200, 200), "jpeg");
    bytes.replace(bytes.size() / 2, 2, QByteArray("\xff\xd9", 2)); // the end comes too early
    Store(path, bytes);
    const auto result = KVImageFileManager::Read(path);
    QVERIFY(result.image.isNull());
    QVERIFY2(result.error.contains(QStringLiteral("damaged")), qPrintable(result.error));
}

void TestKVImageFileManager::AnExistingFileIsReplacedOnlyWhenAllowed()
{
    const QString path = Path(QStringLiteral("a.png"));
    Store(path, "old");
    const QString error = KVImageFileManager::Write(path, Quarters(), {}, {}).error;
    QVERIFY2(error.startsWith(path) && error.contains(QStringLiteral("exists")), qPrintable(error));
    QCOMPARE(BytesOf(path), QByteArray("old"));
    QCOMPARE(KVImageFileManager::Write(path, Quarters(), {}, Overwriting()).error, QString());
    QCOMPARE(KVImageFileManager::Read(path).image, Quarters());
    QCOMPARE(Files(), QStringList(QStringLiteral("a.png")));
}

void TestKVImageFileManager::OfManyWritersOfOneNewFileOneWins()
{
    const QString path = Path(QStringLiteral("a.png"));
    QList<QImage> images;
    for (int i = 0; i < 16; ++i)
        images.append(Pattern(40 + i, 40));
    const QStringList errors = OnManyThreads(
        images.size(), [&](int i) { return KVImageFileManager::Write(path, images.at(i), {}, {}).error; });
    QCOMPARE(errors.count(QString()), 1);
    QCOMPARE(KVImageFileManager::Read(path).image, images[errors.indexOf(QString())]);
    QCOMPARE(Files(), QStringList(QStringLiteral("a.png")));
}

void TestKVImageFileManager::AFailedWriteLeavesTheOldFileAndNoOther_data()
{
    QTest::addColumn<bool>("overwrite");
    QTest::newRow("a new file") << false;
    QTest::newRow("an existing file") << true;
}

void TestKVImageFileManager::AFailedWriteLeavesTheOldFileAndNoOther()
{
    QFETCH(bool, overwrite);
    const QString path = Path(QStringLiteral("a.bmp"));
    if (overwrite)
        Store(path, "old");
    // A file that may not grow beyond a limit fails in the middle, as on a full disk.
    rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight = {100000, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    KVImageFileManager::WriteOptions options;
    options.overwrite = overwrite;
    const QString error = KVImageFileManager::Write(path, Pattern(400, 400), {}, options).error;
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);
    QVERIFY(error.startsWith(path));
    QCOMPARE(Files(), overwrite ? QStringList(QStringLiteral("a.bmp")) : QStringList());
    QCOMPARE(BytesOf(path), overwrite ? QByteArray("old") : QByteArray());
}

void TestKVImageFileManager::PermissionsStay()
{
    const QString path = Path(QStringLiteral("a.png"));
    Store(path, "old");
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0640), 0);
    QCOMPARE(KVImageFileManager::Write(path, Quarters(), {}, Overwriting()).error, QString());
    struct stat info = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
    QCOMPARE(info.st_mode & 07777u, mode_t(0640));

    const mode_t mask = ::umask(027);
    const QString fresh = Path(QStringLiteral("b.png"));
    const QString error = KVImageFileManager::Write(fresh, Quarters(), {}, {}).error;
    ::umask(mask);
    QCOMPARE(error, QString());
    QCOMPARE(::stat(QFile::encodeName(fresh).constData(), &info), 0);
    QCOMPARE(info.st_mode & 07777u, mode_t(0640));
}

void TestKVImageFileManager::WritesThroughASymbolicLink()
{
    const QString path = Path(QStringLiteral("a.png"));
    const QString link = Path(QStringLiteral("link.png"));
    Store(path, "old");
    QVERIFY(QFile::link(path, link));
    QVERIFY(!KVImageFileManager::Write(link, Quarters(), {}, {}).error.isEmpty());
    QCOMPARE(KVImageFileManager::Write(link, Quarters(), {}, Overwriting()).error, QString());
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(KVImageFileManager::Read(path).image, Quarters());
}

void TestKVImageFileManager::RefusesTargetsThatAreNoFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a device") << QStringLiteral("/dev/full");
    QTest::newRow("a folder") << QStringLiteral("/tmp");
    QTest::newRow("in a missing folder") << QStringLiteral("missing/a.png");
    QTest::newRow("unknown kind") << QStringLiteral("a.xyz");
    QTest::newRow("no extension") << QStringLiteral("a");
    QTest::newRow("in a file") << QStringLiteral("a.bmp/a.png");
}

void TestKVImageFileManager::RefusesTargetsThatAreNoFiles()
{
    QFETCH(QString, name);
    const QString path = name.isEmpty() ? name : Path(name); // an absolute name stays as it is
    Store(Path(QStringLiteral("a.bmp")), "old");
    KVImageFileManager::WriteOptions options = Overwriting();
    if (path.startsWith(QLatin1String("/dev")) || path == QLatin1String("/tmp"))
        options.format = "png";
    for (const bool overwrite : {true, false}) {
        options.overwrite = overwrite;
        const QString error = KVImageFileManager::Write(path, Quarters(), {}, options).error;
        QVERIFY2(error.startsWith(path + QStringLiteral(": ")), qPrintable(error));
    }
    QVERIFY(!QFileInfo(QStringLiteral("/dev/full")).isFile());
    QCOMPARE(Files(), QStringList(QStringLiteral("a.bmp")));
}

void TestKVImageFileManager::ThreadsReadAndWriteAtOnce()
{
    const char* const suffixes[] = {"jpg", "png", "tif", "webp"};
    const auto work = [&](int number) {
        const QString path =
            Path(QStringLiteral("%1.%2").arg(number).arg(QLatin1String(suffixes[number % 4])));
        const QByteArray title = "Title " + QByteArray::number(number);
        KVImageMetadata metadata = FullMetadata();
        metadata.xmp = Xmp(title);
        const QString error = KVImageFileManager::Write(path, Quarters(), metadata, {}).error;
        const auto result = KVImageFileManager::Read(path);
        return error + result.error + result.metadataError +
               (result.metadata.xmp.contains(title) ? QString() : QStringLiteral("another title"));
    };
    const QStringList errors = OnManyThreads(60, work);
    QCOMPARE(errors.count(QString()), 60);
}

QTEST_GUILESS_MAIN(TestKVImageFileManager)
#include "tst_KVImageFileManager.moc"
