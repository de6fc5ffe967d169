#include "guicore/YDCommonComboBox.h"

#include <QAbstractItemView>
#include <QScreen>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int WantedCharacters = 14;

} // namespace

YDCommonComboBox::YDCommonComboBox(QWidget* parent) : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(WantedCharacters);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void YDCommonComboBox::showPopup()
{
    QAbstractItemView* const list = view();
    const int wanted = list->sizeHintForColumn(modelColumn()) + list->verticalScrollBar()->sizeHint().width();
    list->setMinimumWidth(std::min(wanted, screen()->availableGeometry().width()));
    QComboBox::showPopup();
}

void YDCommonComboBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}
