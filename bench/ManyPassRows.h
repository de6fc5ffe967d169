#pragma once

/// The rows of the adjustments that look at the picture before they change it, or change it in several
/// passes: ConvertImage with the settings that say which.
void RegisterManyPassRows(int megapixels);
