#include "image/VectorKernels.h"

#include <hwy/targets.h>

extern "C" Q_DECL_EXPORT decltype(VectorKernels::SupportedTargets)::Function SupportedTargets;

qint64 SupportedTargets() { return hwy::SupportedTargets() & HWY_TARGETS; }

extern "C" Q_DECL_EXPORT decltype(VectorKernels::RestrictTargets)::Function RestrictTargets;

void RestrictTargets(qint64 targets) { hwy::SetSupportedTargetsForTest(targets & HWY_TARGETS); }

extern "C" Q_DECL_EXPORT decltype(VectorKernels::TargetName)::Function TargetName;

const char* TargetName(qint64 target) { return hwy::TargetName(target); }
