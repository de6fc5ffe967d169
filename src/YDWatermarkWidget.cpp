#include "YDWatermarkWidget.h"

#include "PickColor.h"
#include "ShowSwatch.h"
#include "YDBlendingModes.h"
#include "gui/YDFontDialog.h"
#include "ui_WatermarkWidget.h"

#include <QPointer>

YDWatermarkWidget::YDWatermarkWidget(QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(false, parent, flags), m_ui(std::make_unique<Ui::WatermarkWidget>())
{
    m_ui->setupUi(GetUIContent());
    FillBlendingModes(*m_ui->m_pBlendCombo);
    SetValue(m_params);
    Connect();
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

YDWatermarkWidget::~YDWatermarkWidget() = default;

void YDWatermarkWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    m_ui->m_pAngleSpn->setValue(params.angle);
    m_ui->m_pLeftMargin->setValue(params.margins.left());
    m_ui->m_pTopMargin->setValue(params.margins.top());
    m_ui->m_pRightMargin->setValue(params.margins.right());
    m_ui->m_pBottomMargin->setValue(params.margins.bottom());
    m_ui->m_pText->setText(params.text);
    ShowSwatch(m_ui->m_pColor, params.color);
    m_ui->m_pBlendCombo->setCurrentIndex(BlendingModeToIndex(unsigned(params.blendingMode)));
    m_ui->m_pOpacitySpn->setValue(params.opacity);
    m_ui->m_pHrzTiles->setValue(params.hrzTiles);
    m_ui->m_pVrtTiles->setValue(params.vrtTiles);
}

operations::Task YDWatermarkWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDWatermarkWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

/// The widget, and the dialog with it, may be gone when the dialog is closed.
void YDWatermarkWidget::OnSelectFont()
{
    const QPointer<YDFontDialog> dialog = new YDFontDialog(m_params.font, this, Qt::Tool);
    dialog->setWindowTitle(tr("Font parameters"));
    const bool isAccepted = dialog->Exec() == QDialog::Accepted;
    if (!dialog)
        return;
    const QFont chosen = dialog->GetFont();
    delete dialog;
    if (!isAccepted)
        return;
    m_params.font = chosen;
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnSelectColor()
{
    const auto take = [this](const QColor& color) {
        m_params.color = color;
        ShowSwatch(m_ui->m_pColor, color);
        AnnounceChange(&YDWatermarkWidget::ValueChanged);
    };
    PickColor(this, tr("Select text color"), m_params.color, take, {}, Qt::Tool);
}

void YDWatermarkWidget::OnAnglechanged(int angle)
{
    m_params.angle = angle;
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnTextChanged(const QString& text)
{
    m_params.text = text;
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnLeftMarginChanged(int margin)
{
    m_params.margins.setLeft(margin);
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnRightMarginChanged(int margin)
{
    m_params.margins.setRight(margin);
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnTopMarginChanged(int margin)
{
    m_params.margins.setTop(margin);
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnBottomMarginChanged(int margin)
{
    m_params.margins.setBottom(margin);
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnOpacityChanged(int opacity)
{
    m_params.opacity = opacity;
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnBlendingModeChanged(int index)
{
    m_params.blendingMode = int(BlendingModeAt(index));
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnVrtTilesChanged(int count)
{
    m_params.vrtTiles = count;
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::OnHrzTilesChanged(int count)
{
    m_params.hrzTiles = count;
    AnnounceChange(&YDWatermarkWidget::ValueChanged);
}

void YDWatermarkWidget::Connect()
{
    const auto valueChanged = QOverload<int>::of(&QSpinBox::valueChanged);
    m_links.Add(m_ui->m_pSelectFont, &QPushButton::clicked, this, &YDWatermarkWidget::OnSelectFont);
    m_links.Add(m_ui->m_pAngleSpn, valueChanged, this, &YDWatermarkWidget::OnAnglechanged);
    m_links.Add(m_ui->m_pText, &QLineEdit::textChanged, this, &YDWatermarkWidget::OnTextChanged);
    m_links.Add(m_ui->m_pLeftMargin, valueChanged, this, &YDWatermarkWidget::OnLeftMarginChanged);
    m_links.Add(m_ui->m_pRightMargin, valueChanged, this, &YDWatermarkWidget::OnRightMarginChanged);
    m_links.Add(m_ui->m_pTopMargin, valueChanged, this, &YDWatermarkWidget::OnTopMarginChanged);
    m_links.Add(m_ui->m_pBottomMargin, valueChanged, this, &YDWatermarkWidget::OnBottomMarginChanged);
    m_links.Add(m_ui->m_pOpacitySpn, valueChanged, this, &YDWatermarkWidget::OnOpacityChanged);
    m_links.Add(m_ui->m_pBlendCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &YDWatermarkWidget::OnBlendingModeChanged);
    m_links.Add(m_ui->m_pColor, &QPushButton::clicked, this, &YDWatermarkWidget::OnSelectColor);
    m_links.Add(m_ui->m_pVrtTiles, valueChanged, this, &YDWatermarkWidget::OnVrtTilesChanged);
    m_links.Add(m_ui->m_pHrzTiles, valueChanged, this, &YDWatermarkWidget::OnHrzTilesChanged);
}

int YDWatermarkWidget::BlendingModeToIndex(unsigned mode) const { return BlendingIndexOf(mode); }
