// Presets from anywhere: they are read, shown in a panel and applied, and none of it may do harm.

#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "operations/BlackAndWhite.h"

#include <QApplication>

#include <memory>
#include <string_view>
#include <vector>

namespace {

/// An input's bytes, one after another; noughts once they are used up.
class Bytes
{
public:
    explicit Bytes(const QByteArray& bytes) : m_bytes(bytes) {}

    quint8 Next()
    {
        return m_position < m_bytes.size() ? static_cast<quint8>(m_bytes.at(m_position++)) : quint8(0);
    }
    int Within(int low, int high) { return low + Next() % (high - low + 1); }
    QByteArray Rest() const { return m_bytes.mid(m_position); }

private:
    QByteArray m_bytes;
    int m_position = 0;
};

/// A selection such as no host should give, but any may.
struct Limits
{
    RGBA32iImage selection;
    QPoint offset;
    QRect boundingRect;
};

/// The tag that an adjustment's presets begin with, which most random bytes would never get past.
QByteArray TagOf(const operations::Settings& settings)
{
    const QByteArray preset = settings.ToPreset();
    int length = 0;
    while (length < preset.size() && !settings.IsTagOf(preset.left(length)))
        ++length;
    return preset.left(length);
}

struct TaggedEntry
{
    const AdjustmentEntry* entry;
    QByteArray tag;
    int usualLength; ///< of what follows the tag in the default preset
};

/// The adjustments that have presets, one of them once more under the tag of an older release.
const std::vector<TaggedEntry>& TaggedEntries()
{
    static const std::vector<TaggedEntry> all = [] {
        std::vector<TaggedEntry> entries;
        for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
            const auto settings = entry.makeSettings();
            if (!settings->HasPreset())
                continue;
            const QByteArray tag = TagOf(*settings);
            entries.push_back({&entry, tag, settings->ToPreset().size() - tag.size()});
        }
        constexpr std::string_view Older = operations::BlackAndWhite::OlderTag;
        const QByteArray older(Older.data(), int(Older.size()));
        const AdjustmentEntry* const renamed = AdjustmentCatalog::FindByPreset(older);
        for (const TaggedEntry& current : std::vector(entries))
            if (current.entry == renamed)
                entries.push_back({renamed, older, current.usualLength});
        return entries;
    }();
    return all;
}

/// A picture of up to `side` pixels a side, as varied as the input and what follows from it.
RGBA32iImage PictureFrom(Bytes& bytes, int side)
{
    const int width = bytes.Within(1, side);
    const int height = bytes.Within(1, side);
    quint32 state = bytes.Next();
    const quint32 variety = bytes.Next() * 0x01010101u;
    const RGBA32iImage image(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            state = state * 1664525u + 1013904223u; // Numerical Recipes' generator
            image.Row(y)[x] = YDRGBA32i((state >> 8 ^ state << 16) & variety);
        }
    }
    return image;
}

Limits LimitsFrom(Bytes& bytes)
{
    if (bytes.Next() % 4 == 0)
        return {};
    constexpr int Beyond = 24; // past the mask and past the picture, on every side
    Limits limits;
    limits.selection = PictureFrom(bytes, 16);
    limits.offset = {bytes.Within(-Beyond, Beyond), bytes.Within(-Beyond, Beyond)};
    limits.boundingRect = {bytes.Within(-Beyond, Beyond), bytes.Within(-Beyond, Beyond),
                           bytes.Within(0, Beyond), bytes.Within(0, Beyond)};
    return limits;
}

/// What was read, written and read again is the same preset.
void CheckRoundTrip(const AdjustmentEntry& entry, const operations::Settings& settings)
{
    const QByteArray written = settings.ToPreset();
    if (written.isEmpty())
        qFatal("A record that was read could not be written.");
    const auto again = entry.makeSettings();
    if (!again->FromPreset(written))
        qFatal("A record that was written could not be read.");
    if (again->ToPreset() != written)
        qFatal("A record changed on its way.");
}

void ReadShowApply(const AdjustmentEntry& entry, const QByteArray& preset, const RGBA32iImage& picture,
                   const Limits& limits)
{
    const auto settings = entry.makeSettings();
    if (!settings->FromPreset(preset))
        return;
    CheckRoundTrip(entry, *settings);
    const auto panel = entry.makeWidget(false, nullptr);
    entry.show(*panel, *settings);
    for (const operations::Task& task : {settings->MakeTask(), panel->MakeTask()})
        (void)task.ApplyToCopy(picture, {limits.selection, limits.offset, limits.boundingRect});
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    Bytes bytes(input);
    const TaggedEntry& chosen = TaggedEntries()[bytes.Next() % TaggedEntries().size()];
    const RGBA32iImage picture = PictureFrom(bytes, 40);
    const Limits limits = LimitsFrom(bytes);
    const QByteArray fields = bytes.Rest();
    ReadShowApply(*chosen.entry, chosen.tag + fields, picture, limits);
    // Few bytes make a record of just the right length by chance.
    const QByteArray padded = fields + QByteArray(chosen.usualLength, '\0');
    ReadShowApply(*chosen.entry, chosen.tag + padded.left(chosen.usualLength), picture, limits);
    if (const AdjustmentEntry* const entry = AdjustmentCatalog::FindByPreset(input))
        ReadShowApply(*entry, input, picture, limits);
    return 0;
}
