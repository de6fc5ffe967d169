#pragma once

#include "editor/OpenedPicture.h"

#include <QObject>
#include <QStringList>

/// Reads picture files on the thread pool and hands them over one by one, in the order they are ready.
class PictureLoader : public QObject
{
    Q_OBJECT

public:
    explicit PictureLoader(QObject* parent = nullptr);
    ~PictureLoader() override;

    void Open(const QStringList& paths);
    /// Paths that are being read.
    QStringList Pending() const { return m_pending; }

signals:
    void PendingChanged();
    void Opened(const OpenedPicture& picture);
    /// Nothing is being read any more, and these files could not be read: what failed and why, one text a
    /// file.
    void Failed(const QStringList& errors);

private:
    void OnRead(const OpenedPicture& picture);

    QStringList m_pending;
    QStringList m_errors;
};
