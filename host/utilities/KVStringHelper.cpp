#include "utilities/KVStringHelper.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace {

constexpr int MostPixelsAUnit = 9; // Qt knows variants by one digit

/// "theme:a.b/name@2x.png" for "theme:a.b/name.png".
QString VariantOf(const QString& name, int ratio)
{
    const QString suffix = QFileInfo(name).suffix();
    const int end = suffix.isEmpty() ? name.size() : name.size() - suffix.size() - 1;
    return name.left(end) + QStringLiteral("@%1x").arg(ratio) + name.mid(end);
}

} // namespace

QString KVStringHelper::DPIAdjustImageName(const QString& name)
{
    const double screens = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    for (int ratio = std::min(int(std::ceil(screens)), MostPixelsAUnit); ratio > 1; --ratio) {
        const QString variant = VariantOf(name, ratio);
        if (QFile::exists(variant))
            return variant;
    }
    return name;
}
