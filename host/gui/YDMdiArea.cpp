#include "gui/YDMdiArea.h"

#include <QTabBar>
#include <QVector>

namespace {

/// Oldest first; used on the GUI thread only.
QVector<YDMdiArea*>& LivingAreas()
{
    static QVector<YDMdiArea*> areas;
    return areas;
}

} // namespace

YDMdiArea::YDMdiArea(QWidget* parent) : QMdiArea(parent)
{
    setViewMode(TabbedView);
    setDocumentMode(true);
    setTabsClosable(true);
    setTabsMovable(true);
    if (auto* const tabs = findChild<QTabBar*>())
        tabs->setExpanding(false); // a lone document's tab is no wider than its name
    LivingAreas().append(this);
}

YDMdiArea::~YDMdiArea() { LivingAreas().removeOne(this); }

QWidget* YDMdiArea::MainWindow()
{
    return LivingAreas().isEmpty() ? nullptr : LivingAreas().last()->window();
}
