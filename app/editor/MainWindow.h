#pragma once

#include "editor/ColorScheme.h"
#include "editor/PictureLoader.h"

#include <QMainWindow>
#include <QUndoGroup>

class AdjustmentPanel;
class DocumentWindow;
class EditorActions;
class EditorStatusBar;
class QLabel;
class QMdiSubWindow;
class QMimeData;
class YDMdiArea;
struct AdjustmentEntry;

/// The editor's window: a tab for each picture, menus, tool bar, the adjustments panel and the status bar.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void Open(const QStringList& paths);
    /// The document whose tab is in front; null if there is none.
    DocumentWindow* CurrentWindow() const;
    AdjustmentPanel* Panel() const { return m_panel; }

signals:
    void DocumentOpened(DocumentWindow* window);
    /// Pictures could not be read; a message box says so too.
    void OpeningFailed(const QStringList& errors);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildHint();
    void BuildDock();
    void BuildBars();
    void ConnectActions();
    void ConnectViewActions();
    void RestoreLayout();
    void StoreLayout() const;

    QVector<DocumentWindow*> Windows() const;
    DocumentWindow* WindowOf(const QString& path) const;
    void AskForPictures();
    void AddDocument(const OpenedPicture& opened);
    void ShowErrors(const QStringList& errors);
    void RunAdjustment(const AdjustmentEntry& entry);
    void SetFeather(int pixels);
    void SetSplitterHidden(bool hidden);
    void SetColorScheme(ColorScheme::Scheme scheme);
    void OnCurrentChanged();
    void OnWindowGone();
    void UpdateState();
    bool AreAllClosing() const;
    void UpdateTitle();
    void UpdateTools();
    void UpdateWork();

    PictureLoader m_loader;
    QUndoGroup m_undoGroup;
    YDMdiArea* m_area;
    EditorActions* m_actions;
    EditorStatusBar* m_statusBar;
    AdjustmentPanel* m_panel = nullptr;
    QLabel* m_hint = nullptr;
    bool m_isQuitting = false; ///< the window closes once every picture is saved
};
