#include "editor/OverlayPreview.h"

#include "catalog/AdjustmentCatalog.h"
#include "editor/BackgroundTask.h"

namespace {

constexpr int DelayMs = 50;

} // namespace

OverlayPreview::OverlayPreview(const AdjustmentEntry& entry, YDAdjustmentWidget& widget, QObject* parent)
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

void OverlayPreview::Draw()
{
    if (m_isCopying)
        return; // what is drawn on the copy are the settings of that moment
    m_isCopying = true;
    BackgroundTask::Run(
        this, [picture = m_picture] { return picture.DeepCopy(); },
        [this](const RGBA32iImage& copy) { OnCopied(copy); });
}

void OverlayPreview::OnCopied(RGBA32iImage copy)
{
    m_isCopying = false;
    m_delay.stop();
    m_error.clear();
    if (!copy.IsEmpty())
        m_error = m_entry.apply(m_widget, copy, m_mask.Coverage(), m_mask.Offset(), m_mask.BoundingRect());
    m_result = m_error.isEmpty() ? copy : RGBA32iImage();
    emit Ready();
}
