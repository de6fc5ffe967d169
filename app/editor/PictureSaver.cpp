#include "editor/PictureSaver.h"

#include "core/KVImageFileManager.h"

#include <QtConcurrent>

#include <utility>

PictureSaver::PictureSaver(QObject* parent) : QObject(parent)
{
    connect(&m_watcher, &QFutureWatcher<Outcome>::finished, this, &PictureSaver::OnWritten);
}

PictureSaver::~PictureSaver()
{
    m_watcher.disconnect(this);
    m_watcher.waitForFinished();
}

void PictureSaver::Save(const SaveRequest& request)
{
    Q_ASSERT(!m_busy);
    m_request = request;
    m_busy = true;
    emit BusyChanged(true);
    m_watcher.setFuture(QtConcurrent::run(&PictureSaver::Write, request));
}

PictureSaver::Outcome PictureSaver::Write(const SaveRequest& request)
{
    KVImageFileManager::WriteOptions options;
    options.format = request.format;
    options.quality = request.quality;
    options.overwrite = true;
    const KVImageFileManager::WriteResult written =
        KVImageFileManager::Write(request.path, ImageToQImage(request.picture), request.metadata, options);
    return {written.warning, written.error};
}

void PictureSaver::OnWritten()
{
    const Outcome outcome = m_watcher.result();
    const SaveRequest request = std::exchange(m_request, {});
    m_busy = false;
    emit BusyChanged(false);
    if (outcome.error.isEmpty())
        emit Saved(request, outcome.warning);
    else
        emit Failed(outcome.error);
}
