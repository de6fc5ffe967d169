#pragma once

#include "image/KVImage.h"
#include "image/SelectiveParamsList.h"

#include <QList>
#include <QObject>

/// Adjusts pictures on a device beside the processor, a graphics card as a rule, for whoever asks.
///
/// This is all that a panel needs of a service. One that offers KVGpuRequests as well is asked by way of
/// that. All calls belong to the GUI thread; finished() may come from any.
class KVGpuService : public QObject
{
    Q_OBJECT

public:
    /// The service of the running application; null where no device is to be used (ChosenGpuUse()) or none
    /// is there. Settled by the first call, it ends with the QCoreApplication, whatever is still at work.
    static KVGpuService* get_instance();

    using QObject::QObject;

    /// Announces requests on a picture of about this size. Several filters may be active: each call is paired
    /// with one end_filter().
    virtual void begin_filter(int width, int height) = 0;
    virtual void end_filter() = 0;

    /// Asks for the selective colours of a picture: finished() answers.
    ///
    /// `pixels` and `mask` are pictures in the layout of RGBA32iImage, and are neither written to nor let go
    /// of before the answer. The pixel (0, 0) of the mask lies at (`x`, `y`) of the picture; what the mask
    /// does not reach stays as it is. A null mask: no selection, all is adjusted. `isContentNew`: what the
    /// service keeps of these addresses holds no longer.
    virtual void process_selective_color(const unsigned char* pixels, int width, int height,
                                         const QList<SelectiveParams>& params, Mode mode,
                                         const unsigned char* mask, int maskWidth, int maskHeight, int x,
                                         int y, bool isContentNew) = 0;

signals:
    /// An adjusted picture, with pixels of its own. Whoever asked hears of every answer.
    void finished(const RGBA32iImage& image);
};
