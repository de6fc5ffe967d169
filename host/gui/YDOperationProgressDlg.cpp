#include "gui/YDOperationProgressDlg.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int WidthInCharacters = 60;
constexpr int FullRange = 100;

} // namespace

YDOperationProgressDlg::YDOperationProgressDlg(QWidget* parent)
    : YDDialog(parent), m_pLabel(new QLabel(this)), m_pProgress(new QProgressBar(this))
{
    setWindowTitle(tr("Please Wait"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_pLabel->setObjectName(QStringLiteral("m_pLabel"));
    m_pLabel->setTextFormat(Qt::PlainText);
    m_pLabel->setWordWrap(true);
    m_pProgress->setObjectName(QStringLiteral("m_pProgress"));
    m_pProgress->setRange(0, FullRange);
    m_pProgress->setValue(0);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("m_pCancel"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_pLabel);
    layout->addWidget(m_pProgress);
    layout->addWidget(buttons);
    setFixedWidth(fontMetrics().averageCharWidth() * WidthInCharacters);
}

void YDOperationProgressDlg::SetLabel(const QString& text)
{
    m_pLabel->setText(text);
    m_pProgress->setAccessibleName(text);
    adjustSize(); // in height, for a text of other length
}

int YDOperationProgressDlg::Exec(bool modal)
{
    if (IsComplete())
        return Accepted;
    return YDDialog::Exec(modal);
}

void YDOperationProgressDlg::SetProgressRange(int minimum, int maximum)
{
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    m_isRangeKnown = true;
    ShowProgress();
}

void YDOperationProgressDlg::SetProgressPos(int position)
{
    m_position = position;
    ShowProgress();
}

bool YDOperationProgressDlg::IsComplete() const
{
    return m_isRangeKnown && m_minimum == 0 && m_maximum == FullRange && m_position == FullRange;
}

void YDOperationProgressDlg::ShowProgress()
{
    // A bar counts a range without extent as busy only where it is 0..0.
    if (m_minimum == m_maximum)
        m_pProgress->setRange(0, 0);
    else
        m_pProgress->setRange(m_minimum, m_maximum);
    m_pProgress->setValue(std::clamp(m_position, m_minimum, m_maximum));
    if (isVisible() && IsComplete())
        accept();
}
