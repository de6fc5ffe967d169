#include "KVGpuPreview.h"

#include "LendToGpu.h"
#include "MaskPart.h"

#include <utility>

namespace {

/// The bytes at `pixels` of `image`, under a handle that no other call has given.
std::shared_ptr<const unsigned char> NewHandle(const RGBA32iImage& image, const YDRGBA32i* pixels)
{
    const auto owner = std::make_shared<const RGBA32iImage>(image);
    return {owner, reinterpret_cast<const unsigned char*>(pixels)};
}

} // namespace

KVGpuPreview::KVGpuPreview(KVGpuService& service, std::chrono::milliseconds patience)
    : m_service(&service), m_requests(dynamic_cast<KVGpuRequests*>(&service))
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, &KVGpuPreview::Fail);
    connect(&service, &QObject::destroyed, this, &KVGpuPreview::Fail);
    if (m_requests)
        m_requests->on_dropped(this, [this](quint64 request) { OnDropped(request); });
}

KVGpuPreview::~KVGpuPreview()
{
    GiveUp();
    EndFilter();
}

void KVGpuPreview::BeginFilter(int width, int height)
{
    if (!m_service)
        return;
    m_service->begin_filter(width, height);
    if (m_isFilterActive && m_requests)
        m_service->end_filter(); // of the one before; only now, so that the service keeps its pictures
    m_isFilterActive = true;
    m_hasFailed = false;
}

void KVGpuPreview::EndFilter()
{
    if (std::exchange(m_isFilterActive, false) && m_service)
        m_service->end_filter();
}

bool KVGpuPreview::Start(QFutureWatcher<RGBA32iImage>* watcher, const YDAdjustmentJob& job,
                         quint64 pictureNumber, const SelectiveParamsList& params)
{
    GiveUp();
    if (!m_service || m_hasFailed)
        return false;
    m_isOnItsWay = m_requests ? MakeRequest(job, pictureNumber, params) : MakePlainRequest(job, params);
    if (!m_isOnItsWay)
        return false;
    m_preview = QFutureInterface<RGBA32iImage>();
    m_preview.reportStarted();
    watcher->setFuture(m_preview.future());
    m_patience.start();
    return true;
}

bool KVGpuPreview::MakeRequest(const YDAdjustmentJob& job, quint64 pictureNumber,
                               const SelectiveParamsList& params)
{
    const bool isSelected = !job.selectionBoundingRect.isEmpty();
    const MaskPart mask = isSelected ? MaskPart::Of(job) : MaskPart();
    if (isSelected && !mask.pixels)
        return false;
    ForgetAllBut(pictureNumber);
    m_pictureNumber = pictureNumber;
    if (!m_pixels)
        m_pixels = NewHandle(job.image, job.image.Pixels());
    if (isSelected && !m_mask)
        m_mask = NewHandle(job.selection, mask.pixels);
    m_request = m_requests->request_selective_color(
        m_pixels, job.image.Width(), job.image.Height(), params.targets, params.mode, m_mask, mask.width,
        mask.height, mask.place.x(), mask.place.y(), false, this, job.selection.RowLength());
    return m_request != 0;
}

bool KVGpuPreview::MakePlainRequest(const YDAdjustmentJob& job, const SelectiveParamsList& params)
{
    const bool isSelected = !job.selectionBoundingRect.isEmpty();
    if (isSelected && job.selection.IsEmpty())
        return false; // no mask would mean that all is selected
    const RGBA32iImage mask = isSelected ? job.selection : RGBA32iImage();
    if (!LendToGpu(*m_service, job.image, mask))
        return false;
    // Not as constant bytes: a service may say either in its parameters.
    const auto bytesOf = [](const RGBA32iImage& image) {
        return reinterpret_cast<unsigned char*>(image.Pixels());
    };
    m_service->process_selective_color(
        bytesOf(job.image), job.image.Width(), job.image.Height(), params.targets, params.mode, bytesOf(mask),
        mask.Width(), mask.Height(), job.selectionOffset.x(), job.selectionOffset.y(), false);
    return true;
}

void KVGpuPreview::Take(const RGBA32iImage& answer)
{
    if (!m_isOnItsWay || !IsAnswered(answer))
        return;
    m_preview.reportResult(answer);
    Finish();
}

/// Whether `answer` is the one that is waited for.
bool KVGpuPreview::IsAnswered(const RGBA32iImage& answer) const
{
    if (!m_requests)
        return true;
    return m_service && m_requests->request_of(answer) == m_request;
}

void KVGpuPreview::Abort()
{
    if (Requests() || !m_service || m_hasFailed)
        GiveUp();
    else if (m_isOnItsWay)
        m_preview.cancel();
}

void KVGpuPreview::ForgetAllBut(quint64 pictureNumber)
{
    if (pictureNumber == m_pictureNumber)
        return;
    m_pixels.reset();
    m_mask.reset();
}

void KVGpuPreview::OnDropped(quint64 request)
{
    if (request == m_request)
        Fail();
}

void KVGpuPreview::Fail()
{
    if (!m_isOnItsWay)
        return;
    m_hasFailed = true;
    if (m_preview.isCanceled())
        GiveUp(); // whoever aborted it waits for its end alone
    else
        emit Failed();
}

/// Cancels and finishes the preview that is on its way, at once.
void KVGpuPreview::GiveUp()
{
    if (!m_isOnItsWay)
        return;
    const quint64 request = m_request;
    m_preview.cancel();
    Finish();
    if (KVGpuRequests* const requests = Requests())
        requests->cancel(request);
}

void KVGpuPreview::Finish()
{
    m_isOnItsWay = false;
    m_request = 0;
    m_patience.stop();
    m_preview.reportFinished();
}
