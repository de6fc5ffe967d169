#pragma once

#include "batch/AdjustmentStep.h"
#include "batch/OutputPlan.h"
#include "catalog/SelectionMask.h"
#include "core/KVImageFileManager.h"

#include <QObject>
#include <QThreadPool>

#include <memory>
#include <mutex>
#include <vector>

/// Takes pictures through reading, adjusting and writing.
///
/// Reading, writing and drawing run on a pool of its own, adjusting on the GUI thread, where the widgets live
/// and which fans out to all cores by itself. At most `picturesAtOnce` pictures are in memory. A picture that
/// fails is reported and the others go on.
class PicturePipeline : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        KVImageFileManager::ReadOptions reading;
        bool overwrite = false;
        int picturesAtOnce = 1;
    };

    PicturePipeline(std::vector<AdjustmentStep>& steps, const SelectionMask& mask, const Options& options);
    ~PicturePipeline() override;

    /// Runs an event loop until every picture is done or has failed. The number that failed.
    [[nodiscard]] int Run(const QList<OutputPlan::Item>& items);

    /// Lets no further picture begin and drops those that are not being written yet.
    void Stop();

signals:
    void Finished();
    /// A thread of the pool has put a picture among those that are handed back.
    void HandedBack();

private:
    /// One picture on its way.
    struct Picture
    {
        OutputPlan::Item item;
        KVImageFileManager::ReadResult content;
        RGBA32iImage pixels;
        std::size_t stepsDone = 0;
        QString problem; ///< why the picture cannot go on; empty for nothing
        KVImageFileManager::WriteResult written;
    };
    using PicturePointer = std::shared_ptr<Picture>;

    void StartNext();
    void Read(Picture& picture) const;
    void OnRead(const PicturePointer& picture);
    void Tell(const Picture& picture) const;
    void Adjust(const PicturePointer& picture);
    void Draw(Picture& picture) const;
    static void FinishStep(Picture& picture, const QString& problem);
    void Write(Picture& picture) const;
    void OnWritten(const PicturePointer& picture);
    void Fail(const QString& error);
    void End();

    using Work = void (PicturePipeline::*)(Picture&) const;
    using Next = void (PicturePipeline::*)(const PicturePointer&);

    /// Does `work` on the pool, then `next` on the GUI thread.
    void Queue(const PicturePointer& picture, Work work, Next next);
    void OnHandedBack();

    struct Handed
    {
        PicturePointer picture;
        Next next;
    };
    std::vector<Handed> TakeHanded();

    std::vector<AdjustmentStep>& m_steps;
    const SelectionMask& m_mask;
    const Options m_options;
    QList<OutputPlan::Item> m_waiting;
    int m_total = 0;
    int m_done = 0;
    int m_failed = 0;
    int m_underWay = 0;
    bool m_stopped = false;
    bool m_isTaking = false; ///< those that were handed back, one after the other
    std::mutex m_handedMutex;
    std::vector<Handed> m_handed; ///< guarded by m_handedMutex
    QThreadPool m_pool;           ///< the last member: its threads use the others
};
