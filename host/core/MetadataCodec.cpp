#include "core/MetadataCodec.h"

#include "core/LengthUnits.h"
#include "core/PictureBlocks.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <array>
#include <mutex>

namespace {

/// A JPEG segment holds 65 533 bytes, of which the name of the block takes some.
constexpr int MaxJpegBlock = 65500;

/// The library's XMP part is one per process and is set up before the first thread.
class ProcessSetup
{
public:
    ProcessSetup()
    {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize();
    }
    ~ProcessSetup() { Exiv2::XmpParser::terminate(); }
    ProcessSetup(const ProcessSetup&) = delete;
    ProcessSetup& operator=(const ProcessSetup&) = delete;

    std::mutex mutex;
};
ProcessSetup g_setup;

/// Tags of the first directory that describe how one file lays out its pixels, sorted.
constexpr std::array<quint16, 58> LayoutTags{
    0x00fe, 0x00ff, 0x0100, 0x0101, 0x0102, 0x0103, 0x0106, 0x0107, 0x0108, 0x0109, 0x010a, 0x0111,
    0x0115, 0x0116, 0x0117, 0x0118, 0x0119, 0x011c, 0x0120, 0x0121, 0x0122, 0x0123, 0x0124, 0x0125,
    0x012d, 0x013d, 0x0140, 0x0141, 0x0142, 0x0143, 0x0144, 0x0145, 0x014a, 0x014c, 0x014d, 0x014e,
    0x0150, 0x0151, 0x0152, 0x0153, 0x0154, 0x0155, 0x0156, 0x015b, 0x0200, 0x0201, 0x0202, 0x0203,
    0x0205, 0x0206, 0x0207, 0x0208, 0x0209, 0x0211, 0x0212, 0x0213, 0x0214, 0x02bc};
constexpr quint16 IptcBlockTag = 0x83bb;
constexpr quint16 ImageResourcesTag = 0x8649;
constexpr quint16 IccProfileTag = 0x8773;

bool DescribesThisFileOnly(const Exiv2::Exifdatum& datum)
{
    const std::string group = datum.groupName();
    if (group != "Image")
        return group.rfind("Image", 0) == 0 || group.rfind("SubImage", 0) == 0 || group == "Thumbnail" ||
               group == "SubThumb1";
    const quint16 tag = datum.tag();
    return tag == IptcBlockTag || tag == ImageResourcesTag || tag == IccProfileTag ||
           std::binary_search(LayoutTags.begin(), LayoutTags.end(), tag);
}

long NumberOf(const Exiv2::ExifData& exif, const char* key, long fallback)
{
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    return found != exif.end() && found->count() > 0 ? found->toLong() : fallback;
}

int DotsPerMeter(const Exiv2::ExifData& exif, const char* key)
{
    constexpr long Centimeters = 3;
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    if (found == exif.end() || found->count() < 1)
        return 0;
    const bool isMetric = NumberOf(exif, "Exif.Image.ResolutionUnit", 2) == Centimeters;
    const double perMeter = double(found->toFloat()) * (isMetric ? CentimetersPerMeter : 1.0 / MetersPerInch);
    return perMeter > 0.5 && perMeter < 1e8 ? qRound(perMeter) : 0;
}

QByteArray BytesOf(const Exiv2::byte* data, long size)
{
    return size > 0 ? QByteArray(reinterpret_cast<const char*>(data), int(size)) : QByteArray();
}

const Exiv2::byte* ExivBytes(const QByteArray& bytes)
{
    return reinterpret_cast<const Exiv2::byte*>(bytes.constData());
}

QByteArray EncodeExif(const Exiv2::ExifData& exif, Exiv2::ByteOrder order)
{
    Exiv2::ExifData kept;
    for (const Exiv2::Exifdatum& datum : exif)
        if (!DescribesThisFileOnly(datum))
            kept.add(datum);
    if (kept.empty())
        return {};
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, order == Exiv2::invalidByteOrder ? Exiv2::littleEndian : order, kept);
    return BytesOf(blob.data(), long(blob.size()));
}

QByteArray EncodeIptc(const Exiv2::IptcData& iptc)
{
    if (iptc.empty())
        return {};
    const Exiv2::DataBuf blob = Exiv2::IptcParser::encode(iptc);
    return BytesOf(blob.pData_, blob.size_);
}

QByteArray EncodeXmp(const Exiv2::Image& image)
{
    std::string packet = image.xmpPacket();
    if (packet.empty() && !image.xmpData().empty() && Exiv2::XmpParser::encode(packet, image.xmpData()) != 0)
        packet.clear();
    return QByteArray(packet.data(), int(packet.size()));
}

