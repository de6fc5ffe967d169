#pragma once

/// How many picture pixels a scene coordinate of the document view stands for.
class KVPixelRatioRound
{
public:
    /// 1, on every screen: the scene of this host's document view is the picture itself, a unit a pixel, and
    /// the screen's own ratio is dealt with between scene and screen. A host whose scenes are laid out in
    /// units of the screen answers with the screen's ratio.
    static double GetPixelRatio();
};
