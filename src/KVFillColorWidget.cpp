#include "KVFillColorWidget.h"

#include "ColorAtOpacity.h"
#include "IsSameColor.h"
#include "PickColor.h"
#include "ShowSwatch.h"
#include "YDIterativeAdjustmentTransformation.h"
#include "image/KVFillTransformation.h"
#include "ui_FillColor.h"

bool KVFillColorWidget::Params::Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }

bool KVFillColorWidget::Params::Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

QDataStream& operator<<(QDataStream& stream, const KVFillColorWidget::Params& params)
{
    return YDRecord::Insert(stream, params, YDRecordNames::FillColor, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, KVFillColorWidget::Params& params)
{
    return YDRecord::Extract(stream, params, YDRecordNames::FillColor, __LINE__);
}

KVFillColorWidget::KVFillColorWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::FillColor>())
{
    m_ui->setupUi(GetUIContent());
    SetValue(m_params);
}

KVFillColorWidget::~KVFillColorWidget() = default;

void KVFillColorWidget::SetValue(const Params& params)
{
    Disconnect();
    SetColor(params.color);
    m_params.opacity = params.opacity;
    m_ui->m_pOpacity->setValue(params.opacity);
    Connect();
}

void KVFillColorWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&KVFillColorWidget::ValueChanged);
}

void KVFillColorWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, ColorizeData{MakePreviewJob(), m_params.color, m_params.opacity});
}

void KVFillColorWidget::OnColor()
{
    const auto take = [this](const QColor& color) { OnCurrentColorChanged(color); };
    PickColor(this, tr("Select a color"), m_params.color, take, take);
}

void KVFillColorWidget::OnCurrentColorChanged(const QColor& color)
{
    if (IsSameColor(color, m_params.color))
        return;
    SetColor(color);
    AnnounceChange(&KVFillColorWidget::ValueChanged);
}

void KVFillColorWidget::OnOpacityChanged(int opacity)
{
    m_params.opacity = opacity;
    AnnounceChange(&KVFillColorWidget::ValueChanged);
}

void KVFillColorWidget::Connect()
{
    connect(m_ui->m_pColor, &QPushButton::clicked, this, &KVFillColorWidget::OnColor);
    connect(m_ui->m_pOpacity, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &KVFillColorWidget::OnOpacityChanged);
}

void KVFillColorWidget::Disconnect()
{
    disconnect(m_ui->m_pColor, &QPushButton::clicked, this, &KVFillColorWidget::OnColor);
    disconnect(m_ui->m_pOpacity, QOverload<int>::of(&QSpinBox::valueChanged), this,
               &KVFillColorWidget::OnOpacityChanged);
}

void KVFillColorWidget::SetColor(const QColor& color)
{
    m_params.color = color;
    ShowSwatch(m_ui->m_pColor, color);
}

RGBA32iImage KVFillColorWidget::Process(const ColorizeData& data)
{
    KVFillTransformation fill;
    fill.SetData(ColorAtOpacity(data.color, data.opacity));
    return RunTransformation(data, YDIterativeAdjustmentTransformation<KVFillTransformation>(fill));
}
