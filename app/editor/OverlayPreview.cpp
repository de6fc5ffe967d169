#include "editor/OverlayPreview.h"

#include "YDAdjustmentWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "editor/BackgroundTask.h"

namespace {

constexpr int DelayMs = 50;

} // namespace

OverlayPreview::OverlayPreview(const AdjustmentEntry& entry, YDAdjustmentWidget* widget, QObject* parent)
    : QObject(parent), m_entry(entry), m_widget(widget)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(DelayMs);
    connect(&m_delay, &QTimer::timeout, this, &OverlayPreview::Draw);
}

OverlayPreview::~OverlayPreview() = default;

void OverlayPreview::Start(const RGBA32iImage& picture, const SelectionMask& mask)
{
    m_picture = picture;
    m_mask = mask;
    Draw();
}

void OverlayPreview::Restart()
{
    if (!m_picture.IsEmpty())
        m_delay.start();
}

void OverlayPreview::Flush()
{
    if (!m_delay.isActive())
        return;
    m_delay.stop();
    Draw();
}

QString OverlayPreview::Remark() const
{
    if (!m_error.isEmpty() || !m_entry.whatIsMissing || !m_widget)
        return m_error;
    return m_entry.whatIsMissing(*m_widget);
}

void OverlayPreview::Draw()
{
    m_isStale = m_isDrawing;
    if (m_isDrawing || !m_widget)
        return;
    m_isDrawing = true;
    BackgroundTask::Run(
        this,
        [picture = m_picture, mask = m_mask, draw = m_entry.makeDrawing(*m_widget)] {
            Drawn drawn{picture.DeepCopy(), QString()};
            if (!drawn.picture.IsEmpty())
                drawn.error = draw(drawn.picture, mask.Coverage(), mask.Offset(), mask.BoundingRect());
            return drawn;
        },
        [this](const Drawn& drawn) { OnDrawn(drawn); });
}

void OverlayPreview::OnDrawn(const Drawn& drawn)
{
    m_isDrawing = false;
    if (m_isStale)
        Draw();
    if (IsBusy())
        return;
    m_error = drawn.error;
    m_result = m_error.isEmpty() ? drawn.picture : RGBA32iImage();
    emit Ready();
}
