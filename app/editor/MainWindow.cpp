#include "editor/MainWindow.h"

#include "core/KVApplication.h"
#include "core/KVImageFileManager.h"
#include "editor/AboutBox.h"
#include "editor/AdjustmentPanel.h"
#include "editor/DocumentWindow.h"
#include "editor/EditorActions.h"
#include "editor/EditorStatusBar.h"
#include "editor/Messages.h"
#include "editor/ProgramName.h"
#include "editor/RecentFiles.h"
#include "editor/ToolIcons.h"
#include "gui/YDMdiArea.h"

#include <QAction>
#include <QActionGroup>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QSettings>
#include <QSpinBox>
#include <QTabBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize FirstSize(1280, 840);
constexpr int NoteMs = 12000;
/// Counts up when docks or tool bars change so that a stored layout no longer fits.
constexpr int LayoutVersion = 1;

QString GeometryKey() { return QStringLiteral("window/geometry"); }
QString LayoutKey() { return QStringLiteral("window/layout"); }
QString FeatherKey() { return QStringLiteral("selection/feather"); }

QString SplitterKey() { return KVApplication::GetName(KVApplication::HidePreviewSlider); }

QStringList LocalFiles(const QMimeData* data)
{
    QStringList paths;
    const QList<QUrl> urls = data->urls();
    for (const QUrl& url : urls)
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    return paths;
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent), m_area(new YDMdiArea(this)), m_actions(new EditorActions(m_undoGroup, this)),
      m_statusBar(new EditorStatusBar(this))
{
    setWindowIcon(ToolIcons::Application());
    setAcceptDrops(true);
    setCentralWidget(m_area);
    if (auto* const tabs = m_area->findChild<QTabBar*>())
        tabs->setFocusPolicy(Qt::NoFocus); // keys belong to the picture
    BuildHint();
    setStatusBar(m_statusBar);
    BuildDock();
    BuildBars();
    ConnectActions();
    ConnectViewActions();
    connect(&m_loader, &PictureLoader::Opened, this, &MainWindow::AddDocument);
    connect(&m_loader, &PictureLoader::Failed, this, &MainWindow::ShowErrors);
    connect(&m_loader, &PictureLoader::PendingChanged, this, &MainWindow::UpdateWork);
    connect(m_area, &QMdiArea::subWindowActivated, this, &MainWindow::OnCurrentChanged);
    RestoreLayout();
    OnCurrentChanged();
}

MainWindow::~MainWindow()
{
    // The area's windows go one by one, and nobody shall follow them any more.
    m_area->disconnect(this);
    m_panel->SetDocument(nullptr);
    m_statusBar->SetWindow(nullptr);
}

/// What the empty window says.
void MainWindow::BuildHint()
{
    m_hint = new QLabel(tr("Drop pictures here, or press %1 to open some.")
                            .arg(m_actions->open->shortcut().toString(QKeySequence::NativeText)),
                        m_area->viewport());
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    auto* const layout = new QVBoxLayout(m_area->viewport());
    layout->addWidget(m_hint);
}

void MainWindow::BuildDock()
{
    auto* const dock = new QDockWidget(tr("Adjustments Panel"), this);
    dock->setObjectName(QStringLiteral("AdjustmentsDock"));
    m_panel = new AdjustmentPanel(dock);
    dock->setWidget(m_panel);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->hide(); // at first, so that the picture has the room
    QAction* const toggle = dock->toggleViewAction();
    toggle->setIcon(ToolIcons::Icon(ToolIcons::Kind::Sliders));
    toggle->setIconVisibleInMenu(false);
    toggle->setShortcut(Qt::Key_F9);
    toggle->setToolTip(tr("Show the panel that applies adjustments without a dialog (F9)"));
}

void MainWindow::BuildBars()
{
    QToolBar* const bar = addToolBar(tr("Tool Bar"));
    bar->setObjectName(QStringLiteral("ToolBar"));
    bar->setMovable(false);
    const auto* const dock = findChild<QDockWidget*>(QStringLiteral("AdjustmentsDock"));
    m_actions->FillToolBar(bar, dock->toggleViewAction());
    m_actions->FillMenuBar(menuBar(), dock->toggleViewAction(), bar->toggleViewAction());
}

