#pragma once

#include "gpu/GuardedDevice.h"
#include "gpu/SelectiveColorsJob.h"
#include "image/KVImage.h"

#include <QString>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class SelectiveColorsDevice;

/// A job, and whose it is.
struct SelectiveColorsRequest
{
    quint64 number = 0;
    const void* requester = nullptr; ///< told apart by its address alone
    SelectiveColorsJob job;
};

/// What became of a request.
struct SelectiveColorsAnswer
{
    quint64 request = 0;
    RGBA32iImage image; ///< empty: there will be none
};

/// The thread that works on requests, one after the other: on a device or, where that fails, on the
/// processor.
///
/// Every request gets one answer, but for those that are left when the worker ends.
class SelectiveColorsWorker
{
public:
    /// `onAnswer` is called, on any thread, when TakeAnswers() may have something new to give.
    SelectiveColorsWorker(std::unique_ptr<SelectiveColorsDevice> device, std::function<void()> onAnswer);
    /// Stops what is at work at the next chance and waits for that.
    ~SelectiveColorsWorker();
    SelectiveColorsWorker(const SelectiveColorsWorker&) = delete;
    SelectiveColorsWorker& operator=(const SelectiveColorsWorker&) = delete;

    /// Puts `request` in the place of the one before of the same requester, or behind all others.
    void Post(SelectiveColorsRequest request);
    /// Gives the request up, unless it is answered.
    void Drop(quint64 number);

    /// Gets the device ready, and keeps pictures there when nothing is left to be done.
    void BeginKeepingPictures();
    void EndKeepingPictures();

    /// The answers since the last call, in the order in which they were found.
    std::vector<SelectiveColorsAnswer> TakeAnswers();

    /// Name of the device.
    const QString& DeviceName() const { return m_device.Name(); }

private:
    void Run();
    void RunDuties(std::unique_lock<std::mutex>& lock);
    void RunNextRequest(std::unique_lock<std::mutex>& lock);
    RGBA32iImage Adjusted(const SelectiveColorsJob& job);

    GuardedDevice m_device; ///< of the worker's thread alone, once it runs, but for the name

    const std::function<void()> m_onAnswer;
    std::atomic<bool> m_abort{false}; ///< of the request at work

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::deque<SelectiveColorsRequest> m_queue;
    std::vector<SelectiveColorsAnswer> m_answers;
    quint64 m_atWork = 0; ///< number of the request at work, or 0
    const void* m_served = nullptr;
    bool m_mustPrepare = false;
    bool m_mustRelease = false;
    bool m_keepsPictures = false;
    bool m_isEnding = false;

    std::thread m_thread; // the last, as it uses all of the above
};
