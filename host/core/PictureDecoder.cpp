#include "core/PictureDecoder.h"

#include "core/JpegDecoder.h"
#include "core/MetadataCodec.h"
#include "core/PictureBlocks.h"
#include "core/PictureFormats.h"
#include "core/PixelsOnly.h"
#include "core/WholeFile.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QtEndian>

#include <cctype>
#include <limits>

namespace {

/// A file that is larger than this even beside all of its pixels at 16 bits holds something else.
constexpr qint64 MaxBytesBesidePixels = qint64(256) * 1024 * 1024;
constexpr qint64 MaxBytesPerPixel = 8;

QByteArray AllowedFormat(QIODevice& file, const QList<QByteArray>& allowed, QString& reason)
{
    const QByteArray format = PictureFormats::OfContent(file);
    if (format.isEmpty())
        reason = file.size() == 0 ? PictureDecoder::tr("the file is empty")
                                  : PictureDecoder::tr("it is no picture of a known kind");
    else if (!allowed.contains(format))
        reason = PictureDecoder::tr("pictures of the kind %1 are not read").arg(QString::fromLatin1(format));
    return reason.isEmpty() ? format : QByteArray();
}

QString WhyTooLarge(const QSize& size, const KVImageFileManager::ReadOptions& options)
{
    if (!size.isValid() || size.isEmpty())
        return PictureDecoder::tr("the picture has no size, or one beyond all bounds");
    const qint64 pixels = qint64(size.width()) * size.height();
    if (size.width() <= options.maxSide && size.height() <= options.maxSide && pixels <= options.maxPixels)
        return {};
    return PictureDecoder::tr("%1 x %2 pixels are more than allowed (%3 pixels, %4 a side)")
        .arg(size.width())
        .arg(size.height())
        .arg(options.maxPixels)
        .arg(options.maxSide);
}

/// The size that the file states. BMP files whose rows go from top to bottom say so by a negative height,
/// which Qt passes on, although it reads them.
QSize StatedSize(const QImageReader& reader, const QByteArray& format)
{
    const QSize size = reader.size();
    const bool isTopDown =
        format == "bmp" && size.height() < 0 && size.height() != std::numeric_limits<int>::min();
    return isTopDown ? QSize(size.width(), -size.height()) : size;
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
        encoded.size = StatedSize(reader, encoded.format);
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

/// Asks a reader of its own: that of TIFF files counts only from where the file begins.
bool HasMorePictures(const Encoded& encoded)
{
    QBuffer buffer;
    buffer.setData(encoded.bytes);
    QImageReader reader(&buffer, encoded.format);
    reader.setAutoDetectImageFormat(false);
    return buffer.open(QIODevice::ReadOnly) && reader.imageCount() > 1;
}

/// Decodes the pixels as they are in the file; `result` gets the texts on the way.
QImage Decode(const Encoded& encoded, KVImageFileManager::ReadResult& result, QString& reason)
{
    QBuffer buffer;
    buffer.setData(encoded.bytes);
    QImageReader reader(&buffer, encoded.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(false);
    if (!buffer.open(QIODevice::ReadOnly) || StatedSize(reader, encoded.format) != encoded.size ||
        (encoded.format == "bmp" && IsCutBmp(encoded.bytes, encoded.size))) {
        reason = PictureDecoder::tr("the picture is damaged");
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
    result.hasMorePictures = HasMorePictures(encoded);
    QImage image;
    if (!reader.read(&image) || image.isNull()) {
        reason = PictureDecoder::tr("the picture is damaged (%1)").arg(reader.errorString());
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

/// 8 bits, upright, without the metadata that travel beside the pixels.
QImage Normalized(QImage image, int orientation)
{
    const bool isTransparent = image.hasAlphaChannel();
    image = std::move(image).convertToFormat(isTransparent ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image = Upright(image, orientation);
    return PixelsOnly(image);
}

} // namespace

KVImageFileManager::ReadResult PictureDecoder::Read(const QString& path,
                                                    const KVImageFileManager::ReadOptions& options)
{
    KVImageFileManager::ReadResult result;
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
