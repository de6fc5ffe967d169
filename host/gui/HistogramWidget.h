#pragma once

#include "gui/HistogramPlot.h"
#include "image/YDSharedImage.h"
#include "threads/LatestJob.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

/// Shows how often each level occurs in a picture.
///
/// The picture is counted in the background, on a value of it: the GUI thread never waits, and the counts of
/// the picture before are shown until the new ones are there. A picture that comes while another is being
/// counted takes its place; what was counted of the other is never shown.
///
/// Counting begins with the next turn of the event loop, so that of a burst of pictures only the last is
/// counted, and one that is changed at once as it then is. From there until HistogrammComplete() nobody may
/// write to its pixels. The count of a picture that another took the place of, or whose widget is gone, stops
/// soon and not at once, and nothing says when: who would write to such a picture writes to a deep copy.
///
/// A click changes between the linear and the logarithmic scale. The tooltip tells the level under the mouse
/// and its count.
class HistogramWidget : public QWidget
{
    Q_OBJECT

public:
    using Scale = HistogramPlot::Scale;

    explicit HistogramWidget(QWidget* parent = nullptr);
    ~HistogramWidget() override;

    /// Counts the picture that `holder` has now. It is looked at again by RebuildHistogramm(), so it must
    /// live until another takes its place; null, like an empty picture, leaves nothing to show.
    void SetImage(const YDSharedImage<QImage>* holder);
    void SetImage(const YDSharedImage<RGBA32iImage>* holder);

    /// Counts the picture that the holder has now.
    void RebuildHistogramm();

    /// What is shown: the sum of 1 for red, 2 for green and 4 for blue; 0 for luma. Other bits do not count.
    void SetChannel(int mask);
    int GetChannel() const { return m_plot.channels; }

    void SetScale(Scale scale);
    Scale GetScale() const { return m_plot.scale; }

    /// Pixels of the picture that was counted last, 0 if there is none.
    qint64 GetPixelsCount() const { return m_histograms->pixels; }

    /// The lowest and the highest level that occur in `channel`: 0 red, 1 green, 2 blue, 3 luma. Where none
    /// does, and for any other number, 255 and 0, so that no level lies between them.
    void GetRange(int channel, int* low, int* high) const;

    /// How many pixels have level `bin` in `channel`, numbered as for GetRange(); 0 for what is no channel or
    /// no level.
    qint64 GetCount(int channel, int bin) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The counts are those of the newest picture now. Not emitted where there is no picture to count.
    void HistogrammComplete();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    using Counts = std::shared_ptr<const ChannelHistograms>;
    /// Counts one picture; null where there is no memory for it.
    using Counter = LatestJob<Counts>::Work;

    static Counter CounterOf(const QImage& image);
    static Counter CounterOf(const RGBA32iImage& picture);

    const ChannelHistograms::Table* TableOf(int channel) const;
    void Show(const Counts& counts);
    void OnCounted(const Counts& counts);
    void ForgetPlot();
    void ShowToolTip(const QPoint& position, const QPoint& onScreen);
    int LevelAt(int x) const;
    QString ToolTipFor(int level) const;
    void DescribeForAccessibility();

    std::function<Counter()>
        m_presentPicture; ///< how to count what the holder has now; null without a holder
    Counter m_pending;    ///< of the picture whose count begins with the next turn of the event loop
    QTimer m_startTimer;
    Counts m_histograms; ///< never null
    HistogramPlot m_plot;
    QImage m_drawn; ///< the plot as it is on the screen; null when outdated
    LatestJob<Counts> m_count{this, [this] { return std::exchange(m_pending, {}); }};
};
