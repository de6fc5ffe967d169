#include "KVFillColorWidget.h"

#include "IsSameColor.h"
#include "PickColor.h"
#include "ShowSwatch.h"
#include "ui_FillColor.h"

KVFillColorWidget::KVFillColorWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::FillColor>())
{
    m_ui->setupUi(GetUIContent());
    SetValue(m_params);
    Connect();
}

KVFillColorWidget::~KVFillColorWidget() = default;

void KVFillColorWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    SetColor(params.color);
    m_params.opacity = params.opacity;
    m_ui->m_pOpacity->setValue(params.opacity);
}

operations::Task KVFillColorWidget::MakeTask() const { return operations::MakeTask(m_params); }

void KVFillColorWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&KVFillColorWidget::ValueChanged);
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
    m_links.Add(m_ui->m_pColor, &QPushButton::clicked, this, &KVFillColorWidget::OnColor);
    m_links.Add(m_ui->m_pOpacity, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &KVFillColorWidget::OnOpacityChanged);
}

void KVFillColorWidget::SetColor(const QColor& color)
{
    m_params.color = color;
    ShowSwatch(m_ui->m_pColor, color);
}
