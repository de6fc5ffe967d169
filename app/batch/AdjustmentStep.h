#pragma once

#include "operations/Recipe.h"

#include <QCoreApplication>
#include <QStringList>

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

    /// Valid after one of these has succeeded.
    const operations::Adjustment& Adjustment() const { return *m_adjustment; }
    const operations::Settings& Settings() const { return *m_settings; }
    operations::Recipe::Step RecipeStep() const { return {*m_adjustment, m_settings->Clone()}; }

private:
    const operations::Adjustment* m_adjustment = nullptr;
    std::unique_ptr<operations::Settings> m_settings;
};
