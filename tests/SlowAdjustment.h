#pragma once

#include "YDAdjustmentWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QSize>
#include <QThread>

#include <algorithm>
#include <atomic>

/// An adjustment that fills the picture with a grey, and whose job goes on until the test lets it end or it
/// is aborted.
class SlowAdjustment : public YDAdjustmentWidget
{
public:
    inline static std::atomic<bool> mayEnd{true};
    inline static std::atomic<int> jobsBegun{0};
    inline static std::atomic<int> jobsEnded{0};
    inline static std::atomic<bool> isStubborn{false}; ///< the job does not look at the abort flag

    SlowAdjustment(bool isDialog, QWidget* parent) : YDAdjustmentWidget(isDialog, parent, Qt::WindowFlags())
    {
        GetUIContent()->setWindowTitle(QStringLiteral("Slow"));
    }

    void SetGrey(int grey)
    {
        m_grey = grey;
        emit DataChanged();
    }

    /// What the widget was activated with; empty before that.
    QSize Activation() const { return m_activation; }

    void SetupActivation(int width, int height) override { m_activation = {width, height}; }
    void Reset() override { SetGrey(0); }
    void StartJobWatching(JobWatcher* watcher) override
    {
        Data job;
        static_cast<YDAdjustmentJob&>(job) = MakePreviewJob();
        job.grey = m_grey;
        Launch(watcher, &Process, job);
    }
    void ConvertImage(RGBA32iImage& image, const RGBA32iImage&, const QPoint&, const QRect&) override
    {
        Fill(image, m_grey);
    }

    /// The catalogue's entry of it. Presets are those of another adjustment, as it has none.
    static AdjustmentEntry Entry()
    {
        AdjustmentEntry entry = AdjustmentCatalog::Entries().front();
        entry.name = QStringLiteral("slow");
        entry.title = "Slow";
        entry.makeWidget = [](bool isDialog, QWidget* parent) -> std::unique_ptr<YDAdjustmentWidget> {
            return std::make_unique<SlowAdjustment>(isDialog, parent);
        };
        entry.apply = [](YDAdjustmentWidget& panel, RGBA32iImage& image, const RGBA32iImage& selection,
                         const QPoint& offset, const QRect& boundingRect) {
            panel.ConvertImage(image, selection, offset, boundingRect);
            return QString();
        };
        return entry;
    }

    /// The same as one that the host draws, which takes as long. A negative grey cannot be drawn.
    static AdjustmentEntry HostDrawnEntry()
    {
        AdjustmentEntry entry = Entry();
        entry.makeWidget = [](bool, QWidget* parent) -> std::unique_ptr<YDAdjustmentWidget> {
            return std::make_unique<SlowAdjustment>(false, parent);
        };
        entry.makeDrawing = [](const YDAdjustmentWidget& panel) -> AdjustmentEntry::Drawing {
            return [grey = static_cast<const SlowAdjustment&>(panel).m_grey](
                       const RGBA32iImage& image, const RGBA32iImage&, const QPoint&, const QRect&) {
                ++jobsBegun;
                while (!mayEnd)
                    QThread::yieldCurrentThread();
                if (grey >= 0)
                    Fill(image, grey);
                ++jobsEnded;
                return grey >= 0 ? QString() : QStringLiteral("/some/where: there is no such grey");
            };
        };
        return entry;
    }

private:
    struct Data : YDAdjustmentJob
    {
        int grey = 0;
    };

    static void Fill(const RGBA32iImage& image, int grey)
    {
        const auto value = quint8(grey);
        for (int y = 0; y < image.Height(); ++y)
            std::fill_n(image.Row(y), image.Width(), YDRGBA32i(value, value, value, 255));
    }

    static RGBA32iImage Process(const Data& job)
    {
        ++jobsBegun;
        while (!mayEnd && (isStubborn || !job.abort->load()))
            QThread::yieldCurrentThread();
        Fill(job.image, job.grey);
        ++jobsEnded;
        return job.image;
    }

    int m_grey = 0;
    QSize m_activation;
};
