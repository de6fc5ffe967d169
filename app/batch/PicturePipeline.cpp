#include "batch/PicturePipeline.h"

#include "batch/Console.h"
#include "core/WholeFile.h"
#include "image/PoolTasks.h"

#include <QEventLoop>
#include <QScopedValueRollback>

#include <utility>

PicturePipeline::PicturePipeline(std::vector<AdjustmentStep>& steps, const SelectionMask& mask,
                                 const Options& options)
    : m_steps(steps), m_mask(mask), m_options(options)
{
    m_pool.setMaxThreadCount(options.picturesAtOnce);
    connect(this, &PicturePipeline::HandedBack, this, &PicturePipeline::OnHandedBack, Qt::QueuedConnection);
}

PicturePipeline::~PicturePipeline() { m_pool.waitForDone(); }

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
        Queue(picture, &PicturePipeline::Read, &PicturePipeline::OnRead);
    }
    if (m_underWay == 0)
        emit Finished();
}

void PicturePipeline::Queue(const PicturePointer& picture, Work work, Next next)
{
    PoolTask<void>::Start(
        [this, picture, work, next] {
            (this->*work)(*picture);
            {
                const std::lock_guard<std::mutex> lock(m_handedMutex);
                m_handed.push_back({picture, next});
            }
            emit HandedBack();
        },
        &m_pool);
}

std::vector<PicturePipeline::Handed> PicturePipeline::TakeHanded()
{
    const std::lock_guard<std::mutex> lock(m_handedMutex);
    return std::exchange(m_handed, {});
}

/// Some adjustments run an event loop. What is handed back meanwhile waits until the picture that is being
/// adjusted is done: there is one widget for each step.
void PicturePipeline::OnHandedBack()
{
    if (m_isTaking)
        return;
    const QScopedValueRollback<bool> taking(m_isTaking, true);
    for (auto handed = TakeHanded(); !handed.empty(); handed = TakeHanded())
        for (const Handed& each : handed)
            (this->*each.next)(each.picture);
}

void PicturePipeline::Read(Picture& picture) const
{
    // Before the work rather than after it; the writer checks again.
    const auto existing = m_options.overwrite ? WholeFile::Existing::Replace : WholeFile::Existing::Refuse;
    picture.content.error = WholeFile::WhyNotWritable(picture.item.output, existing);
    if (!picture.content.error.isEmpty())
        return;
    picture.content = KVImageFileManager::Read(picture.item.input, m_options.reading);
    if (!picture.content.error.isEmpty())
        return;
    picture.pixels = ImageFromQImage(picture.content.image);
    picture.content.image = QImage();
    if (picture.pixels.IsEmpty())
        picture.content.error =
            WholeFile::Error(picture.item.input, tr("there is not enough memory for the picture"));
}

void PicturePipeline::OnRead(const PicturePointer& picture)
{
    picture->problem = picture->content.error;
    if (!m_stopped && picture->problem.isEmpty())
        Tell(*picture);
    Adjust(picture);
}

void PicturePipeline::Tell(const Picture& picture) const
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

/// Goes on with the next step. What any thread may draw is drawn on the pool, and comes back here after that.
void PicturePipeline::Adjust(const PicturePointer& picture)
{
    while (!m_stopped && picture->problem.isEmpty() && picture->stepsDone < m_steps.size()) {
        AdjustmentStep& step = m_steps[picture->stepsDone];
        if (step.CanDraw()) {
            Queue(picture, &PicturePipeline::Draw, &PicturePipeline::Adjust);
            return;
        }
        const QString problem =
            step.Apply(picture->pixels, m_mask.Coverage(), m_mask.Offset(), m_mask.BoundingRect());
        FinishStep(*picture, problem);
    }
    if (!m_stopped && picture->problem.isEmpty()) {
        Queue(picture, &PicturePipeline::Write, &PicturePipeline::OnWritten);
        return;
    }
    if (!m_stopped)
        Fail(picture->problem);
    End();
}

void PicturePipeline::Draw(Picture& picture) const
{
    const AdjustmentStep& step = m_steps[picture.stepsDone];
    FinishStep(picture, step.Draw(picture.pixels, m_mask.Coverage(), m_mask.Offset(), m_mask.BoundingRect()));
}

void PicturePipeline::FinishStep(Picture& picture, const QString& problem)
{
    ++picture.stepsDone;
    if (!problem.isEmpty())
        picture.problem = WholeFile::Error(picture.item.input, problem);
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

void PicturePipeline::OnWritten(const PicturePointer& picture)
{
    if (!picture->written.error.isEmpty())
        Fail(picture->written.error);
    else if (!picture->written.warning.isEmpty())
        Console::Complain(tr("note: %1").arg(picture->written.warning));
    End();
}

void PicturePipeline::Fail(const QString& error)
{
    Console::Complain(error);
    ++m_failed;
}

void PicturePipeline::End()
{
    --m_underWay;
    ++m_done;
    StartNext();
}
