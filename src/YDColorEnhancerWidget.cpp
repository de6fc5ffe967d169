#include "YDColorEnhancerWidget.h"

#include "YDThresholdCache.h"
#include "ui_ColorEnhancer.h"

#include <utility>

YDColorEnhancerWidget::YDColorEnhancerWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::ColorEnhancer>()),
      m_thresholds(std::make_shared<YDThresholdCache>())
{
    m_ui->setupUi(GetUIContent());
    connect(this, &YDColorEnhancerWidget::SourceChanged, this, &YDColorEnhancerWidget::OnSourceChanged);
    SetValue(Params());
    Connect();
    AnnounceChange(&YDColorEnhancerWidget::ValueChanged);
}

YDColorEnhancerWidget::~YDColorEnhancerWidget() = default;

void YDColorEnhancerWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    m_ui->m_pAffected->setValue(params.affected);
    m_ui->m_pAmount->setValue(params.amount);
}

operations::Task YDColorEnhancerWidget::MakeTask() const { return operations::MakeTask(m_params); }

operations::Task YDColorEnhancerWidget::MakeTaskForSource() const
{
    return operations::MakeTask(m_params, m_thresholds);
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
    YDTaskWidget::StartJobWatching(watcher);
}

int YDColorEnhancerWidget::InputBound(int own, int common, int affected)
{
    return operations::InputBound(own, common, affected);
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
    m_links.Add(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YDColorEnhancerWidget::OnAmountChanged);
    m_links.Add(m_ui->m_pAffected, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YDColorEnhancerWidget::OnAffectedChanged);
}

/// A running job keeps the thresholds that it began with.
void YDColorEnhancerWidget::ForgetThresholds()
{
    m_counted = SourceImage();
    m_thresholds = std::make_shared<YDThresholdCache>();
}
