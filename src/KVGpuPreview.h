#pragma once

#include "YDAdjustmentJob.h"
#include "adjustmentgui_export.h"
#include "gpu/KVGpuRequests.h"
#include "gpu/KVGpuService.h"

#include <QFutureInterface>
#include <QFutureWatcher>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <memory>

/// The previews that the GPU service computes for one widget, each a future as a job on the processor has
/// one.
///
/// At most one is on its way. Its future is always finished: by the answer, by Abort(), by the end of the
/// patience, or by the destructor. GUI thread only.
///
/// A service that offers KVGpuRequests says which answer belongs to which request, and can be told that
/// nobody waits any longer. Of one that does not, any answer is taken for the one that is waited for, and a
/// preview that is aborted ends with its answer all the same, so that the next request finds none on its way.
class ADJUSTMENTGUI_EXPORT KVGpuPreview : public QObject
{
    Q_OBJECT

public:
    /// An answer that takes longer than `patience` is not waited for.
    KVGpuPreview(KVGpuService& service, std::chrono::milliseconds patience);
    ~KVGpuPreview() override;

    /// Begins the service's filter for pictures of about this size; it lasts until EndFilter().
    void BeginFilter(int width, int height);
    /// Ends the filter, once.
    void EndFilter();

    /// Asks for the adjusted picture of the job and gives its future to `watcher`. False where the processor
    /// has to do it: the service is gone or failed since the filter began, or there is nothing to adjust.
    ///
    /// Jobs with the same `pictureNumber` have the same picture and the same selection, with the same pixels.
    [[nodiscard]] bool Start(QFutureWatcher<RGBA32iImage>* watcher, const YDAdjustmentJob& job,
                             quint64 pictureNumber, const SelectiveParamsList& params);

    /// Ends the preview that is on its way with `answer`, if it is the answer to that.
    void Take(const RGBA32iImage& answer);

    /// Cancels the preview that is on its way. It is finished at once, or with the answer of a service that
    /// can not be told.
    void Abort();

    /// Lets go of the pixels of other pictures.
    void ForgetAllBut(quint64 pictureNumber);

signals:
    /// No answer will come to the preview that is on its way, and the service is not asked again before the
    /// next filter. The preview's future still waits for Abort(), which then finishes it at once.
    void Failed();

private:
    using Handle = std::shared_ptr<const unsigned char>;

    KVGpuRequests* Requests() const { return m_service ? m_requests : nullptr; }
    bool MakeRequest(const YDAdjustmentJob& job, quint64 pictureNumber, const SelectiveParamsList& params);
    bool MakePlainRequest(const YDAdjustmentJob& job, const SelectiveParamsList& params);
    bool IsAnswered(const RGBA32iImage& answer) const;
    void OnDropped(quint64 request);
    void Fail();
    void GiveUp();
    void Finish();

    const QPointer<KVGpuService> m_service;
    KVGpuRequests* const m_requests; ///< of the service; null where it offers none
    QTimer m_patience;
    bool m_isFilterActive = false;
    bool m_hasFailed = false;
    bool m_isOnItsWay = false;
    quint64 m_request = 0; ///< of the preview that is on its way, where requests have numbers
    QFutureInterface<RGBA32iImage> m_preview;
    quint64 m_pictureNumber = 0; ///< whose pixels the handles are
    Handle m_pixels;
    Handle m_mask;
};
