#pragma once

#include "core/KVImageMetadata.h"

#include <QCoreApplication>
#include <QSize>

/// Takes metadata out of encoded pictures and puts it into them. Thread-safe: one lock around all calls of
/// the library behind it, whose XMP part keeps process-wide state.
class MetadataCodec
{
    Q_DECLARE_TR_FUNCTIONS(MetadataCodec)

public:
    struct Content
    {
        KVImageMetadata metadata; ///< without texts
        int orientation = 1;      ///< as EXIF counts, 1..8; 1 for none and for a number out of range
        int bitsPerSample = 8;    ///< as a TIFF file says; 8 elsewhere
        QString error;            ///< why some metadata could not be read; empty where all was
    };

    struct Embedded
    {
        QByteArray bytes;
        QString warning; ///< what the picture could not take along
        QString error;
    };

    [[nodiscard]] static Content Extract(const QByteArray& picture);

    /// What the metadata go into.
    struct Target
    {
        QByteArray format; ///< of QImageWriter
        QSize size;
        bool isGrey = false;
    };

    /// `picture`, which has just been encoded, with the metadata put in. The orientation is set to upright
    /// and the pixel dimensions to the size, as both tags would otherwise speak of another picture;
    /// thumbnails are left out for the same reason.
    [[nodiscard]] static Embedded Embed(const QByteArray& picture, const Target& target,
                                        const KVImageMetadata& metadata);
};
