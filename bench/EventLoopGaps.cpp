#include "EventLoopGaps.h"

#include "Measurement.h"
#include "PreviewProbe.h"
#include "Quantile.h"
#include "YDTaskWidget.h"
#include "gui/KVDocumentView.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr int DurationMs = 10000;
constexpr int HeartbeatMs = 1;
constexpr int MoveIntervalMs = 16; // a mouse reports this often
constexpr int MovesPerDrag = 8;    // then the hand rests for as long
constexpr QSize ViewSize(1200, 800);

bool HaveSamePixels(const RGBA32iImage& a, const RGBA32iImage& b)
{
    if (a.Width() != b.Width() || a.Height() != b.Height())
        return false;
    const auto bytes = static_cast<std::size_t>(a.Width()) * sizeof(YDRGBA32i);
    for (int y = 0; y < a.Height(); ++y)
        if (std::memcmp(a.Row(y), b.Row(y), bytes) != 0)
            return false;
    return true;
}

bool LastPreviewEqualsConversion(YDTaskWidget& widget)
{
    RGBA32iImage converted = widget.SourceImage().DeepCopy();
    widget.ConvertImage(converted, RGBA32iImage(), QPoint(), QRect());
    return HaveSamePixels(widget.AdjustedImage(), converted);
}

/// Moves the probe's control for the whole duration and answers with the gaps between the heartbeats.
std::vector<double> GapsWhileMoving(PreviewProbe& probe)
{
    std::vector<double> gaps;
    QEventLoop loop;
    QElapsedTimer sinceBeat;
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&heartbeat, &QTimer::timeout, &loop, [&] {
        gaps.push_back(double(sinceBeat.nsecsElapsed()) / NsPerMs);
        sinceBeat.start();
    });
    QTimer hand;
    hand.setTimerType(Qt::PreciseTimer);
    int ticks = 0;
    QObject::connect(&hand, &QTimer::timeout, &loop, [&] {
        if (ticks++ / MovesPerDrag % 2 == 0)
            probe.ChangeControl();
    });
    QTimer::singleShot(DurationMs, &loop, &QEventLoop::quit);
    sinceBeat.start();
    heartbeat.start(HeartbeatMs);
    hand.start(MoveIntervalMs);
    loop.exec();
    return gaps;
}

void MeasureGaps(benchmark::State& state, const BenchAdjustment& adjustment, int megapixels)
{
    const BenchPictures& pictures = BenchPictures::OfSize(megapixels);
    PreviewProbe probe(adjustment, pictures.photograph);
    KVDocumentView view;
    view.resize(ViewSize);
    view.SetImage(pictures.photograph);
    view.show();
    YDTaskWidget& widget = probe.Widget();
    widget.SetView(&view);
    widget.show();
    int previews = 0;
    QObject::connect(&widget, &YDAdjustmentWidget::ImageReady, &view, [&] {
        ++previews;
        view.SetPreview(widget.AdjustedImage());
    });
    for (auto _ : state) {
        std::vector<double> gaps = GapsWhileMoving(probe);
        probe.Accept();
        std::sort(gaps.begin(), gaps.end());
        state.counters["gap_median_ms"] = Median(gaps);
        state.counters["gap_p99_ms"] = gaps.empty() ? 0.0 : gaps[gaps.size() * 99 / 100];
        state.counters["gap_longest_ms"] = gaps.empty() ? 0.0 : gaps.back();
        state.counters["previews"] = previews;
        state.counters["same"] = LastPreviewEqualsConversion(widget) ? 1 : 0;
    }
    widget.SetView(nullptr);
}

} // namespace

void RegisterEventLoopGaps(const BenchAdjustment& adjustment, int megapixels)
{
    RegisterSingleRow(
        megapixels, adjustment.name + "/event-loop-gaps",
        [&adjustment, megapixels](benchmark::State& state) { MeasureGaps(state, adjustment, megapixels); });
}
