#include "batch/AdjustmentStep.h"

#include "batch/SettingsText.h"
#include "catalog/PresetFile.h"

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
    PresetFile::Content preset = PresetFile::Read(path);
    m_entry = preset.entry;
    m_settings = std::move(preset.settings);
    return preset.error;
}

QString AdjustmentStep::WhatIsMissing()
{
    return m_entry->whatIsMissing ? m_entry->whatIsMissing(Panel()) : QString();
}

bool AdjustmentStep::CanDraw()
{
    if (!m_drawing && m_entry->makeDrawing)
        m_drawing = m_entry->makeDrawing(Panel());
    return bool(m_drawing);
}

QString AdjustmentStep::Draw(const RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                             const QRect& boundingRect) const
{
    return m_drawing(image, selection, offset, boundingRect);
}

QString AdjustmentStep::Apply(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                              const QRect& boundingRect)
{
    return m_entry->apply(Panel(), image, selection, offset, boundingRect);
}

/// Shows the settings again for each picture: some panels change with what they analyse.
YDAdjustmentWidget& AdjustmentStep::Panel()
{
    if (!m_panel)
        m_panel = m_entry->makeWidget(false, nullptr);
    m_settings->ShowIn(*m_panel);
    return *m_panel;
}