void ExtractFrom(Exiv2::Image& image, MetadataCodec::Content& content)
{
    image.readMetadata();
    const Exiv2::ExifData& exif = image.exifData();
    const long orientation = NumberOf(exif, "Exif.Image.Orientation", 1);
    content.orientation = orientation >= 1 && orientation <= 8 ? int(orientation) : 1;
    if (image.mimeType() == "image/tiff")
        content.bitsPerSample = int(qBound(1L, NumberOf(exif, "Exif.Image.BitsPerSample", 8), 64L));
    KVImageMetadata& metadata = content.metadata;
    metadata.dotsPerMeterX = DotsPerMeter(exif, "Exif.Image.XResolution");
    metadata.dotsPerMeterY = DotsPerMeter(exif, "Exif.Image.YResolution");
    if (image.iccProfileDefined())
        metadata.iccProfile = BytesOf(image.iccProfile()->pData_, image.iccProfile()->size_);
    metadata.xmp = EncodeXmp(image);
    metadata.iptc = EncodeIptc(image.iptcData());
    metadata.exif = EncodeExif(exif, image.byteOrder());
}

void SetSize(Exiv2::ExifData& exif, const char* key, int pixels)
{
    if (exif.findKey(Exiv2::ExifKey(key)) != exif.end())
        exif[key] = uint32_t(pixels);
}

void SetResolution(Exiv2::ExifData& exif, const KVImageMetadata& metadata)
{
    constexpr uint16_t Centimeters = 3;
    const auto perCentimeter = [](int perMeter) { return Exiv2::URational(uint32_t(perMeter), 100); };
    exif["Exif.Image.XResolution"] = perCentimeter(metadata.dotsPerMeterX);
    exif["Exif.Image.YResolution"] = perCentimeter(metadata.dotsPerMeterY);
    exif["Exif.Image.ResolutionUnit"] = Centimeters;
}

