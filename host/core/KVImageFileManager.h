#pragma once

#include "core/KVImageMetadata.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QImage>
#include <QList>
#include <QString>

/// Reads and writes picture files for every program of the project.
///
/// Files are taken for untrusted: only regular files are opened, the kind of picture is told by its content
/// and must be an allowed one, its size is checked before a pixel is decoded, and a picture that is cut or
/// damaged is an error, never half a picture. A file is written as a whole or not at all. Errors are
/// translated texts that begin with the file's name; they are empty where there was none.
///
/// All functions are thread-safe. They need a QCoreApplication.
class KVImageFileManager
{
    Q_DECLARE_TR_FUNCTIONS(KVImageFileManager)

public:
    struct ReadOptions
    {
        qint64 maxPixels = 268'000'000;
        int maxSide = 65535;
        /// Names of QImageReader; "ppm" stands for all kinds of PNM.
        QList<QByteArray> formats = DefaultFormats();
    };

    struct ReadResult
    {
        /// Upright (a stored orientation has been carried out), 8 bits a channel: Format_RGB32, or
        /// Format_ARGB32 for a picture with transparency. Null where there is an error.
        QImage image;
        KVImageMetadata metadata;
        QByteArray format;            ///< as in ReadOptions::formats
        bool depthReduced = false;    ///< the file has more than 8 bits a channel; the user should know
        bool hasMorePictures = false; ///< further pages or frames, of which none is read; likewise
        QString metadataError;        ///< why some metadata could not be read; the picture itself is whole
        QString error;
    };

    struct WriteOptions
    {
        QByteArray format; ///< as in ReadOptions::formats; empty: from the file's extension
        int quality = -1;  ///< 0..100 for JPEG and WebP (100: lossless WebP); -1: good
        bool overwrite = false;
    };

    struct WriteResult
    {
        QString warning; ///< what the format could not take along
        QString error;
    };

    /// PNG, JPEG, TIFF, WebP, BMP and PNM, as far as the installed plug-ins know them.
    static QList<QByteArray> DefaultFormats();

    /// The filters of a file dialog, "All pictures (*.png …);;PNG (*.png);;…"; empty when there are none.
    static QString GetFilterForRead();
    static QString GetFilterForWrite();

    /// The format that Write() would choose for the file; empty when its extension tells none.
    static QByteArray FormatOfName(const QString& path);

    [[nodiscard]] static ReadResult Read(const QString& path);
    [[nodiscard]] static ReadResult Read(const QString& path, const ReadOptions& options);

    /// Writes the picture with its metadata; the orientation is stored as upright. Transparency is laid over
    /// white for JPEG, which has none. An existing file is replaced only with `overwrite`, keeps its
    /// permissions, and stays what it was when anything fails.
    [[nodiscard]] static WriteResult Write(const QString& path, const QImage& image,
                                           const KVImageMetadata& metadata, const WriteOptions& options);
};
