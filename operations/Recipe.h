#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Catalog.h"
#include "operations/RecipeSelection.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

namespace operations {

/// Adjustments with their settings and selections, one after another: a value, stored as JSON.
///
///     {"adjustmentgui": 1, "steps": [{"adjustment": "levels", "enabled": true,
///                                     "settings": {"gamma": [1.2, 1, 1, 1]}, "selection": null}]}
///
/// Settings may lack fields, which are the defaults then; a step is enabled, and its selection null, which
/// is the whole picture, unless it says otherwise. Selections are such as {"rectangle": [left, top, right,
/// bottom], "feather": 10}, "ellipse" in its place, {"polygon": [[x, y], ...]}, or {"mask": "file.png",
/// "offset": [x, y]} with a picture beside the recipe.
///
/// Recipes are taken for untrusted: one that is cut, has a key that is not known or a value that its field
/// does not take is refused, in a text that names the place.
class ADJUSTMENTGUI_OPERATIONS_EXPORT Recipe
{
    Q_DECLARE_TR_FUNCTIONS(Recipe)

public:
    struct Step
    {
        /// `which` is one of the catalogue. Settings are shared and never changed; another value is put in
        /// their place.
        Step(const Adjustment& which, std::shared_ptr<const Settings> how,
             const RecipeSelection& where = RecipeSelection(), bool isEnabled = true)
            : adjustment(&which), settings(std::move(how)), selection(where), enabled(isEnabled)
        {}

        const Adjustment* adjustment;             ///< never null
        std::shared_ptr<const Settings> settings; ///< of `adjustment`, never null
        RecipeSelection selection;
        bool enabled; ///< one that is not is kept, but changes no picture
    };

    struct Result;

    enum class Existing
    {
        Refuse,
        Replace,
    };

    static constexpr int MaxSteps = 1000;
    static constexpr int MaxBytes = 16 << 20;

    /// The recipe that `json` holds.
    [[nodiscard]] static Result FromJson(const QByteArray& json);

    /// The recipe in the regular file `path`; the error begins with its name.
    [[nodiscard]] static Result Read(const QString& path);

    /// All fields, so that no later change of a default changes a stored recipe; a line for each step.
    QByteArray ToJson() const;

    /// Writes the file as a whole or not at all, and nothing that Read() would refuse, as it does settings
    /// that a preset brought from outside their range. An error text that begins with the file's name, empty
    /// for none.
    [[nodiscard]] QString Write(const QString& path, Existing existing) const;

    friend bool operator==(const Recipe& a, const Recipe& b) { return a.ToJson() == b.ToJson(); }
    friend bool operator!=(const Recipe& a, const Recipe& b) { return !(a == b); }

    std::vector<Step> steps;
};

struct Recipe::Result
{
    Recipe recipe; ///< without steps where there is an error
    QString error; ///< empty for none
};

} // namespace operations
