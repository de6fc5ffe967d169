#pragma once

#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "catalog/PanelDialog.h"

#include <QSize>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <memory>

/// An adjustment that fills the picture with a grey, and whose task goes on until the test lets it end or it
/// is aborted. There is no grey below 0.
class SlowAdjustment : public YDTaskWidget
{
public:
    inline static std::atomic<bool> mayEnd{true};
    inline static std::atomic<int> jobsBegun{0};
    inline static std::atomic<int> jobsEnded{0};
    inline static std::atomic<bool> isStubborn{false}; ///< the task does not look at the abort flag

    SlowAdjustment(bool isDialog, QWidget* parent) : YDTaskWidget(isDialog, parent, Qt::WindowFlags())
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
    operations::Task MakeTask() const override
    {
        return operations::Task([grey = m_grey](const YDAdjustmentJob& job) { return Run(job, grey); });
    }

    /// The catalogue's entry of it. Presets are those of another adjustment, as it has none.
    static AdjustmentEntry Entry()
    {
        AdjustmentEntry entry = AdjustmentCatalog::Entries().front();
        entry.name = QStringLiteral("slow");
        entry.title = "Slow";
        entry.makeWidget = [](bool isDialog, QWidget* parent) -> std::unique_ptr<YDTaskWidget> {
            return std::make_unique<SlowAdjustment>(isDialog, parent);
        };
        return entry;
    }

    /// The same as an adjustment whose widget is a panel only.
    static AdjustmentEntry PanelEntry()
    {
        AdjustmentEntry entry = Entry();
        entry.makeWidget = [](bool isDialog, QWidget* parent) -> std::unique_ptr<YDTaskWidget> {
            if (!isDialog)
                return std::make_unique<SlowAdjustment>(false, parent);
            return std::make_unique<PanelDialog>(std::make_unique<SlowAdjustment>(false, nullptr), parent);
        };
        return entry;
    }

private:
    static operations::Outcome Run(const YDAdjustmentJob& job, int grey)
    {
        ++jobsBegun;
        const bool isWatched = job.abort && !isStubborn;
        while (!mayEnd && !(isWatched && job.abort->load()))
            QThread::yieldCurrentThread();
        const auto value = quint8(grey);
        for (int y = 0; grey >= 0 && y < job.image.Height(); ++y)
            std::fill_n(job.image.Row(y), job.image.Width(), YDRGBA32i(value, value, value, 255));
        ++jobsEnded;
        return {job.image, grey >= 0 ? QString() : QStringLiteral("/some/where: there is no such grey")};
    }

    int m_grey = 0;
    QSize m_activation;
};
