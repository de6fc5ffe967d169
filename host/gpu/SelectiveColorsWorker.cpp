#include "gpu/SelectiveColorsWorker.h"

#include "gpu/SelectiveColorsDevice.h"
#include "gpu/SelectiveColorsOnCpu.h"

#include <algorithm>
#include <utility>

SelectiveColorsWorker::SelectiveColorsWorker(std::unique_ptr<SelectiveColorsDevice> device,
                                             std::function<void()> onAnswer)
    : m_device(std::move(device)), m_onAnswer(std::move(onAnswer)), m_thread([this] { Run(); })
{}

SelectiveColorsWorker::~SelectiveColorsWorker()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
        m_abort.store(true);
    }
    m_changed.notify_all();
    m_thread.join();
}

void SelectiveColorsWorker::Post(SelectiveColorsRequest request)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_atWork != 0 && m_served == request.requester)
            m_abort.store(true);
        const auto before = std::find_if(m_queue.begin(), m_queue.end(), [&request](const auto& waiting) {
            return waiting.requester == request.requester;
        });
        if (before == m_queue.end()) {
            m_queue.push_back(std::move(request));
        } else {
            m_mustRelease = m_mustRelease || before->job.isContentNew; // nobody else tells the device
            std::swap(*before, request);
            m_answers.push_back({request.number, RGBA32iImage()});
        }
    }
    m_changed.notify_all();
    m_onAnswer();
}

void SelectiveColorsWorker::Drop(quint64 number)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_atWork == number) {
            m_abort.store(true);
            return;
        }
        const auto waiting =
            std::find_if(m_queue.begin(), m_queue.end(), [number](const SelectiveColorsRequest& request) {
                return request.number == number;
            });
        if (waiting == m_queue.end())
            return;
        m_mustRelease = m_mustRelease || waiting->job.isContentNew; // nobody else tells the device
        m_queue.erase(waiting);
        m_answers.push_back({number, RGBA32iImage()});
    }
    m_changed.notify_all();
    m_onAnswer();
}

void SelectiveColorsWorker::BeginKeepingPictures()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_keepsPictures = true;
        m_mustPrepare = true;
    }
    m_changed.notify_all();
}

void SelectiveColorsWorker::EndKeepingPictures()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_keepsPictures = false;
        m_mustRelease = true;
    }
    m_changed.notify_all();
}

std::vector<SelectiveColorsAnswer> SelectiveColorsWorker::TakeAnswers()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_answers, {});
}

void SelectiveColorsWorker::Run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock,
                       [this] { return m_isEnding || m_mustPrepare || m_mustRelease || !m_queue.empty(); });
        if (m_isEnding)
            return;
        if (m_mustPrepare || m_mustRelease)
            RunDuties(lock);
        else
            RunNextRequest(lock);
    }
}

void SelectiveColorsWorker::RunDuties(std::unique_lock<std::mutex>& lock)
{
    const bool mustPrepare = std::exchange(m_mustPrepare, false);
    const bool mustRelease = std::exchange(m_mustRelease, false);
    lock.unlock();
    if (mustRelease)
        m_device.ReleasePictures();
    if (mustPrepare)
        m_device.Prepare();
    lock.lock();
}

void SelectiveColorsWorker::RunNextRequest(std::unique_lock<std::mutex>& lock)
{
    SelectiveColorsRequest request = std::move(m_queue.front());
    m_queue.pop_front();
    m_atWork = request.number;
    m_served = request.requester;
    m_abort.store(false);
    lock.unlock();
    const RGBA32iImage image = Adjusted(request.job);
    request.job = {}; // not kept alive by a thread at rest
    lock.lock();
    const bool isWanted = !m_abort.load();
    m_answers.push_back({m_atWork, isWanted ? image : RGBA32iImage()});
    m_atWork = 0;
    m_served = nullptr;
    m_mustRelease = m_mustRelease || (m_queue.empty() && !m_keepsPictures);
    lock.unlock();
    m_onAnswer();
    lock.lock();
}

/// Empty without memory for it; anything once the abort flag is set.
RGBA32iImage SelectiveColorsWorker::Adjusted(const SelectiveColorsJob& job)
{
    const auto result = RGBA32iImage::Uninitialized(job.source.width, job.source.height);
    if (result.IsEmpty()) {
        qWarning("No memory for selective colours of %d x %d pixels", job.source.width, job.source.height);
        m_device.ReleasePictures();
        return result;
    }
    if (!m_device.Adjust(job, result, m_abort))
        AdjustSelectiveColorsOnCpu(job, result, m_abort);
    return result;
}
