#include "editor/DocumentWindow.h"

#include "catalog/AdjustmentCatalog.h"
#include "catalog/AdjustmentDialog.h"
#include "catalog/AdjustmentSession.h"
#include "editor/Messages.h"
#include "editor/PresetMenu.h"
#include "editor/ProgramName.h"
#include "editor/SaveDialog.h"

#include <QCloseEvent>
#include <QMessageBox>
#include <QScreen>
#include <QVBoxLayout>

DocumentWindow::DocumentWindow(const OpenedPicture& opened, QWidget* parent)
    : QWidget(parent), m_document(opened), m_view(new KVDocumentView(this))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    // The main window takes what is dropped.
    m_view->setAcceptDrops(false);
    m_view->viewport()->setAcceptDrops(false);
    m_view->setFrameShape(QFrame::NoFrame);
    setFocusProxy(m_view);
    m_view->SetImage(m_document.Picture());
    connect(&m_document, &Document::PictureChanged, this, [this] { m_view->SetImage(m_document.Picture()); });
    connect(&m_document, &Document::SelectionChanged, this,
            [this] { m_view->SetSelectionOutline(m_document.Selection()); });
    connect(&m_document, &Document::ModifiedChanged, this, &QWidget::setWindowModified);
    connect(&m_document, &Document::PathChanged, this, &DocumentWindow::UpdateTitle);
    connect(&m_document, &Document::LockedChanged, this, &DocumentWindow::StateChanged);
    connect(m_view, &KVDocumentView::SelectionDrawn, this, &DocumentWindow::OnSelectionDrawn);
    connect(m_view, &KVDocumentView::SelectionCleared, this, [this] {
        if (!m_document.IsLocked())
            m_document.SelectNone();
    });
    connect(&m_saver, &PictureSaver::BusyChanged, this, &DocumentWindow::StateChanged);
    connect(&m_saver, &PictureSaver::Saved, this, &DocumentWindow::OnSaved);
    connect(&m_saver, &PictureSaver::Failed, this, &DocumentWindow::OnSaveFailed);
    UpdateTitle();
}

DocumentWindow::~DocumentWindow()
{
    if (m_session) {
        m_session->disconnect(this);
        m_session->Reject();
    }
}

AdjustmentSession* DocumentWindow::Session() const
{
    return m_session && m_session->IsOpen() ? m_session.data() : nullptr;
}

void DocumentWindow::RunAdjustment(const AdjustmentEntry& entry)
{
    if (m_document.IsLocked())
        return;
    m_document.SetLocked(true);
    m_document.WithMask(this,
                        [this, &entry](const operations::Selection& mask) { StartSession(entry, mask); });
}

void DocumentWindow::StartSession(const AdjustmentEntry& entry, const operations::Selection& mask)
{
    if (mask.isMissing) {
        m_document.SetLocked(false);
        Messages::ShowError(window(), tr("The adjustment could not be started."),
                            tr("There may be too little memory for the selection."));
        return;
    }
    // The session outlives this window when it is closed while a job is still stopping.
    auto* const session = new AdjustmentSession(entry, m_view, window());
    m_session = session;
    connect(session, &AdjustmentSession::Accepted, this,
            [this, session, &entry](const RGBA32iImage& adjusted) {
                m_document.Commit(adjusted, entry.Title());
                EndSession(session);
            });
    connect(session, &AdjustmentSession::Rejected, this, [this, session] { EndSession(session); });
    connect(session, &QObject::destroyed, this, &DocumentWindow::EndSession);
    PresetMenu::AddTo(*session);
    PlaceDialog(session->Dialog());
    session->Start(m_document.Picture(), mask);
    emit StateChanged();
    emit SessionStarted(session);
}

/// A session that has ended may live on while a job stops, and no longer counts here.
void DocumentWindow::EndSession(QObject* session)
{
    session->disconnect(this);
    m_document.SetLocked(false);
    m_view->setFocus();
    emit StateChanged();
}

