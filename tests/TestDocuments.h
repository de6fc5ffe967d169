#pragma once

#include "editor/OpenedPicture.h"

/// Pictures as the editor opens them, for tests.
namespace TestDocuments {

inline OpenedPicture Opened(const RGBA32iImage& picture,
                            const QString& path = QStringLiteral("/nowhere/a.png"))
{
    OpenedPicture opened;
    opened.path = path;
    opened.format = "png";
    opened.picture = picture;
    return opened;
}

} // namespace TestDocuments
