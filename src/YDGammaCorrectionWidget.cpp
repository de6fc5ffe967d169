#include "YDGammaCorrectionWidget.h"

#include "ScopedDisconnect.h"
#include "SliderPosition.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"
#include "ui_GammaParamWidget.h"

#include <cmath>

namespace {

constexpr double Neutral = 1.0;
constexpr int SliderScale = 100;
constexpr double SliderStep = 0.01;

} // namespace

YDGammaCorrectionWidget::YDGammaCorrectionWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::GammaParamWidget>())
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
    m_ui->m_pGammaSlider->setValue(SliderPosition(value, SliderScale));
}

void YDGammaCorrectionWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection,
                                           const QPoint& offset, const QRect& boundingRect)
{
    Process(MakeData(MakeConversionJob(image, selection, offset, boundingRect)));
}

void YDGammaCorrectionWidget::Reset() { m_ui->m_pGammaSpin->setValue(Neutral); }

void YDGammaCorrectionWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, MakeData(MakePreviewJob()));
}

void YDGammaCorrectionWidget::OnGammaChanged(double gamma)
{
    MoveSlider(gamma);
    AnnounceChange(&YDGammaCorrectionWidget::GammaChanged);
}

void YDGammaCorrectionWidget::OnGammaSlider(int position)
{
    m_ui->m_pGammaSpin->setValue(position * SliderStep);
}

/// The slider only mirrors the spin box here: called back, its truncated view would become the value.
void YDGammaCorrectionWidget::MoveSlider(double gamma)
{
    const ScopedDisconnect quiet(m_ui->m_pGammaSlider, &QSlider::valueChanged, this,
                                 &YDGammaCorrectionWidget::OnGammaSlider);
    m_ui->m_pGammaSlider->setValue(SliderPosition(gamma, SliderScale));
}

YDGammaCorrectionWidget::GCData YDGammaCorrectionWidget::MakeData(const YDAdjustmentJob& job) const
{
    return {job, m_ui->m_pGammaSpin->value()};
}

RGBA32iImage YDGammaCorrectionWidget::Process(const GCData& data)
{
    return RunTransformation(data, YDIterativeGammaCorrectionTransformation(data.gamma));
}
