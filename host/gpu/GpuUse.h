#pragma once

/// Which devices pictures may be adjusted on, beside the processor itself.
enum class GpuUse
{
    Off,  ///< none
    Auto, ///< graphics cards
    Any,  ///< whatever OpenCL offers, the processor too where it does; for tests
};

/// What the environment variable ADJUSTMENTGUI_GPU says, "off", "auto" or "any"; where it is not set, the
/// setting of KVApplication::GetGpuUse(). Any other text counts as "auto", and the log says so.
GpuUse ChosenGpuUse();
