#include "YDHueSaturationWidget.h"

#include "ui_HueSaturationParamWidget.h"

#include <algorithm>

namespace {

constexpr int Circle = 360; ///< degrees
constexpr int FullLevel = 255;

QLinearGradient LeftToRight() { return {0, 0, 1, 0}; }

/// A setting of -100..100 per cent on a groove; records from outside may hold any number.
int GrooveLevel(int percent)
{
    return int(std::clamp<qint64>((qint64(percent) + 100) * FullLevel / 200, 0, FullLevel));
}

/// A setting of -100..100 per cent on a strip.
int StripLevel(int percent) { return std::clamp(percent * FullLevel / 200 + 127, 0, FullLevel); }

/// A hue that records from outside may hold, as one that a colour can have.
int HueOnCircle(int hue)
{
    return std::max(hue % Circle, 0); // below 0 the control stays at 0
}

} // namespace

YDHueSaturationWidget::YDHueSaturationWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::HueSaturationParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    UpdateColorLabels();
    UpdateHueGroove();
    UpdateSaturationGroove();
    // Behind the form's own connections, so that the spin box has taken the slider's value.
    connect(m_ui->m_pHueSlider, &QSlider::valueChanged, this, &YDHueSaturationWidget::ShowLastHue);
    Connect();
}

YDHueSaturationWidget::~YDHueSaturationWidget() = default;

QLinearGradient YDHueSaturationWidget::GetHue(int saturation, int lightness)
{
    constexpr int Stops = 21;
    constexpr int HueStep = 18;
    constexpr double PositionStep = 0.05;
    QLinearGradient gradient = LeftToRight();
    double position = 0;
    for (int i = 0; i < Stops; ++i, position += PositionStep)
        gradient.setColorAt(
            std::min(position, 1.0),
            QColor::fromHsl(HueStep * i % Circle, GrooveLevel(saturation), GrooveLevel(lightness)));
    return gradient;
}

QLinearGradient YDHueSaturationWidget::GetSaturation(int hue, int lightness)
{
    QLinearGradient gradient = LeftToRight();
    gradient.setColorAt(0, QColor::fromHsl(HueOnCircle(hue), 0, GrooveLevel(lightness)));
    gradient.setColorAt(1, QColor::fromHsl(HueOnCircle(hue), FullLevel, GrooveLevel(lightness)));
    return gradient;
}

void YDHueSaturationWidget::SetValue(const Params& params)
{
    {
        const auto quiet = Disconnect();
        m_params = params;
        m_ui->m_pHueSpin->setValue(params.hue);
        m_ui->m_pSaturationSpin->setValue(params.saturation);
        m_ui->m_pLightnessSpin->setValue(params.lightness);
        m_ui->m_pColorizeCheckBox->setChecked(params.colorize);
    }
    UpdateColorLabels();
    UpdateHueGroove();
    UpdateSaturationGroove();
}

operations::Task YDHueSaturationWidget::MakeTask() const
{
    return operations::MakeTask(Params{m_ui->m_pHueSpin->value(), m_ui->m_pSaturationSpin->value(),
                                       m_ui->m_pLightnessSpin->value(),
                                       m_ui->m_pColorizeCheckBox->isChecked()});
}

void YDHueSaturationWidget::Reset()
{
    m_params = Params();
    m_ui->m_pHueSpin->setValue(m_params.hue);
    m_ui->m_pSaturationSpin->setValue(m_params.saturation);
    m_ui->m_pLightnessSpin->setValue(m_params.lightness);
    m_ui->m_pColorizeCheckBox->setChecked(m_params.colorize);
}

// The colours follow before DataChanged(), so that who listens to it finds the panel as it is now.

void YDHueSaturationWidget::OnHueChanged(int value)
{
    m_params.hue = value;
    AboutUserParamsChanged();
    emit ValueChanged();
    UpdateColorLabels();
    UpdateSaturationGroove();
    emit DataChanged();
}

void YDHueSaturationWidget::OnSaturationChanged(int value)
{
    m_params.saturation = value;
    AboutUserParamsChanged();
    emit ValueChanged();
    UpdateColorLabels();
    UpdateHueGroove();
    emit DataChanged();
}

void YDHueSaturationWidget::OnLightnessChanged(int value)
{
    m_params.lightness = value;
    AboutUserParamsChanged();
    emit ValueChanged();
    UpdateColorLabels();
    UpdateHueGroove();
    UpdateSaturationGroove();
    emit DataChanged();
}

void YDHueSaturationWidget::OnColorizeChanged(bool on)
{
    m_params.colorize = on;
    AboutUserParamsChanged();
    emit ValueChanged();
    UpdateColorLabels();
    emit DataChanged();
}

void YDHueSaturationWidget::Connect()
{
    const auto changed = QOverload<int>::of(&QSpinBox::valueChanged);
    m_links.Add(m_ui->m_pHueSpin, changed, this, &YDHueSaturationWidget::OnHueChanged);
    m_links.Add(m_ui->m_pSaturationSpin, changed, this, &YDHueSaturationWidget::OnSaturationChanged);
    m_links.Add(m_ui->m_pLightnessSpin, changed, this, &YDHueSaturationWidget::OnLightnessChanged);
    m_links.Add(m_ui->m_pColorizeCheckBox, &QCheckBox::toggled, this,
                &YDHueSaturationWidget::OnColorizeChanged);
}

/// The slider reaches a full turn, the spin box stops a degree before it. A spin box that stands there
/// already has no change with which to push the slider back.
void YDHueSaturationWidget::ShowLastHue() { m_ui->m_pHueSlider->setValue(m_ui->m_pHueSpin->value()); }

void YDHueSaturationWidget::UpdateColorLabels()
{
    constexpr int Sextants = 6;
    constexpr int Sextant = Circle / Sextants;
    const int hue = m_ui->m_pHueSpin->value();
    const int saturation = StripLevel(m_ui->m_pSaturationSpin->value());
    const int lightness = StripLevel(m_ui->m_pLightnessSpin->value());
    const bool isOneHue = m_ui->m_pColorizeCheckBox->isChecked();
    QLinearGradient reference = LeftToRight();
    QLinearGradient adjusted = LeftToRight();
    reference.setCoordinateMode(QGradient::StretchToDeviceMode);
    adjusted.setCoordinateMode(QGradient::StretchToDeviceMode);
    for (int i = 0; i <= Sextants; ++i) {
        const double position = double(i) / Sextants;
        const int turned = isOneHue ? hue : (hue + Sextant * i) % Circle;
        reference.setColorAt(position, QColor::fromHsl(Sextant * i % Circle, FullLevel, 127));
        adjusted.setColorAt(position, QColor::fromHsl(turned, saturation, lightness));
    }
    m_ui->m_pPaletteLabel->SetBackgroundBrush(reference);
    m_ui->m_pColorizeLabel->SetBackgroundBrush(adjusted);
}

void YDHueSaturationWidget::UpdateHueGroove()
{
    SetGrooveGradient(m_ui->m_pHueSlider, GetHue(m_params.saturation, m_params.lightness));
}

void YDHueSaturationWidget::UpdateSaturationGroove()
{
    SetGrooveGradient(m_ui->m_pSaturationSlider, GetSaturation(m_params.hue, m_params.lightness));
}
