#include "YDColorBalanceWidget.h"

#include "CheckOnly.h"
#include "ui_ColorBalanceParamWidget.h"

#include <QLinearGradient>

namespace {

/// The place of a tone range in an axis; -1 for what is no tone range.
int AxisIndex(int toneRange) { return toneRange >= 1 && toneRange <= 3 ? toneRange - 1 : -1; }

QLinearGradient Between(Qt::GlobalColor left, Qt::GlobalColor right)
{
    QLinearGradient gradient(0, 0, 1, 0);
    gradient.setColorAt(0, left);
    gradient.setColorAt(1, right);
    return gradient;
}

} // namespace

YDColorBalanceWidget::YDColorBalanceWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::ColorBalanceParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    ColorGrooves();
    ShowRecord();
    Connect();
}

YDColorBalanceWidget::~YDColorBalanceWidget() = default;

void YDColorBalanceWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    ShowRecord();
}

operations::Task YDColorBalanceWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDColorBalanceWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDColorBalanceWidget::ValueChanged);
}

void YDColorBalanceWidget::OnCRChanged(int value) { ChangeAxis(m_params.cyanRed, value); }

void YDColorBalanceWidget::OnMGChanged(int value) { ChangeAxis(m_params.magentaGreen, value); }

void YDColorBalanceWidget::OnYBChanged(int value) { ChangeAxis(m_params.yellowBlue, value); }

void YDColorBalanceWidget::OnShadowChanged(bool on)
{
    if (on)
        SelectToneRange(1);
}

void YDColorBalanceWidget::OnMidtoneChanged(bool on)
{
    if (on)
        SelectToneRange(2);
}

void YDColorBalanceWidget::OnHighLightChanged(bool on)
{
    if (on)
        SelectToneRange(3);
}

void YDColorBalanceWidget::OnLumChanged(bool on)
{
    m_params.preserveLuminosity = on;
    AnnounceChange(&YDColorBalanceWidget::ValueChanged);
}

void YDColorBalanceWidget::Connect()
{
    const auto changed = QOverload<int>::of(&QSpinBox::valueChanged);
    m_links.Add(m_ui->m_pCRSpin, changed, this, &YDColorBalanceWidget::OnCRChanged);
    m_links.Add(m_ui->m_pMGSpin, changed, this, &YDColorBalanceWidget::OnMGChanged);
    m_links.Add(m_ui->m_pYBSpin, changed, this, &YDColorBalanceWidget::OnYBChanged);
    m_links.Add(m_ui->m_pShadows, &QRadioButton::toggled, this, &YDColorBalanceWidget::OnShadowChanged);
    m_links.Add(m_ui->m_pMidtones, &QRadioButton::toggled, this, &YDColorBalanceWidget::OnMidtoneChanged);
    m_links.Add(m_ui->m_pHighlights, &QRadioButton::toggled, this, &YDColorBalanceWidget::OnHighLightChanged);
    m_links.Add(m_ui->m_pLuminosity, &QCheckBox::toggled, this, &YDColorBalanceWidget::OnLumChanged);
}

void YDColorBalanceWidget::ColorGrooves()
{
    SetGrooveGradient(m_ui->m_pCRSlider, Between(Qt::cyan, Qt::red));
    SetGrooveGradient(m_ui->m_pMGSlider, Between(Qt::magenta, Qt::green));
    SetGrooveGradient(m_ui->m_pYBSlider, Between(Qt::yellow, Qt::blue));
}

void YDColorBalanceWidget::ShowRecord()
{
    CheckOnly({m_ui->m_pShadows, m_ui->m_pMidtones, m_ui->m_pHighlights}, AxisIndex(m_params.toneRange));
    m_ui->m_pLuminosity->setChecked(m_params.preserveLuminosity);
    ShowToneRange();
}

/// Without a tone range there is nothing that the axes' controls could edit.
void YDColorBalanceWidget::ShowToneRange()
{
    const int index = AxisIndex(m_params.toneRange);
    const auto value = [index](const Params::Axis& axis) { return index < 0 ? 0 : axis[std::size_t(index)]; };
    m_ui->m_pCRSpin->setValue(value(m_params.cyanRed));
    m_ui->m_pMGSpin->setValue(value(m_params.magentaGreen));
    m_ui->m_pYBSpin->setValue(value(m_params.yellowBlue));
    for (QWidget* const control :
         std::initializer_list<QWidget*>{m_ui->m_pCRSlider, m_ui->m_pCRSpin, m_ui->m_pMGSlider,
                                         m_ui->m_pMGSpin, m_ui->m_pYBSlider, m_ui->m_pYBSpin})
        control->setEnabled(index >= 0);
}

/// No DataChanged(): which range is edited changes no pixel.
void YDColorBalanceWidget::SelectToneRange(int toneRange)
{
    m_params.toneRange = toneRange;
    {
        const auto quiet = Disconnect();
        ShowToneRange();
    }
    m_ui->m_pLuminosity->setEnabled(true);
    AboutUserParamsChanged();
    emit ValueChanged();
}

void YDColorBalanceWidget::ChangeAxis(Params::Axis& axis, int value)
{
    if (const int index = AxisIndex(m_params.toneRange); index >= 0)
        axis[std::size_t(index)] = value;
    AnnounceChange(&YDColorBalanceWidget::ValueChanged);
}
