#include "YDExposureWidget.h"

#include "ScopedDisconnect.h"
#include "SliderPosition.h"
#include "ui_ExposureParamWidget.h"

#include <cmath>

namespace {

constexpr int ExposureSliderScale = 10000;
constexpr double ExposureSliderStep = 0.0001;

double NumberOrZero(double value) { return std::isnan(value) ? 0.0 : value; }

} // namespace

YDExposureWidget::YDExposureWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::ExposureParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    Connect();
}

YDExposureWidget::~YDExposureWidget() = default;

double YDExposureWidget::GetExposure() const { return m_ui->m_pExposureSpin->value(); }

void YDExposureWidget::SetExposure(double exposure)
{
    const auto connectOnceMore = [this] {
        connect(m_ui->m_pExposureSpin, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
                &YDExposureWidget::OnExposureChanged);
    };
    const double value = NumberOrZero(exposure);
    connectOnceMore(); // where SetOffset() disconnects: hosts count on being told of an exposure that is set
    m_ui->m_pExposureSpin->setValue(value);
    m_ui->m_pExposureSlider->setValue(SliderPosition(value, ExposureSliderScale));
    connectOnceMore();
}

double YDExposureWidget::GetOffset() const { return m_ui->m_pOffsetSpin->value(); }

void YDExposureWidget::SetOffset(double offset)
{
    const ScopedDisconnect quiet(m_ui->m_pOffsetSpin, QOverload<double>::of(&QDoubleSpinBox::valueChanged),
                                 this, &YDExposureWidget::OnOffsetChanged);
    const double value = NumberOrZero(offset);
    m_ui->m_pOffsetSpin->setValue(value);
    m_ui->m_pOffsetSlider->setValue(SliderPosition(value, ExposureSliderScale));
}

operations::Task YDExposureWidget::MakeTask() const
{
    return operations::MakeTask(operations::Exposure{GetExposure(), GetOffset()});
}

void YDExposureWidget::Reset()
{
    m_ui->m_pExposureSpin->setValue(0.0);
    m_ui->m_pOffsetSpin->setValue(0.0);
}

void YDExposureWidget::OnExposureChanged(double exposure)
{
    MoveExposureSlider(exposure);
    AnnounceChange(&YDExposureWidget::ExposureChanged);
}

void YDExposureWidget::OnOffsetChanged(double offset)
{
    MoveOffsetSlider(offset);
    AnnounceChange(&YDExposureWidget::OffsetChanged);
}

void YDExposureWidget::OnExposureSlider(int position)
{
    m_ui->m_pExposureSpin->setValue(position * ExposureSliderStep);
}

void YDExposureWidget::OnOffsetSlider(int position)
{
    m_ui->m_pOffsetSpin->setValue(position * ExposureSliderStep);
}

void YDExposureWidget::Connect()
{
    connect(m_ui->m_pExposureSpin, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &YDExposureWidget::OnExposureChanged);
    connect(m_ui->m_pOffsetSpin, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &YDExposureWidget::OnOffsetChanged);
    connect(m_ui->m_pExposureSlider, &QSlider::valueChanged, this, &YDExposureWidget::OnExposureSlider);
    connect(m_ui->m_pOffsetSlider, &QSlider::valueChanged, this, &YDExposureWidget::OnOffsetSlider);
}

/// The slider only mirrors the spin box here: called back, its truncated view would become the value.
void YDExposureWidget::MoveExposureSlider(double exposure)
{
    const ScopedDisconnect quiet(m_ui->m_pExposureSlider, &QSlider::valueChanged, this,
                                 &YDExposureWidget::OnExposureSlider);
    m_ui->m_pExposureSlider->setValue(SliderPosition(exposure, ExposureSliderScale));
}

/// As MoveExposureSlider().
void YDExposureWidget::MoveOffsetSlider(double offset)
{
    const ScopedDisconnect quiet(m_ui->m_pOffsetSlider, &QSlider::valueChanged, this,
                                 &YDExposureWidget::OnOffsetSlider);
    m_ui->m_pOffsetSlider->setValue(SliderPosition(offset, ExposureSliderScale));
}
