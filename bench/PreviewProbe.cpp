#include "PreviewProbe.h"

#include "Measurement.h"
#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QTimer>

namespace {

constexpr int PatienceMs = 60000;

std::unique_ptr<YDTaskWidget> MakeDialog(const BenchAdjustment& adjustment)
{
    const AdjustmentEntry* const entry = AdjustmentCatalog::Find(QString::fromStdString(adjustment.name));
    if (!entry)
        qFatal("%s is not in the catalogue", adjustment.name.c_str());
    auto dialog = entry->makeWidget(true, nullptr);
    const auto settings = entry->makeSettings();
    const QString problem = settings->FromJson(QJsonDocument::fromJson(adjustment.settings).object());
    if (!problem.isEmpty())
        qFatal("%s: %s", adjustment.name.c_str(), qPrintable(problem));
    entry->show(*dialog, *settings);
    return dialog;
}

/// Connects `slot` to the end of each job of `widget`, which says so by a full range of a hundred.
template <class Slot>
void OnJobEnd(YDAdjustmentWidget& widget, QObject* context, const Slot& slot)
{
    QObject::connect(&widget, &YDAdjustmentWidget::ProgressRangeChanged, context,
                     [slot](int minimum, int maximum) {
                         if (minimum == 0 && maximum == 100)
                             slot();
                     });
}

/// Runs `loop`, but not for ever if what it waits for never comes.
void Run(QEventLoop& loop)
{
    QTimer::singleShot(PatienceMs, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

PreviewProbe::PreviewProbe(const BenchAdjustment& adjustment, const RGBA32iImage& picture)
    : m_adjustment(adjustment), m_widget(MakeDialog(adjustment))
{
    ChangeControl(); // away from its default, which might be no work at all
    QEventLoop loop;
    OnJobEnd(*m_widget, &loop, [&loop] { loop.quit(); });
    m_widget->SetImage(picture, RGBA32iImage(), QPoint(), QRect());
    Run(loop);
}

PreviewProbe::~PreviewProbe() = default;

void PreviewProbe::ChangeControl()
{
    QObject* const control = m_widget->findChild<QObject*>(QString::fromLatin1(m_adjustment.control));
    const QVariant& value = m_adjustment.values[m_nextValue];
    const bool isSet = control && (m_adjustment.set ? m_adjustment.set(control, value)
                                                    : control->setProperty(m_adjustment.property, value));
    if (!isSet)
        qFatal("%s has no %s with a %s", m_adjustment.name.c_str(), m_adjustment.control,
               m_adjustment.property);
    m_nextValue = 1 - m_nextValue;
}

double PreviewProbe::TimePreview()
{
    QEventLoop loop;
    QElapsedTimer timer;
    qint64 ready = -1;
    QObject::connect(m_widget.get(), &YDAdjustmentWidget::ImageReady, &loop,
                     [&] { ready = timer.nsecsElapsed(); });
    OnJobEnd(*m_widget, &loop, [&loop] { loop.quit(); });
    timer.start();
    ChangeControl();
    m_widget->FlushPendingChange();
    Run(loop);
    return double(ready) / NsPerMs;
}

double PreviewProbe::TimeAbort()
{
    QEventLoop loop;
    QElapsedTimer sinceChange;
    qint64 ended = -1;
    bool isOver = false;
    QObject::connect(m_widget.get(), &YDAdjustmentWidget::ProgressValueChanged, &loop, [&] {
        if (sinceChange.isValid() || isOver)
            return;
        sinceChange.start();
        m_widget->StartProcessing(); // what a change comes to when its delay is over
    });
    OnJobEnd(*m_widget, &loop, [&] {
        const bool isAborted = sinceChange.isValid() && ended < 0;
        if (isAborted) {
            ended = sinceChange.nsecsElapsed();
        } else {
            isOver = true;
            loop.quit();
        }
    });
    m_widget->StartProcessing();
    Run(loop);
    return double(ended) / NsPerMs;
}

void PreviewProbe::Accept()
{
    m_widget->FlushPendingChange();
    if (m_widget->WaitForProcessingFinished(false))
        return;
    QEventLoop loop;
    QObject::connect(m_widget.get(), &YDAdjustmentWidget::Finished, &loop, &QEventLoop::quit);
    Run(loop);
}
