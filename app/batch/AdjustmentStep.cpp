#include "batch/AdjustmentStep.h"

#include "batch/SettingsText.h"
#include "core/WholeFile.h"

#include <QRegularExpression>

namespace {

/// Room for a list of some million points.
constexpr qint64 MaxPresetBytes = qint64(64) * 1024 * 1024;

/// The mark that a preset of an unknown adjustment or version begins with; empty for other files.
QString ForeignTag(const QByteArray& bytes)
{
    static const QRegularExpression pattern(QStringLiteral("^KV[A-Za-z]+ [0-9]+\\.[0-9]{5}"));
    return pattern.match(QString::fromLatin1(bytes.left(64))).captured();
}

QString WhyNoPreset(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return AdjustmentStep::tr("the file is empty");
    const QString tag = ForeignTag(bytes);
    return tag.isEmpty() ? AdjustmentStep::tr("it does not begin as a preset does")
                         : AdjustmentStep::tr("presets of the kind \"%1\" are not known").arg(tag);
}

} // namespace

QString AdjustmentStep::Take(const QString& name, const QStringList& assignments)
{
    m_entry = AdjustmentCatalog::Find(name);
    if (!m_entry)
        return tr("there is no adjustment \"%1\"; \"adjust list\" names them all").arg(name);
    m_settings = m_entry->makeSettings();
    for (const QString& assignment : assignments)
        if (const QString problem = m_settings->SetFromText(assignment); !problem.isEmpty())
            return QStringLiteral("%1: %2").arg(name, problem);
    return {};
}

QString AdjustmentStep::TakeText(const QString& text)
{
    QStringList words;
    if (!SettingsText::Split(text, words))
        return tr("a quote or a bracket is left open in \"%1\"").arg(text);
    if (words.isEmpty())
        return tr("an adjustment is expected behind -a");
    const QString name = words.takeFirst();
    return Take(name, words);
}

QString AdjustmentStep::TakePreset(const QString& path)
{
    const WholeFile::Content content = WholeFile::Read(path, MaxPresetBytes);
    if (!content.error.isEmpty())
        return content.error;
    m_entry = AdjustmentCatalog::FindByPreset(content.bytes);
    if (!m_entry)
        return WholeFile::Error(path, WhyNoPreset(content.bytes));
    m_settings = m_entry->makeSettings();
    if (!m_settings->FromPreset(content.bytes))
        return WholeFile::Error(path, tr("the preset of %1 is cut or damaged").arg(m_entry->name));
    return {};
}

void AdjustmentStep::Apply(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                           const QRect& boundingRect)
{
    if (!m_panel)
        m_panel = m_entry->makeWidget(false, nullptr);
    m_settings->ShowIn(*m_panel); // again for each picture: some panels change with what they analyse
    m_entry->apply(*m_panel, image, selection, offset, boundingRect);
}
