#include "core/KVImageFileManager.h"

#include "core/JpegDecoder.h"
#include "core/MetadataCodec.h"
#include "core/PictureBlocks.h"
#include "core/WholeFile.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QVector>
#include <QtEndian>

#include <algorithm>
#include <limits>

namespace {

/// A file that is larger than this even beside all of its pixels at 16 bits holds something else.
constexpr qint64 MaxBytesBesidePixels = 256 * 1024 * 1024;
constexpr qint64 MaxBytesPerPixel = 8;
constexpr int DefaultQuality = 95;

struct Format
{
    const char* name; ///< of QImageReader and QImageWriter
    const char* title;
    const char* suffixes;
    int maxSide; ///< that a file can hold
};

constexpr Format Formats[] = {
    {"png", "PNG", "png", std::numeric_limits<int>::max()},
    {"jpeg", "JPEG", "jpg jpeg jpe jfif", 65500},
    {"tiff", "TIFF", "tif tiff", std::numeric_limits<int>::max()},
    {"webp", "WebP", "webp", 16383},
    {"bmp", "BMP", "bmp dib", std::numeric_limits<int>::max()},
    {"ppm", "PNM", "ppm pgm pbm pnm", std::numeric_limits<int>::max()},
};

QList<QByteArray> SuffixesOf(const Format& format) { return QByteArray(format.suffixes).split(' '); }

const Format* FindFormat(const QByteArray& name)
{
    for (const Format& format : Formats)
        if (name == format.name)
            return &format;
    return nullptr;
}

QString Filter(const QList<QByteArray>& supported)
{
    QStringList all;
    QStringList filters;
    for (const Format& format : Formats) {
        if (!supported.contains(format.name))
            continue;
        QStringList patterns;
        for (const QByteArray& suffix : SuffixesOf(format))
            patterns.append(QStringLiteral("*.") + QString::fromLatin1(suffix));
        filters.append(QStringLiteral("%1 (%2)").arg(QString::fromLatin1(format.title),
                                                     patterns.join(QLatin1Char(' '))));
        all += patterns;
    }
    if (filters.isEmpty())
        return {};
    filters.prepend(KVImageFileManager::tr("All pictures (%1)").arg(all.join(QLatin1Char(' '))));
    return filters.join(QStringLiteral(";;"));
}

/// What the first bytes say. The formats of the table are told here, so that no plug-in of another format
/// gets to see a file that is none of its business.
QByteArray FormatOfContent(QIODevice& file)
{
    const QByteArray head = file.peek(16);
    if (head.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (head.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (head.startsWith("II*") || head.startsWith(QByteArray("MM\0*", 4)) || head.startsWith("II+") ||
        head.startsWith(QByteArray("MM\0+", 4)))
        return "tiff";
    if (head.startsWith("RIFF") && head.mid(8, 4) == "WEBP")
        return "webp";
    if (head.startsWith("BM"))
        return "bmp";
    if (head.size() > 2 && head[0] == 'P' && head[1] >= '1' && head[1] <= '6' && isspace(uchar(head[2])))
        return "ppm";
    return QImageReader::imageFormat(&file);
}

QByteArray AllowedFormat(QIODevice& file, const QList<QByteArray>& allowed, QString& reason)
{
    const QByteArray format = FormatOfContent(file);
    if (format.isEmpty())
        reason = file.size() == 0 ? KVImageFileManager::tr("the file is empty")
                                  : KVImageFileManager::tr("it is no picture of a known kind");
    else if (!allowed.contains(format))
        reason =
            KVImageFileManager::tr("pictures of the kind %1 are not read").arg(QString::fromLatin1(format));
    return reason.isEmpty() ? format : QByteArray();
}

QString WhyTooLarge(const QSize& size, const KVImageFileManager::ReadOptions& options)
{
    if (!size.isValid() || size.isEmpty())
        return KVImageFileManager::tr("the picture has no size, or one beyond all bounds");
    const qint64 pixels = qint64(size.width()) * size.height();
    if (size.width() <= options.maxSide && size.height() <= options.maxSide && pixels <= options.maxPixels)
        return {};
    return KVImageFileManager::tr("%1 x %2 pixels are more than allowed (%3 pixels, %4 a side)")
        .arg(size.width())
        .arg(size.height())
        .arg(options.maxPixels)
        .arg(options.maxSide);
}

/// Qt takes rows that are missing at the end of a BMP file for black ones.
bool IsCutBmp(const QByteArray& bytes, const QSize& size)
{
    constexpr int HeaderSize = 54;
    if (bytes.size() < HeaderSize)
        return bytes.size() < 26;
    const auto number = [&bytes](int at) { return qFromLittleEndian<quint32>(bytes.constData() + at); };
    const qint64 start = number(10);
    const bool isOld = number(14) == 12;
    const qint64 bits = qFromLittleEndian<quint16>(bytes.constData() + (isOld ? 24 : 28));
    const quint32 compression = isOld ? 0 : number(30);
    const bool isRunLength = compression == 1 || compression == 2;
    const qint64 rows = (size.width() * bits + 31) / 32 * 4 * size.height();
    return start + (isRunLength ? qint64(number(34)) : rows) > bytes.size();
}

/// The largest value of a PNM file, whose depth Qt reduces without a word.
bool IsDeepPnm(const QByteArray& bytes)
{
    if (bytes[1] == '1' || bytes[1] == '4')
        return false;
    int numbers = 0;
    for (int at = 2; at < bytes.size();) {
        if (bytes[at] == '#') {
            while (at < bytes.size() && bytes[at] != '\n')
                ++at;
        } else if (isdigit(uchar(bytes[at]))) {
            const int start = at;
            while (at < bytes.size() && isdigit(uchar(bytes[at])))
                ++at;
            if (++numbers == 3)
                return bytes.mid(start, at - start).toInt() > 255;
        } else {
            ++at;
        }
    }
    return false;
}

bool IsDeep(const QImage& image)
{
    return image.depth() > 32 || image.format() == QImage::Format_Grayscale16 ||
           image.format() == QImage::Format_BGR30 || image.format() == QImage::Format_RGB30 ||
           image.format() == QImage::Format_A2BGR30_Premultiplied ||
           image.format() == QImage::Format_A2RGB30_Premultiplied;
}

QImage Upright(const QImage& image, int orientation)
{
    switch (orientation) {
    case 2:
        return image.mirrored(true, false);
    case 3:
        return image.mirrored(true, true);
    case 4:
        return image.mirrored(false, true);
    case 5:
        return image.mirrored(true, false).transformed(QTransform().rotate(270));
    case 6:
        return image.transformed(QTransform().rotate(90));
    case 7:
        return image.mirrored(true, false).transformed(QTransform().rotate(90));
    case 8:
        return image.transformed(QTransform().rotate(270));
    default:
        return image;
    }
}

/// The bytes of a picture that may be decoded, and what kind it is.
struct Encoded
{
    QByteArray bytes;
    QByteArray format;
    QSize size;
    QString error;
};

Encoded Load(const QString& path, const KVImageFileManager::ReadOptions& options)
{
    Encoded encoded;
    const auto inspect = [&](QIODevice& file) {
        QString reason;
        encoded.format = AllowedFormat(file, options.formats, reason);
        if (!reason.isEmpty())
            return reason;
        QImageReader reader(&file, encoded.format);
        reader.setAutoDetectImageFormat(false);
        encoded.size = reader.size();
        return WhyTooLarge(encoded.size, options);
    };
    const qint64 maxBytes = options.maxPixels * MaxBytesPerPixel + MaxBytesBesidePixels;
    const WholeFile::Content content = WholeFile::Read(path, maxBytes, inspect);
    encoded.bytes = content.bytes;
    encoded.error = content.error;
    return encoded;
}

/// Blocks that PNG files keep as texts; they travel as what they are.
bool IsMetadataBlock(const QString& key)
{
    return key.startsWith(QLatin1String("Raw profile type")) || key == QLatin1String("XML:com.adobe.xmp");
}

/// Some programs end comments as C does.
QString WithoutEndMark(QString text)
{
    while (text.endsWith(QChar::Null))
        text.chop(1);
    return text;
}

/// Of a reader, which knows the comments of a JPEG file, or of a decoded picture, which keeps the keys of all
/// others apart.
template <class Source>
QMap<QString, QString> TextsOf(const Source& source)
{
    QMap<QString, QString> texts;
    for (const QString& key : source.textKeys())
        if (!IsMetadataBlock(key))
            texts.insert(key, WithoutEndMark(source.text(key)));
    return texts;
}

/// Decodes the pixels as they are in the file; `result` gets the texts on the way.
QImage Decode(const Encoded& encoded, KVImageFileManager::ReadResult& result, QString& reason)
{
    QBuffer buffer;
    buffer.setData(encoded.bytes);
    QImageReader reader(&buffer, encoded.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(false);
    if (!buffer.open(QIODevice::ReadOnly) || reader.size() != encoded.size ||
        (encoded.format == "bmp" && IsCutBmp(encoded.bytes, encoded.size))) {
        reason = KVImageFileManager::tr("the picture is damaged");
        return {};
    }
    if (encoded.format == "jpeg") {
        result.metadata.texts = TextsOf(reader);
        const JpegDecoder::Result decoded = JpegDecoder::Decode(encoded.bytes);
        reason = decoded.error;
        result.metadata.dotsPerMeterX = decoded.dotsPerMeterX;
        result.metadata.dotsPerMeterY = decoded.dotsPerMeterY;
        return decoded.image;
    }
    QImage image;
    if (!reader.read(&image) || image.isNull()) {
        reason = KVImageFileManager::tr("the picture is damaged (%1)").arg(reader.errorString());
        return {};
    }
    result.metadata.texts = TextsOf(image);
    return image;
}

/// Sets the resolution that the file itself states: Qt gives a picture without one that of the screen.
void TakeResolution(const Encoded& encoded, const QImage& decoded, KVImageMetadata& metadata)
{
    constexpr int BmpHeaderEnd = 54;
    constexpr int BmpResolution = 38;
    constexpr int BmpOldHeader = 12;
    if (encoded.format == "png" && PictureBlocks::HasPngResolution(encoded.bytes)) {
        metadata.dotsPerMeterX = decoded.dotsPerMeterX();
        metadata.dotsPerMeterY = decoded.dotsPerMeterY();
    } else if (encoded.format == "bmp" && encoded.bytes.size() >= BmpHeaderEnd &&
               qFromLittleEndian<quint32>(encoded.bytes.constData() + 14) != BmpOldHeader) {
        const char* fields = encoded.bytes.constData() + BmpResolution;
        metadata.dotsPerMeterX = qMax(qFromLittleEndian<qint32>(fields), 0);
        metadata.dotsPerMeterY = qMax(qFromLittleEndian<qint32>(fields + 4), 0);
    }
}

void TakeMetadata(const Encoded& encoded, const QImage& decoded, KVImageFileManager::ReadResult& result,
                  int& orientation)
{
    MetadataCodec::Content content;
    if (encoded.format != "ppm") // has none, and the library knows nothing of it
        content = MetadataCodec::Extract(encoded.bytes);
    orientation = content.orientation;
    result.metadataError = content.error;
    result.depthReduced =
        IsDeep(decoded) || content.bitsPerSample > 8 || (encoded.format == "ppm" && IsDeepPnm(encoded.bytes));
    TakeResolution(encoded, decoded, result.metadata);
    content.metadata.texts = result.metadata.texts;
    if (content.metadata.dotsPerMeterX == 0 || content.metadata.dotsPerMeterY == 0) {
        content.metadata.dotsPerMeterX = result.metadata.dotsPerMeterX;
        content.metadata.dotsPerMeterY = result.metadata.dotsPerMeterY;
    }
    result.metadata = content.metadata;
    if (result.metadata.iccProfile.isEmpty() && decoded.colorSpace().isValid() &&
        decoded.colorSpace() != QColorSpace(QColorSpace::SRgb))
        result.metadata.iccProfile =
            decoded.colorSpace().iccProfile(); // a PNG file with primaries and a gamma
}

/// The same pixels without texts, colour space and resolution; QImage cannot forget a text.
QImage PixelsOnly(const QImage& image)
{
    if (image.isNull())
        return {};
    auto* kept = new QImage(image);
    return QImage(
        kept->constBits(), kept->width(), kept->height(), kept->bytesPerLine(), kept->format(),
        [](void* pixels) { delete static_cast<QImage*>(pixels); }, kept);
}

/// 8 bits, upright, without the metadata that travel beside the pixels.
QImage Normalized(QImage image, int orientation)
{
    const bool isTransparent = image.hasAlphaChannel();
    image = std::move(image).convertToFormat(isTransparent ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image = Upright(image, orientation);
    return PixelsOnly(image);
}

bool IsOpaque(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return true;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (!std::all_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) == 255; }))
            return false;
    }
    return true;
}

QImage OverWhite(const QImage& image)
{
    QImage flat(image.size(), QImage::Format_RGB32);
    flat.fill(Qt::white);
    QPainter(&flat).drawImage(0, 0, image);
    return flat;
}

/// The pixels in the form that is written: no alpha where it says nothing, grey only where a grey profile
/// asks for it.
QImage Prepared(const QImage& source, const QByteArray& format, const KVImageMetadata& metadata)
{
    QImage image =
        source.convertToFormat(source.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (IsOpaque(image))
        image = std::move(image).convertToFormat(QImage::Format_RGB32);
    else if (format == "jpeg" || format == "ppm")
        image = OverWhite(image);
    constexpr int ColorSpaceOffset = 16;
    if (metadata.iccProfile.mid(ColorSpaceOffset, 4) == "GRAY" && !image.hasAlphaChannel() && image.allGray())
        image = std::move(image).convertToFormat(QImage::Format_Grayscale8);
    image = PixelsOnly(image);
    if (format == "jpeg") // gets them, and its resolution, once it is encoded
        return image;
    for (auto text = metadata.texts.cbegin(); text != metadata.texts.cend(); ++text)
        image.setText(text.key(), text.value());
    image.setDotsPerMeterX(metadata.dotsPerMeterX);
    image.setDotsPerMeterY(metadata.dotsPerMeterY);
    return image;
}

QByteArray Encode(const QImage& image, const QByteArray& format, int quality, QString& reason)
{
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    if (format == "jpeg" || format == "webp")
        writer.setQuality(quality < 0 ? DefaultQuality : qMin(quality, 100));
    if (format == "tiff")
        writer.setCompression(1); // LZW, which loses nothing
    if (!writer.write(image))
        reason = writer.errorString();
    return buffer.data();
}

/// What the encoder left out or made up of the resolution and the texts.
QByteArray Completed(const QByteArray& picture, const QByteArray& format, const KVImageMetadata& metadata)
{
    if (format == "png" && (metadata.dotsPerMeterX <= 0 || metadata.dotsPerMeterY <= 0))
        return PictureBlocks::PngWithoutResolution(picture);
    if (format != "jpeg")
        return picture;
    const QByteArray jpeg =
        PictureBlocks::JpegWithResolution(picture, metadata.dotsPerMeterX, metadata.dotsPerMeterY);
    return PictureBlocks::JpegWithTexts(jpeg, metadata.texts);
}

} // namespace

QList<QByteArray> KVImageFileManager::DefaultFormats()
{
    const QList<QByteArray> supported = QImageReader::supportedImageFormats();
    QList<QByteArray> formats;
    for (const Format& format : Formats)
        if (supported.contains(format.name))
            formats.append(format.name);
    return formats;
}

QString KVImageFileManager::GetFilterForRead() { return Filter(QImageReader::supportedImageFormats()); }

QString KVImageFileManager::GetFilterForWrite() { return Filter(QImageWriter::supportedImageFormats()); }

QByteArray KVImageFileManager::FormatOfName(const QString& path)
{
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toLatin1();
    for (const Format& format : Formats)
        if (!suffix.isEmpty() && SuffixesOf(format).contains(suffix))
            return format.name;
    return {};
}

KVImageFileManager::ReadResult KVImageFileManager::Read(const QString& path)
{
    return Read(path, ReadOptions());
}

KVImageFileManager::ReadResult KVImageFileManager::Read(const QString& path, const ReadOptions& options)
{
    ReadResult result;
    const Encoded encoded = Load(path, options);
    result.format = encoded.format;
    result.error = encoded.error;
    if (!result.error.isEmpty())
        return result;
    QString reason;
    QImage decoded = Decode(encoded, result, reason);
    if (!reason.isEmpty()) {
        result.error = WholeFile::Error(path, reason);
        return result;
    }
    int orientation = 1;
    TakeMetadata(encoded, decoded, result, orientation);
    result.image = Normalized(std::move(decoded), orientation);
    if (orientation >= 5) // a quarter turn
        std::swap(result.metadata.dotsPerMeterX, result.metadata.dotsPerMeterY);
    if (result.image.isNull())
        result.error = WholeFile::Error(path, tr("there is not enough memory for the picture"));
    return result;
}

KVImageFileManager::WriteResult KVImageFileManager::Write(const QString& path, const QImage& image,
                                                          const KVImageMetadata& metadata,
                                                          const WriteOptions& options)
{
    const auto existing = options.overwrite ? WholeFile::Existing::Replace : WholeFile::Existing::Refuse;
    const Format* format = FindFormat(options.format.isEmpty() ? FormatOfName(path) : options.format);
    if (!format || !QImageWriter::supportedImageFormats().contains(format->name))
        return {{}, WholeFile::Error(path, tr("no picture of this kind can be written"))};
    if (image.isNull())
        return {{}, WholeFile::Error(path, tr("there is no picture to write"))};
    if (qMax(image.width(), image.height()) > format->maxSide)
        return {{},
                WholeFile::Error(path, tr("%1 holds at most %2 pixels a side")
                                           .arg(QString::fromLatin1(format->title))
                                           .arg(format->maxSide))};
    if (const QString error = WholeFile::WhyNotWritable(path, existing); !error.isEmpty())
        return {{}, error};
    const QImage prepared = Prepared(image, format->name, metadata);
    QString reason;
    const QByteArray pixels = Encode(prepared, format->name, options.quality, reason);
    if (!reason.isEmpty())
        return {{}, WholeFile::Error(path, reason)};
    const bool isGrey = prepared.format() == QImage::Format_Grayscale8;
    const MetadataCodec::Embedded embedded =
        MetadataCodec::Embed(pixels, {format->name, prepared.size(), isGrey}, metadata);
    if (!embedded.error.isEmpty())
        return {{}, WholeFile::Error(path, embedded.error)};
    const QString warning = embedded.warning.isEmpty() ? QString() : WholeFile::Error(path, embedded.warning);
    return {warning, WholeFile::Write(path, Completed(embedded.bytes, format->name, metadata), existing)};
}
