#include "core/KVImageFileManager.h"

#include "core/MetadataCodec.h"
#include "core/PictureBlocks.h"
#include "core/PictureDecoder.h"
#include "core/PictureFormats.h"
#include "core/PixelsOnly.h"
#include "core/WholeFile.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <new>

namespace {

constexpr int DefaultQuality = 95;

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

QString TooLittleMemory()
{
    return KVImageFileManager::tr("there is not enough memory to write the picture");
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

/// Fails where memory ends instead of throwing, as encoders written in C call it.
class EncodedBytes : public QBuffer
{
public:
    bool IsMemoryShort() const { return m_isMemoryShort; }

protected:
    qint64 writeData(const char* data, qint64 length) override
    {
        try {
            return QBuffer::writeData(data, length);
        } catch (const std::bad_alloc&) {
            m_isMemoryShort = true;
            return -1;
        }
    }

private:
    bool m_isMemoryShort = false;
};

QByteArray Encode(const QImage& image, const QByteArray& format, int quality, QString& reason)
{
    EncodedBytes buffer;
    QImageWriter writer(&buffer, format);
    if (format == "jpeg" || format == "webp")
        writer.setQuality(quality < 0 ? DefaultQuality : qMin(quality, 100));
    if (format == "tiff")
        writer.setCompression(1); // LZW, which loses nothing
    if (!writer.write(image))
        reason = writer.errorString();
    if (buffer.IsMemoryShort() || image.isNull())
        reason = TooLittleMemory();
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

WholeFile::Existing RuleForExisting(const KVImageFileManager::WriteOptions& options)
{
    return options.overwrite ? WholeFile::Existing::Replace : WholeFile::Existing::Refuse;
}

KVImageFileManager::WriteResult EncodeAndWrite(const QString& path, const QImage& image,
                                               const PictureFormats::Format& format,
                                               const KVImageMetadata& metadata,
                                               const KVImageFileManager::WriteOptions& options)
{
    const QImage prepared = Prepared(image, format.name, metadata);
    QString reason;
    const QByteArray pixels = Encode(prepared, format.name, options.quality, reason);
    if (!reason.isEmpty())
        return {{}, WholeFile::Error(path, reason)};
    const bool isGrey = prepared.format() == QImage::Format_Grayscale8;
    const MetadataCodec::Embedded embedded =
        MetadataCodec::Embed(pixels, {format.name, prepared.size(), isGrey}, metadata);
    if (!embedded.error.isEmpty())
        return {{}, WholeFile::Error(path, embedded.error)};
    const QString warning = embedded.warning.isEmpty() ? QString() : WholeFile::Error(path, embedded.warning);
    return {warning, WholeFile::Write(path, Completed(embedded.bytes, format.name, metadata),
                                      RuleForExisting(options))};
}

} // namespace

QList<QByteArray> KVImageFileManager::DefaultFormats()
{
    return PictureFormats::Among(QImageReader::supportedImageFormats());
}

QString KVImageFileManager::GetFilterForRead()
{
    return PictureFormats::Filter(QImageReader::supportedImageFormats());
}

QString KVImageFileManager::GetFilterForWrite()
{
    return PictureFormats::Filter(QImageWriter::supportedImageFormats());
}

QByteArray KVImageFileManager::FormatOfName(const QString& path) { return PictureFormats::OfName(path); }

KVImageFileManager::ReadResult KVImageFileManager::Read(const QString& path)
{
    return Read(path, ReadOptions());
}

KVImageFileManager::ReadResult KVImageFileManager::Read(const QString& path, const ReadOptions& options)
{
    return PictureDecoder::Read(path, options);
}

KVImageFileManager::WriteResult KVImageFileManager::Write(const QString& path, const QImage& image,
                                                          const KVImageMetadata& metadata,
                                                          const WriteOptions& options)
{
    const PictureFormats::Format* format =
        PictureFormats::Find(options.format.isEmpty() ? FormatOfName(path) : options.format);
    if (!format || !QImageWriter::supportedImageFormats().contains(format->name))
        return {{}, WholeFile::Error(path, tr("no picture of this kind can be written"))};
    if (image.isNull())
        return {{}, WholeFile::Error(path, tr("there is no picture to write"))};
    if (qMax(image.width(), image.height()) > format->maxSide)
        return {{},
                WholeFile::Error(path, tr("%1 holds at most %2 pixels a side")
                                           .arg(QString::fromLatin1(format->title))
                                           .arg(format->maxSide))};
    if (const QString error = WholeFile::WhyNotWritable(path, RuleForExisting(options)); !error.isEmpty())
        return {{}, error};
    try {
        return EncodeAndWrite(path, image, *format, metadata, options);
    } catch (const std::bad_alloc&) {
        return {{}, WholeFile::Error(path, TooLittleMemory())};
    }
}
