#include "YDWBWidget.h"

#include "ScopedDisconnect.h"
#include "image/KVWBTransformation.h"
#include "ui_WBWidget.h"

YDWBWidget::YDWBWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::WBWidget>())
{
    m_ui->setupUi(GetUIContent());
    SetValue(Params());
    Connect();
}

YDWBWidget::~YDWBWidget() = default;

void YDWBWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    m_ui->m_pTemperature->setValue(params.temperature);
    m_ui->m_pTempStrength->setValue(params.temperatureStrength);
    if (QRadioButton* const button = ButtonOf(params.mode)) {
        button->setChecked(true);
        m_ui->m_pWBStrength->setValue(*operations::StrengthFieldOf(params));
    }
    m_ui->m_pEnchanced->setChecked(params.enhanced);
    m_ui->m_pTemperatureContent->setChecked(params.useTemperature);
}

operations::Task YDWBWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDWBWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDWBWidget::ValueChanged);
}

void YDWBWidget::OnAuto(bool on)
{
    if (on)
        ChooseFunction(KVWBTransformation::Auto);
}

void YDWBWidget::OnEnchanced(bool on)
{
    m_params.enhanced = on;
    AnnounceChange(&YDWBWidget::ValueChanged);
}

void YDWBWidget::OnOverexposure(bool on)
{
    if (on)
        ChooseFunction(KVWBTransformation::Overexposure);
}

void YDWBWidget::OnUnderexposure(bool on)
{
    if (on)
        ChooseFunction(KVWBTransformation::Underexposure);
}

void YDWBWidget::OnWBStrengthChanged(int value)
{
    if (int* const strength = operations::StrengthFieldOf(m_params))
        *strength = value;
    AnnounceChange(&YDWBWidget::ValueChanged);
}

void YDWBWidget::OnUseTemperature(bool on)
{
    m_params.useTemperature = on;
    AnnounceChange(&YDWBWidget::ValueChanged);
}

void YDWBWidget::OnTemperature(int value)
{
    m_params.temperature = value;
    AnnounceChange(&YDWBWidget::ValueChanged);
}

void YDWBWidget::OnTemperatureStrength(int value)
{
    m_params.temperatureStrength = value;
    AnnounceChange(&YDWBWidget::ValueChanged);
}

void YDWBWidget::Connect()
{
    m_links.Add(m_ui->m_pWBStrength, &QSlider::valueChanged, this, &YDWBWidget::OnWBStrengthChanged);
    m_links.Add(m_ui->m_pAuto, &QRadioButton::toggled, this, &YDWBWidget::OnAuto);
    m_links.Add(m_ui->m_pEnchanced, &QCheckBox::toggled, this, &YDWBWidget::OnEnchanced);
    m_links.Add(m_ui->m_pOverexposure, &QRadioButton::toggled, this, &YDWBWidget::OnOverexposure);
    m_links.Add(m_ui->m_pUnderexposure, &QRadioButton::toggled, this, &YDWBWidget::OnUnderexposure);
    m_links.Add(m_ui->m_pTemperatureContent, &QGroupBox::toggled, this, &YDWBWidget::OnUseTemperature);
    m_links.Add(m_ui->m_pTemperature, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YDWBWidget::OnTemperature);
    m_links.Add(m_ui->m_pTempStrength, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YDWBWidget::OnTemperatureStrength);
}

void YDWBWidget::ChooseFunction(int mode)
{
    m_params.mode = mode;
    {
        const ScopedDisconnect quiet(m_ui->m_pWBStrength, &QSlider::valueChanged, this,
                                     &YDWBWidget::OnWBStrengthChanged);
        m_ui->m_pWBStrength->setValue(*operations::StrengthFieldOf(m_params));
    }
    AnnounceChange(&YDWBWidget::ValueChanged);
}

/// The button that chooses `mode`; null for a function that there is not.
QRadioButton* YDWBWidget::ButtonOf(int mode) const
{
    switch (mode) {
    case KVWBTransformation::Auto:
        return m_ui->m_pAuto;
    case KVWBTransformation::Overexposure:
        return m_ui->m_pOverexposure;
    case KVWBTransformation::Underexposure:
        return m_ui->m_pUnderexposure;
    default:
        return nullptr;
    }
}
