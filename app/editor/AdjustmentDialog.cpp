#include "editor/AdjustmentDialog.h"

#include "YDAdjustmentWidget.h"
#include "editor/PresetMenu.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

/// Sliders want room: a dialog as narrow as its labels allow would make them hard to set.
constexpr int MinWidthInCharacters = 48;

// As the frames of the widgets have them.
constexpr int FrameMargin = 9;
constexpr int ToggleHeight = 40;

} // namespace

AdjustmentDialog::AdjustmentDialog(const AdjustmentEntry& entry, QWidget* parent)
    : QDialog(parent, Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_entry(entry),
      m_widget(entry.makeWidget(!entry.makeDrawing, this).release()), m_presets(new PresetMenu(this))
{
    setObjectName(QStringLiteral("AdjustmentDialog"));
    setWindowTitle(entry.Title());
    m_presets->SetTarget(entry, m_widget);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (entry.makeDrawing)
        BuildFrame(*layout);
    else
        layout->addWidget(m_widget, 1);
    PlacePresets(*layout);
    FocusFirstControl();
    setMinimumWidth(fontMetrics().averageCharWidth() * MinWidthInCharacters);
}

AdjustmentDialog::~AdjustmentDialog() = default;

/// The parts and their names are those of the widgets' own frames.
void AdjustmentDialog::BuildFrame(QVBoxLayout& outer)
{
    m_remark = new QLabel(this);
    m_remark->setObjectName(QStringLiteral("Remark"));
    m_remark->setTextFormat(Qt::PlainText);
    m_remark->setWordWrap(true);
    m_remark->hide();
    auto* const toggle = new QCheckBox(tr("Hide preview slider"), this);
    toggle->setObjectName(QStringLiteral("m_pPreviewSlider"));
    toggle->setMinimumHeight(ToggleHeight);
    m_buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Reset, this);
    m_buttons->setObjectName(QStringLiteral("m_pButtons"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &AdjustmentDialog::Confirmed);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &AdjustmentDialog::Dismissed);
    connect(m_buttons->button(QDialogButtonBox::Reset), &QPushButton::clicked, m_widget,
            &YDAdjustmentWidget::OnReset);

    auto* const grid = new QGridLayout;
    grid->setContentsMargins(FrameMargin, FrameMargin, FrameMargin, FrameMargin);
    grid->addWidget(m_widget, 0, 0, 1, 2);
    grid->addWidget(m_remark, 1, 0, 1, 2);
    grid->addWidget(toggle, 2, 1, Qt::AlignRight);
    grid->addWidget(m_buttons, 3, 0, 1, 2);
    grid->setRowStretch(0, 1);
    outer.addLayout(grid, 1);
}

/// In the row of the preview toggle, which leaves the room for it; above all where there is none.
void AdjustmentDialog::PlacePresets(QVBoxLayout& outer)
{
    auto* const toggle = findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    const auto grids = findChildren<QGridLayout*>();
    for (QGridLayout* const grid : grids) {
        const int index = toggle ? grid->indexOf(toggle) : -1;
        if (index < 0)
            continue;
        int row = 0;
        int column = 0;
        int rowSpan = 0;
        int columnSpan = 0;
        grid->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
        grid->addWidget(m_presets, row, 0, Qt::AlignLeft | Qt::AlignVCenter);
        setTabOrder(m_presets, toggle);
        return;
    }
    outer.insertWidget(0, m_presets, 0, Qt::AlignRight);
}

/// So that arrow keys and numbers adjust at once.
void AdjustmentDialog::FocusFirstControl()
{
    QWidget* const content =
        m_buttons ? m_widget : m_widget->findChild<QWidget*>(QStringLiteral("m_pContent"));
    if (!content)
        return;
    for (QWidget* widget = content->nextInFocusChain(); widget != content;
         widget = widget->nextInFocusChain()) {
        if (content->isAncestorOf(widget) && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus)) {
            widget->setFocus();
            return;
        }
    }
}

void AdjustmentDialog::SetControlsEnabled(bool enabled)
{
    if (!enabled)
        m_focus = focusWidget();
    m_widget->setEnabled(enabled);
    if (m_buttons)
        m_buttons->setEnabled(enabled);
    m_presets->setEnabled(enabled && m_entry.makeSettings()->HasPreset());
    if (enabled && m_focus)
        m_focus->setFocus();
}

void AdjustmentDialog::ShowRemark(const QString& remark)
{
    if (!m_remark)
        return;
    QString wrapping = remark;
    wrapping.replace(QLatin1Char('/'), QStringLiteral("/\u200b")); // a long path may be broken there
    m_remark->setText(wrapping);
    m_remark->setVisible(!remark.isEmpty());
}

void AdjustmentDialog::reject() { emit Dismissed(); }

/// When a modal dialog closes, some window managers make the main window active, as they pass over windows of
/// this kind. The keys would no longer go where the user was.
bool AdjustmentDialog::event(QEvent* event)
{
    if (event->type() == QEvent::WindowBlocked)
        m_wasActive = isActiveWindow();
    else if (event->type() == QEvent::WindowUnblocked && m_wasActive)
        activateWindow();
    return QDialog::event(event);
}