void MainWindow::ConnectActions()
{
    const auto onWindow = [this](QAction* action, auto work) {
        connect(action, &QAction::triggered, this, [this, work] {
            if (DocumentWindow* const window = CurrentWindow())
                work(*window);
        });
    };
    connect(m_actions->open, &QAction::triggered, this, &MainWindow::AskForPictures);
    connect(m_actions->recentFiles, &RecentFiles::Chosen, this,
            [this](const QString& path) { Open({path}); });
    connect(m_actions->quit, &QAction::triggered, this, &QWidget::close);
    connect(m_actions->about, &QAction::triggered, this, [this] { AboutBox::Show(this); });
    connect(m_actions->close, &QAction::triggered, m_area, &QMdiArea::closeActiveSubWindow);
    onWindow(m_actions->save, [](DocumentWindow& window) { window.Save(); });
    onWindow(m_actions->saveAs, [](DocumentWindow& window) { window.SaveAs(); });
    onWindow(m_actions->selectAll, [](DocumentWindow& window) { window.GetDocument()->SelectAll(); });
    onWindow(m_actions->selectNone, [](DocumentWindow& window) { window.GetDocument()->SelectNone(); });
    onWindow(m_actions->invertSelection,
             [](DocumentWindow& window) { window.GetDocument()->InvertSelection(); });
    onWindow(m_actions->zoomIn, [](DocumentWindow& window) { window.View()->ZoomIn(); });
    onWindow(m_actions->zoomOut, [](DocumentWindow& window) { window.View()->ZoomOut(); });
    onWindow(m_actions->zoomFit, [](DocumentWindow& window) { window.View()->ZoomToFit(); });
    onWindow(m_actions->zoomActual, [](DocumentWindow& window) { window.View()->ZoomActual(); });
}

void MainWindow::ConnectViewActions()
{
    connect(m_actions->tools, &QActionGroup::triggered, this, &MainWindow::UpdateTools);
    connect(m_actions, &EditorActions::AdjustmentChosen, this, &MainWindow::RunAdjustment);
    connect(m_actions, &EditorActions::ColorSchemeChosen, this, &MainWindow::SetColorScheme);
    m_actions->hideSplitter->setChecked(KVApplication::GetUserValue(SplitterKey(), false));
    connect(m_actions->hideSplitter, &QAction::toggled, this, &MainWindow::SetSplitterHidden);
    m_actions->feather->setValue(QSettings().value(FeatherKey(), 0).toInt());
    connect(m_actions->feather, QOverload<int>::of(&QSpinBox::valueChanged), this, &MainWindow::SetFeather);
}

void MainWindow::RestoreLayout()
{
    const QSettings settings;
    if (!restoreGeometry(settings.value(GeometryKey()).toByteArray()))
        resize(FirstSize);
    restoreState(settings.value(LayoutKey()).toByteArray(), LayoutVersion);
}

void MainWindow::StoreLayout() const
{
    QSettings settings;
    settings.setValue(GeometryKey(), saveGeometry());
    settings.setValue(LayoutKey(), saveState(LayoutVersion));
}

void MainWindow::Open(const QStringList& paths)
{
    QStringList unopened;
    for (const QString& path : paths) {
        DocumentWindow* const window = WindowOf(QFileInfo(path).absoluteFilePath());
        if (window)
            m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(window->parentWidget()));
        else
            unopened.append(path);
    }
    if (!unopened.isEmpty())
        m_loader.Open(unopened);
}

DocumentWindow* MainWindow::CurrentWindow() const
{
    const QMdiSubWindow* const tab = m_area->currentSubWindow();
    return tab ? qobject_cast<DocumentWindow*>(tab->widget()) : nullptr;
}

