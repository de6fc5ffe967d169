#pragma once

#include "core/KVImageFileManager.h"

/// The reading half of KVImageFileManager: from an untrusted file to upright pixels and their metadata.
class PictureDecoder
{
    Q_DECLARE_TR_FUNCTIONS(PictureDecoder)

public:
    /// Thread-safe.
    [[nodiscard]] static KVImageFileManager::ReadResult Read(const QString& path,
                                                             const KVImageFileManager::ReadOptions& options);
};
