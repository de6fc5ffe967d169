#include "editor/PictureSaver.h"

#include "core/KVImageFileManager.h"
#include "editor/BackgroundTask.h"

#include <utility>

PictureSaver::PictureSaver(QObject* parent) : QObject(parent) {}

PictureSaver::~PictureSaver() { m_writing.waitForFinished(); }

void PictureSaver::Save(const SaveRequest& request)
{
    Q_ASSERT(!m_busy);
    m_request = request;
    m_busy = true;
    emit BusyChanged(true);
    m_writing = BackgroundTask::Run(
        this, [request] { return Write(request); }, [this](const Outcome& outcome) { OnWritten(outcome); });
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

void PictureSaver::OnWritten(const Outcome& outcome)
{
    const SaveRequest request = std::exchange(m_request, {});
    m_busy = false;
    emit BusyChanged(false);
    if (outcome.error.isEmpty())
        emit Saved(request, outcome.warning);
    else
        emit Failed(outcome.error);
}
