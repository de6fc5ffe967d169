#include "YDColorizeWidget.h"

#include "IsSameColor.h"
#include "PickColor.h"
#include "ShowSwatch.h"
#include "ui_ColorizeWidget.h"

YDColorizeWidget::YDColorizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::ColorizeWidget>())
{
    m_ui->setupUi(GetUIContent());
    SetValue(m_params);
    Connect();
}

YDColorizeWidget::~YDColorizeWidget() = default;

void YDColorizeWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    SetColor(params.color);
    m_params.amount = params.amount;
    m_ui->m_pAmount->setValue(params.amount);
}

operations::Task YDColorizeWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDColorizeWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDColorizeWidget::ValueChanged);
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
    m_links.Add(m_ui->m_pColor, &QPushButton::clicked, this, &YDColorizeWidget::OnColor);
    m_links.Add(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YDColorizeWidget::OnAmountChanged);
}

void YDColorizeWidget::SetColor(const QColor& color)
{
    m_params.color = color;
    ShowSwatch(m_ui->m_pColor, color);
}
