#include "YDTemperatureWidget.h"

#include "YDIterativeAdjustmentTransformation.h"
#include "image/YDTemperatureCorrection.h"
#include "ui_TemperatureWidget.h"

bool YDTemperatureWidget::Params::Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }

bool YDTemperatureWidget::Params::Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

QDataStream& operator<<(QDataStream& stream, const YDTemperatureWidget::Params& params)
{
    return YDRecord::Insert(stream, params, YDRecordNames::Temperature, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, YDTemperatureWidget::Params& params)
{
    return YDRecord::Extract(stream, params, YDRecordNames::Temperature, __LINE__);
}

YDTemperatureWidget::YDTemperatureWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::TemperatureWidget>())
{
    m_ui->setupUi(GetUIContent());
    m_ui->gridLayout->setAlignment(Qt::AlignTop); // a taller panel does not pull the rows apart
    ShowDefaults();
    Connect();
}

YDTemperatureWidget::~YDTemperatureWidget() = default;

void YDTemperatureWidget::SetValue(const Params& params)
{
    Disconnect();
    m_params = params;
    m_ui->m_pTemperature->setValue(params.temperature);
    m_ui->m_pTint->setValue(params.tint);
    Connect();
}

void YDTemperatureWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection,
                                       const QPoint& offset, const QRect& boundingRect)
{
    Process({MakeConversionJob(image, selection, offset, boundingRect), m_params});
}

void YDTemperatureWidget::Reset()
{
    m_params = Params();
    ShowDefaults();
}

void YDTemperatureWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, TData{MakePreviewJob(), m_params});
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
    connect(m_ui->m_pTemperature, changed, this, &YDTemperatureWidget::OnTemperatureChanged);
    connect(m_ui->m_pTint, changed, this, &YDTemperatureWidget::OnTintChanged);
    connect(m_ui->m_pStrength, changed, this, &YDTemperatureWidget::OnStrengthChanged);
}

void YDTemperatureWidget::Disconnect()
{
    const auto changed = QOverload<int>::of(&QSpinBox::valueChanged);
    disconnect(m_ui->m_pTemperature, changed, this, &YDTemperatureWidget::OnTemperatureChanged);
    disconnect(m_ui->m_pTint, changed, this, &YDTemperatureWidget::OnTintChanged);
    disconnect(m_ui->m_pStrength, changed, this, &YDTemperatureWidget::OnStrengthChanged);
}

void YDTemperatureWidget::ShowDefaults()
{
    constexpr Params Defaults;
    m_ui->m_pTemperature->setValue(Defaults.temperature);
    m_ui->m_pTint->setValue(Defaults.tint);
    m_ui->m_pStrength->setValue(Defaults.strength);
}

RGBA32iImage YDTemperatureWidget::Process(const TData& data)
{
    YDTemperatureCorrection correction;
    correction.SetData(data.params.temperature, data.params.strength, data.params.tint);
    return RunTransformation(data, YDIterativeAdjustmentTransformation<YDTemperatureCorrection>(correction));
}
