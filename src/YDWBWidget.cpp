#include "YDWBWidget.h"

#include "MixThroughSelection.h"
#include "ScopedDisconnect.h"
#include "StretchFrom.h"
#include "image/ChannelHistograms.h"
#include "image/KVIterativeWBTransformation.h"
#include "image/YDBlend.h"
#include "image/YDIterativeLevelsTransformation.h"
#include "image/YDIterativePhotoFilterTransformation.h"
#include "image/YDTemperatureCorrection.h"
#include "ui_WBWidget.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>

namespace {

using Params = YDWBWidget::Params;

constexpr int FullStrength = 100;

/// The strength of the chosen function; null for a function that there is not.
template <class Record>
auto StrengthFieldOf(Record& params) -> decltype(&params.autoStrength)
{
    switch (params.mode) {
    case KVWBTransformation::Auto:
        return &params.autoStrength;
    case KVWBTransformation::Overexposure:
        return &params.overexposureStrength;
    case KVWBTransformation::Underexposure:
        return &params.underexposureStrength;
    default:
        return nullptr;
    }
}

int StrengthOf(const Params& params)
{
    const int* const strength = StrengthFieldOf(params);
    return strength ? *strength : 0;
}

/// 9000 K for -100, 6500 K for 0, 2000 K for 100: the warm half of the scale reaches further. In 64 bits, for
/// a stored temperature may be any number.
int KelvinOf(int temperature)
{
    constexpr qint64 Neutral = 6500;
    constexpr qint64 ColdStep = 25;
    constexpr qint64 WarmStep = 45;
    const qint64 kelvin = Neutral - (temperature <= 0 ? ColdStep : WarmStep) * temperature;
    return int(std::clamp<qint64>(kelvin, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// The lowest and the highest level that occur; 0 for both where none does.
LevelRange OccupiedRange(const ChannelHistograms::Table& counts)
{
    const auto isCounted = [](qint64 count) { return count != 0; };
    const auto first = std::find_if(counts.begin(), counts.end(), isCounted);
    if (first == counts.end())
        return {0, 0};
    const auto last = std::find_if(counts.rbegin(), counts.rend(), isCounted);
    return {int(first - counts.begin()), int(counts.rend() - last) - 1};
}

/// The range that a channel is stretched from.
LevelRange InputRange(const ChannelHistograms::Table& counts, qint64 pixels)
{
    const auto countOf = [&counts](int level) { return counts[std::size_t(level)]; };
    return AutomaticInputRange(OccupiedRange(counts), countOf, double(pixels));
}

/// Stretches each channel to what was counted of it.
YDIterativeLevelsTransformation AutomaticLevels(const ChannelHistograms& counts)
{
    return StretchFrom<YDIterativeLevelsTransformation>(InputRange(counts.red, counts.pixels),
                                                        InputRange(counts.green, counts.pixels),
                                                        InputRange(counts.blue, counts.pixels));
}

/// The counts of a picture after each channel was mapped as `ramp` says.
ChannelHistograms Mapped(const ChannelHistograms& counts, const ChannelTablesTransformation::Ramp& ramp)
{
    ChannelHistograms mapped;
    mapped.pixels = counts.pixels;
    for (std::size_t level = 0; level < ramp.size(); ++level) {
        mapped.red[ramp[level].r] += counts.red[level];
        mapped.green[ramp[level].g] += counts.green[level];
        mapped.blue[ramp[level].b] += counts.blue[level];
    }
    return mapped;
}

std::optional<ChannelHistograms> CountsOf(const YDAdjustmentJob& job, const std::function<void()>& onRow = {})
{
    return ChannelHistograms::Of(job.image, QRect(0, 0, job.image.Width(), job.image.Height()), job.abort,
                                 onRow);
}

/// Of YDBlend::YDSourceOver, for the strength of the advanced correction.
int OpacityOf(const Params& params)
{
    return std::clamp(params.autoStrength, 0, FullStrength) * YDBlend::YDSourceOver<0>::Full / FullStrength;
}

} // namespace

bool YDWBWidget::Params::Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }

bool YDWBWidget::Params::Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

QDataStream& operator<<(QDataStream& stream, const YDWBWidget::Params& params)
{
    return YDRecord::Insert(stream, params, YDRecordNames::WhiteBalance, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, YDWBWidget::Params& params)
{
    return YDRecord::Extract(stream, params, YDRecordNames::WhiteBalance, __LINE__);
}

YDWBWidget::YDWBWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::WBWidget>())
{
    m_ui->setupUi(GetUIContent());
    SetValue(Params());
}

YDWBWidget::~YDWBWidget() = default;

void YDWBWidget::SetValue(const Params& params)
{
    Disconnect();
    m_params = params;
    m_ui->m_pTemperature->setValue(params.temperature);
    m_ui->m_pTempStrength->setValue(params.temperatureStrength);
    if (QRadioButton* const button = ButtonOf(params.mode)) {
        button->setChecked(true);
        m_ui->m_pWBStrength->setValue(StrengthOf(params));
    }
    m_ui->m_pEnchanced->setChecked(params.enhanced);
    m_ui->m_pTemperatureContent->setChecked(params.useTemperature);
    Connect();
}

void YDWBWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                              const QRect& boundingRect)
{
    Process({MakeConversionJob(image, selection, offset, boundingRect), m_params});
}

void YDWBWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDWBWidget::ValueChanged);
}

void YDWBWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, WBData{MakePreviewJob(), m_params});
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
    if (int* const strength = StrengthFieldOf(m_params))
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
    connect(m_ui->m_pWBStrength, &QSlider::valueChanged, this, &YDWBWidget::OnWBStrengthChanged);
    connect(m_ui->m_pAuto, &QRadioButton::toggled, this, &YDWBWidget::OnAuto);
    connect(m_ui->m_pEnchanced, &QCheckBox::toggled, this, &YDWBWidget::OnEnchanced);
    connect(m_ui->m_pOverexposure, &QRadioButton::toggled, this, &YDWBWidget::OnOverexposure);
    connect(m_ui->m_pUnderexposure, &QRadioButton::toggled, this, &YDWBWidget::OnUnderexposure);
    connect(m_ui->m_pTemperatureContent, &QGroupBox::toggled, this, &YDWBWidget::OnUseTemperature);
    connect(m_ui->m_pTemperature, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &YDWBWidget::OnTemperature);
    connect(m_ui->m_pTempStrength, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &YDWBWidget::OnTemperatureStrength);
}

void YDWBWidget::Disconnect()
{
    disconnect(m_ui->m_pWBStrength, &QSlider::valueChanged, this, &YDWBWidget::OnWBStrengthChanged);
    disconnect(m_ui->m_pAuto, &QRadioButton::toggled, this, &YDWBWidget::OnAuto);
    disconnect(m_ui->m_pEnchanced, &QCheckBox::toggled, this, &YDWBWidget::OnEnchanced);
    disconnect(m_ui->m_pOverexposure, &QRadioButton::toggled, this, &YDWBWidget::OnOverexposure);
    disconnect(m_ui->m_pUnderexposure, &QRadioButton::toggled, this, &YDWBWidget::OnUnderexposure);
    disconnect(m_ui->m_pTemperatureContent, &QGroupBox::toggled, this, &YDWBWidget::OnUseTemperature);
    disconnect(m_ui->m_pTemperature, QOverload<int>::of(&QSpinBox::valueChanged), this,
               &YDWBWidget::OnTemperature);
    disconnect(m_ui->m_pTempStrength, QOverload<int>::of(&QSpinBox::valueChanged), this,
               &YDWBWidget::OnTemperatureStrength);
}

void YDWBWidget::ChooseFunction(int mode)
{
    m_params.mode = mode;
    {
        const ScopedDisconnect quiet(m_ui->m_pWBStrength, &QSlider::valueChanged, this,
                                     &YDWBWidget::OnWBStrengthChanged);
        m_ui->m_pWBStrength->setValue(StrengthOf(m_params));
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

RGBA32iImage YDWBWidget::Process(const WBData& data)
{
    const Params& params = data.params;
    if (params.mode == KVWBTransformation::Auto && params.enhanced) {
        if (!Enhance(data))
            return data.image;
    } else {
        RunTransformation(data, KVIterativeWBTransformation(data.image,
                                                            KVWBTransformation::BalanceFunction(params.mode),
                                                            StrengthOf(params)));
    }
    if (params.useTemperature)
        RunTransformation(data,
                          YDIterativePhotoFilterTransformation(
                              YDTemperatureCorrection::GetTemperatureColor(KelvinOf(params.temperature)),
                              params.temperatureStrength));
    return data.image;
}

/// The balance at full strength and the automatic levels, laid over the untouched picture as far as the
/// strength says. False when it was aborted or there was no memory.
bool YDWBWidget::Enhance(const WBData& data)
{
    const KVIterativeWBTransformation balance(data.image, KVWBTransformation::Auto, FullStrength);
    return data.selectionBoundingRect.isEmpty() ? EnhanceWhole(data, balance)
                                                : EnhanceSelected(data, balance);
}

/// Every step maps each channel by itself, so they are done to one pixel of each level, and to the picture at
/// once. The progress is that of two passes all the same: the pixels are counted, and then mapped.
bool YDWBWidget::EnhanceWhole(const WBData& data, const KVIterativeWBTransformation& balance)
{
    YDAdjustmentProcessing counting;
    ForwardProgress(counting, data);
    counting.SetRange(static_cast<unsigned>(data.image.Height()));
    const std::optional<ChannelHistograms> counts =
        CountsOf(data, [&counting] { counting.IncrementProgress(); });
    if (!counts)
        return false;
    auto enhanced = ChannelTablesTransformation::IdentityRamp();
    const auto levels = int(enhanced.size());
    balance.ProcessRow(enhanced.data(), levels);
    AutomaticLevels(Mapped(*counts, enhanced)).ProcessRow(enhanced.data(), levels);
    auto mixed = ChannelTablesTransformation::IdentityRamp();
    YDBlend::YDSourceOver<0>{OpacityOf(data.params)}.ProcessRow(enhanced.data(), mixed.data(), levels);
    RunTransformation(data, ChannelTablesTransformation(mixed));
    return true;
}

/// Between the steps pixels are blended through the mask, so each takes the picture as the one before it left
/// it.
bool YDWBWidget::EnhanceSelected(const WBData& data, const KVIterativeWBTransformation& balance)
{
    YDAdjustmentJob enhanced = static_cast<const YDAdjustmentJob&>(data); // without the parameters
    if (!CopySource(enhanced))
        return false;
    RunTransformation(enhanced, balance);
    const std::optional<ChannelHistograms> counts = CountsOf(enhanced);
    if (!counts)
        return false;
    RunTransformation(enhanced, AutomaticLevels(*counts));
    MixThroughSelection(data, enhanced.image, OpacityOf(data.params));
    return true;
}
