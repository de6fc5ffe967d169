#include "operations/PresetFile.h"

#include "core/WholeFile.h"

#include <QRegularExpression>

namespace {

using operations::PresetFile;

/// Room for a list of some million points.
constexpr qint64 MaxBytes = qint64(64) << 20;

/// The mark that a preset of an unknown adjustment or version begins with; empty for other files.
QString ForeignTag(const QByteArray& bytes)
{
    static const QRegularExpression pattern(QStringLiteral("^KV[A-Za-z]+ [0-9]+\\.[0-9]{5}"));
    return pattern.match(QString::fromLatin1(bytes.left(64))).captured();
}

QString WhyNoPreset(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return PresetFile::tr("the file is empty");
    const QString tag = ForeignTag(bytes);
    return tag.isEmpty() ? PresetFile::tr("it does not begin as a preset does")
                         : PresetFile::tr("presets of the kind \"%1\" are not known").arg(tag);
}

PresetFile::Content Refusal(const QString& path, const QString& reason)
{
    return {nullptr, nullptr, WholeFile::Error(path, reason)};
}

} // namespace

operations::PresetFile::Content operations::PresetFile::Read(const QString& path)
{
    const WholeFile::Content file = WholeFile::Read(path, MaxBytes);
    if (!file.error.isEmpty())
        return {nullptr, nullptr, file.error};
    const Adjustment* const adjustment = Catalog::FindByPreset(file.bytes);
    if (!adjustment)
        return Refusal(path, WhyNoPreset(file.bytes));
    auto settings = adjustment->makeSettings();
    if (!settings->FromPreset(file.bytes))
        return Refusal(path, tr("the preset of %1 is cut or damaged").arg(adjustment->name));
    return {adjustment, std::move(settings), QString()};
}
