#pragma once

#include "YDExposureWidget.h"
#include "YDRecord.h"

/// What the controls of the exposure adjustment hold.
struct ExposureFields
{
    double exposure = 0.0; ///< stops
    double offset = 0.0;   ///< of linear light

    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("exposure", self.exposure, YDRecord::Range{-20, 20}) &&
               visit("offset", self.offset, YDRecord::Range{-0.5, 0.5});
    }

    void ShowIn(YDExposureWidget& widget) const
    {
        widget.SetExposure(exposure);
        // The first time the slider moves and truncates the offset, the second time it stands there already.
        widget.SetOffset(offset);
        widget.SetOffset(offset);
    }
    void TakeFrom(const YDExposureWidget& widget)
    {
        exposure = widget.GetExposure();
        offset = widget.GetOffset();
    }
};
