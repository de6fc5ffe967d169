#pragma once

#include "YDGammaCorrectionWidget.h"
#include "YDRecord.h"

/// What the controls of the gamma correction hold.
struct GammaFields
{
    double gamma = 1.0;

    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("gamma", self.gamma, YDRecord::Range{0.01, 5});
    }

    void ShowIn(YDGammaCorrectionWidget& widget) const { widget.SetGamma(gamma); }
    void TakeFrom(const YDGammaCorrectionWidget& widget) { gamma = widget.GetGamma(); }
};