QVector<DocumentWindow*> MainWindow::Windows() const
{
    QVector<DocumentWindow*> windows;
    const QList<QMdiSubWindow*> tabs = m_area->subWindowList();
    for (const QMdiSubWindow* const tab : tabs)
        if (auto* const window = qobject_cast<DocumentWindow*>(tab->widget()))
            windows.append(window);
    return windows;
}

DocumentWindow* MainWindow::WindowOf(const QString& path) const
{
    const QVector<DocumentWindow*> windows = Windows();
    const auto found = std::find_if(windows.begin(), windows.end(), [&path](DocumentWindow* window) {
        return window->GetDocument()->Path() == path;
    });
    return found == windows.end() ? nullptr : *found;
}

void MainWindow::AskForPictures()
{
    const QStringList paths = QFileDialog::getOpenFileNames(
        this, tr("Open Pictures"), KVApplication::GetPathOpen(), KVImageFileManager::GetFilterForRead(),
        nullptr, QFileDialog::HideNameFilterDetails);
    if (paths.isEmpty())
        return;
    KVApplication::SetPathOpen(QFileInfo(paths.constFirst()).absolutePath());
    Open(paths);
}

void MainWindow::AddDocument(const OpenedPicture& opened)
{
    auto* const window = new DocumentWindow(opened);
    window->GetDocument()->SetFeather(QSettings().value(FeatherKey(), 0).toInt());
    m_undoGroup.addStack(window->GetDocument()->UndoStack());
    connect(window, &DocumentWindow::StateChanged, this, &MainWindow::UpdateState);
    connect(window, &DocumentWindow::Saved, m_actions->recentFiles, &RecentFiles::Add);
    connect(window, &DocumentWindow::SaveFailed, this, [this] { m_isQuitting = false; });
    connect(window, &QObject::destroyed, this, &MainWindow::OnWindowGone, Qt::QueuedConnection);
    connect(window->GetDocument(), &Document::SelectionChanged, this, &MainWindow::UpdateState);
    connect(window->GetDocument(), &Document::ModifiedChanged, this, &MainWindow::UpdateTitle);
    connect(window->GetDocument(), &Document::PathChanged, this, &MainWindow::UpdateTitle);
    connect(window->View(), &KVDocumentView::SplitterHiddenChanged, m_actions->hideSplitter,
            &QAction::setChecked);
    window->View()->HideSplitter(m_actions->hideSplitter->isChecked());
    m_actions->recentFiles->Add(opened.path);
    QMdiSubWindow* const tab = m_area->addSubWindow(window);
    tab->setWindowIcon(QIcon());
    // Its Ctrl+W would make the window's own ambiguous.
    const QList<QAction*> tabActions = tab->systemMenu()->actions();
    for (QAction* const action : tabActions)
        action->setShortcuts(QList<QKeySequence>());
    tab->showMaximized();
    QStringList notes;
    const QString name = window->GetDocument()->Name();
    if (opened.depthReduced)
        notes << tr("“%1” holds more than 8 bits a channel; the picture was reduced to 8.").arg(name);
    if (opened.hasMorePictures)
        notes << tr("“%1” holds several pictures; only the first was opened.").arg(name);
    if (!opened.warning.isEmpty())
        notes << opened.warning;
    m_statusBar->showMessage(notes.join(QLatin1Char(' ')), NoteMs);
    emit DocumentOpened(window);
}

void MainWindow::ShowErrors(const QStringList& errors)
{
    Messages::ShowError(this, tr("%n picture(s) could not be opened.", nullptr, int(errors.size())),
                        errors.join(QLatin1Char('\n')));
    emit OpeningFailed(errors);
}

void MainWindow::RunAdjustment(const AdjustmentEntry& entry)
{
    if (DocumentWindow* const window = CurrentWindow())
        window->RunAdjustment(entry);
}

void MainWindow::SetFeather(int pixels)
{
    QSettings().setValue(FeatherKey(), pixels);
    if (DocumentWindow* const window = CurrentWindow())
        window->GetDocument()->SetFeather(pixels);
}

void MainWindow::SetSplitterHidden(bool hidden)
{
    KVApplication::SetUserValue(SplitterKey(), hidden);
    const QVector<DocumentWindow*> windows = Windows();
    for (const DocumentWindow* const window : windows)
        window->View()->HideSplitter(hidden);
}

