#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QImage>
#include <QString>

/// Decodes JPEG with libjpeg and tells damage from decoding: Qt's own reader hands out a picture whose lower
/// part is grey when the file was cut, and says so only in the log.
class JpegDecoder
{
    Q_DECLARE_TR_FUNCTIONS(JpegDecoder)

public:
    struct Result
    {
        QImage image; ///< Format_RGB32, or Format_Grayscale8 for a grey picture; null where there is an error
        int dotsPerMeterX = 0; ///< of the JFIF header; 0: it says nothing
        int dotsPerMeterY = 0;
        QString error;
    };

    /// Thread-safe.
    [[nodiscard]] static Result Decode(const QByteArray& bytes);
};
