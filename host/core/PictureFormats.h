#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class QIODevice;

/// The kinds of pictures that are read and written, by the names of QImageReader; "ppm" stands for all kinds
/// of PNM.
namespace PictureFormats {

struct Format
{
    const char* name;
    const char* title;
    const char* suffixes; ///< parted by blanks; the first one is the usual one
    int maxSide;          ///< that a file can hold
};

/// Null for a format that is not in the table.
const Format* Find(const QByteArray& name);

/// The format that the file's extension tells; empty for none.
QByteArray OfName(const QString& path);

/// What the first bytes say, also for formats that are not in the table; empty for no picture.
QByteArray OfContent(QIODevice& file);

/// Those of the table that are among `supported`.
QList<QByteArray> Among(const QList<QByteArray>& supported);

/// A file dialog's filter for those of the table that are among `supported`; empty for none.
QString Filter(const QList<QByteArray>& supported);

} // namespace PictureFormats
