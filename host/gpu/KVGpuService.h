#pragma once

#include "gpu/GpuUse.h"
#include "image/KVImage.h"
#include "image/SelectiveParamsList.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class SelectiveColorsDevice;
class SelectiveColorsWorker;

/// Adjusts pictures on a device beside the processor, a graphics card as a rule, for whoever asks.
///
/// All calls and signals belong to the GUI thread, and none of them waits: requests are worked on one after
/// the other by a thread of the service's own. Whatever the device fails at, the processor does, with the
/// same result byte for byte, and the log says so once.
///
/// Every request that is accepted is answered once: by finished() or by dropped().
class KVGpuService : public QObject
{
    Q_OBJECT

public:
    /// The service of the running application; null where no device is to be used (ChosenGpuUse()) or none
    /// is there. Settled by the first call, it ends with the QCoreApplication, whatever is still at work.
    static KVGpuService* get_instance();

    /// The device that get_instance() would use with `use`, and with OpenCL's library in the file `library`;
    /// null where there is none.
    static std::unique_ptr<SelectiveColorsDevice> FindDevice(GpuUse use, const QString& library);

    /// A service that works on `device`.
    explicit KVGpuService(std::unique_ptr<SelectiveColorsDevice> device, QObject* parent = nullptr);
    /// Gives up what is at work and unanswered, without another signal.
    ~KVGpuService() override;

    /// Name of the device, for people.
    QString device_name() const;

    /// Announces requests on a picture of about this size, and keeps the pictures that they send to the
    /// device there until end_filter(). Several may be active: each call is paired with one end_filter(); one
    /// too many of those does nothing.
    void begin_filter(int width, int height);
    void end_filter();

    /// Asks for the selective colours of a picture, and returns the request's number; 0, and no answer
    /// follows, for a picture that is null or of no size.
    ///
    /// `pixels` and `mask` are pictures in the layout of RGBA32iImage, as its SharedPixels() gives them, and
    /// are not written to before the answer. The same handle with the same size stands for the same content,
    /// which is sent to the device once a filter, unless `isContentNew`. `params` may be of any length.
    ///
    /// The pixel (0, 0) of the mask lies at (`x`, `y`) of the picture; what the mask does not reach stays as
    /// it is. A null mask: no selection, all is adjusted. One without width or height selects nothing.
    /// `maskRowLength`: pixels from row to row of a mask that is a part of a larger one; 0: its width rounded
    /// up to whole tiles.
    ///
    /// A request takes the place of the one before of the same `requester`, which is dropped if it has no
    /// answer yet; requests of others stay. Requests without a requester share one place. A requester that
    /// is destroyed takes its request along.
    quint64 process_selective_color(std::shared_ptr<const unsigned char> pixels, int width, int height,
                                    const QList<SelectiveParams>& params, Mode mode,
                                    std::shared_ptr<const unsigned char> mask, int maskWidth, int maskHeight,
                                    int x, int y, bool isContentNew, const QObject* requester = nullptr,
                                    int maskRowLength = 0);

    /// Drops the request, if it has no answer yet: dropped() is emitted before this returns.
    void cancel(quint64 request);

    /// The number of the request that `image`, as finished() gave it, is the answer to; 0 for any other
    /// picture.
    quint64 request_of(const RGBA32iImage& image) const;

signals:
    /// The adjusted picture, with pixels of its own. Every requester hears of every answer: the one to its
    /// own newest request is the one whose request_of() is that number.
    void finished(const RGBA32iImage& image);
    /// There will be no answer to `request`: another took its place, its requester is gone, it was cancelled,
    /// or there was no memory for the answer.
    void dropped(quint64 request);
    /// The worker's, on its thread.
    void AnswersFound(QPrivateSignal);

private:
    struct Answered
    {
        quint64 request;
        std::weak_ptr<const unsigned char> pixels;
    };

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
