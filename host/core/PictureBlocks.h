#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// Edits of freshly encoded pictures that neither Qt nor the metadata library gets right: colour profiles of
/// PNG and WebP, comments and an exact resolution of JPEG, no resolution where none is known.
///
/// The pictures come from our own encoder, so their structure is sound. Thread-safe.
namespace PictureBlocks {

/// `png` with the colour profile in it; it must have none.
QByteArray PngWithProfile(const QByteArray& png, const QByteArray& iccProfile);

/// `png` without the resolution that Qt made up.
QByteArray PngWithoutResolution(const QByteArray& png);

/// Whether the PNG file, of whatever origin, states its resolution.
bool HasPngResolution(const QByteArray& png);

/// `webp` with the colour profile in it; empty where that fails.
QByteArray WebpWithProfile(const QByteArray& webp, const QByteArray& iccProfile);

/// `jpeg` with the resolution in its JFIF header, in dots per inch or centimetre, whichever is nearer; 0 for
/// an unknown one.
QByteArray JpegWithResolution(const QByteArray& jpeg, int dotsPerMeterX, int dotsPerMeterY);

/// `jpeg` with a comment "KEY: TEXT" for each text. Texts that exceed a segment are cut.
QByteArray JpegWithTexts(const QByteArray& jpeg, const QMap<QString, QString>& texts);

} // namespace PictureBlocks
