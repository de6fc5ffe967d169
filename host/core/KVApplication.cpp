#include "core/KVApplication.h"

#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

namespace {

constexpr int DefaultProgressTimeoutMs = 500;

QString ProgressTimeoutKey() { return QStringLiteral("progress/timeoutMs"); }
QString GpuUseKey() { return QStringLiteral("gpu/use"); }
QString PathOpenKey() { return QStringLiteral("paths/open"); }

} // namespace

QString KVApplication::GetName(int id)
{
    return id == HidePreviewSlider ? QStringLiteral("view/hidePreviewSlider") : QString();
}

bool KVApplication::GetUserValue(const QString& key, bool fallback)
{
    return QSettings().value(key, fallback).toBool();
}

void KVApplication::SetUserValue(const QString& key, bool value) { QSettings().setValue(key, value); }

QString KVApplication::GetGpuUse()
{
    return QSettings().value(GpuUseKey(), QStringLiteral("auto")).toString();
}

void KVApplication::SetGpuUse(const QString& use) { QSettings().setValue(GpuUseKey(), use); }

int KVApplication::GetProgressTimeout()
{
    bool isNumber = false;
    const int ms = QSettings().value(ProgressTimeoutKey(), DefaultProgressTimeoutMs).toInt(&isNumber);
    return isNumber ? std::max(ms, 0) : DefaultProgressTimeoutMs;
}

void KVApplication::SetProgressTimeout(int ms)
{
    QSettings().setValue(ProgressTimeoutKey(), std::max(ms, 0));
}

QString KVApplication::GetPathOpen()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QSettings().value(PathOpenKey(), pictures).toString();
}

void KVApplication::SetPathOpen(const QString& path) { QSettings().setValue(PathOpenKey(), path); }
