#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// What a picture file says beside its pixels; a plain value that travels from the file that was read to
/// the file that is written.
///
/// The blocks are kept as bytes, each in the form that its standard gives it. Tags that describe the layout
/// of the file they came from (strips, tiles, bit depths, thumbnails) are not among them.
struct KVImageMetadata
{
    QByteArray exif;       ///< a TIFF structure, without the "Exif" prefix of JPEG
    QByteArray iptc;       ///< IIM data sets
    QByteArray xmp;        ///< an XMP packet
    QByteArray iccProfile; ///< byte for byte as in the file
    QMap<QString, QString> texts;
    int dotsPerMeterX = 0; ///< 0: the file says nothing
    int dotsPerMeterY = 0; ///< 0: the file says nothing

    bool operator==(const KVImageMetadata& other) const
    {
        return exif == other.exif && iptc == other.iptc && xmp == other.xmp &&
               iccProfile == other.iccProfile && texts == other.texts &&
               dotsPerMeterX == other.dotsPerMeterX && dotsPerMeterY == other.dotsPerMeterY;
    }
    bool operator!=(const KVImageMetadata& other) const { return !(*this == other); }
};
