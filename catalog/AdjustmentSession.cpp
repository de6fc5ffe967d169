#include "catalog/AdjustmentSession.h"

#include "YDTaskWidget.h"
#include "gui/KVDocumentView.h"

#include <QCheckBox>
#include <QMessageBox>

#include <utility>

AdjustmentSession::AdjustmentSession(const AdjustmentEntry& entry, KVDocumentView* view, QWidget* parent)
    : QObject(parent), m_dialog(new AdjustmentDialog(entry, parent)), m_widget(m_dialog->Widget()),
      m_view(view)
{
    ConnectWidget();
    connect(m_dialog, &AdjustmentDialog::Dismissed, this, &AdjustmentSession::Reject);
    connect(m_dialog, &QObject::destroyed, this, &QObject::deleteLater);
}

AdjustmentSession::~AdjustmentSession() { delete m_dialog; }

void AdjustmentSession::ConnectWidget()
{
    connect(m_widget, &YDAdjustmentWidget::Ok, this, &AdjustmentSession::Accept);
    connect(m_widget, &YDAdjustmentWidget::Cancel, this, &AdjustmentSession::Reject);
    connect(m_widget, &YDAdjustmentWidget::Finished, this, &AdjustmentSession::OnFinished);
    connect(m_widget, &YDAdjustmentWidget::ImageReady, this, &AdjustmentSession::OnResultReady);
    connect(m_widget, &YDAdjustmentWidget::DataChanged, this, &AdjustmentSession::OnDataChanged);
}

void AdjustmentSession::Start(const RGBA32iImage& picture, const operations::Selection& mask)
{
    m_isCurrent = false;
    m_isMaskMissing = mask.isMissing;
    m_widget->SetupActivation(picture.Width(), picture.Height());
    m_widget->SetImage(picture, mask.mask, mask.offset, mask.bounds);
    m_widget->SetView(m_view);
    FollowPreviewToggle();
    m_dialog->show();
    m_dialog->activateWindow();
}

void AdjustmentSession::Restart()
{
    m_isCurrent = false;
    m_widget->RestartProcessing();
    m_widget->FlushPendingChange();
}

void AdjustmentSession::Accept()
{
    if (m_state != State::Open)
        return;
    m_widget->FlushPendingChange();
    m_state = State::Accepting;
    m_isChangeMissed = false;
    m_isRetry = false;
    m_dialog->SetControlsEnabled(false);
    AwaitResult();
}

void AdjustmentSession::Reject()
{
    if (m_state == State::Ended)
        return;
    const bool wasAccepting = m_state == State::Accepting;
    m_state = State::Ended;
    HideAll();
    emit Rejected();
    // While OK waits, this only stops the job: the answer to that wait is still to come.
    if (m_widget->WaitForProcessingFinished(true) && !wasAccepting)
        deleteLater();
}

/// The toggle in the dialog follows when the splitter is hidden from elsewhere.
void AdjustmentSession::FollowPreviewToggle()
{
    auto* const toggle = m_dialog->findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    if (toggle && m_view)
        connect(m_view, &KVDocumentView::SplitterHiddenChanged, toggle, &QCheckBox::setChecked);
}

void AdjustmentSession::OnDataChanged()
{
    m_isCurrent = false;
    // While the host waits the widget starts nothing for it, and the next result is still the old one.
    m_isChangeMissed = m_state == State::Accepting;
}

void AdjustmentSession::OnResultReady()
{
    m_isCurrent = true;
    if (m_state == State::Ended)
        return;
    if (m_view)
        m_view->SetPreview(m_widget->AdjustedImage());
    emit PreviewReady();
}

void AdjustmentSession::OnFinished(int result)
{
    if (m_state == State::Ended) {
        deleteLater(); // not at once: the widget is still talking
    } else if (m_state == State::Accepting && result != 0) {
        Deliver();
    } else if (m_state == State::Accepting) {
        // The aborted job belonged to the last change: what is shown now is older than the controls.
        m_widget->SetCancelProcessing(false);
        Reopen();
        Restart();
    }
}

void AdjustmentSession::AwaitResult()
{
    if (m_widget->WaitForProcessingFinished(false))
        Deliver();
}

void AdjustmentSession::Deliver()
{
    const RGBA32iImage adjusted = m_widget->AdjustedImage();
    const bool isChangeMissed = std::exchange(m_isChangeMissed, false);
    const QString why =
        m_isMaskMissing ? tr("There may be too little memory for the selection.") : m_widget->Problem();
    if (m_isCurrent && !isChangeMissed && !adjusted.IsEmpty() && !m_isMaskMissing) {
        m_state = State::Ended;
        emit Accepted(adjusted);
        HideAll();
        deleteLater();
    } else if (isChangeMissed || (!m_isRetry && why.isEmpty())) {
        m_isRetry = !isChangeMissed;
        Restart();
        AwaitResult();
    } else {
        Reopen();
        const QString reason = why.isEmpty() ? tr("There may be too little memory for this picture.") : why;
        Tell(reason);
        emit Failed(reason);
    }
}

void AdjustmentSession::Tell(const QString& reason)
{
    auto* const box = new QMessageBox(QMessageBox::Warning, m_dialog->windowTitle(),
                                      tr("The adjustment could not be computed."), QMessageBox::Ok, m_dialog);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(reason);
    box->open();
}

void AdjustmentSession::Reopen()
{
    m_state = State::Open;
    m_dialog->SetControlsEnabled(true);
}

void AdjustmentSession::HideAll()
{
    m_dialog->hide();
    m_widget->SetView(nullptr);
    if (m_view)
        m_view->SetPreview(RGBA32iImage());
}
