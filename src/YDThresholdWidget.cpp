#include "YDThresholdWidget.h"

#include "YDHistogramFeed.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/YDThresholdRGB32.h"
#include "ui_Threshold.h"

namespace {

constexpr uint Handle = 0;
constexpr int LowestLevel = 0;
constexpr int HighestLevel = 255;

} // namespace

bool YDThresholdWidget::Params::Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }

bool YDThresholdWidget::Params::Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

QDataStream& operator<<(QDataStream& stream, const YDThresholdWidget::Params& params)
{
    return YDRecord::Insert(stream, params, YDRecordNames::Threshold, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, YDThresholdWidget::Params& params)
{
    return YDRecord::Extract(stream, params, YDRecordNames::Threshold, __LINE__);
}

YDThresholdWidget::YDThresholdWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::Threshold>())
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
    YDThresholdWidget::Reset();
}

YDThresholdWidget::~YDThresholdWidget() = default;

void YDThresholdWidget::SetValue(const Params& params) { ShowLevel(params.level); }

void YDThresholdWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                                     const QRect& boundingRect)
{
    Process(MakeData(MakeConversionJob(image, selection, offset, boundingRect)));
}

void YDThresholdWidget::Reset()
{
    ShowLevel(Params().level);
    AnnounceChange(&YDThresholdWidget::ValueChanged);
}

void YDThresholdWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, MakeData(MakePreviewJob()));
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
    connect(m_ui->m_pThresholdLevel, QOverload<int>::of(&QSpinBox::valueChanged), this,
            QOverload<int>::of(&YDThresholdWidget::OnLevelChanged));
}

void YDThresholdWidget::Disconnect()
{
    disconnect(m_ui->m_pThresholdLevel, QOverload<int>::of(&QSpinBox::valueChanged), this,
               QOverload<int>::of(&YDThresholdWidget::OnLevelChanged));
}

/// The handle brings the spin box along.
void YDThresholdWidget::ShowLevel(int level)
{
    Disconnect();
    m_params.level = level;
    m_ui->m_pSlider->ChangeValue(Handle, level);
    Connect();
}

YDThresholdWidget::ThresholdData YDThresholdWidget::MakeData(const YDAdjustmentJob& job) const
{
    return {job, m_params};
}

RGBA32iImage YDThresholdWidget::Process(const ThresholdData& data)
{
    YDThresholdRGB32 threshold;
    threshold.SetLevel(data.params.level);
    return RunTransformation(data, YDIterativeAdjustmentTransformation<YDThresholdRGB32>(threshold));
}
