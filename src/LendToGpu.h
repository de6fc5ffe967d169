#pragma once

#include "image/KVImage.h"

class KVGpuService;

/// Keeps the pixels of `picture` and `mask` alive until `service`, which reads them by bare addresses, has
/// answered the next request that is made of it, or is gone. To be called before that request is made; the
/// service is taken to answer its requests in their order.
///
/// False, and nothing is kept, for a service that owes many answers already: it may never give them, and what
/// it may still be reading can not be let go of. GUI thread only.
[[nodiscard]] bool LendToGpu(KVGpuService& service, const RGBA32iImage& picture, const RGBA32iImage& mask);
