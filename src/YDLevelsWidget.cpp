#include "YDLevelsWidget.h"

#include "AutomaticInputRange.h"
#include "ScopedDisconnect.h"
#include "YDHistogramFeed.h"
#include "image/YDIterativeLevelsTransformation.h"
#include "ui_LevelsWidget.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>

namespace {

// Handles of the sliders; the output slider has no middle.
constexpr uint InputLow = 0;
constexpr uint InputMiddle = 1;
constexpr uint InputHigh = 2;
constexpr uint OutputLow = 0;
constexpr uint OutputHigh = 1;

constexpr std::size_t Low = 0; ///< of a range's ends
constexpr std::size_t High = 1;

constexpr int LowestLevel = 0;
constexpr int HighestLevel = 255;
constexpr int Gap = 2; ///< that the controls keep between the input's ends

/// The level that is `distance` from another, on the scale or not, as far as integers reach.
int LevelBeside(int level, int distance)
{
    return int(std::clamp<qint64>(qint64(level) + distance, std::numeric_limits<int>::min(),
                                  std::numeric_limits<int>::max()));
}

/// A gamma from outside as the spin box can take it.
double ShownGamma(double gamma)
{
    using Rule = YDIterativeLevelsTransformation;
    return std::isnan(gamma) ? 1.0 : std::clamp(gamma, Rule::SmallestGamma, Rule::LargestGamma);
}

QBrush BlackToWhite()
{
    QLinearGradient gradient(0.0, 0.0, 1.0, 0.0);
    gradient.setCoordinateMode(QGradient::ObjectBoundingMode);
    gradient.setColorAt(0.0, Qt::black);
    gradient.setColorAt(1.0, Qt::white);
    return gradient;
}

/// Makes labels as wide as the widest, so that what stands beside them is in one column.
void AlignWidths(std::initializer_list<QLabel*> labels)
{
    int widest = 0;
    for (const QLabel* const label : labels)
        widest = std::max(widest, label->sizeHint().width());
    for (QLabel* const label : labels)
        label->setMinimumWidth(widest);
}

void AddHandle(YodiCustomSlider* slider, int value, const QColor& color, const QString& name)
{
    const uint handle = slider->AddControl(LowestLevel, HighestLevel, value);
    slider->SetBrush(handle, color);
    slider->SetControlName(handle, name);
}

} // namespace

YDLevelsWidget::YDLevelsWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::LevelsWidget>())
{
    m_ui->setupUi(GetUIContent());
    AlignWidths({m_ui->label_3, m_ui->label_2});
    BuildSliders();
    m_ui->m_pInputLabel->SetBackgroundBrush(BlackToWhite());
    m_ui->m_pOutputLabel->SetBackgroundBrush(BlackToWhite());
    m_feed = std::make_unique<YDHistogramFeed>(m_ui->m_pHistogramm);
    connect(this, &YDLevelsWidget::SourceChanged, this, &YDLevelsWidget::OnSourceChanged);
    connect(m_ui->m_pHistogramm, &HistogramWidget::HistogrammComplete, this,
            &YDLevelsWidget::OnHistogrammComplete);
    connect(m_ui->m_pAutoBtn, &QPushButton::clicked, this, &YDLevelsWidget::OnAutoAdjust);
    Connect();
}

YDLevelsWidget::~YDLevelsWidget() = default;

void YDLevelsWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    SetChannel(params.channel);
}

int YDLevelsWidget::MiddleValue(int low, int high, double gamma)
{
    return Params::MiddleValue(low, high, gamma);
}

double YDLevelsWidget::ToneValue(int low, int high, int position)
{
    return Params::ToneValue(low, high, position);
}

int YDLevelsWidget::IndexToHistogrammChannel(int index)
{
    return YDHistogramFeed::IndexToHistogrammChannel(index);
}

operations::Task YDLevelsWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDLevelsWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDLevelsWidget::ValueChanged);
}

void YDLevelsWidget::AttachQImage(const YDSharedImage<QImage>* image) { m_feed->AttachQImage(image); }

void YDLevelsWidget::AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image)
{
    m_feed->AttachRGB32iImage(image);
}

void YDLevelsWidget::UpdateHistogramm() { m_feed->UpdateHistogramm(); }

void YDLevelsWidget::OnChannelChanged(int channel)
{
    {
        const auto quiet = Disconnect();
        SetChannel(channel);
    }
    AboutUserParamsChanged();
    emit ValueChanged(); // the pixels stay as they are
}

