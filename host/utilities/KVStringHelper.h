#pragma once

#include <QString>

/// Names of files and images.
class KVStringHelper
{
public:
    /// The name to load the image `name` by on this program's screens: that of its "@2x" (or "@3x") variant
    /// where the screens have more than one device pixel to the unit and there is such an image, `name`
    /// itself otherwise. Takes any name that Qt opens: files, resources, "theme:". A pixmap loaded by such a
    /// name knows its ratio.
    static QString DPIAdjustImageName(const QString& name);
};
