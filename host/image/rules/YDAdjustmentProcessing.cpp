#include "image/YDAdjustmentProcessing.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int AnnouncementsPerRun = 100;

} // namespace

YDAdjustmentProcessing::YDAdjustmentProcessing(QObject* parent) : QObject(parent) {}

void YDAdjustmentProcessing::SetRange(unsigned rows)
{
    m_rows = static_cast<int>(std::min<unsigned>(rows, std::numeric_limits<int>::max()));
    m_rowsPerAnnouncement = std::max(m_rows / AnnouncementsPerRun, 1);
    m_rowsDone.store(0, std::memory_order_relaxed);
    m_rowsAnnounced = 0;
    emit RangeChanged(0, m_rows);
}

void YDAdjustmentProcessing::IncrementProgress()
{
    const int done = m_rowsDone.fetch_add(1, std::memory_order_relaxed) + 1;
    if (done % m_rowsPerAnnouncement != 0 && done != m_rows)
        return;
    const std::lock_guard<std::mutex> lock(m_announcing);
    if (done <= m_rowsAnnounced)
        return; // another thread has announced a later row meanwhile
    m_rowsAnnounced = done;
    emit ProgressChanged(done);
}