void YDLevelsWidget::OnInputChanged(uint handle, int value)
{
    if (handle == InputLow)
        m_ui->m_pLowInput->setValue(value);
    else if (handle == InputMiddle)
        m_ui->m_pMiddleInput->setValue(
            ToneValue(m_ui->m_pLowInput->value(), m_ui->m_pHighInput->value(), value));
    else if (handle == InputHigh)
        m_ui->m_pHighInput->setValue(value);
}

void YDLevelsWidget::OnOutputChanged(uint handle, int value)
{
    if (handle == OutputLow)
        m_ui->m_pLowOutput->setValue(value);
    else if (handle == OutputHigh)
        m_ui->m_pHighOutput->setValue(value);
}

void YDLevelsWidget::OnLowInputChanged(int value)
{
    m_params.input[Edited()][Low] = value;
    StoreMiddle(value, m_ui->m_pHighInput->value(), m_ui->m_pMiddleInput->value());
    {
        YodiCustomSlider* const slider = m_ui->m_pInputSlider;
        const ScopedDisconnect quiet(slider, &YodiCustomSlider::ValueChanged, this,
                                     &YDLevelsWidget::OnInputChanged);
        slider->SetControlMin(InputHigh, LevelBeside(value, Gap));
        slider->ChangeValue(InputLow, value);
        slider->SetControlMin(InputMiddle, value);
        slider->ChangeValue(InputMiddle, m_params.middle[Edited()]);
    }
    AnnounceChange(&YDLevelsWidget::ValueChanged);
}

void YDLevelsWidget::OnMiddleInputChanged(double gamma)
{
    m_params.gamma[Edited()] = gamma;
    StoreMiddle(m_ui->m_pLowInput->value(), m_ui->m_pHighInput->value(), gamma);
    {
        const ScopedDisconnect quiet(m_ui->m_pInputSlider, &YodiCustomSlider::ValueChanged, this,
                                     &YDLevelsWidget::OnInputChanged);
        m_ui->m_pInputSlider->ChangeValue(InputMiddle, m_params.middle[Edited()]);
    }
    AnnounceChange(&YDLevelsWidget::ValueChanged);
}

void YDLevelsWidget::OnHighInputChanged(int value)
{
    m_params.input[Edited()][High] = value;
    StoreMiddle(m_ui->m_pLowInput->value(), value, m_ui->m_pMiddleInput->value());
    {
        YodiCustomSlider* const slider = m_ui->m_pInputSlider;
        const ScopedDisconnect quiet(slider, &YodiCustomSlider::ValueChanged, this,
                                     &YDLevelsWidget::OnInputChanged);
        slider->SetControlMax(InputLow, LevelBeside(value, -Gap));
        slider->SetControlMax(InputMiddle, value);
        slider->ChangeValue(InputHigh, value);
        slider->ChangeValue(InputMiddle, m_params.middle[Edited()]);
    }
    AnnounceChange(&YDLevelsWidget::ValueChanged);
}

void YDLevelsWidget::OnLowOutputChanged(int value)
{
    m_params.output[Edited()][Low] = value;
    {
        const ScopedDisconnect quiet(m_ui->m_pOutputSlider, &YodiCustomSlider::ValueChanged, this,
                                     &YDLevelsWidget::OnOutputChanged);
        m_ui->m_pOutputSlider->ChangeValue(OutputLow, value);
    }
    AnnounceChange(&YDLevelsWidget::ValueChanged);
}

void YDLevelsWidget::OnHighOutputChanged(int value)
{
    m_params.output[Edited()][High] = value;
    {
        const ScopedDisconnect quiet(m_ui->m_pOutputSlider, &YodiCustomSlider::ValueChanged, this,
                                     &YDLevelsWidget::OnOutputChanged);
        m_ui->m_pOutputSlider->ChangeValue(OutputHigh, value);
    }
    AnnounceChange(&YDLevelsWidget::ValueChanged);
}

void YDLevelsWidget::OnAutoAdjust()
{
    const HistogramWidget& histogram = *m_ui->m_pHistogramm;
    Params params;
    params.channel = m_params.channel;
    for (int color = 0; color < 3; ++color) {
        LevelRange range{LowestLevel, HighestLevel};
        histogram.GetRange(color, &range.low, &range.high);
        range = AutomaticInputRange(
            range, [&](int level) { return histogram.GetCount(color, level); },
            double(histogram.GetPixelsCount()));
        const auto channel = std::size_t(color) + 1; // the composite comes first
        params.input[channel] = {range.low, range.high};
        params.middle[channel] = (range.low + range.high) / 2;
    }
    SetValue(params);
    AnnounceChange(&YDLevelsWidget::ValueChanged);
}

