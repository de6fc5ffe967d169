// Recipes from anywhere: they are read, written and applied, and none of it may do harm.

#include "operations/Recipe.h"

#include <QGuiApplication>

namespace {

using operations::Recipe;

constexpr int MaxAppliedSteps = 8; ///< enough for what one step may leave to the next

/// A small picture with all kinds of colours.
RGBA32iImage MakePicture()
{
    const RGBA32iImage image(23, 17);
    quint32 state = 1;
    for (int y = 0; y < image.Height(); ++y) {
        for (int x = 0; x < image.Width(); ++x) {
            state = state * 1664525u + 1013904223u; // Numerical Recipes' generator
            image.Row(y)[x] = YDRGBA32i(state >> 8 ^ state << 16);
        }
    }
    return image;
}

/// A mask in the place of any file.
QString ReadMask(const QString& file, operations::Selection& mask)
{
    if (file.isEmpty() || file.startsWith(QLatin1Char('/')) || file.contains(QLatin1String("../")))
        qFatal("A recipe leads out of its folder.");
    mask = operations::Selection::Of(MakePicture(), QPoint());
    return {};
}

/// What was read is written as a recipe that says the same.
void CheckRoundTrip(const Recipe& recipe)
{
    // Once more, because JSON's -0 is 0 from the second time on.
    Recipe before = recipe;
    Recipe after = recipe;
    for (int i = 0; i < 2; ++i) {
        const Recipe::Result read = Recipe::FromJson(after.ToJson());
        if (!read.error.isEmpty())
            qFatal("A recipe that was written could not be read: %s", qPrintable(read.error));
        before = after;
        after = read.recipe;
    }
    if (before != after)
        qFatal("A recipe changed on its way.");
}

void Apply(const Recipe& recipe)
{
    RGBA32iImage picture = MakePicture();
    int applied = 0;
    for (const Recipe::Step& step : recipe.steps) {
        // A stamp would read whatever file its settings name.
        if (step.adjustment->name == QLatin1String("sign") || ++applied > MaxAppliedSteps)
            continue;
        operations::Selection selection;
        if (!step.selection.Make({picture.Width(), picture.Height()}, ReadMask, selection).isEmpty())
            qFatal("A selection could not be made.");
        (void)step.settings->MakeTask().Apply(picture, selection);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    // As it is, and as what a step says, which most random bytes would never get to.
    const QByteArray step = R"({"adjustmentgui": 1, "steps": [{"adjustment": ")" + input + "}]}";
    for (const QByteArray& json : {input, step}) {
        const Recipe::Result result = Recipe::FromJson(json);
        if (!result.error.isEmpty() && !result.recipe.steps.empty())
            qFatal("A recipe that was refused has steps.");
        CheckRoundTrip(result.recipe);
        Apply(result.recipe);
    }
    return 0;
}
