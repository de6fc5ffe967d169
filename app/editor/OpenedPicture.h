#pragma once

#include "core/KVImageMetadata.h"
#include "image/KVImage.h"

#include <QByteArray>
#include <QMetaType>
#include <QString>

/// What was read from a picture file; a shared value.
struct OpenedPicture
{
    QString path;
    QByteArray format;        ///< as KVImageFileManager names it
    KVImageMetadata metadata; ///< travels to the file that is saved
    RGBA32iImage picture;     ///< empty where there is an error
    bool depthReduced = false;
    bool hasMorePictures = false; ///< the file holds pages or frames that were not read
    QString warning;
    QString error;
};

Q_DECLARE_METATYPE(OpenedPicture)
