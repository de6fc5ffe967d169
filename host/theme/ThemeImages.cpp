#include "theme/ThemeImages.h"

#include <QDir>

void ThemeImages::Install()
{
    const QString prefix = QStringLiteral("theme");
    const QString folder = QStringLiteral(":/adjustmentgui/theme");
    if (!QDir::searchPaths(prefix).contains(folder))
        QDir::addSearchPath(prefix, folder);
}