/// The tags to write: those of the metadata, telling the truth about the picture they go into.
Exiv2::ExifData DecodeExif(const KVImageMetadata& metadata, const MetadataCodec::Target& picture)
{
    Exiv2::ExifData exif;
    if (picture.format == "bmp" || picture.format == "ppm")
        return exif;
    if (!metadata.exif.isEmpty())
        Exiv2::ExifParser::decode(exif, ExivBytes(metadata.exif), uint32_t(metadata.exif.size()));
    if (exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation")) != exif.end())
        exif["Exif.Image.Orientation"] = uint16_t(1);
    SetSize(exif, "Exif.Photo.PixelXDimension", picture.size.width());
    SetSize(exif, "Exif.Photo.PixelYDimension", picture.size.height());
    const bool hasResolution = metadata.dotsPerMeterX > 0 && metadata.dotsPerMeterY > 0;
    const bool isStale = DotsPerMeter(exif, "Exif.Image.XResolution") != metadata.dotsPerMeterX ||
                         DotsPerMeter(exif, "Exif.Image.YResolution") != metadata.dotsPerMeterY;
    // WebP has no field of its own for it.
    if (hasResolution && isStale && (!exif.empty() || picture.format == "webp"))
        SetResolution(exif, metadata);
    return exif;
}

Exiv2::XmpData DecodeXmp(const KVImageMetadata& metadata)
{
    Exiv2::XmpData xmp;
    const std::string packet(metadata.xmp.constData(), size_t(metadata.xmp.size()));
    if (packet.empty() || Exiv2::XmpParser::decode(xmp, packet) != 0)
        return xmp;
    if (xmp.findKey(Exiv2::XmpKey("Xmp.tiff.Orientation")) != xmp.end())
        xmp["Xmp.tiff.Orientation"] = std::string("1");
    for (auto datum = xmp.begin(); datum != xmp.end();)
        datum = datum->key().rfind("Xmp.xmp.Thumbnails", 0) == 0 ? xmp.erase(datum) : std::next(datum);
    return xmp;
}

/// The picture's own tags, which a TIFF file has, stay where the metadata has none of the name.
void SetExif(Exiv2::Image& image, const Exiv2::ExifData& exif)
{
    Exiv2::ExifData& target = image.exifData();
    for (const Exiv2::Exifdatum& datum : exif)
        if (const auto old = target.findKey(Exiv2::ExifKey(datum.key())); old != target.end())
            target.erase(old);
    for (const Exiv2::Exifdatum& datum : exif)
        target.add(datum);
}

/// The library writes profiles of PNG and WebP under names that nobody reads.
bool TakesProfileFromLibrary(const QByteArray& format) { return format != "png" && format != "webp"; }

void SetIccProfile(Exiv2::Image& image, const QByteArray& iccProfile)
{
    Exiv2::DataBuf profile(ExivBytes(iccProfile), iccProfile.size());
    image.setIccProfile(profile, false); // the bytes are the user's: they stay as they are
}

QByteArray WithProfile(const QByteArray& picture, const QByteArray& format, const QByteArray& iccProfile)
{
    if (iccProfile.isEmpty() || TakesProfileFromLibrary(format))
        return picture;
    return format == "png" ? PictureBlocks::PngWithProfile(picture, iccProfile)
                           : PictureBlocks::WebpWithProfile(picture, iccProfile);
}

/// `picture` with all but the profiles that the library gets wrong.
QByteArray WithBlocks(const QByteArray& picture, const MetadataCodec::Target& target,
                      const KVImageMetadata& metadata)
{
    const Exiv2::ExifData exif = DecodeExif(metadata, target);
    const bool hasProfile = !metadata.iccProfile.isEmpty() && TakesProfileFromLibrary(target.format);
    if (exif.empty() && metadata.iptc.isEmpty() && metadata.xmp.isEmpty() && !hasProfile)
        return picture;
    const auto image = Exiv2::ImageFactory::open(ExivBytes(picture), picture.size());
    image->readMetadata();
    SetExif(*image, exif);
    Exiv2::IptcData iptc;
    if (Exiv2::IptcParser::decode(iptc, ExivBytes(metadata.iptc), uint32_t(metadata.iptc.size())) == 0)
        image->setIptcData(iptc);
    image->setXmpData(DecodeXmp(metadata));
    if (hasProfile)
        SetIccProfile(*image, metadata.iccProfile);
    image->writeMetadata();
    Exiv2::BasicIo& io = image->io();
    const QByteArray bytes = BytesOf(io.mmap(), long(io.size()));
    io.munmap();
    return bytes;
}

/// A profile of another colour model than the pixels would turn every colour into a wrong one.
bool FitsPixels(const QByteArray& iccProfile, bool isGrey)
{
    constexpr int ColorSpaceOffset = 16;
    return iccProfile.mid(ColorSpaceOffset, 4) == (isGrey ? "GRAY" : "RGB ");
}

/// The part of the metadata that the format can hold; `warning` names the rest.
KVImageMetadata WhatFits(const KVImageMetadata& metadata, const MetadataCodec::Target& target,
                         QString& warning)
{
    const bool isPlain = target.format == "bmp" || target.format == "ppm";
    const bool isJpeg = target.format == "jpeg";
    KVImageMetadata fitting = metadata;
    QStringList lost;
    const auto drop = [&lost](QByteArray& block, bool isLost, const char* name) {
        if (!isLost || block.isEmpty())
            return;
        block.clear();
        lost.append(QString::fromLatin1(name));
    };
    drop(fitting.exif, isPlain || (isJpeg && fitting.exif.size() > MaxJpegBlock), "EXIF");
    drop(fitting.iptc, isPlain || target.format == "webp", "IPTC");
    drop(fitting.xmp, isPlain || (isJpeg && fitting.xmp.size() > MaxJpegBlock), "XMP");
    drop(fitting.iccProfile, isPlain || !FitsPixels(fitting.iccProfile, target.isGrey), "ICC");
    if (!lost.isEmpty())
        warning = MetadataCodec::tr("the picture's %1 data do not fit into the new file")
                      .arg(lost.join(QStringLiteral(", ")));
    return fitting;
}

} // namespace

MetadataCodec::Content MetadataCodec::Extract(const QByteArray& picture)
{
    Content content;
    const std::lock_guard<std::mutex> lock(g_setup.mutex);
    try {
        const auto image = Exiv2::ImageFactory::open(ExivBytes(picture), picture.size());
        ExtractFrom(*image, content);
    } catch (const std::exception& error) {
        content.error = QString::fromLocal8Bit(error.what());
    }
    return content;
}

MetadataCodec::Embedded MetadataCodec::Embed(const QByteArray& picture, const Target& target,
                                             const KVImageMetadata& metadata)
{
    Embedded result;
    const KVImageMetadata carried = WhatFits(metadata, target, result.warning);
    const std::lock_guard<std::mutex> lock(g_setup.mutex);
    try {
        const QByteArray bytes = WithBlocks(picture, target, carried);
        result.bytes = WithProfile(bytes, target.format, carried.iccProfile);
        if (result.bytes.isEmpty())
            result.error = tr("the metadata could not be put into the picture");
    } catch (const std::exception& error) {
        result.error = QString::fromLocal8Bit(error.what());
    }
    return result;
}
