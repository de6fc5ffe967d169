#pragma once

#include "gpu/GpuUse.h"
#include "gpu/KVGpuRequests.h"
#include "gpu/KVGpuService.h"

#include <QHash>
#include <QString>

#include <vector>

class SelectiveColorsDevice;
class SelectiveColorsWorker;
struct SelectiveColorsJob;

/// A service that works on requests one after the other, by a thread of its own.
///
/// All calls and signals belong to the GUI thread, and none of them waits. Whatever the device fails at, the
/// processor does, with the same result byte for byte, and the log says so once.
class SelectiveColorsService : public KVGpuService, public KVGpuRequests
{
    Q_OBJECT

public:
    /// The device that KVGpuService::get_instance() would use with `use`, and with OpenCL's library in the
    /// file `library`; null where there is none.
    static std::unique_ptr<SelectiveColorsDevice> FindDevice(GpuUse use, const QString& library);

    /// A service that works on `device`.
    explicit SelectiveColorsService(std::unique_ptr<SelectiveColorsDevice> device, QObject* parent = nullptr);
    /// Gives up what is at work and unanswered, without another signal.
    ~SelectiveColorsService() override;

    /// Name of the device, for people.
    QString device_name() const;

    /// The pictures that requests send to the device are kept there as long as a filter is active. An
    /// end_filter() too many does nothing.
    void begin_filter(int width, int height) override;
    void end_filter() override;

    /// A request without a requester, whose pixels are sent to the device each time. They may go once it, or
    /// one that was made later, is answered.
    void process_selective_color(const unsigned char* pixels, int width, int height,
                                 const QList<SelectiveParams>& params, Mode mode, const unsigned char* mask,
                                 int maskWidth, int maskHeight, int x, int y, bool isContentNew) override;

    quint64 request_selective_color(std::shared_ptr<const unsigned char> pixels, int width, int height,
                                    const QList<SelectiveParams>& params, Mode mode,
                                    std::shared_ptr<const unsigned char> mask, int maskWidth, int maskHeight,
                                    int x, int y, bool isContentNew, const QObject* requester = nullptr,
                                    int maskRowLength = 0) override;
    void cancel(quint64 request) override;
    quint64 request_of(const RGBA32iImage& image) const override;
    void on_dropped(const QObject* context, std::function<void(quint64)> onDropped) override;

signals:
    /// There will be no answer to `request`.
    void dropped(quint64 request);
    /// The worker's, on its thread.
    void AnswersFound(QPrivateSignal);

private:
    struct Answered
    {
        quint64 request;
        std::weak_ptr<const unsigned char> pixels;
    };

    quint64 Accept(SelectiveColorsJob job, const QObject* requester);
    void Watch(const QObject* requester);
    void OnRequesterDestroyed(QObject* requester);
    void OnAnswers();
    void Remember(quint64 request, const RGBA32iImage& image);

    quint64 m_lastRequest = 0;
    int m_filters = 0;
    QHash<quint64, const QObject*> m_open;           ///< whose each request without an answer is
    QHash<const QObject*, quint64> m_newest;         ///< of each requester that has an open one
    std::vector<Answered> m_answered;                ///< those whose pictures are still about
    std::unique_ptr<SelectiveColorsWorker> m_worker; // the last, as it calls back
};
