#include "gpu/SelectiveColorsService.h"

#include "gpu/OpenClDevice.h"
#include "gpu/SelectiveColorsWorker.h"

#include <QPointer>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

/// The pixels at `address`, which somebody else keeps, under a handle that no other call has given; null for
/// none.
std::shared_ptr<const unsigned char> Borrowed(const unsigned char* address)
{
    if (!address)
        return nullptr;
    return {std::make_shared<const char>(), address};
}

/// Whether the pixels are there as far as that can be known, and can be counted.
bool IsPicture(const SharedPixels& pixels)
{
    constexpr int WidestPicture = std::numeric_limits<int>::max() - int(RGBA32iImage::RowLengthOf(1));
    if (!pixels.handle || pixels.width < 1 || pixels.width > WidestPicture || pixels.height < 1 ||
        pixels.rowLength < pixels.width ||
        pixels.height > std::numeric_limits<qint64>::max() / pixels.BytesPerLine())
        return false;
    const qint64 bytes =
        (pixels.height - 1) * pixels.BytesPerLine() + pixels.width * qint64(sizeof(YDRGBA32i));
    return PixelBuffer::HasBytes(pixels.handle, bytes);
}

} // namespace

std::unique_ptr<SelectiveColorsDevice> SelectiveColorsService::FindDevice(GpuUse use, const QString& library)
{
    if (use == GpuUse::Off)
        return nullptr;
    QString problem;
    std::shared_ptr<const OpenClLibrary> functions = OpenClLibrary::Load(library, problem);
    std::unique_ptr<SelectiveColorsDevice> device;
    if (functions)
        device = OpenClDevice::Find(std::move(functions), use, problem);
    if (!device && use == GpuUse::Any) // who asks for any device expects one
        qWarning("Selective colours find no device: %s", qUtf8Printable(problem));
    return device;
}

SelectiveColorsService::SelectiveColorsService(std::unique_ptr<SelectiveColorsDevice> device, QObject* parent)
    : KVGpuService(parent), m_worker(std::make_unique<SelectiveColorsWorker>(
                                std::move(device), [this] { emit AnswersFound(QPrivateSignal()); }))
{
    qRegisterMetaType<RGBA32iImage>("RGBA32iImage"); // so that the answers travel through queued connections
    connect(this, &SelectiveColorsService::AnswersFound, this, &SelectiveColorsService::OnAnswers,
            Qt::QueuedConnection);
}

SelectiveColorsService::~SelectiveColorsService() = default;

QString SelectiveColorsService::device_name() const { return m_worker->DeviceName(); }

void SelectiveColorsService::begin_filter(int, int)
{
    if (m_filters++ == 0)
        m_worker->BeginKeepingPictures();
}

void SelectiveColorsService::end_filter()
{
    if (m_filters > 0 && --m_filters == 0)
        m_worker->EndKeepingPictures();
}

void SelectiveColorsService::process_selective_color(const unsigned char* pixels, int width, int height,
                                                     const QList<SelectiveParams>& params, Mode mode,
                                                     const unsigned char* mask, int maskWidth, int maskHeight,
                                                     int x, int y, bool isContentNew)
{
    SelectiveColorsJob job;
    job.source = {Borrowed(pixels), width, height, RGBA32iImage::RowLengthOf(width)};
    if (mask)
        job.mask = {Borrowed(mask), maskWidth, maskHeight, RGBA32iImage::RowLengthOf(maskWidth)};
    job.isBorrowed = true;
    job.isContentNew = isContentNew;
    job.maskX = x;
    job.maskY = y;
    job.rule = SelectiveColorsRule(params, mode);
    if (Accept(std::move(job), nullptr) == 0)
        qWarning("Selective colours were asked for of a picture that is not there.");
}

