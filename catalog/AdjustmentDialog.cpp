#include "catalog/AdjustmentDialog.h"

#include "YDTaskWidget.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QVBoxLayout>

namespace {

/// Sliders want room: a dialog as narrow as its labels allow would make them hard to set.
constexpr int MinWidthInCharacters = 48;

} // namespace

AdjustmentDialog::AdjustmentDialog(const AdjustmentEntry& entry, QWidget* parent)
    : QDialog(parent, Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_entry(entry),
      m_widget(entry.makeWidget(true, this).release()), m_added(new QWidget(this))
{
    setObjectName(QStringLiteral("AdjustmentDialog"));
    setWindowTitle(entry.Title());
    auto* const added = new QHBoxLayout(m_added);
    added->setContentsMargins(0, 0, 0, 0);
    m_added->hide();

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_widget, 1);
    PlaceAdded(*layout);
    FocusFirstControl();
    setMinimumWidth(fontMetrics().averageCharWidth() * MinWidthInCharacters);
}

AdjustmentDialog::~AdjustmentDialog() = default;

void AdjustmentDialog::AddControl(QWidget* control)
{
    m_added->layout()->addWidget(control);
    m_added->show();
    if (QCheckBox* const toggle = PreviewToggle())
        setTabOrder(control, toggle);
}

QCheckBox* AdjustmentDialog::PreviewToggle() const
{
    return findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
}

void AdjustmentDialog::PlaceAdded(QVBoxLayout& outer)
{
    QCheckBox* const toggle = PreviewToggle();
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
        grid->addWidget(m_added, row, 0, Qt::AlignLeft | Qt::AlignVCenter);
        return;
    }
    outer.insertWidget(0, m_added, 0, Qt::AlignRight);
}

/// So that arrow keys and numbers adjust at once.
void AdjustmentDialog::FocusFirstControl()
{
    auto* const content = m_widget->findChild<QWidget*>(QStringLiteral("m_pContent"));
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
    m_added->setEnabled(enabled);
    if (enabled && m_focus)
        m_focus->setFocus();
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
