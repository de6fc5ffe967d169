#include "YDColorizeWidget.h"

#include "IsSameColor.h"
#include "PickColor.h"
#include "ShowSwatch.h"
#include "image/ColorToRgba.h"
#include "image/YDIterativeColorizeTransformation.h"
#include "ui_ColorizeWidget.h"

bool YDColorizeWidget::Params::Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }

bool YDColorizeWidget::Params::Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

QDataStream& operator<<(QDataStream& stream, const YDColorizeWidget::Params& params)
{
    return YDRecord::Insert(stream, params, YDRecordNames::Colorize, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, YDColorizeWidget::Params& params)
{
    return YDRecord::Extract(stream, params, YDRecordNames::Colorize, __LINE__);
}

YDColorizeWidget::YDColorizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::ColorizeWidget>())
{
    m_ui->setupUi(GetUIContent());
    SetValue(m_params);
}

YDColorizeWidget::~YDColorizeWidget() = default;

void YDColorizeWidget::SetValue(const Params& params)
{
    Disconnect();
    SetColor(params.color);
    m_params.amount = params.amount;
    m_ui->m_pAmount->setValue(params.amount);
    Connect();
}

void YDColorizeWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                                    const QRect& boundingRect)
{
    Process({MakeConversionJob(image, selection, offset, boundingRect), m_params});
}

void YDColorizeWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDColorizeWidget::ValueChanged);
}

void YDColorizeWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, ColorizeData{MakePreviewJob(), m_params});
}

void YDColorizeWidget::OnColor()
{
    const auto take = [this](const QColor& color) { OnCurrentColorChanged(color); };
    PickColor(this, tr("Select a color"), m_params.color, take, take);
}

void YDColorizeWidget::OnCurrentColorChanged(const QColor& color)
{
    if (IsSameColor(color, m_params.color))
        return;
    SetColor(color);
    AnnounceChange(&YDColorizeWidget::ValueChanged);
}

void YDColorizeWidget::OnAmountChanged(int amount)
{
    m_params.amount = amount;
    AnnounceChange(&YDColorizeWidget::ValueChanged);
}

void YDColorizeWidget::Connect()
{
    connect(m_ui->m_pColor, &QPushButton::clicked, this, &YDColorizeWidget::OnColor);
    connect(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &YDColorizeWidget::OnAmountChanged);
}

void YDColorizeWidget::Disconnect()
{
    disconnect(m_ui->m_pColor, &QPushButton::clicked, this, &YDColorizeWidget::OnColor);
    disconnect(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
               &YDColorizeWidget::OnAmountChanged);
}

void YDColorizeWidget::SetColor(const QColor& color)
{
    m_params.color = color;
    ShowSwatch(m_ui->m_pColor, color);
}

RGBA32iImage YDColorizeWidget::Process(const ColorizeData& data)
{
    return RunTransformation(
        data, YDIterativeColorizeTransformation(ColorToRgba(data.params.color), data.params.amount));
}
