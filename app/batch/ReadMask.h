#pragma once

#include "core/KVImageFileManager.h"
#include "operations/Selection.h"

/// Reads a picture whose grey values are the coverage; what is transparent covers nothing. `position` is
/// where its upper left corner lies in the pictures. An error text, empty for none.
[[nodiscard]] QString ReadMask(const QString& path, const QPoint& position,
                               const KVImageFileManager::ReadOptions& options, operations::Selection& mask);