/// Beside the window where the screen has room, otherwise over the corner where the adjusted part is.
void DocumentWindow::PlaceDialog(QWidget* dialog) const
{
    constexpr int Gap = 16;
    dialog->adjustSize();
    const QRect view(m_view->mapToGlobal(QPoint(0, 0)), m_view->size());
    const QRect frame = window()->frameGeometry();
    const int needed = dialog->width() + 2 * Gap;
    const bool fitsBeside = m_view->screen()->availableGeometry().right() - frame.right() >= needed;
    const int left = fitsBeside ? frame.right() + Gap : view.right() - dialog->width() - Gap;
    const int lowest = (m_view->screen()->availableGeometry() | frame).bottom() - dialog->height() - Gap;
    dialog->move(qMax(view.left(), left), qMax(0, qMin(view.top() + Gap, lowest)));
}

void DocumentWindow::Save()
{
    if (m_document.HoldsLessThanItsFile())
        SaveAs(); // never over a file that holds more without a question
    else if (!m_document.IsLocked() && !IsSaving())
        SaveTo(m_document.Path(), m_document.Format(), m_quality);
}

void DocumentWindow::SaveAs()
{
    if (m_document.IsLocked() || IsSaving())
        return;
    const SaveDialog::Answer answer = SaveDialog::Ask(window(), m_document.Path(), m_quality);
    if (!answer.path.isEmpty())
        SaveTo(answer.path, answer.format, answer.quality);
}

void DocumentWindow::SaveTo(const QString& path, const QByteArray& format, int quality)
{
    m_saver.Save({path, format, quality, m_document.Picture(), m_document.Metadata()});
}

void DocumentWindow::OnSelectionDrawn(const QRectF& area, KVDocumentView::SelectionTool tool)
{
    if (m_document.IsLocked())
        return;
    QPainterPath shape;
    if (tool == KVDocumentView::SelectionTool::Ellipse)
        shape.addEllipse(area);
    else
        shape.addRect(area);
    m_document.Select(shape);
}

void DocumentWindow::OnSaved(const SaveRequest& request, const QString& warning)
{
    m_quality = request.quality;
    m_document.MarkSaved(request.picture, request.path, request.format);
    emit Saved(request.path);
    if (!warning.isEmpty())
        Messages::ShowNote(window(), tr("“%1” was saved.").arg(m_document.Name()), warning);
    if (!m_closeAfterSave)
        return;
    m_closeAfterSave = false;
    // The tab around this window goes with it.
    parentWidget() ? parentWidget()->close() : close();
}

void DocumentWindow::OnSaveFailed(const QString& error)
{
    m_closeAfterSave = false;
    emit SaveFailed();
    Messages::ShowError(window(), tr("The picture could not be saved."), error);
}

void DocumentWindow::closeEvent(QCloseEvent* event)
{
    const bool mayClose = MayClose();
    if (mayClose && m_session)
        m_session->Reject();
    event->setAccepted(mayClose);
}

bool DocumentWindow::MayClose()
{
    if (IsSaving()) {
        m_closeAfterSave = true;
        return false;
    }
    if (!m_document.IsModified())
        return true;
    QMessageBox question(QMessageBox::Question, ProgramName(),
                         tr("Save the changes to “%1”?").arg(m_document.Name()),
                         QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, window());
    question.setInformativeText(tr("Without saving, the changes are lost."));
    question.setDefaultButton(QMessageBox::Save);
    const int answer = question.exec();
    if (answer == QMessageBox::Save)
        SaveAndClose();
    return answer == QMessageBox::Discard;
}

/// The tab closes once the file is written. Saving ends the open adjustment, which has not changed the
/// picture yet; one that a panel is applying will, so the picture is left as it is.
void DocumentWindow::SaveAndClose()
{
    if (m_session)
        m_session->Reject();
    if (m_document.IsLocked())
        return;
    m_closeAfterSave = true;
    Save();
    m_closeAfterSave = IsSaving(); // the user may have thought better of it
}

void DocumentWindow::UpdateTitle()
{
    setWindowTitle(m_document.Name() + QLatin1String("[*]"));
    m_view->setAccessibleName(m_document.Name());
}
