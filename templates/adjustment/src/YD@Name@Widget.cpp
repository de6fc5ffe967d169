#include "YD@Name@Widget.h"

#include "ui_@Name@ParamWidget.h"

YD@Name@Widget::YD@Name@Widget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::@Name@ParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    SetValue(m_params);
    Connect();
}

YD@Name@Widget::~YD@Name@Widget() = default;

void YD@Name@Widget::SetValue(const Params& params)
{
    const ControlLinks::Cut quiet(m_links);
    m_params = params;
    m_ui->m_pAmountSpin->setValue(params.amount);
}

operations::Task YD@Name@Widget::MakeTask() const { return operations::MakeTask(m_params); }

void YD@Name@Widget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YD@Name@Widget::ValueChanged);
}

void YD@Name@Widget::OnAmountChanged(int amount)
{
    m_params.amount = amount;
    AnnounceChange(&YD@Name@Widget::ValueChanged);
}

void YD@Name@Widget::Connect()
{
    m_links.Add(m_ui->m_pAmountSpin, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YD@Name@Widget::OnAmountChanged);
}
