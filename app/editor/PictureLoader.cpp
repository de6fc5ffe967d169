#include "editor/PictureLoader.h"

#include "core/KVImageFileManager.h"
#include "editor/BackgroundTask.h"

#include <QFileInfo>

namespace {

OpenedPicture ReadPicture(const QString& path)
{
    const KVImageFileManager::ReadResult file = KVImageFileManager::Read(path);
    OpenedPicture opened;
    opened.path = path;
    opened.format = file.format;
    opened.metadata = file.metadata;
    opened.depthReduced = file.depthReduced;
    opened.hasMorePictures = file.hasMorePictures;
    opened.warning = file.metadataError;
    opened.error = file.error;
    if (!file.error.isEmpty())
        return opened;
    opened.picture = ImageFromQImage(file.image);
    if (opened.picture.IsEmpty())
        opened.error = PictureLoader::tr("%1: there is not enough memory for the picture")
                           .arg(QFileInfo(path).fileName());
    return opened;
}

} // namespace

PictureLoader::PictureLoader(QObject* parent) : QObject(parent) {}

PictureLoader::~PictureLoader() = default;

void PictureLoader::Open(const QStringList& paths)
{
    for (const QString& path : paths) {
        const QString absolute = QFileInfo(path).absoluteFilePath();
        if (m_pending.contains(absolute))
            continue;
        m_pending.append(absolute);
        BackgroundTask::Run(
            this, [absolute] { return ReadPicture(absolute); },
            [this](const OpenedPicture& picture) { OnRead(picture); });
    }
    emit PendingChanged();
}

void PictureLoader::OnRead(const OpenedPicture& picture)
{
    m_pending.removeOne(picture.path);
    emit PendingChanged();
    if (picture.error.isEmpty())
        emit Opened(picture);
    else
        m_errors.append(picture.error);
    if (m_pending.isEmpty() && !m_errors.isEmpty()) {
        const QStringList errors = m_errors;
        m_errors.clear();
        emit Failed(errors);
    }
}
