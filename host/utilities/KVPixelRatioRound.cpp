#include "utilities/KVPixelRatioRound.h"

double KVPixelRatioRound::GetPixelRatio() { return 1.0; }
