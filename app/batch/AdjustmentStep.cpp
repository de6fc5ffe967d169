#include "batch/AdjustmentStep.h"

#include "batch/SettingsText.h"
#include "operations/PresetFile.h"

QString AdjustmentStep::Take(const QString& name, const QStringList& assignments)
{
    m_adjustment = operations::Catalog::Find(name);
    if (!m_adjustment)
        return tr("there is no adjustment \"%1\"; \"adjust list\" names them all").arg(name);
    m_settings = m_adjustment->makeSettings();
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
    operations::PresetFile::Content preset = operations::PresetFile::Read(path);
    m_adjustment = preset.adjustment;
    m_settings = std::move(preset.settings);
    return preset.error;
}
