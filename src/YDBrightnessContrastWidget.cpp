#include "YDBrightnessContrastWidget.h"

#include "ui_BrightnessContrastParamWidget.h"

YDBrightnessContrastWidget::YDBrightnessContrastWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::BrightnessContrastParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    m_ui->m_pBrightnessSpin->setValue(0);
    m_ui->m_pContrastSpin->setValue(0);
    Connect();
}

YDBrightnessContrastWidget::~YDBrightnessContrastWidget() = default;

void YDBrightnessContrastWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    m_ui->m_pBrightnessSpin->setValue(params.brightness);
    m_ui->m_pContrastSpin->setValue(params.contrast);
}

operations::Task YDBrightnessContrastWidget::MakeTask() const
{
    // The spin boxes may lie beyond the record.
    return operations::MakeTask(Params{m_ui->m_pBrightnessSpin->value(), m_ui->m_pContrastSpin->value()});
}

void YDBrightnessContrastWidget::Reset()
{
    m_params = Params();
    m_ui->m_pBrightnessSpin->setValue(m_params.brightness);
    m_ui->m_pContrastSpin->setValue(m_params.contrast);
}

void YDBrightnessContrastWidget::OnBrightnessChanged(int value)
{
    m_params.brightness = value;
    AnnounceChange(&YDBrightnessContrastWidget::ValueChanged);
}

void YDBrightnessContrastWidget::OnContrastChanged(int value)
{
    m_params.contrast = value;
    AnnounceChange(&YDBrightnessContrastWidget::ValueChanged);
}

void YDBrightnessContrastWidget::Connect()
{
    m_links.Add(m_ui->m_pBrightnessSlider, &QSlider::valueChanged, this,
                &YDBrightnessContrastWidget::OnBrightnessChanged);
    m_links.Add(m_ui->m_pContrastSlider, &QSlider::valueChanged, this,
                &YDBrightnessContrastWidget::OnContrastChanged);
}
