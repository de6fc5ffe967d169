#pragma once

#include "core/KVImageMetadata.h"
#include "image/KVImage.h"

#include <QByteArray>
#include <QFuture>
#include <QObject>
#include <QString>

/// Where and how a picture is saved, and the picture itself.
struct SaveRequest
{
    QString path;
    QByteArray format; ///< as KVImageFileManager names it
    int quality = -1;  ///< 0..100 for JPEG and WebP; -1: good
    RGBA32iImage picture;
    KVImageMetadata metadata;
};

/// Writes a picture file on the thread pool, one at a time, as a whole or not at all.
class PictureSaver : public QObject
{
    Q_OBJECT

public:
    explicit PictureSaver(QObject* parent = nullptr);
    /// Waits until the file that is being written is whole.
    ~PictureSaver() override;

    bool IsBusy() const { return m_busy; }
    /// Call it only while the saver is not busy. An existing file is replaced.
    void Save(const SaveRequest& request);

signals:
    void BusyChanged(bool busy);
    /// `warning` says what the format could not take along; it is mostly empty.
    void Saved(const SaveRequest& request, const QString& warning);
    void Failed(const QString& error);

private:
    struct Outcome
    {
        QString warning;
        QString error;
    };

    static Outcome Write(const SaveRequest& request);
    void OnWritten(const Outcome& outcome);

    SaveRequest m_request;
    bool m_busy = false;
    QFuture<void> m_writing;
};
