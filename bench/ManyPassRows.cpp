#include "ManyPassRows.h"

#include "Measurement.h"
#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QJsonDocument>

#include <memory>

namespace {

struct ManyPasses
{
    const char* adjustment;
    const char* row;
    const char* settings; ///< JSON
    bool isSourceNew;     ///< whether each pass is the first one on its picture
};

constexpr ManyPasses AllManyPasses[] = {
    {"white-balance", "auto", R"({"autoStrength": 80})", false},
    {"white-balance", "enhanced", R"({"autoStrength": 80, "enhanced": true})", false},
    {"white-balance", "auto+temperature",
     R"({"autoStrength": 80, "useTemperature": true, "temperature": 40})", false},
    {"white-balance", "enhanced+temperature",
     R"({"autoStrength": 80, "enhanced": true, "useTemperature": true, "temperature": 40})", false},
    {"color-enhancer", "first-run", R"({"amount": 60})", true},
    {"color-enhancer", "further-runs", R"({"amount": 60})", false},
};

std::unique_ptr<YDTaskWidget> MakePanel(const ManyPasses& passes)
{
    const AdjustmentEntry* const entry = AdjustmentCatalog::Find(QString::fromLatin1(passes.adjustment));
    if (!entry)
        qFatal("%s is not in the catalogue", passes.adjustment);
    auto panel = entry->makeWidget(false, nullptr);
    const auto settings = entry->makeSettings();
    const QString problem = settings->FromJson(QJsonDocument::fromJson(passes.settings).object());
    if (!problem.isEmpty())
        qFatal("%s: %s", passes.adjustment, qPrintable(problem));
    entry->show(*panel, *settings);
    return panel;
}

BenchRow RowOf(const ManyPasses& passes)
{
    const auto panel = std::make_shared<std::unique_ptr<YDTaskWidget>>();
    BenchRow row;
    row.prepare = [panel, passes](const BenchPictures& pictures) {
        if (!*panel)
            *panel = MakePanel(passes);
        pictures.Restore();
        if (passes.isSourceNew)
            (*panel)->SetImage(pictures.work, RGBA32iImage(), QPoint(), QRect());
    };
    row.pass = [panel](const BenchPictures& pictures) {
        RGBA32iImage image = pictures.work;
        return TimeOf([&] { (*panel)->ConvertImage(image, RGBA32iImage(), QPoint(), QRect()); });
    };
    row.finish = [panel] { panel->reset(); };
    return row;
}

} // namespace

void RegisterManyPassRows(int megapixels)
{
    for (const ManyPasses& passes : AllManyPasses)
        RegisterRow(megapixels, std::string(passes.adjustment) + '/' + passes.row, RowOf(passes));
}
