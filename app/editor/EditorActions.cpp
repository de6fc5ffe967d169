#include "editor/EditorActions.h"

#include "catalog/AdjustmentCatalog.h"
#include "editor/RecentFiles.h"
#include "editor/ToolIcons.h"
#include "operations/MaskOfShape.h"

#include <QAction>
#include <QActionGroup>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QSpinBox>
#include <QToolBar>
#include <QUndoGroup>

namespace {

using ToolIcons::Kind;

QKeySequence Keys(const char* text) { return QKeySequence(QString::fromLatin1(text)); }

void SetIcon(QAction* action, Kind kind)
{
    action->setIcon(ToolIcons::Icon(kind));
    action->setIconVisibleInMenu(false);
}

/// The tool tip says what the shortcut is.
void SetHint(QAction* action, const QString& hint)
{
    const QString shortcut = action->shortcut().toString(QKeySequence::NativeText);
    action->setToolTip(shortcut.isEmpty() ? hint : QStringLiteral("%1 (%2)").arg(hint, shortcut));
    action->setStatusTip(hint);
}

} // namespace

EditorActions::EditorActions(QUndoGroup& undoGroup, QWidget* window)
    : QObject(window), tools(new QActionGroup(this)), recentFiles(new RecentFiles(window)),
      feather(new QSpinBox), m_window(window)
{
    MakeFileActions();
    MakeEditActions(undoGroup);
    MakeTools();
    MakeViewActions();
    MakeFeather();
}

EditorActions::~EditorActions() = default;

void EditorActions::MakeFileActions()
{
    open = new QAction(tr("&Open…"), m_window);
    open->setShortcut(QKeySequence::Open);
    SetIcon(open, Kind::Open);
    SetHint(open, tr("Open pictures"));
    save = new QAction(tr("&Save"), m_window);
    save->setShortcut(QKeySequence::Save);
    SetIcon(save, Kind::Save);
    SetHint(save, tr("Save the picture"));
    saveAs = new QAction(tr("Save &As…"), m_window);
    saveAs->setShortcut(Keys("Ctrl+Shift+S"));
    SetHint(saveAs, tr("Save the picture under another name or in another format"));
    close = new QAction(tr("&Close"), m_window);
    close->setShortcut(Keys("Ctrl+W"));
    SetHint(close, tr("Close the picture"));
    quit = new QAction(tr("&Quit"), m_window);
    quit->setShortcut(Keys("Ctrl+Q"));
    quit->setMenuRole(QAction::QuitRole);
    about = new QAction(tr("&About…"), m_window);
    about->setMenuRole(QAction::AboutRole);
}

void EditorActions::MakeEditActions(QUndoGroup& undoGroup)
{
    undo = undoGroup.createUndoAction(m_window, tr("&Undo"));
    undo->setShortcut(Keys("Ctrl+Z"));
    SetIcon(undo, Kind::Undo);
    redo = undoGroup.createRedoAction(m_window, tr("&Redo"));
    redo->setShortcut(Keys("Ctrl+Shift+Z"));
    SetIcon(redo, Kind::Redo);
    selectAll = new QAction(tr("Select &All"), m_window);
    selectAll->setShortcut(Keys("Ctrl+A"));
    selectNone = new QAction(tr("Select &None"), m_window);
    selectNone->setShortcut(Keys("Ctrl+D"));
    invertSelection = new QAction(tr("&Invert Selection"), m_window);
    invertSelection->setShortcut(Keys("Ctrl+Shift+I"));
}

void EditorActions::MakeTools()
{
    const auto make = [this](const QString& text, Kind kind, Qt::Key key, const QString& hint) {
        auto* const tool = new QAction(text, tools);
        tool->setCheckable(true);
        tool->setShortcut(key);
        SetIcon(tool, kind);
        SetHint(tool, hint);
        return tool;
    };
    moveTool = make(tr("&Move View"), Kind::Move, Qt::Key_V, tr("Move the view; nothing is drawn"));
    rectangleTool = make(tr("Select &Rectangle"), Kind::Rectangle, Qt::Key_R,
                         tr("Select a rectangle; Shift makes it a square"));
    ellipseTool = make(tr("Select &Ellipse"), Kind::Ellipse, Qt::Key_E,
                       tr("Select an ellipse; Shift makes it a circle"));
    moveTool->setChecked(true);
}

void EditorActions::MakeViewActions()
{
    zoomIn = new QAction(tr("Zoom &In"), m_window);
    zoomIn->setShortcuts({Keys("Ctrl++"), Keys("Ctrl+=")});
    SetIcon(zoomIn, Kind::ZoomIn);
    SetHint(zoomIn, tr("Zoom in"));
    zoomOut = new QAction(tr("Zoom &Out"), m_window);
    zoomOut->setShortcut(Keys("Ctrl+-"));
    SetIcon(zoomOut, Kind::ZoomOut);
    SetHint(zoomOut, tr("Zoom out"));
    zoomFit = new QAction(tr("Zoom to &Fit"), m_window);
    zoomFit->setShortcut(Keys("Ctrl+0"));
    SetIcon(zoomFit, Kind::ZoomFit);
    SetHint(zoomFit, tr("Show the whole picture"));
    zoomActual = new QAction(tr("&Actual Size"), m_window);
    zoomActual->setShortcut(Keys("Ctrl+1"));
    SetIcon(zoomActual, Kind::ZoomActual);
    SetHint(zoomActual, tr("Show each pixel of the picture as one of the screen"));
    hideSplitter = new QAction(tr("Hide &Preview Slider"), m_window);
    hideSplitter->setCheckable(true);
    SetIcon(hideSplitter, Kind::Compare);
    SetHint(hideSplitter, tr("Show the adjusted picture alone, without the one before beside it"));
}

