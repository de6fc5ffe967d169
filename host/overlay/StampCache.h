#pragma once

#include <QImage>
#include <QSize>
#include <QString>

/// Pictures of stamps, kept between drawings: a preview draws the same one at every move of a slider, a batch
/// on every picture. Safe from any thread.
namespace StampCache {

struct Picture
{
    QImage image;  ///< Format_ARGB32; null where there is an error
    QString error; ///< names the file
};

/// The picture file at `path`, scaled down smoothly, in its shape, as far as it has to be to fit into `room`.
///
/// A file is read again when its time or its size has changed. What is kept takes 256 MB at most; a picture
/// above that is kept only at the size in which it was drawn.
[[nodiscard]] Picture Fitting(const QString& path, const QSize& room);

} // namespace StampCache
