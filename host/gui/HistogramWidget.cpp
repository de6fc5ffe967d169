#include "gui/HistogramWidget.h"

#include "gui/ControlLook.h"

#include <QEvent>
#include <QHelpEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QStringList>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace {

constexpr QSize UsualPlotSize(256, 100);
constexpr QSize SmallestPlotSize(128, 48);

std::shared_ptr<const ChannelHistograms> Shared(const std::optional<ChannelHistograms>& counts)
{
    return counts ? std::make_shared<const ChannelHistograms>(*counts) : nullptr;
}

} // namespace

HistogramWidget::HistogramWidget(QWidget* parent)
    : QWidget(parent), m_histograms(std::make_shared<const ChannelHistograms>())
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setAccessibleName(tr("Histogram"));
    DescribeForAccessibility();
    m_startTimer.setSingleShot(true);
    m_startTimer.setInterval(0);
    connect(&m_startTimer, &QTimer::timeout, &m_count, &LatestJobBase::Request);
    connect(&m_count, &LatestJobBase::ResultReadyAt, this,
            [this](int index) { OnCounted(m_count.ResultAt(index)); });
}

HistogramWidget::~HistogramWidget() = default;

void HistogramWidget::SetImage(const YDSharedImage<QImage>* holder)
{
    m_presentPicture = nullptr;
    if (holder)
        m_presentPicture = [holder] { return CounterOf(holder->GetImage()); };
    RebuildHistogramm();
}

void HistogramWidget::SetImage(const YDSharedImage<RGBA32iImage>* holder)
{
    m_presentPicture = nullptr;
    if (holder)
        m_presentPicture = [holder] { return CounterOf(holder->GetImage()); };
    RebuildHistogramm();
}

void HistogramWidget::RebuildHistogramm()
{
    m_count.Abort();
    m_pending = m_presentPicture ? m_presentPicture() : Counter();
    if (m_pending) {
        m_startTimer.start();
    } else {
        m_startTimer.stop();
        Show(std::make_shared<const ChannelHistograms>());
    }
}

void HistogramWidget::SetChannel(int mask)
{
    const int channels = mask & HistogramPlot::AllChannels;
    if (channels == m_plot.channels)
        return;
    m_plot.channels = channels;
    DescribeForAccessibility();
    ForgetPlot();
}

void HistogramWidget::SetScale(Scale scale)
{
    if (scale == m_plot.scale)
        return;
    m_plot.scale = scale;
    DescribeForAccessibility();
    ForgetPlot();
}

void HistogramWidget::GetRange(int channel, int* low, int* high) const
{
    *low = ChannelHistograms::Levels - 1;
    *high = 0;
    for (int level = 0; level < ChannelHistograms::Levels; ++level) {
        if (GetCount(channel, level) == 0)
            continue;
        *low = std::min(*low, level);
        *high = level;
    }
}

qint64 HistogramWidget::GetCount(int channel, int bin) const
{
    const ChannelHistograms::Table* const table = TableOf(channel);
    return table && bin >= 0 && bin < ChannelHistograms::Levels ? (*table)[std::size_t(bin)] : 0;
}

QSize HistogramWidget::sizeHint() const { return UsualPlotSize; }

QSize HistogramWidget::minimumSizeHint() const { return SmallestPlotSize; }

bool HistogramWidget::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || m_histograms->pixels == 0)
        return QWidget::event(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    ShowToolTip(help->pos(), help->globalPos());
    return true;
}

void HistogramWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange)
        ForgetPlot();
    QWidget::changeEvent(event);
}

void HistogramWidget::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(event->button() == Qt::LeftButton);
}

/// A tooltip that is shown follows the mouse, as another level is under it.
void HistogramWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (QToolTip::isVisible() && rect().contains(event->pos()))
        ShowToolTip(event->pos(), event->globalPos());
    QWidget::mouseMoveEvent(event);
}

void HistogramWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        SetScale(GetScale() == Scale::Linear ? Scale::Logarithmic : Scale::Linear);
}

void HistogramWidget::paintEvent(QPaintEvent*)
{
    const double pixelRatio = devicePixelRatioF();
    if (m_drawn.size() != (QSizeF(size()) * pixelRatio).toSize())
        m_drawn = m_plot.Draw(*m_histograms, size(), pixelRatio, palette());
    QPainter painter(this);
    if (!isEnabled()) {
        painter.fillRect(rect(), palette().color(QPalette::Base));
        painter.setOpacity(DisabledOpacity);
    }
    painter.drawImage(0, 0, m_drawn);
}

HistogramWidget::Counter HistogramWidget::CounterOf(const QImage& image)
{
    if (image.isNull())
        return {};
    return [image](const std::atomic<bool>& abort) { return Shared(ChannelHistograms::Of(image, &abort)); };
}

HistogramWidget::Counter HistogramWidget::CounterOf(const RGBA32iImage& picture)
{
    if (picture.IsEmpty())
        return {};
    return [picture](const std::atomic<bool>& abort) {
        const QRect whole(0, 0, picture.Width(), picture.Height());
        return Shared(ChannelHistograms::Of(picture, whole, &abort));
    };
}

const ChannelHistograms::Table* HistogramWidget::TableOf(int channel) const
{
    switch (channel) {
    case 0:
        return &m_histograms->red;
    case 1:
        return &m_histograms->green;
    case 2:
        return &m_histograms->blue;
    case 3:
        return &m_histograms->luma;
    default:
        return nullptr;
    }
}

void HistogramWidget::Show(const Counts& counts)
{
    m_histograms = counts;
    ForgetPlot();
}

void HistogramWidget::OnCounted(const Counts& counts)
{
    if (!counts) { // no memory for it
        Show(std::make_shared<const ChannelHistograms>());
        return;
    }
    Show(counts);
    emit HistogrammComplete();
}

void HistogramWidget::ForgetPlot()
{
    m_drawn = QImage();
    update();
}

void HistogramWidget::ShowToolTip(const QPoint& position, const QPoint& onScreen)
{
    if (m_histograms->pixels > 0)
        QToolTip::showText(onScreen, ToolTipFor(LevelAt(position.x())), this);
}

int HistogramWidget::LevelAt(int x) const
{
    const int level = (2 * x + 1) * ChannelHistograms::Levels / (2 * std::max(width(), 1));
    return std::clamp(level, 0, ChannelHistograms::Levels - 1);
}

QString HistogramWidget::ToolTipFor(int level) const
{
    const QLocale locale;
    const auto count = [&](int channel) { return locale.toString(GetCount(channel, level)); };
    QStringList lines{tr("Level %1").arg(level)};
    if (m_plot.channels == 0)
        lines << tr("Luma: %1").arg(count(3));
    if (m_plot.channels & HistogramPlot::Red)
        lines << tr("Red: %1").arg(count(0));
    if (m_plot.channels & HistogramPlot::Green)
        lines << tr("Green: %1").arg(count(1));
    if (m_plot.channels & HistogramPlot::Blue)
        lines << tr("Blue: %1").arg(count(2));
    return lines.join(QLatin1Char('\n'));
}

void HistogramWidget::DescribeForAccessibility()
{
    setAccessibleDescription(GetScale() == Scale::Linear
                                 ? tr("Linear scale; a click changes to the logarithmic one")
                                 : tr("Logarithmic scale; a click changes to the linear one"));
}
