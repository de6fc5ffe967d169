#pragma once

#include "YDPosterizeWidget.h"
#include "YDRecord.h"

/// What the controls of the posterize adjustment hold.
struct PosterizeFields
{
    int levels = 4; ///< of each channel

    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("levels", self.levels, YDRecord::Range{2, 255});
    }

    void ShowIn(YDPosterizeWidget& widget) const { widget.SetPosterize(levels); }
    void TakeFrom(const YDPosterizeWidget& widget) { levels = widget.GetPosterize(); }
};
