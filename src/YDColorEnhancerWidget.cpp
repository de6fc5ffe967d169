#include "YDColorEnhancerWidget.h"

#include "StretchFrom.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "YDThresholdCache.h"
#include "image/YDColorEnhancerTransformation.h"
#include "ui_ColorEnhancer.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

LevelRange Blended(const LevelRange& own, const LevelRange& common, int affected)
{
    return {YDColorEnhancerWidget::InputBound(own.low, common.low, affected),
            YDColorEnhancerWidget::InputBound(own.high, common.high, affected)};
}

YDLevelsTransformation LevelsFor(const YDThresholdCache::Thresholds& thresholds, int affected)
{
    const auto& [red, green, blue, common] = thresholds;
    return StretchFrom<YDLevelsTransformation>(
        Blended(red, common, affected), Blended(green, common, affected), Blended(blue, common, affected));
}

} // namespace

bool YDColorEnhancerWidget::Params::Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }

bool YDColorEnhancerWidget::Params::Write(QDataStream& stream) const
{
    return YDRecord::Write(stream, *this);
}

QDataStream& operator<<(QDataStream& stream, const YDColorEnhancerWidget::Params& params)
{
    return YDRecord::Insert(stream, params, YDRecordNames::ColorEnhancer, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, YDColorEnhancerWidget::Params& params)
{
    return YDRecord::Extract(stream, params, YDRecordNames::ColorEnhancer, __LINE__);
}

YDColorEnhancerWidget::YDColorEnhancerWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::ColorEnhancer>()),
      m_thresholds(std::make_shared<YDThresholdCache>())
{
    m_ui->setupUi(GetUIContent());
    connect(this, &YDColorEnhancerWidget::SourceChanged, this, &YDColorEnhancerWidget::OnSourceChanged);
    SetValue(Params());
    AnnounceChange(&YDColorEnhancerWidget::ValueChanged);
}

YDColorEnhancerWidget::~YDColorEnhancerWidget() = default;

void YDColorEnhancerWidget::SetValue(const Params& params)
{
    Disconnect();
    m_params = params;
    m_ui->m_pAffected->setValue(params.affected);
    m_ui->m_pAmount->setValue(params.amount);
    Connect();
}

void YDColorEnhancerWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection,
                                         const QPoint& offset, const QRect& boundingRect)
{
    Process({MakeConversionJob(image, selection, offset, boundingRect), m_params, m_thresholds});
}

void YDColorEnhancerWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDColorEnhancerWidget::ValueChanged);
}

void YDColorEnhancerWidget::StartJobWatching(JobWatcher* watcher)
{
    // A new source's first preview starts before SourceChanged() is emitted.
    if (!SourceImage().SharesPixelsWith(m_counted)) {
        ForgetThresholds();
        m_isChangeKnown = true;
    }
    Launch(watcher, &Process, EnhancerData{MakePreviewJob(), m_params, m_thresholds});
}

int YDColorEnhancerWidget::InputBound(int own, int common, int affected)
{
    // In 64 bits: a stored percentage may be any number.
    const qint64 bound = (qint64(own - common) * affected + qint64(common) * 100) / 100;
    return int(std::clamp<qint64>(bound, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

void YDColorEnhancerWidget::OnAmountChanged(int value)
{
    m_params.amount = value;
    AnnounceChange(&YDColorEnhancerWidget::ValueChanged);
}

void YDColorEnhancerWidget::OnAffectedChanged(int value)
{
    m_params.affected = value;
    AnnounceChange(&YDColorEnhancerWidget::ValueChanged);
}

void YDColorEnhancerWidget::OnSourceChanged()
{
    if (!std::exchange(m_isChangeKnown, false))
        ForgetThresholds();
}

void YDColorEnhancerWidget::Connect()
{
    connect(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &YDColorEnhancerWidget::OnAmountChanged);
    connect(m_ui->m_pAffected, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &YDColorEnhancerWidget::OnAffectedChanged);
}

void YDColorEnhancerWidget::Disconnect()
{
    disconnect(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
               &YDColorEnhancerWidget::OnAmountChanged);
    disconnect(m_ui->m_pAffected, QOverload<int>::of(&QSpinBox::valueChanged), this,
               &YDColorEnhancerWidget::OnAffectedChanged);
}

/// A running job keeps the thresholds that it began with.
void YDColorEnhancerWidget::ForgetThresholds()
{
    m_counted = SourceImage();
    m_thresholds = std::make_shared<YDThresholdCache>();
}

RGBA32iImage YDColorEnhancerWidget::Process(const EnhancerData& data)
{
    const auto thresholds = data.thresholds->Of(data.image, data.abort);
    if (!thresholds)
        return data.image;
    YDColorEnhancerTransformation enhancer;
    enhancer.SetLevels(LevelsFor(*thresholds, data.params.affected));
    enhancer.SetAmountData(data.params.amount);
    return RunTransformation(data,
                             YDIterativeAdjustmentTransformation<YDColorEnhancerTransformation>(enhancer));
}
