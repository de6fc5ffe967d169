#include "batch/PicturePipeline.h"

#include "batch/Console.h"
#include "core/WholeFile.h"
#include "threads/PoolTasks.h"

#include <QEventLoop>

#include <utility>

PicturePipeline::PicturePipeline(const std::vector<Step>& steps, const Options& options)
    : m_steps(steps), m_options(options)
{
    m_pool.setMaxThreadCount(options.picturesAtOnce);
    connect(this, &PicturePipeline::PictureDone, this, &PicturePipeline::OnPictureDone, Qt::QueuedConnection);
}

PicturePipeline::~PicturePipeline() = default;

int PicturePipeline::Run(const QList<OutputPlan::Item>& items)
{
    m_waiting = items;
    m_total = items.size();
    QEventLoop loop;
    connect(this, &PicturePipeline::Finished, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    StartNext();
    loop.exec();
    Console::ClearProgress();
    return m_failed;
}

void PicturePipeline::Stop()
{
    m_stopped = true;
    m_waiting.clear();
}

void PicturePipeline::StartNext()
{
    while (!m_waiting.isEmpty() && m_underWay < m_options.picturesAtOnce) {
        const auto picture = std::make_shared<Picture>();
        picture->item = m_waiting.takeFirst();
        ++m_underWay;
        Console::ShowProgress(tr("%1 of %2: %3").arg(m_done + 1).arg(m_total).arg(picture->item.input));
        PoolTask<void>::Start(
            [this, picture] {
                Process(*picture);
                {
                    const std::lock_guard<std::mutex> lock(m_doneMutex);
                    m_donePictures.push_back(picture);
                }
                emit PictureDone();
            },
            &m_pool);
    }
    if (m_underWay == 0)
        emit Finished();
}

void PicturePipeline::Process(Picture& picture) const
{
    Read(picture);
    if (GoesOn(picture))
        Adjust(picture);
    if (GoesOn(picture))
        Write(picture);
}

bool PicturePipeline::GoesOn(Picture& picture) const
{
    picture.isDropped = picture.isDropped || m_stopped;
    return !picture.isDropped && picture.problem.isEmpty();
}

void PicturePipeline::Read(Picture& picture) const
{
    // Before the work rather than after it; the writer checks again.
    const auto existing = m_options.overwrite ? WholeFile::Existing::Replace : WholeFile::Existing::Refuse;
    picture.problem = WholeFile::WhyNotWritable(picture.item.output, existing);
    if (!picture.problem.isEmpty())
        return;
    picture.content = KVImageFileManager::Read(picture.item.input, m_options.reading);
    picture.problem = picture.content.error;
    if (!picture.problem.isEmpty())
        return;
    picture.isRead = true;
    picture.pixels = ImageFromQImage(picture.content.image);
    picture.content.image = QImage();
    if (picture.pixels.IsEmpty())
        picture.problem =
            WholeFile::Error(picture.item.input, tr("there is not enough memory for the picture"));
}

void PicturePipeline::Adjust(Picture& picture) const
{
    const operations::TaskControl control{&m_stopped, nullptr};
    const QSize size(picture.pixels.Width(), picture.pixels.Height());
    for (const Step& step : m_steps) {
        const QString problem = step.task.Apply(picture.pixels, step.select(size), control).problem;
        if (!problem.isEmpty())
            picture.problem = WholeFile::Error(picture.item.input, problem);
        if (!GoesOn(picture))
            return;
    }
}

void PicturePipeline::Write(Picture& picture) const
{
    KVImageFileManager::WriteOptions options;
    options.overwrite = m_options.overwrite;
    if (picture.item.formatOfInput)
        options.format = picture.content.format;
    picture.written = KVImageFileManager::Write(picture.item.output, ImageToQImage(picture.pixels),
                                                picture.content.metadata, options);
}

void PicturePipeline::OnPictureDone()
{
    std::vector<PicturePointer> done;
    {
        const std::lock_guard<std::mutex> lock(m_doneMutex);
        done.swap(m_donePictures);
    }
    for (const PicturePointer& picture : done) {
        if (!picture->isDropped)
            Report(*picture);
        --m_underWay;
        ++m_done;
    }
    StartNext();
}

void PicturePipeline::Report(const Picture& picture)
{
    if (picture.isRead)
        TellNotes(picture);
    if (!picture.problem.isEmpty())
        Fail(picture.problem);
    else if (!picture.written.error.isEmpty())
        Fail(picture.written.error);
    else if (!picture.written.warning.isEmpty())
        Console::Complain(tr("note: %1").arg(picture.written.warning));
}

void PicturePipeline::TellNotes(const Picture& picture)
{
    const KVImageFileManager::ReadResult& content = picture.content;
    if (content.depthReduced)
        Console::Complain(WholeFile::Error(picture.item.input, tr("note: its depth is reduced to 8 bits")));
    if (content.hasMorePictures)
        Console::Complain(WholeFile::Error(
            picture.item.input, tr("note: it holds several pictures; only the first one is taken")));
    if (!content.metadataError.isEmpty())
        Console::Complain(WholeFile::Error(
            picture.item.input, tr("note: some metadata cannot be read (%1)").arg(content.metadataError)));
}

void PicturePipeline::Fail(const QString& error)
{
    Console::Complain(error);
    ++m_failed;
}
