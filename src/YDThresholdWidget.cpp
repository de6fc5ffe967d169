#include "YDThresholdWidget.h"

#include "YDHistogramFeed.h"
#include "ui_Threshold.h"

namespace {

constexpr uint Handle = 0;
constexpr int LowestLevel = 0;
constexpr int HighestLevel = 255;

} // namespace

YDThresholdWidget::YDThresholdWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::Threshold>())
{
    m_ui->setupUi(GetUIContent());
    m_ui->m_pHistogramm->SetChannel(0);
    m_ui->m_pSlider->SetRange(LowestLevel, HighestLevel);
    m_ui->m_pSlider->AddControl(LowestLevel, HighestLevel, LowestLevel);
    m_ui->m_pSlider->SetBrush(Handle, Qt::black);
    m_ui->m_pSlider->SetControlName(Handle, tr("Threshold level"));
    m_feed = std::make_unique<YDHistogramFeed>(m_ui->m_pHistogramm);
    connect(this, &YDThresholdWidget::SourceChanged, this, &YDThresholdWidget::OnSourceChanged);
    connect(m_ui->m_pSlider, &YodiCustomSlider::ValueChanged, this,
            QOverload<uint, int>::of(&YDThresholdWidget::OnLevelChanged));
    Connect();
    YDThresholdWidget::Reset();
}

YDThresholdWidget::~YDThresholdWidget() = default;

void YDThresholdWidget::SetValue(const Params& params) { ShowLevel(params.level); }

operations::Task YDThresholdWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDThresholdWidget::Reset()
{
    ShowLevel(Params().level);
    AnnounceChange(&YDThresholdWidget::ValueChanged);
}

void YDThresholdWidget::AttachQImage(const YDSharedImage<QImage>* image) { m_feed->AttachQImage(image); }

void YDThresholdWidget::AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image)
{
    m_feed->AttachRGB32iImage(image);
}

void YDThresholdWidget::UpdateHistogramm() { m_feed->UpdateHistogramm(); }

void YDThresholdWidget::OnSourceChanged() { m_feed->OnSourceChanged(SourceImage()); }

void YDThresholdWidget::OnLevelChanged(uint, int value) { m_ui->m_pThresholdLevel->setValue(value); }

void YDThresholdWidget::OnLevelChanged(int value)
{
    m_params.level = value;
    m_ui->m_pSlider->ChangeValue(Handle, value);
    AnnounceChange(&YDThresholdWidget::ValueChanged);
}

void YDThresholdWidget::Connect()
{
    m_links.Add(m_ui->m_pThresholdLevel, QOverload<int>::of(&QSpinBox::valueChanged), this,
                QOverload<int>::of(&YDThresholdWidget::OnLevelChanged));
}

/// The handle brings the spin box along.
void YDThresholdWidget::ShowLevel(int level)
{
    const auto quiet = Disconnect();
    m_params.level = level;
    m_ui->m_pSlider->ChangeValue(Handle, level);
}
