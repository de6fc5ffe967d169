#pragma once

#include "image/YDRGBA32i.h"

#include <QRect>

#include <atomic>
#include <functional>

class BaseTransformation;

/// Runs a transformation over `area` of the pixels, `stride` pixels from row to row, on all cores with
/// vector instructions; tests `abort` before each row and calls `progress` after each.
using YDVectorRoutine =
    std::function<void(YDRGBA32i* pixels, int stride, const QRect& area, BaseTransformation* transformation,
                       const std::atomic<bool>& abort, std::function<void()> progress)>;

/// The routine of the host's vector module, looked up by the first call in this process; empty where
/// there is no such module. Safe from any thread.
const YDVectorRoutine& GetVectorRoutine();
