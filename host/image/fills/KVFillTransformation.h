#pragma once

#include "image/FillRule.h"
#include "image/PixelRuleFunctor.h"

/// Lays one colour over a picture by the colour's alpha: the picture's own alpha is composed as well, and an
/// opaque colour replaces every pixel. A pixel functor; made by default it changes nothing.
class KVFillTransformation : public PixelRuleFunctor<FillRule>
{
public:
    void SetData(const YDRGBA32i& pixel) { m_rule.fill = pixel; }
};
