#pragma once

#include "image/KVImage.h"
#include "image/SelectiveParamsList.h"

#include <QList>

#include <functional>
#include <memory>

class QObject;

/// What a GPU service may offer beside the plain calls: requests that are told apart by their numbers, that
/// can be cancelled, and that keep the pixels alive by themselves.
///
/// Looked for by dynamic_cast. GUI thread only; no call waits.
class KVGpuRequests
{
public:
    virtual ~KVGpuRequests() = default;

    /// Asks for the selective colours of a picture, and returns the request's number; 0, and no answer
    /// follows, for a picture that is null or of no size. Every other request is answered once: by finished()
    /// of the service, or as one that was dropped.
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
    virtual quint64 request_selective_color(std::shared_ptr<const unsigned char> pixels, int width,
                                            int height, const QList<SelectiveParams>& params, Mode mode,
                                            std::shared_ptr<const unsigned char> mask, int maskWidth,
                                            int maskHeight, int x, int y, bool isContentNew,
                                            const QObject* requester = nullptr, int maskRowLength = 0) = 0;

    /// Drops the request, if it has no answer yet, before this returns.
    virtual void cancel(quint64 request) = 0;

    /// The number of the request that `image`, as finished() gave it, is the answer to; 0 for any other
    /// picture.
    virtual quint64 request_of(const RGBA32iImage& image) const = 0;

    /// Has `onDropped` called, as long as `context` and the service live, with each request that will have no
    /// answer: another took its place, its requester is gone, it was cancelled, or there was no memory for
    /// the answer.
    virtual void on_dropped(const QObject* context, std::function<void(quint64)> onDropped) = 0;
};
