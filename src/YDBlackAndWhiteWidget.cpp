#include "YDBlackAndWhiteWidget.h"

#include "CheckOnly.h"
#include "ui_BlackAndWhiteWidget.h"

#include <cmath>

namespace {

/// What a spin box shows of a weight: 0 for one that is not a number, as which the transformation counts it.
double ShownWeight(float weight) { return std::isnan(weight) ? 0.0 : double(weight); }

} // namespace

YDBlackAndWhiteWidget::YDBlackAndWhiteWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::BlackAndWhiteWidget>())
{
    m_ui->setupUi(GetUIContent());
    Connect();
}

YDBlackAndWhiteWidget::~YDBlackAndWhiteWidget() = default;

void YDBlackAndWhiteWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    CheckOnly(
        {m_ui->m_pAverage, m_ui->m_pLuminance, m_ui->m_pD65, m_ui->m_pNTSC, m_ui->m_pCIE, m_ui->m_pCustom},
        params.type);
    ShowWeights();
}

operations::Task YDBlackAndWhiteWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDBlackAndWhiteWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDBlackAndWhiteWidget::ValueChanged);
}

void YDBlackAndWhiteWidget::OnAverage(bool checked) { SelectType(checked, Average); }

void YDBlackAndWhiteWidget::OnLuminance(bool checked) { SelectType(checked, Luminance); }

void YDBlackAndWhiteWidget::OnD65(bool checked) { SelectType(checked, D65); }

void YDBlackAndWhiteWidget::OnNTSC(bool checked) { SelectType(checked, Ntsc); }

void YDBlackAndWhiteWidget::OnCIE(bool checked) { SelectType(checked, Cie); }

void YDBlackAndWhiteWidget::OnCustom(bool checked) { SelectType(checked, Custom); }

void YDBlackAndWhiteWidget::OnRedChanged(double value) { ChangeWeight(m_params.r, value); }

void YDBlackAndWhiteWidget::OnGreenChanged(double value) { ChangeWeight(m_params.g, value); }

void YDBlackAndWhiteWidget::OnBlueChanged(double value) { ChangeWeight(m_params.b, value); }

void YDBlackAndWhiteWidget::Connect()
{
    const auto changed = QOverload<double>::of(&QDoubleSpinBox::valueChanged);
    m_links.Add(m_ui->m_pRed, changed, this, &YDBlackAndWhiteWidget::OnRedChanged);
    m_links.Add(m_ui->m_pGreen, changed, this, &YDBlackAndWhiteWidget::OnGreenChanged);
    m_links.Add(m_ui->m_pBlue, changed, this, &YDBlackAndWhiteWidget::OnBlueChanged);
    m_links.Add(m_ui->m_pAverage, &QRadioButton::toggled, this, &YDBlackAndWhiteWidget::OnAverage);
    m_links.Add(m_ui->m_pLuminance, &QRadioButton::toggled, this, &YDBlackAndWhiteWidget::OnLuminance);
    m_links.Add(m_ui->m_pD65, &QRadioButton::toggled, this, &YDBlackAndWhiteWidget::OnD65);
    m_links.Add(m_ui->m_pNTSC, &QRadioButton::toggled, this, &YDBlackAndWhiteWidget::OnNTSC);
    m_links.Add(m_ui->m_pCIE, &QRadioButton::toggled, this, &YDBlackAndWhiteWidget::OnCIE);
    m_links.Add(m_ui->m_pCustom, &QRadioButton::toggled, this, &YDBlackAndWhiteWidget::OnCustom);
}

void YDBlackAndWhiteWidget::ShowWeights()
{
    m_ui->m_pRed->setValue(ShownWeight(m_params.GetR()));
    m_ui->m_pGreen->setValue(ShownWeight(m_params.GetG()));
    m_ui->m_pBlue->setValue(ShownWeight(m_params.GetB()));
}

void YDBlackAndWhiteWidget::SelectType(bool checked, Type type)
{
    if (!checked)
        return;
    m_params.type = type;
    {
        const auto quiet = Disconnect(); // what is shown here is no edit
        ShowWeights();
    }
    AnnounceChange(&YDBlackAndWhiteWidget::ValueChanged);
}

void YDBlackAndWhiteWidget::ChangeWeight(float& weight, double value)
{
    if (m_params.type != Custom)
        return;
    weight = float(value);
    AnnounceChange(&YDBlackAndWhiteWidget::ValueChanged);
}
