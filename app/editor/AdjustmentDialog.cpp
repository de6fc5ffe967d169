#include "editor/AdjustmentDialog.h"

#include "YDTaskWidget.h"
#include "editor/PresetMenu.h"

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
      m_widget(entry.makeWidget(true, this).release()), m_presets(new PresetMenu(this))
{
    setObjectName(QStringLiteral("AdjustmentDialog"));
    setWindowTitle(entry.Title());
    m_presets->SetTarget(entry, m_widget);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_widget, 1);
    PlacePresets(*layout);
    FocusFirstControl();
    setMinimumWidth(fontMetrics().averageCharWidth() * MinWidthInCharacters);
}

AdjustmentDialog::~AdjustmentDialog() = default;

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
    m_presets->setEnabled(enabled && m_entry.makeSettings()->HasPreset());
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
