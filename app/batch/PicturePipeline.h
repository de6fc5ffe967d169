#pragma once

#include "batch/OutputPlan.h"
#include "core/KVImageFileManager.h"
#include "operations/Task.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

/// Takes pictures through reading, adjusting and writing, each on one thread of a pool of its own; an
/// adjustment fans out to all cores by itself. At most `picturesAtOnce` pictures are in memory, each with the
/// copies that its adjustment makes. A picture that fails is reported and the others go on.
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

    /// One adjustment of every picture.
    struct Step
    {
        operations::Task task;
        /// What is adjusted in a picture of this size. Called on any thread, several times at once.
        std::function<operations::Selection(const QSize& picture)> select;
    };

    PicturePipeline(const std::vector<Step>& steps, const Options& options);
    ~PicturePipeline() override;

    /// Runs an event loop until every picture is done or has failed. The number that failed.
    [[nodiscard]] int Run(const QList<OutputPlan::Item>& items);

    /// Lets no further picture begin and drops those that are not being written yet.
    void Stop();

signals:
    void Finished();
    /// A thread of the pool has put a picture among those that are done.
    void PictureDone();

private:
    /// One picture on its way.
    struct Picture
    {
        OutputPlan::Item item;
        KVImageFileManager::ReadResult content;
        RGBA32iImage pixels;
        bool isRead = false;
        QString problem;        ///< why the picture is not written; empty for nothing
        bool isDropped = false; ///< stopped before it was written
        KVImageFileManager::WriteResult written;
    };
    using PicturePointer = std::shared_ptr<Picture>;

    void StartNext();

    // On the pool.
    void Process(Picture& picture) const;
    void Read(Picture& picture) const;
    void Adjust(Picture& picture) const;
    void Write(Picture& picture) const;
    bool GoesOn(Picture& picture) const;

    // On the GUI thread.
    void OnPictureDone();
    void Report(const Picture& picture);
    void Fail(const QString& error);
    static void TellNotes(const Picture& picture);

    const std::vector<Step> m_steps;
    const Options m_options;
    QList<OutputPlan::Item> m_waiting;
    int m_total = 0;
    int m_done = 0;
    int m_failed = 0;
    int m_underWay = 0;
    std::atomic<bool> m_stopped{false};
    std::mutex m_doneMutex;
    std::vector<PicturePointer> m_donePictures; ///< guarded by m_doneMutex
    /// The last member: its end waits for its threads, which use the others.
    QThreadPool m_pool;
};
