#include "YDTintWidget.h"

#include "IsSameColor.h"
#include "PickColor.h"
#include "ShowSwatch.h"
#include "ui_TintWidget.h"

#include <QScopedValueRollback>

YDTintWidget::YDTintWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::TintWidget>())
{
    m_ui->setupUi(GetUIContent());
    FillTintTypes();
    ShowParams(m_params);
    Connect();
}

/// The controls go after the panel's own part, and what one of them does on its way must not reach it.
YDTintWidget::~YDTintWidget() { Disconnect(); }

void YDTintWidget::SetValue(const Params& params)
{
    const QScopedValueRollback<const Params*> given(m_given, &params);
    m_params = params;
    ShowParams(params);
}

operations::Task YDTintWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDTintWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDTintWidget::ValueChanged);
}

void YDTintWidget::OnBlackTone()
{
    const auto take = [this](const QColor& color) { OnCurrentBlackToneChanged(color); };
    PickColor(this, tr("Select a black tone"), m_params.blackTone, take, take);
}

void YDTintWidget::OnWhiteTone()
{
    const auto take = [this](const QColor& color) { OnCurrentWhiteToneChanged(color); };
    PickColor(this, tr("Select a white tone"), m_params.whiteTone, take, take);
}

void YDTintWidget::OnCurrentBlackToneChanged(const QColor& color)
{
    if (IsSameColor(color, m_params.blackTone))
        return;
    SetBlackTone(color);
    AnnounceChange(&YDTintWidget::ValueChanged);
}

void YDTintWidget::OnCurrentWhiteToneChanged(const QColor& color)
{
    if (IsSameColor(color, m_params.whiteTone))
        return;
    SetWhiteTone(color);
    AnnounceChange(&YDTintWidget::ValueChanged);
}

void YDTintWidget::OnAmountChanged(int amount)
{
    m_params.amount = m_given ? m_given->amount : amount;
    AnnounceChange(&YDTintWidget::ValueChanged);
}

void YDTintWidget::OnTypeChanged(int index)
{
    if (index < 0)
        return;
    m_params.type = index;
    AnnounceChange(&YDTintWidget::ValueChanged);
}

void YDTintWidget::Connect()
{
    m_links.Add(m_ui->m_pBlackTone, &QPushButton::clicked, this, &YDTintWidget::OnBlackTone);
    m_links.Add(m_ui->m_pWhiteTone, &QPushButton::clicked, this, &YDTintWidget::OnWhiteTone);
    m_links.Add(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YDTintWidget::OnAmountChanged);
    m_links.Add(m_ui->m_pType, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &YDTintWidget::OnTypeChanged);
}

void YDTintWidget::FillTintTypes()
{
    m_ui->m_pType->clear();
    m_ui->m_pType->addItem(tr("Average"), Average);
    m_ui->m_pType->addItem(tr("NTSC"), Ntsc);
    m_ui->m_pType->addItem(tr("LUMA"), Luma);
    m_ui->m_pType->addItem(tr("RGB"), Rgb);
}

/// Moves the controls; a type that the list does not have leaves it without a current item.
void YDTintWidget::ShowParams(const Params& params)
{
    SetBlackTone(params.blackTone);
    SetWhiteTone(params.whiteTone);
    m_ui->m_pType->setCurrentIndex(IndexByType(params.type));
    m_ui->m_pAmount->setValue(params.amount);
}

void YDTintWidget::SetBlackTone(const QColor& color)
{
    m_params.blackTone = color;
    ShowSwatch(m_ui->m_pBlackTone, color);
}

void YDTintWidget::SetWhiteTone(const QColor& color)
{
    m_params.whiteTone = color;
    ShowSwatch(m_ui->m_pWhiteTone, color);
}
