#pragma once

#include <QObject>

#include <atomic>
#include <mutex>

/// Progress of one run over a picture, counted in rows.
///
/// SetRange() is called once, before the work; IncrementProgress() from any thread, once a finished row.
class YDAdjustmentProcessing : public QObject
{
    Q_OBJECT

public:
    explicit YDAdjustmentProcessing(QObject* parent = nullptr);

    /// The rows to come; announces RangeChanged(0, rows) and starts counting at 0.
    void SetRange(unsigned rows);

    /// One more row is done. About a hundred of the calls announce it, the last row always does.
    void IncrementProgress();

signals:
    void RangeChanged(int minimum, int maximum);
    /// Rows done, rising; the last value is the range's maximum unless the run was aborted.
    void ProgressChanged(int rows);

private:
    int m_rows = 0;
    int m_rowsPerAnnouncement = 1;
    std::atomic<int> m_rowsDone{0};
    std::mutex m_announcing; ///< keeps the announced values rising
    int m_rowsAnnounced = 0;
};
