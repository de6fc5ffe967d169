// Presets from anywhere: they are read, shown in a panel and applied, and none of it may do harm.

#include "YDAdjustmentWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QApplication>

#include <memory>

namespace {

/// The adjustment's tag, which most random bytes would never get past.
QByteArray TagOf(const AdjustmentSettings& settings)
{
    const QByteArray preset = settings.ToPreset();
    int length = 0;
    while (length < preset.size() && !settings.IsTagOf(preset.left(length)))
        ++length;
    return preset.left(length);
}

void ReadShowApply(const AdjustmentEntry& entry, const QByteArray& preset)
{
    const auto settings = entry.makeSettings();
    if (!settings->FromPreset(preset))
        return;
    const auto panel = entry.makeWidget(false, nullptr);
    settings->ShowIn(*panel);
    RGBA32iImage image(17, 9);
    entry.apply(*panel, image, RGBA32iImage(), QPoint(), QRect());
    if (settings->ToPreset().isEmpty())
        qFatal("A record that was read could not be written.");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    if (const AdjustmentEntry* const entry = AdjustmentCatalog::FindByPreset(bytes))
        ReadShowApply(*entry, bytes);
    if (bytes.isEmpty())
        return 0;
    const auto& entries = AdjustmentCatalog::Entries();
    const AdjustmentEntry& chosen = entries[static_cast<quint8>(bytes.front()) % entries.size()];
    ReadShowApply(chosen, TagOf(*chosen.makeSettings()) + bytes.mid(1));
    return 0;
}
