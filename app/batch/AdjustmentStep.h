#pragma once

#include "YDAdjustmentWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QCoreApplication>

#include <memory>

/// One adjustment with its settings, as a command names it.
class AdjustmentStep
{
    Q_DECLARE_TR_FUNCTIONS(AdjustmentStep)

public:
    /// From a name and assignments "FIELD=VALUE"; an error text, empty for none.
    [[nodiscard]] QString Take(const QString& name, const QStringList& assignments);

    /// From the text of an -a option.
    [[nodiscard]] QString TakeText(const QString& text);

    /// From a stored preset; the error names the file.
    [[nodiscard]] QString TakePreset(const QString& path);

    const AdjustmentEntry& Entry() const { return *m_entry; }
    const AdjustmentSettings& Settings() const { return *m_settings; }

    /// What the settings lack without which the step does nothing, for people; empty for nothing. GUI thread.
    [[nodiscard]] QString WhatIsMissing();

    /// Whether Draw() applies the step, on any thread, so that Apply() need not. GUI thread.
    [[nodiscard]] bool CanDraw();
    [[nodiscard]] QString Draw(const RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                               const QRect& boundingRect) const;

    /// Applies the step to the picture, in place; an error text, empty for none. GUI thread.
    [[nodiscard]] QString Apply(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                                const QRect& boundingRect);

private:
    YDAdjustmentWidget& Panel();

    const AdjustmentEntry* m_entry = nullptr;
    std::unique_ptr<AdjustmentSettings> m_settings;
    std::unique_ptr<YDAdjustmentWidget> m_panel; ///< made when it is first needed
    AdjustmentEntry::Drawing m_drawing;          ///< likewise
};
