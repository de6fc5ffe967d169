#include "core/JpegDecoder.h"

#include "core/LengthUnits.h"

#include <QVector>

#include <csetjmp>
#include <cstdio>

#include <jpeglib.h>
// After jpeglib.h, which it needs.
#include <jerror.h>

namespace {

/// A progressive file may ask for any number of passes over all of its pixels; real ones have about ten.
constexpr int MaxScans = 500;

/// libjpeg leaves through longjmp(), so the frame that calls setjmp() owns nothing with a destructor: all
/// that has one lives here.
struct Session
{
    jpeg_decompress_struct jpeg = {};
    jpeg_error_mgr errors = {};
    jpeg_progress_mgr progress = {};
    std::jmp_buf leave = {};
    char message[JMSG_LENGTH_MAX] = {};
    bool isDamaged = false;
    QImage image;
    QVector<uchar> cmykRow;
};

Session& SessionOf(j_common_ptr jpeg) { return *static_cast<Session*>(jpeg->client_data); }

void OnFatalError(j_common_ptr jpeg)
{
    Session& session = SessionOf(jpeg);
    (*jpeg->err->format_message)(jpeg, session.message);
    std::longjmp(session.leave, 1);
}

/// Pixels are lost or made up after these; other warnings (some bytes too many between two segments, an
/// unknown colour code) come with pictures that are whole.
bool IsDamage(int code)
{
    switch (code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
    case JWRN_ARITH_BAD_CODE:
    case JWRN_BOGUS_PROGRESSION:
        return true;
    default:
        return false;
    }
}

void OnMessage(j_common_ptr jpeg, int level)
{
    Session& session = SessionOf(jpeg);
    if (level >= 0 || session.isDamaged || !IsDamage(jpeg->err->msg_code))
        return;
    session.isDamaged = true;
    (*jpeg->err->format_message)(jpeg, session.message);
    std::longjmp(session.leave, 1);
}

void OnProgress(j_common_ptr jpeg)
{
    Session& session = SessionOf(jpeg);
    if (session.jpeg.input_scan_number <= MaxScans)
        return;
    std::snprintf(session.message, sizeof session.message, "more than %d scans", MaxScans);
    std::longjmp(session.leave, 1);
}

void ChooseColors(jpeg_decompress_struct& jpeg)
{
    if (jpeg.num_components == 1)
        jpeg.out_color_space = JCS_GRAYSCALE;
    else if (jpeg.num_components == 4)
        jpeg.out_color_space = JCS_CMYK;
    else
        jpeg.out_color_space = JCS_EXT_BGRX;
}

QImage MakeImage(const jpeg_decompress_struct& jpeg)
{
    const auto format = jpeg.num_components == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB32;
    return QImage(int(jpeg.image_width), int(jpeg.image_height), format);
}

/// Factor from the header's density to dots per metre; 0 where the density is only an aspect ratio.
double DotsPerMeter(const jpeg_decompress_struct& jpeg)
{
    if (!jpeg.saw_JFIF_marker || jpeg.density_unit < 1 || jpeg.density_unit > 2)
        return 0.0;
    return jpeg.density_unit == 1 ? 1.0 / MetersPerInch : CentimetersPerMeter;
}

/// Adobe's programs store CMYK inverted and mark the file as theirs; other files mean what they say.
void RowFromCmyk(const uchar* cmyk, QRgb* row, int width, bool isInverted)
{
    for (int x = 0; x < width; ++x, cmyk += 4) {
        const auto light = [&](int channel) { return isInverted ? cmyk[channel] : 255 - cmyk[channel]; };
        const int white = light(3);
        row[x] = qRgb(light(0) * white / 255, light(1) * white / 255, light(2) * white / 255);
    }
}

void ReadRows(Session& session)
{
    jpeg_decompress_struct& jpeg = session.jpeg;
    const bool isCmyk = jpeg.out_color_space == JCS_CMYK;
    while (jpeg.output_scanline < jpeg.output_height) {
        uchar* line = session.image.scanLine(int(jpeg.output_scanline));
        JSAMPROW row = isCmyk ? session.cmykRow.data() : line;
        jpeg_read_scanlines(&jpeg, &row, 1);
        if (isCmyk)
            RowFromCmyk(row, reinterpret_cast<QRgb*>(line), session.image.width(), jpeg.saw_Adobe_marker);
    }
}

void Open(Session& session)
{
    session.jpeg.err = jpeg_std_error(&session.errors);
    session.jpeg.client_data = &session;
    session.errors.error_exit = OnFatalError;
    session.errors.emit_message = OnMessage;
    session.progress.progress_monitor = OnProgress;
}

/// Whether the whole picture was decoded; `message` says why not.
bool Run(Session& session, const QByteArray& bytes)
{
    if (setjmp(session.leave) != 0)
        return false;
    jpeg_create_decompress(&session.jpeg);
    session.jpeg.progress = &session.progress;
    jpeg_mem_src(&session.jpeg, reinterpret_cast<const uchar*>(bytes.constData()), ulong(bytes.size()));
    jpeg_read_header(&session.jpeg, TRUE);
    ChooseColors(session.jpeg);
    session.image = MakeImage(session.jpeg);
    if (session.image.isNull()) {
        std::snprintf(session.message, sizeof session.message, "not enough memory");
        return false;
    }
    if (session.jpeg.out_color_space == JCS_CMYK)
        session.cmykRow.resize(session.image.width() * 4);
    jpeg_start_decompress(&session.jpeg);
    ReadRows(session);
    jpeg_finish_decompress(&session.jpeg);
    return true;
}

} // namespace

JpegDecoder::Result JpegDecoder::Decode(const QByteArray& bytes)
{
    Session session;
    Open(session);
    const bool isWhole = Run(session, bytes);
    const double perMeter = DotsPerMeter(session.jpeg);
    const int dotsPerMeterX = qRound(session.jpeg.X_density * perMeter);
    const int dotsPerMeterY = qRound(session.jpeg.Y_density * perMeter);
    jpeg_destroy_decompress(&session.jpeg);
    if (!isWhole)
        return {{}, 0, 0, tr("the picture is damaged (%1)").arg(QString::fromLatin1(session.message))};
    return {session.image, dotsPerMeterX, dotsPerMeterY, {}};
}
