#include "LimitRows.h"

#include "Measurement.h"
#include "ReferencePass.h"
#include "image/ChannelHistograms.h"
#include "image/YDBlend.h"

namespace {

double TimeReferencePass(const BenchPictures& pictures)
{
    return TimeOf([&pictures] { RunReferencePass(pictures.reference); });
}

/// Into the memory of the copy of the pass before, which was let go.
double TimeDeepCopy(const BenchPictures& pictures)
{
    return TimeOf([&pictures] { pictures.photograph.DeepCopy(); });
}

/// On one thread, as the runner does it on machines with one or two cores.
double TimeSelectionBlend(const BenchPictures& pictures)
{
    return TimeOf([&pictures] {
        for (int y = 0; y < pictures.work.Height(); ++y)
            YDBlend::YDSourceBySelection::ProcessRow(pictures.photograph.Row(y), pictures.work.Row(y),
                                                     pictures.mask.Row(y), pictures.work.Width());
    });
}

/// Red, green, blue and luma.
double TimeHistogram(const BenchPictures& pictures)
{
    return TimeOf([&pictures] { ChannelHistograms::Of(pictures.photograph, pictures.Bounds()); });
}

} // namespace

void RegisterLimitRows(int megapixels)
{
    RegisterRow(megapixels, "reference-pass", {TimeReferencePass});
    RegisterRow(megapixels, "deep-copy", {TimeDeepCopy});
    RegisterRow(megapixels, "selection-blend", {TimeSelectionBlend});
    RegisterRow(megapixels, "histogram", {TimeHistogram});
}
