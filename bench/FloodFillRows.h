#pragma once

/// Registers flood fills of pictures from easy to winding, and of a small area.
void RegisterFloodFillRows(int megapixels);