void YDLevelsWidget::OnSourceChanged() { m_feed->OnSourceChanged(SourceImage()); }

void YDLevelsWidget::OnHistogrammComplete() { m_ui->m_pAutoBtn->setEnabled(true); }

void YDLevelsWidget::BuildSliders()
{
    YodiCustomSlider* const input = m_ui->m_pInputSlider;
    input->SetRange(LowestLevel, HighestLevel);
    AddHandle(input, LowestLevel, Qt::black, m_ui->m_pLowInput->toolTip());
    AddHandle(input, Params().middle[0], Qt::gray, m_ui->m_pMiddleInput->toolTip());
    AddHandle(input, HighestLevel, Qt::white, m_ui->m_pHighInput->toolTip());
    YodiCustomSlider* const output = m_ui->m_pOutputSlider;
    output->SetRange(LowestLevel, HighestLevel);
    AddHandle(output, LowestLevel, Qt::black, m_ui->m_pLowOutput->toolTip());
    AddHandle(output, HighestLevel, Qt::white, m_ui->m_pHighOutput->toolTip());
}

void YDLevelsWidget::Connect()
{
    const auto spinBoxChanged = QOverload<int>::of(&QSpinBox::valueChanged);
    m_links.Add(m_ui->m_pChannel, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &YDLevelsWidget::OnChannelChanged);
    m_links.Add(m_ui->m_pInputSlider, &YodiCustomSlider::ValueChanged, this, &YDLevelsWidget::OnInputChanged);
    m_links.Add(m_ui->m_pOutputSlider, &YodiCustomSlider::ValueChanged, this,
                &YDLevelsWidget::OnOutputChanged);
    m_links.Add(m_ui->m_pLowInput, spinBoxChanged, this, &YDLevelsWidget::OnLowInputChanged);
    m_links.Add(m_ui->m_pMiddleInput, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
                &YDLevelsWidget::OnMiddleInputChanged);
    m_links.Add(m_ui->m_pHighInput, spinBoxChanged, this, &YDLevelsWidget::OnHighInputChanged);
    m_links.Add(m_ui->m_pLowOutput, spinBoxChanged, this, &YDLevelsWidget::OnLowOutputChanged);
    m_links.Add(m_ui->m_pHighOutput, spinBoxChanged, this, &YDLevelsWidget::OnHighOutputChanged);
}

void YDLevelsWidget::SetChannel(int channel)
{
    m_ui->m_pHistogramm->SetChannel(IndexToHistogrammChannel(channel));
    m_params.channel = channel;
    ShowInput();
    ShowOutput();
    m_ui->m_pChannel->setCurrentIndex(channel);
}

/// Bounds come before values: a value is kept within the bounds that are there.
void YDLevelsWidget::ShowInput()
{
    const Params::Ends& input = m_params.input[Edited()];
    YodiCustomSlider* const slider = m_ui->m_pInputSlider;
    slider->SetControlMax(InputLow, LevelBeside(input[High], -Gap));
    slider->SetControlMin(InputHigh, LevelBeside(input[Low], Gap));
    slider->SetControlMin(InputMiddle, input[Low]);
    slider->SetControlMax(InputMiddle, input[High]);
    m_ui->m_pLowInput->setRange(LowestLevel, LevelBeside(input[High], -Gap));
    m_ui->m_pHighInput->setRange(LevelBeside(input[Low], Gap), HighestLevel);
    slider->ChangeValue(InputLow, input[Low]);
    slider->ChangeValue(InputMiddle, m_params.middle[Edited()]);
    slider->ChangeValue(InputHigh, input[High]);
    m_ui->m_pLowInput->setValue(input[Low]);
    m_ui->m_pMiddleInput->setValue(ShownGamma(m_params.gamma[Edited()]));
    m_ui->m_pHighInput->setValue(input[High]);
}

void YDLevelsWidget::ShowOutput()
{
    const Params::Ends& output = m_params.output[Edited()];
    m_ui->m_pOutputSlider->ChangeValue(OutputLow, output[Low]);
    m_ui->m_pOutputSlider->ChangeValue(OutputHigh, output[High]);
    m_ui->m_pLowOutput->setValue(output[Low]);
    m_ui->m_pHighOutput->setValue(output[High]);
}

void YDLevelsWidget::StoreMiddle(int low, int high, double gamma)
{
    m_params.middle[Edited()] = MiddleValue(low, high, gamma);
}

/// The channel that the controls stand for.
std::size_t YDLevelsWidget::Edited() const
{
    const bool isKnown = m_params.channel >= 0 && m_params.channel < int(m_params.input.size());
    return isKnown ? std::size_t(m_params.channel) : 0;
}
