#include "YDTemperatureWidget.h"

#include "ui_TemperatureWidget.h"

YDTemperatureWidget::YDTemperatureWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::TemperatureWidget>())
{
    m_ui->setupUi(GetUIContent());
    m_ui->gridLayout->setAlignment(Qt::AlignTop); // a taller panel does not pull the rows apart
    ShowDefaults();
    Connect();
}

YDTemperatureWidget::~YDTemperatureWidget() = default;

void YDTemperatureWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    m_ui->m_pTemperature->setValue(params.temperature);
    m_ui->m_pTint->setValue(params.tint);
}

operations::Task YDTemperatureWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDTemperatureWidget::Reset()
{
    m_params = Params();
    ShowDefaults();
}

void YDTemperatureWidget::OnTemperatureChanged(int value)
{
    m_params.temperature = value;
    AnnounceChange(&YDTemperatureWidget::ValueChanged);
}

void YDTemperatureWidget::OnTintChanged(int value)
{
    m_params.tint = value;
    AnnounceChange(&YDTemperatureWidget::ValueChanged);
}

void YDTemperatureWidget::OnStrengthChanged(int value)
{
    m_params.strength = value;
    AnnounceChange(&YDTemperatureWidget::ValueChanged);
}

void YDTemperatureWidget::Connect()
{
    const auto changed = QOverload<int>::of(&QSpinBox::valueChanged);
    m_links.Add(m_ui->m_pTemperature, changed, this, &YDTemperatureWidget::OnTemperatureChanged);
    m_links.Add(m_ui->m_pTint, changed, this, &YDTemperatureWidget::OnTintChanged);
    m_links.Add(m_ui->m_pStrength, changed, this, &YDTemperatureWidget::OnStrengthChanged);
}

void YDTemperatureWidget::ShowDefaults()
{
    constexpr Params Defaults;
    m_ui->m_pTemperature->setValue(Defaults.temperature);
    m_ui->m_pTint->setValue(Defaults.tint);
    m_ui->m_pStrength->setValue(Defaults.strength);
}
