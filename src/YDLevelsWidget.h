#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "image/YDSharedImage.h"
#include "operations/Levels.h"

#include <memory>

class YDHistogramFeed;

namespace Ui {
class LevelsWidget;
}

/// Levels: for the composite and each colour channel an input range, the gamma between its ends and an output
/// range, below the source's histogram.
///
/// The spin boxes write the record and the handles of the sliders set the spin boxes. A spin box that changes
/// brings its handle along; one that stands at the end of its range already says nothing of a handle that is
/// dragged further, which then stays there while the record keeps the spin box's value. The middle handle
/// shows the gamma as a place in the input range; places closer together than the spin box's hundredths stand
/// for the same gamma, and the handle may be left at any of them.
///
/// Showing a channel, which choosing it, setting a record, Reset() and Auto do, bounds the handles and spin
/// boxes of its ends so that these stay two apart. A handle's bound then follows the other end; a spin box
/// keeps its range until a channel is shown again, so typed ends can meet or cross, and the image library has
/// a result for that too. Before a channel is shown for the first time, an end is bounded only by one that
/// has moved: on a fresh panel the low handle reaches 255, where the high one stands.
///
/// A record from outside keeps what it says, until the control of a value is moved. Its ends bound the spin
/// boxes as they are: for ends of -50 and 100 these show 0 (of 0..98) and 100 (of -48..255), for ends of 300
/// and 400 they show 300 (of 0..398) and 302 (of 302 alone). The handles stay on the scale of 0..255. Where
/// the record's channel is none of the four, the list of channels has no current item, and the panel shows
/// and edits the composite's values until a channel is chosen.
class ADJUSTMENTGUI_EXPORT YDLevelsWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Levels;

    YDLevelsWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDLevelsWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params`, as far as the controls reach, without announcing a change.
    void SetValue(const Params& params);

    /// Where the middle handle stands for a gamma: half-way between the ends for 1, at `low` for 9.99, at
    /// `high` for 0.01, linear between them. In whole numbers whose divisions truncate: gamma counts in
    /// thousandths. Any arguments: the result is bounded to what an int holds, and a gamma that is not a
    /// number counts as 1.
    static int MiddleValue(int low, int high, double gamma);

    /// The gamma, in thousandths, for which the middle handle stands at `position`; the inverse of
    /// MiddleValue(), computed in the same way. Any arguments: thousandths are bounded to what an int holds,
    /// and where a half of the range has no width it counts as one wide.
    static double ToneValue(int low, int high, int position);

    /// The histogram's channel mask for an index of the channel box; all three for one that it has not.
    static int IndexToHistogrammChannel(int index);

    operations::Task MakeTask() const override;
    void Reset() override;

    /// Shows the histogram of the picture in `image` in place of the source's, until the source changes or
    /// another is attached. `image` must live until then; null: none.
    void AttachQImage(const YDSharedImage<QImage>* image);
    void AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image);

    /// Counts the picture of the histogram again.
    void UpdateHistogramm();

public slots:
    void OnChannelChanged(int channel);
    void OnInputChanged(uint handle, int value);
    void OnOutputChanged(uint handle, int value);
    void OnLowInputChanged(int value);
    void OnMiddleInputChanged(double gamma);
    void OnHighInputChanged(int value);
    void OnLowOutputChanged(int value);
    void OnHighOutputChanged(int value);
    void OnAutoAdjust();
    void OnSourceChanged();
    void OnHistogrammComplete();

signals:
    void ValueChanged();

private:
    void BuildSliders();
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void SetChannel(int channel);
    void ShowInput();
    void ShowOutput();
    void StoreMiddle(int low, int high, double gamma);
    std::size_t Edited() const;

    const std::unique_ptr<Ui::LevelsWidget> m_ui;
    ControlLinks m_links;
    std::unique_ptr<YDHistogramFeed> m_feed;
    Params m_params;
};