void MainWindow::SetColorScheme(ColorScheme::Scheme scheme)
{
    ColorScheme::Store(scheme);
    ColorScheme::Apply(scheme);
    m_area->setBackground(palette().brush(QPalette::Window));
}

void MainWindow::OnCurrentChanged()
{
    DocumentWindow* const window = CurrentWindow();
    m_panel->SetDocument(window ? window->GetDocument() : nullptr);
    m_statusBar->SetWindow(window);
    UpdateTitle();
    m_hint->setVisible(Windows().isEmpty());
    m_area->setBackground(palette().brush(QPalette::Window));
    if (window) {
        const QSignalBlocker quiet(m_actions->feather);
        m_actions->feather->setValue(window->GetDocument()->Feather());
    }
    UpdateState();
}

void MainWindow::UpdateTitle()
{
    DocumentWindow* const window = CurrentWindow();
    setWindowTitle(window ? tr("%1[*] — %2").arg(window->GetDocument()->Name(), ProgramName())
                          : ProgramName());
    setWindowModified(window && window->GetDocument()->IsModified());
}

/// Closing goes on once the pictures that were still being saved are gone.
void MainWindow::OnWindowGone()
{
    OnCurrentChanged();
    if (m_isQuitting && Windows().isEmpty())
        close();
}

void MainWindow::UpdateState()
{
    DocumentWindow* const window = CurrentWindow();
    EditorActions::Allowed allowed;
    if (window) {
        const Document& document = *window->GetDocument();
        allowed.hasDocument = true;
        allowed.mayChange = !document.IsLocked();
        allowed.maySave = !document.IsLocked() && !window->IsSaving();
        allowed.hasSelection = document.HasSelection();
    }
    m_actions->Allow(allowed);
    m_undoGroup.setActiveStack(allowed.mayChange ? window->GetDocument()->UndoStack() : nullptr);
    UpdateTools();
    UpdateWork();
}

/// Whether every open picture is being saved to be closed then.
bool MainWindow::AreAllClosing() const
{
    const QVector<DocumentWindow*> windows = Windows();
    return std::all_of(windows.begin(), windows.end(),
                       [](const DocumentWindow* window) { return window->IsClosingAfterSave(); });
}

/// While an adjustment is open the mouse belongs to it.
void MainWindow::UpdateTools()
{
    using Tool = KVDocumentView::SelectionTool;
    DocumentWindow* const window = CurrentWindow();
    if (!window)
        return;
    Tool tool = Tool::None;
    if (!window->GetDocument()->IsLocked() && m_actions->rectangleTool->isChecked())
        tool = Tool::Rectangle;
    else if (!window->GetDocument()->IsLocked() && m_actions->ellipseTool->isChecked())
        tool = Tool::Ellipse;
    window->View()->SetSelectionTool(tool);
}

void MainWindow::UpdateWork()
{
    const QStringList pending = m_loader.Pending();
    const QVector<DocumentWindow*> windows = Windows();
    const auto saving = std::find_if(windows.begin(), windows.end(),
                                     [](const DocumentWindow* window) { return window->IsSaving(); });
    QString text;
    if (pending.size() == 1)
        text = tr("Opening “%1”…").arg(QFileInfo(pending.constFirst()).fileName());
    else if (!pending.isEmpty())
        text = tr("Opening %n pictures…", nullptr, int(pending.size()));
    else if (saving != windows.end())
        text = tr("Saving “%1”…").arg((*saving)->GetDocument()->Name());
    m_statusBar->ShowWork(text);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    m_area->closeAllSubWindows();
    const QVector<DocumentWindow*> windows = Windows();
    m_isQuitting = !windows.isEmpty() && AreAllClosing();
    event->setAccepted(windows.isEmpty());
    if (event->isAccepted())
        StoreLayout();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!LocalFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QStringList paths = LocalFiles(event->mimeData());
    if (paths.isEmpty())
        return;
    event->acceptProposedAction();
    Open(paths);
}
