#pragma once

#include "catalog/AdjustmentSettings.h"
#include "image/KVImage.h"

#include <QPoint>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QWidget;
class YDAdjustmentWidget;

/// What an adjustment changes, for lists that people read.
enum class AdjustmentGroup
{
    Tone,
    Color,
    Fill,
    Overlay,
};

/// One adjustment: how it is called, and how its widget and its settings are made.
struct AdjustmentEntry
{
    QString name;      ///< on the command line and in preset folders, such as "brightness-contrast"
    const char* title; ///< untranslated; Title() is for people

    /// A widget of the adjustment, as a dialog or as a panel.
    std::unique_ptr<YDAdjustmentWidget> (*makeWidget)(bool isDialog, QWidget* parent);

    /// The default settings.
    std::unique_ptr<AdjustmentSettings> (*makeSettings)();

    /// Applies what a panel of the adjustment shows to `image`, in place, on the calling thread, limited by
    /// the selection as YDAdjustmentWidget::ConvertImage() has it. The image is handed to the widget first,
    /// because some adjustments analyse it, and taken from it afterwards. Empty when done; otherwise says,
    /// for people, why it could not be, and the image is as it was.
    QString (*apply)(YDAdjustmentWidget& panel, RGBA32iImage& image, const RGBA32iImage& selection,
                     const QPoint& offset, const QRect& boundingRect);

    /// Draws on a picture, in place, as `apply` does; on any thread, and on several pictures at once.
    using Drawing = std::function<QString(const RGBA32iImage& image, const RGBA32iImage& selection,
                                          const QPoint& offset, const QRect& boundingRect)>;

    /// Where the host draws what the widget holds: what draws the settings that a panel holds now, and knows
    /// the panel no more. There is no dialog then, only the panel, and neither a preview nor a result of it:
    /// whoever shows it frames it and draws. Null where the widget converts pictures.
    Drawing (*makeDrawing)(const YDAdjustmentWidget& panel) = nullptr;

    AdjustmentGroup group = AdjustmentGroup::Tone;

    /// What a panel's settings lack, for people, where they do nothing without it; empty for nothing. Null
    /// where no settings lack anything.
    QString (*whatIsMissing)(const YDAdjustmentWidget& panel) = nullptr;

    /// The title in the user's language.
    QString Title() const;
};

/// The one table of all adjustments, in the order of the editor's menu, a group after the other.
namespace AdjustmentCatalog {

const std::vector<AdjustmentEntry>& Entries();

/// The group's title in the user's language.
QString Title(AdjustmentGroup group);

/// The adjustment called `name`; null if there is none.
const AdjustmentEntry* Find(const QString& name);

/// The adjustment whose presets begin as `preset` does; null if there is none.
const AdjustmentEntry* FindByPreset(const QByteArray& preset);

} // namespace AdjustmentCatalog
