#include "AdjustmentRows.h"

#include "BenchAdjustments.h"
#include "Measurement.h"
#include "PreviewProbe.h"
#include "VectorTargets.h"
#include "YDTaskWidget.h"

#include <QFile>
#include <QRegularExpression>
#include <QThreadPool>

#include <memory>

namespace {

using Road = BenchAdjustment::Road;

constexpr int PreviewsForMemory = 5;

void RestoreWork(const BenchPictures& pictures) { pictures.Restore(); }

BenchRow RuleRow(const BenchAdjustment& adjustment, Road road)
{
    const auto pass = [rule = adjustment.rule, road](const BenchPictures& pictures) {
        return TimeOf([&] { rule(pictures.work, {}, road); });
    };
    return {pass, RestoreWork};
}

BenchRow RestrictedRuleRow(const BenchAdjustment& adjustment, qint64 target)
{
    BenchRow row = RuleRow(adjustment, Road::Vector);
    row.pass = [pass = row.pass, target](const BenchPictures& pictures) {
        const VectorTargets::Restriction restriction(target);
        return pass(pictures);
    };
    return row;
}

BenchRow CopyAndRuleRow(const BenchAdjustment& adjustment)
{
    return {[rule = adjustment.rule](const BenchPictures& pictures) {
        const RGBA32iImage& source = pictures.photograph;
        return TimeOf([&] {
            rule(RGBA32iImage::Uninitialized(source.Width(), source.Height()), source, Road::Vector);
        });
    }};
}

/// The dialog of the row being measured, kept from pass to pass and let go with the row.
class ProbeOfRow
{
public:
    explicit ProbeOfRow(const BenchAdjustment& adjustment) : m_adjustment(adjustment) {}

    PreviewProbe& On(const BenchPictures& pictures)
    {
        if (!m_probe)
            m_probe = std::make_unique<PreviewProbe>(m_adjustment, pictures.photograph);
        return *m_probe;
    }

    void LetGo() { m_probe.reset(); }

private:
    const BenchAdjustment& m_adjustment;
    std::unique_ptr<PreviewProbe> m_probe;
};

/// Adjusts `image` itself.
void Apply(const BenchAdjustment& adjustment, YDTaskWidget& widget, RGBA32iImage& image,
           const RGBA32iImage& mask, const QRect& bounds)
{
    if (!adjustment.isPreviewOnly) {
        widget.ConvertImage(image, mask, QPoint(), bounds);
        return;
    }
    const QString problem = widget.MakeTask().Apply(image, {mask, QPoint(), bounds}).problem;
    if (!problem.isEmpty())
        qFatal("%s: %s", adjustment.name.c_str(), qPrintable(problem));
}

BenchRow ConversionRow(const BenchAdjustment& adjustment, bool isSelected)
{
    const auto probe = std::make_shared<ProbeOfRow>(adjustment);
    const auto pass = [probe, isSelected, &adjustment](const BenchPictures& pictures) {
        YDTaskWidget& widget = probe->On(pictures).Widget();
        const RGBA32iImage mask = isSelected ? pictures.mask : RGBA32iImage();
        const QRect bounds = isSelected ? pictures.Bounds() : QRect();
        RGBA32iImage image = pictures.work;
        return TimeOf([&] { Apply(adjustment, widget, image, mask, bounds); });
    };
    return {pass, RestoreWork, [probe] { probe->LetGo(); }};
}

BenchRow PreviewRow(const BenchAdjustment& adjustment)
{
    const auto probe = std::make_shared<ProbeOfRow>(adjustment);
    BenchRow row;
    row.pass = [probe](const BenchPictures& pictures) { return probe->On(pictures).TimePreview(); };
    row.finish = [probe] { probe->LetGo(); };
    return row;
}

BenchRow AbortRow(const BenchAdjustment& adjustment)
{
    const auto probe = std::make_shared<ProbeOfRow>(adjustment);
    BenchRow row;
    row.pass = [probe](const BenchPictures& pictures) { return probe->On(pictures).TimeAbort(); };
    row.finish = [probe] { probe->LetGo(); };
    row.coversPicture = false;
    return row;
}

/// The number of KiB that /proc/self/status gives for `key`; negative where there is no such file.
double StatusKib(const QString& key)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return -1.0;
    const QRegularExpression line(QStringLiteral("^%1:\\s*(\\d+)").arg(key),
                                  QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = line.match(QString::fromLatin1(file.readAll()));
    return match.hasMatch() ? match.captured(1).toDouble() : -1.0;
}

/// Makes the peak of resident memory start anew from what is resident now.
bool ResetPeakMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    return file.open(QIODevice::WriteOnly) && file.write("5") == 1;
}

/// Picture-sized buffers that an open dialog with its previews needs at most besides the source.
void MeasurePreviewMemory(benchmark::State& state, const BenchAdjustment& adjustment, int megapixels)
{
    const BenchPictures& pictures = BenchPictures::OfSize(megapixels);
    for (auto _ : state) {
        QThreadPool::globalInstance()->waitForDone(); // a task lets go of its picture after its result is out
        PixelBuffer::Trim();
        const double before = StatusKib(QStringLiteral("VmRSS"));
        if (before < 0.0 || !ResetPeakMemory())
            return state.SkipWithError("the system does not tell the peak of memory");
        PreviewProbe probe(adjustment, pictures.photograph);
        for (int i = 0; i < PreviewsForMemory; ++i)
            probe.TimePreview();
        const double bytes = (StatusKib(QStringLiteral("VmHWM")) - before) * 1024.0;
        state.counters["buffers"] =
            bytes / (double(pictures.photograph.BytesPerLine()) * pictures.photograph.Height());
    }
}

} // namespace

void RegisterAdjustmentRows(const BenchAdjustment& adjustment, int megapixels)
{
    const auto add = [&adjustment, megapixels](const std::string& name, const BenchRow& row) {
        RegisterRow(megapixels, adjustment.name + '/' + name, row);
    };
    if (adjustment.rule) {
        add("generic", RuleRow(adjustment, Road::Generic));
        add("vector", RuleRow(adjustment, Road::Vector));
        for (const VectorTargets::Target& target : VectorTargets::All())
            add("vector-" + target.name.toLower().toStdString(), RestrictedRuleRow(adjustment, target.bit));
        add("copy+vector", CopyAndRuleRow(adjustment));
    }
    if (!adjustment.control)
        return;
    const std::string conversion = adjustment.isPreviewOnly ? "apply" : "convert";
    add(conversion, ConversionRow(adjustment, false));
    add(conversion + "-selected", ConversionRow(adjustment, true));
    add("preview", PreviewRow(adjustment));
    if (adjustment.rule) // nothing else stops in the middle
        add("abort", AbortRow(adjustment));
    RegisterSingleRow(megapixels, adjustment.name + "/preview-memory",
                      [&adjustment, megapixels](benchmark::State& state) {
                          MeasurePreviewMemory(state, adjustment, megapixels);
                      });
}
