#include "YDBrightnessContrastWidget.h"

#include "image/YDIterativeBrightnessContrastTransformation.h"
#include "ui_BrightnessContrastParamWidget.h"

bool YDBrightnessContrastWidget::Params::Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }

bool YDBrightnessContrastWidget::Params::Write(QDataStream& stream) const
{
    return YDRecord::Write(stream, *this);
}

QDataStream& operator<<(QDataStream& stream, const YDBrightnessContrastWidget::Params& params)
{
    return YDRecord::Insert(stream, params, YDRecordNames::BrightnessContrast, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, YDBrightnessContrastWidget::Params& params)
{
    return YDRecord::Extract(stream, params, YDRecordNames::BrightnessContrast, __LINE__);
}

YDBrightnessContrastWidget::YDBrightnessContrastWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::BrightnessContrastParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    m_ui->m_pBrightnessSpin->setValue(0);
    m_ui->m_pContrastSpin->setValue(0);
    Connect();
}

YDBrightnessContrastWidget::~YDBrightnessContrastWidget() = default;

void YDBrightnessContrastWidget::SetValue(const Params& params)
{
    Disconnect();
    m_params = params;
    m_ui->m_pBrightnessSpin->setValue(params.brightness);
    m_ui->m_pContrastSpin->setValue(params.contrast);
    Connect();
}

void YDBrightnessContrastWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection,
                                              const QPoint& offset, const QRect& boundingRect)
{
    Process(MakeData(MakeConversionJob(image, selection, offset, boundingRect)));
}

void YDBrightnessContrastWidget::Reset()
{
    m_params = Params();
    m_ui->m_pBrightnessSpin->setValue(m_params.brightness);
    m_ui->m_pContrastSpin->setValue(m_params.contrast);
}

void YDBrightnessContrastWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, MakeData(MakePreviewJob()));
}

void YDBrightnessContrastWidget::OnBrightnessChanged(int value)
{
    m_params.brightness = value;
    AnnounceChange(&YDBrightnessContrastWidget::ValueChanged);
}

void YDBrightnessContrastWidget::OnContrastChanged(int value)
{
    m_params.contrast = value;
    AnnounceChange(&YDBrightnessContrastWidget::ValueChanged);
}

void YDBrightnessContrastWidget::Connect()
{
    connect(m_ui->m_pBrightnessSlider, &QSlider::valueChanged, this,
            &YDBrightnessContrastWidget::OnBrightnessChanged);
    connect(m_ui->m_pContrastSlider, &QSlider::valueChanged, this,
            &YDBrightnessContrastWidget::OnContrastChanged);
}

void YDBrightnessContrastWidget::Disconnect()
{
    disconnect(m_ui->m_pBrightnessSlider, &QSlider::valueChanged, this,
               &YDBrightnessContrastWidget::OnBrightnessChanged);
    disconnect(m_ui->m_pContrastSlider, &QSlider::valueChanged, this,
               &YDBrightnessContrastWidget::OnContrastChanged);
}

/// The values of the spin boxes, which may lie beyond those of the record.
YDBrightnessContrastWidget::BCData YDBrightnessContrastWidget::MakeData(const YDAdjustmentJob& job) const
{
    return {job, m_ui->m_pBrightnessSpin->value(), m_ui->m_pContrastSpin->value()};
}

RGBA32iImage YDBrightnessContrastWidget::Process(const BCData& data)
{
    return RunTransformation(data,
                             YDIterativeBrightnessContrastTransformation(data.brightness, data.contrast));
}
