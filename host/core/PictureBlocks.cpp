#include "core/PictureBlocks.h"

#include "core/LengthUnits.h"

#include <QtEndian>

#include <webp/mux.h>
#include <zlib.h>

#include <cmath>

namespace {

constexpr int PngSignature = 8;
constexpr int PngHeaderEnd = PngSignature + 25; ///< behind IHDR
constexpr int PngChunkOverhead = 12;            ///< length, name, checksum
constexpr int MaxSegmentText = 65533;

QByteArray BigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray PngChunk(const QByteArray& nameAndData)
{
    const auto* bytes = reinterpret_cast<const Bytef*>(nameAndData.constData());
    const auto checksum = quint32(crc32(0, bytes, uInt(nameAndData.size())));
    return BigEndian(quint32(nameAndData.size() - 4)) + nameAndData + BigEndian(checksum);
}

/// Where the chunk before the pixels begins, and its whole length; 0 where there is none.
struct ChunkRange
{
    int start = 0;
    int length = 0;
};

ChunkRange FindPngChunk(const QByteArray& png, const char* name)
{
    for (qint64 at = PngSignature; at + PngChunkOverhead <= png.size();) {
        const qint64 length = qFromBigEndian<quint32>(png.constData() + at) + qint64(PngChunkOverhead);
        const QByteArray found = png.mid(int(at) + 4, 4);
        if (found == "IDAT" || at + length > png.size())
            return {};
        if (found == name)
            return {int(at), int(length)};
        at += length;
    }
    return {};
}

/// Behind the segments for applications, which come first.
int JpegTextPosition(const QByteArray& jpeg)
{
    int at = 2;
    while (at + 4 <= jpeg.size() && uchar(jpeg[at]) == 0xff && (uchar(jpeg[at + 1]) & 0xf0) == 0xe0)
        at += 2 + qFromBigEndian<quint16>(jpeg.constData() + at + 2);
    return at;
}

} // namespace

QByteArray PictureBlocks::PngWithProfile(const QByteArray& png, const QByteArray& iccProfile)
{
    constexpr int LengthPrefix = 4; // qCompress() writes one before the stream
    const QByteArray header = QByteArray("iCCPICC profile") + QByteArray(2, '\0'); // end of name, deflate
    const QByteArray chunk = PngChunk(header + qCompress(iccProfile).mid(LengthPrefix));
    return png.left(PngHeaderEnd) + chunk + png.mid(PngHeaderEnd);
}

QByteArray PictureBlocks::PngWithoutResolution(const QByteArray& png)
{
    const ChunkRange chunk = FindPngChunk(png, "pHYs");
    return chunk.length > 0 ? png.left(chunk.start) + png.mid(chunk.start + chunk.length) : png;
}

bool PictureBlocks::HasPngResolution(const QByteArray& png) { return FindPngChunk(png, "pHYs").length > 0; }

QByteArray PictureBlocks::WebpWithProfile(const QByteArray& webp, const QByteArray& iccProfile)
{
    const auto data = [](const QByteArray& bytes) {
        return WebPData{reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size())};
    };
    const WebPData picture = data(webp);
    const WebPData profile = data(iccProfile);
    WebPMux* mux = WebPMuxCreate(&picture, 0);
    WebPData assembled = {};
    QByteArray result;
    if (mux && WebPMuxSetChunk(mux, "ICCP", &profile, 0) == WEBP_MUX_OK &&
        WebPMuxAssemble(mux, &assembled) == WEBP_MUX_OK)
        result = QByteArray(reinterpret_cast<const char*>(assembled.bytes), int(assembled.size));
    WebPDataClear(&assembled);
    WebPMuxDelete(mux);
    return result;
}

QByteArray PictureBlocks::JpegWithResolution(const QByteArray& jpeg, int dotsPerMeterX, int dotsPerMeterY)
{
    constexpr int UnitOffset = 13; // of a file that begins with the JFIF header, as the encoder writes it
    if (jpeg.mid(6, 4) != "JFIF")
        return jpeg;
    const auto error = [dotsPerMeterX](double unit) {
        return std::abs(std::round(dotsPerMeterX * unit) / unit - dotsPerMeterX);
    };
    const bool isMetric = error(1.0 / CentimetersPerMeter) < error(MetersPerInch);
    const double unit = isMetric ? 1.0 / CentimetersPerMeter : MetersPerInch;
    const auto density = [unit](int perMeter) {
        return quint16(qBound(1.0, perMeter * unit + 0.5, 65535.0));
    };
    const bool isKnown = dotsPerMeterX > 0 && dotsPerMeterY > 0;
    QByteArray bytes = jpeg;
    bytes[UnitOffset] = char(!isKnown ? 0 : isMetric ? 2 : 1);
    qToBigEndian(isKnown ? density(dotsPerMeterX) : quint16(1), bytes.data() + UnitOffset + 1);
    qToBigEndian(isKnown ? density(dotsPerMeterY) : quint16(1), bytes.data() + UnitOffset + 3);
    return bytes;
}

QByteArray PictureBlocks::JpegWithTexts(const QByteArray& jpeg, const QMap<QString, QString>& texts)
{
    QByteArray segments;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        const QByteArray comment = (text.key().toUtf8() + ": " + text.value().toUtf8()).left(MaxSegmentText);
        const int length = comment.size() + 2;
        segments.append("\xff\xfe").append(char(length >> 8)).append(char(length & 0xff)).append(comment);
    }
    const int position = JpegTextPosition(jpeg);
    return jpeg.left(position) + segments + jpeg.mid(position);
}
