#include "catalog/PanelDialog.h"

#include <QLabel>
#include <QVBoxLayout>

PanelDialog::PanelDialog(std::unique_ptr<YDTaskWidget> panel, QWidget* parent)
    : YDTaskWidget(true, parent, Qt::WindowFlags()), m_panel(panel.release()),
      m_remark(new QLabel(GetUIContent()))
{
    m_remark->setObjectName(QStringLiteral("Remark"));
    m_remark->setTextFormat(Qt::PlainText);
    m_remark->setWordWrap(true);
    m_remark->hide();
    QWidget* const content = GetUIContent();
    content->setWindowTitle(m_panel->windowTitle());
    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_panel, 1);
    layout->addWidget(m_remark);
    connect(m_panel, &KVAdjustmentWidget::UserParamsChanged, this, &KVAdjustmentWidget::UserParamsChanged);
    connect(m_panel, &YDAdjustmentWidget::DataChanged, this, &YDAdjustmentWidget::DataChanged);
    connect(this, &YDAdjustmentWidget::ImageReady, this, &PanelDialog::ShowRemark);
}

YDTaskWidget& PanelDialog::PanelOf(YDTaskWidget& widget)
{
    auto* const dialog = qobject_cast<PanelDialog*>(&widget);
    return dialog ? *dialog->m_panel : widget;
}

const YDTaskWidget& PanelDialog::PanelOf(const YDTaskWidget& widget)
{
    const auto* const dialog = qobject_cast<const PanelDialog*>(&widget);
    return dialog ? *dialog->m_panel : widget;
}

void PanelDialog::ShowRemark()
{
    QString remark = Problem().isEmpty() ? WhatIsMissing() : Problem();
    m_remark->setVisible(!remark.isEmpty());
    remark.replace(QLatin1Char('/'), QStringLiteral("/\u200b")); // a long path may be broken there
    m_remark->setText(remark);
}
