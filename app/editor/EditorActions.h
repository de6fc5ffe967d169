#pragma once

#include "editor/ColorScheme.h"

#include <QObject>
#include <QVector>

class QAction;
class QActionGroup;
class QMenu;
class QMenuBar;
class QSpinBox;
class QToolBar;
class QUndoGroup;
class RecentFiles;
struct AdjustmentEntry;

/// The commands of the main window, their menus and their tool bar. What they do is the window's matter.
class EditorActions : public QObject
{
    Q_OBJECT

public:
    EditorActions(QUndoGroup& undoGroup, QWidget* window);
    ~EditorActions() override;

    /// `dockToggle` and `toolBarToggle` show and hide what the window holds beside the pictures.
    void FillMenuBar(QMenuBar* bar, QAction* dockToggle, QAction* toolBarToggle);
    void FillToolBar(QToolBar* bar, QAction* dockToggle);

    /// What can be done at present.
    struct Allowed
    {
        bool hasDocument = false;
        bool mayChange = false; ///< the document's picture and selection
        bool maySave = false;
        bool hasSelection = false;
    };
    void Allow(const Allowed& allowed);

    QAction* open;
    QAction* save;
    QAction* saveAs;
    QAction* close;
    QAction* quit;
    QAction* undo;
    QAction* redo;
    QAction* selectAll;
    QAction* selectNone;
    QAction* invertSelection;
    QAction* moveTool;
    QAction* rectangleTool;
    QAction* ellipseTool;
    QAction* zoomIn;
    QAction* zoomOut;
    QAction* zoomFit;
    QAction* zoomActual;
    QAction* hideSplitter;
    QAction* about;
    QActionGroup* tools;
    RecentFiles* recentFiles;
    QSpinBox* feather;

signals:
    void AdjustmentChosen(const AdjustmentEntry& entry);
    void ColorSchemeChosen(ColorScheme::Scheme scheme);

private:
    void MakeFileActions();
    void MakeEditActions(QUndoGroup& undoGroup);
    void MakeTools();
    void MakeViewActions();
    void MakeFeather();
    void FillAdjustmentsMenu(QMenu* menu);
    void FillColorSchemeMenu(QMenu* menu);

    QWidget* const m_window;
    QVector<QAction*> m_adjustments;
};
