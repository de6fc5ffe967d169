#include "simd/VectorKernels.h"

#include <hwy/targets.h>

qint64 SupportedTargets() { return hwy::SupportedTargets() & HWY_TARGETS; }

void RestrictTargets(qint64 targets) { hwy::SetSupportedTargetsForTest(targets & HWY_TARGETS); }

const char* TargetName(qint64 target) { return hwy::TargetName(target); }
