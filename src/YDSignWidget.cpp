#include "YDSignWidget.h"

#include "YDBlendingModes.h"
#include "core/KVApplication.h"
#include "core/KVImageFileManager.h"
#include "guicore/KVFileDialog.h"
#include "ui_SignWidget.h"

#include <QFileInfo>
#include <QStyle>

#include <array>

namespace {

// The order is that of the combo boxes, and of the search for the flag that a value shows.
constexpr std::array<Qt::AlignmentFlag, 3> HorizontalFlags{Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
constexpr std::array<Qt::AlignmentFlag, 3> VerticalFlags{Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};

using Flags = std::array<Qt::AlignmentFlag, 3>;

Qt::AlignmentFlag FlagAt(const Flags& flags, int index)
{
    const bool isThere = index >= 0 && std::size_t(index) < flags.size();
    return isThere ? flags[std::size_t(index)] : flags.front();
}

int IndexOf(const Flags& flags, Qt::Alignment alignment)
{
    for (std::size_t index = 0; index < flags.size(); ++index)
        if (alignment & flags[index])
            return int(index);
    return 0;
}

} // namespace

YDSignWidget::YDSignWidget(QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(false, parent, flags), m_ui(std::make_unique<Ui::SignWidget>())
{
    m_ui->setupUi(GetUIContent());
    m_ui->m_pSelectAnImage->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
    FillBlendingModes(*m_ui->m_pBlendCombo);
    SetValue(m_params);
    Connect();
}

YDSignWidget::~YDSignWidget() = default;

void YDSignWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    SetHorizontalAlignment(params.alignment);
    SetVerticalAlignment(params.alignment);
    m_ui->m_pImageFileName->setText(params.fileName);
    m_ui->m_pLeftMargin->setValue(params.margins.left());
    m_ui->m_pTopMargin->setValue(params.margins.top());
    m_ui->m_pRightMargin->setValue(params.margins.right());
    m_ui->m_pBottomMargin->setValue(params.margins.bottom());
    m_ui->m_pBlendCombo->setCurrentIndex(BlendingModeToIndex(KVCompositionMode(params.blendingMode)));
    m_ui->m_pOpacitySpn->setValue(params.opacity);
}

operations::Task YDSignWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDSignWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDSignWidget::ValueChanged);
}

QStringList YDSignWidget::GetOpenFileNames()
{
    const QString filter = KVImageFileManager::GetFilterForRead();
    if (filter.isEmpty())
        return {};
    const QString before = m_ui->m_pImageFileName->text();
    const QString directory =
        before.isEmpty() ? KVApplication::GetPathOpen() : QFileInfo(before).absolutePath();
    const QString name = KVFileDialog::GetOpenFileName(this, tr("Select an image"), directory, filter);
    return name.isEmpty() ? QStringList() : QStringList(name);
}

/// The widget may be gone when the dialog is closed; there is no name then.
void YDSignWidget::OnSelectFileName()
{
    const QStringList names = GetOpenFileNames();
    if (names.isEmpty())
        return;
    m_params.fileName = names.first();
    m_ui->m_pImageFileName->setText(m_params.fileName);
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnHorizontalAlignmentChanged(int index)
{
    m_params.alignment &= ~int(Qt::AlignHorizontal_Mask);
    m_params.alignment |= FlagAt(HorizontalFlags, index);
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnVerticalAlignmentChanged(int index)
{
    m_params.alignment &= ~int(Qt::AlignVertical_Mask);
    m_params.alignment |= FlagAt(VerticalFlags, index);
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnLeftMarginChanged(int margin)
{
    m_params.margins.setLeft(margin);
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnRightMarginChanged(int margin)
{
    m_params.margins.setRight(margin);
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnTopMarginChanged(int margin)
{
    m_params.margins.setTop(margin);
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnBottomMarginChanged(int margin)
{
    m_params.margins.setBottom(margin);
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnOpacityChanged(int opacity)
{
    m_params.opacity = opacity;
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::OnBlendingModeChanged(int index)
{
    m_params.blendingMode = int(BlendingIndexToMode(index));
    AnnounceChange(&YDSignWidget::ValueChanged);
}

void YDSignWidget::Connect()
{
    const auto indexChanged = QOverload<int>::of(&QComboBox::currentIndexChanged);
    const auto valueChanged = QOverload<int>::of(&QSpinBox::valueChanged);
    m_links.Add(m_ui->m_pSelectAnImage, &QPushButton::clicked, this, &YDSignWidget::OnSelectFileName);
    m_links.Add(m_ui->m_pHrzAlignment, indexChanged, this, &YDSignWidget::OnHorizontalAlignmentChanged);
    m_links.Add(m_ui->m_pVrtAlignment, indexChanged, this, &YDSignWidget::OnVerticalAlignmentChanged);
    m_links.Add(m_ui->m_pLeftMargin, valueChanged, this, &YDSignWidget::OnLeftMarginChanged);
    m_links.Add(m_ui->m_pRightMargin, valueChanged, this, &YDSignWidget::OnRightMarginChanged);
    m_links.Add(m_ui->m_pTopMargin, valueChanged, this, &YDSignWidget::OnTopMarginChanged);
    m_links.Add(m_ui->m_pBottomMargin, valueChanged, this, &YDSignWidget::OnBottomMarginChanged);
    m_links.Add(m_ui->m_pOpacitySpn, valueChanged, this, &YDSignWidget::OnOpacityChanged);
    m_links.Add(m_ui->m_pBlendCombo, indexChanged, this, &YDSignWidget::OnBlendingModeChanged);
}

void YDSignWidget::SetHorizontalAlignment(Qt::Alignment alignment)
{
    m_ui->m_pHrzAlignment->setCurrentIndex(IndexOf(HorizontalFlags, alignment));
}

void YDSignWidget::SetVerticalAlignment(Qt::Alignment alignment)
{
    m_ui->m_pVrtAlignment->setCurrentIndex(IndexOf(VerticalFlags, alignment));
}

KVCompositionMode YDSignWidget::BlendingIndexToMode(int index) const { return BlendingModeAt(index); }

int YDSignWidget::BlendingModeToIndex(KVCompositionMode mode) const
{
    return BlendingIndexOf(unsigned(mode));
}