quint64 SelectiveColorsService::request_selective_color(
    std::shared_ptr<const unsigned char> pixels, int width, int height, const QList<SelectiveParams>& params,
    Mode mode, std::shared_ptr<const unsigned char> mask, int maskWidth, int maskHeight, int x, int y,
    bool isContentNew, const QObject* requester, int maskRowLength)
{
    SelectiveColorsJob job;
    job.source = {std::move(pixels), width, height, RGBA32iImage::RowLengthOf(width)};
    if (mask)
        job.mask = {std::move(mask), maskWidth, maskHeight,
                    maskRowLength == 0 ? RGBA32iImage::RowLengthOf(maskWidth) : maskRowLength};
    job.isContentNew = isContentNew;
    job.maskX = x;
    job.maskY = y;
    job.rule = SelectiveColorsRule(params, mode);
    return Accept(std::move(job), requester);
}

void SelectiveColorsService::cancel(quint64 request)
{
    const auto open = m_open.constFind(request);
    if (open == m_open.constEnd())
        return;
    if (m_newest.value(*open) == request)
        m_newest.remove(*open);
    m_open.erase(open);
    m_worker->Drop(request);
    emit dropped(request);
}

quint64 SelectiveColorsService::request_of(const RGBA32iImage& image) const
{
    const std::shared_ptr<const unsigned char> pixels = image.SharedPixels();
    const auto found =
        std::find_if(m_answered.cbegin(), m_answered.cend(), [&pixels](const Answered& answer) {
            return !answer.pixels.owner_before(pixels) && !pixels.owner_before(answer.pixels);
        });
    return pixels && found != m_answered.cend() ? found->request : 0;
}

void SelectiveColorsService::on_dropped(const QObject* context, std::function<void(quint64)> onDropped)
{
    connect(this, &SelectiveColorsService::dropped, context, std::move(onDropped));
}

/// Puts the job in the queue and returns its request's number; 0 for pictures that are not there.
quint64 SelectiveColorsService::Accept(SelectiveColorsJob job, const QObject* requester)
{
    const bool isMaskOfPixels = job.HasMask() && job.mask.width > 0 && job.mask.height > 0;
    if (!IsPicture(job.source) || (isMaskOfPixels && !IsPicture(job.mask)))
        return 0;
    Watch(requester);
    const quint64 request = ++m_lastRequest;
    m_open.insert(request, requester);
    m_newest.insert(requester, request);
    m_worker->Post({request, requester, std::move(job)});
    return request;
}

/// A requester that is destroyed takes its request along.
void SelectiveColorsService::Watch(const QObject* requester)
{
    if (requester)
        connect(requester, &QObject::destroyed, this, &SelectiveColorsService::OnRequesterDestroyed,
                Qt::UniqueConnection);
}

void SelectiveColorsService::OnRequesterDestroyed(QObject* requester)
{
    // All of its requests, not the newest alone: the next object at this address is another requester.
    QList<quint64> requests = m_open.keys(requester);
    std::sort(requests.begin(), requests.end());
    const QPointer<SelectiveColorsService> self(this);
    for (const quint64 request : qAsConst(requests))
        if (self)
            cancel(request);
}

void SelectiveColorsService::OnAnswers()
{
    const QPointer<SelectiveColorsService> self(this);
    const std::vector<SelectiveColorsAnswer> answers = m_worker->TakeAnswers();
    for (const SelectiveColorsAnswer& answer : answers) {
        const auto open = m_open.constFind(answer.request);
        if (open == m_open.constEnd())
            continue; // cancelled, and said so
        const QObject* const requester = *open;
        const bool isNewest = m_newest.value(requester) == answer.request;
        m_open.erase(open);
        if (isNewest)
            m_newest.remove(requester);
        if (isNewest && !answer.image.IsEmpty()) {
            Remember(answer.request, answer.image);
            emit finished(answer.image);
        } else {
            emit dropped(answer.request);
        }
        if (!self)
            return; // deleted by who heard of it
    }
}

void SelectiveColorsService::Remember(quint64 request, const RGBA32iImage& image)
{
    m_answered.erase(std::remove_if(m_answered.begin(), m_answered.end(),
                                    [](const Answered& answer) { return answer.pixels.expired(); }),
                     m_answered.end());
    m_answered.push_back({request, image.SharedPixels()});
}
