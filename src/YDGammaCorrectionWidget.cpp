#include "YDGammaCorrectionWidget.h"

#include "ScopedDisconnect.h"
#include "SliderPosition.h"
#include "ui_GammaParamWidget.h"

#include <cmath>

namespace {

constexpr double Neutral = 1.0;
constexpr int GammaSliderScale = 100;
constexpr double GammaSliderStep = 0.01;

} // namespace

YDGammaCorrectionWidget::YDGammaCorrectionWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::GammaParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    connect(m_ui->m_pGammaSpin, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &YDGammaCorrectionWidget::OnGammaChanged);
    connect(m_ui->m_pGammaSlider, &QSlider::valueChanged, this, &YDGammaCorrectionWidget::OnGammaSlider);
}

YDGammaCorrectionWidget::~YDGammaCorrectionWidget() = default;

double YDGammaCorrectionWidget::GetGamma() const { return m_ui->m_pGammaSpin->value(); }

void YDGammaCorrectionWidget::SetGamma(double gamma)
{
    const ScopedDisconnect quiet(m_ui->m_pGammaSpin, QOverload<double>::of(&QDoubleSpinBox::valueChanged),
                                 this, &YDGammaCorrectionWidget::OnGammaChanged);
    const double value = std::isnan(gamma) ? Neutral : gamma;
    m_ui->m_pGammaSpin->setValue(value);
    m_ui->m_pGammaSlider->setValue(SliderPosition(value, GammaSliderScale));
}

operations::Task YDGammaCorrectionWidget::MakeTask() const
{
    return operations::MakeTask(operations::Gamma{GetGamma()});
}

void YDGammaCorrectionWidget::Reset() { m_ui->m_pGammaSpin->setValue(Neutral); }

void YDGammaCorrectionWidget::OnGammaChanged(double gamma)
{
    MoveSlider(gamma);
    AnnounceChange(&YDGammaCorrectionWidget::GammaChanged);
}

void YDGammaCorrectionWidget::OnGammaSlider(int position)
{
    m_ui->m_pGammaSpin->setValue(position * GammaSliderStep);
}

/// The slider only mirrors the spin box here: called back, its truncated view would become the value.
void YDGammaCorrectionWidget::MoveSlider(double gamma)
{
    const ScopedDisconnect quiet(m_ui->m_pGammaSlider, &QSlider::valueChanged, this,
                                 &YDGammaCorrectionWidget::OnGammaSlider);
    m_ui->m_pGammaSlider->setValue(SliderPosition(gamma, GammaSliderScale));
}