void EditorActions::MakeFeather()
{
    feather->setObjectName(QStringLiteral("FeatherSpin"));
    feather->setRange(0, operations::MaxFeather);
    feather->setSuffix(tr(" px"));
    feather->setAccessibleName(tr("Feather"));
    feather->setToolTip(tr("How far the edge of the selection fades out, to either side"));
    feather->setFocusPolicy(Qt::ClickFocus);
}

void EditorActions::FillMenuBar(QMenuBar* bar, QAction* dockToggle, QAction* toolBarToggle)
{
    QMenu* const file = bar->addMenu(tr("&File"));
    file->addAction(open);
    file->addMenu(recentFiles);
    file->addSeparator();
    file->addActions({save, saveAs});
    file->addSeparator();
    file->addActions({close, quit});
    QMenu* const edit = bar->addMenu(tr("&Edit"));
    edit->addActions({undo, redo});
    QMenu* const selection = bar->addMenu(tr("&Select"));
    selection->addActions({selectAll, selectNone, invertSelection});
    selection->addSeparator();
    selection->addActions(tools->actions());
    FillAdjustmentsMenu(bar->addMenu(tr("&Adjustments")));
    QMenu* const view = bar->addMenu(tr("&View"));
    view->addActions({zoomIn, zoomOut, zoomFit, zoomActual});
    view->addSeparator();
    view->addAction(hideSplitter);
    view->addSeparator();
    view->addActions({dockToggle, toolBarToggle});
    FillColorSchemeMenu(view->addMenu(tr("&Appearance")));
    bar->addMenu(tr("&Help"))->addAction(about);
}

void EditorActions::FillToolBar(QToolBar* bar, QAction* dockToggle)
{
    bar->addActions({open, save});
    bar->addSeparator();
    bar->addActions({undo, redo});
    bar->addSeparator();
    bar->addActions(tools->actions());
    auto* const field = new QWidget(bar);
    auto* const layout = new QHBoxLayout(field);
    layout->setContentsMargins(8, 0, 8, 0);
    auto* const label = new QLabel(tr("Feather:"), field);
    label->setBuddy(feather);
    layout->addWidget(label);
    layout->addWidget(feather);
    bar->addWidget(field);
    bar->addSeparator();
    bar->addActions({zoomOut, zoomIn, zoomFit, zoomActual});
    auto* const space = new QWidget(bar);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    bar->addAction(hideSplitter);
    bar->addAction(dockToggle);
}

void EditorActions::FillAdjustmentsMenu(QMenu* menu)
{
    const AdjustmentEntry* previous = nullptr;
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
        if (!previous || previous->group != entry.group)
            menu->addSection(operations::Catalog::Title(entry.group));
        previous = &entry;
        QAction* const action = menu->addAction(tr("%1…").arg(entry.Title()));
        action->setObjectName(entry.name);
        connect(action, &QAction::triggered, this, [this, &entry] { emit AdjustmentChosen(entry); });
        m_adjustments.append(action);
    }
}

void EditorActions::FillColorSchemeMenu(QMenu* menu)
{
    using ColorScheme::Scheme;
    auto* const group = new QActionGroup(menu);
    const auto add = [this, menu, group](const QString& text, Scheme scheme) {
        QAction* const action = group->addAction(menu->addAction(text));
        action->setCheckable(true);
        action->setChecked(scheme == ColorScheme::Stored());
        connect(action, &QAction::triggered, this, [this, scheme] { emit ColorSchemeChosen(scheme); });
    };
    add(tr("As the &Desktop"), Scheme::System);
    add(tr("&Light"), Scheme::Light);
    add(tr("D&ark"), Scheme::Dark);
}

void EditorActions::Allow(const Allowed& allowed)
{
    for (QAction* const action : {close, zoomIn, zoomOut, zoomFit, zoomActual})
        action->setEnabled(allowed.hasDocument);
    for (QAction* const action : {save, saveAs})
        action->setEnabled(allowed.maySave);
    for (QAction* const action : {selectAll, invertSelection})
        action->setEnabled(allowed.mayChange);
    selectNone->setEnabled(allowed.mayChange && allowed.hasSelection);
    tools->setEnabled(allowed.mayChange);
    feather->setEnabled(allowed.mayChange);
    for (QAction* const action : qAsConst(m_adjustments))
        action->setEnabled(allowed.mayChange);
}
