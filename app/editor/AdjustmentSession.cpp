#include "editor/AdjustmentSession.h"

#include "YDAdjustmentWidget.h"
#include "core/KVApplication.h"
#include "editor/AdjustmentDialog.h"
#include "editor/Messages.h"
#include "editor/OverlayPreview.h"
#include "editor/PresetMenu.h"
#include "gui/KVDocumentView.h"

#include <QCheckBox>

#include <utility>

AdjustmentSession::AdjustmentSession(const AdjustmentEntry& entry, KVDocumentView* view, QWidget* parent)
    : QObject(parent), m_dialog(new AdjustmentDialog(entry, parent)), m_widget(m_dialog->Widget()),
      m_view(view)
{
    ConnectWidget();
    if (entry.makeDrawing)
        UseOverlay(entry);
    connect(m_dialog, &AdjustmentDialog::Confirmed, this, &AdjustmentSession::Accept);
    connect(m_dialog, &AdjustmentDialog::Dismissed, this, &AdjustmentSession::Reject);
    connect(m_dialog->Presets(), &PresetMenu::Loaded, this, &AdjustmentSession::Restart);
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

void AdjustmentSession::UseOverlay(const AdjustmentEntry& entry)
{
    m_overlay = new OverlayPreview(entry, m_widget, this);
    connect(m_widget, &YDAdjustmentWidget::DataChanged, m_overlay, &OverlayPreview::Restart);
    connect(m_overlay, &OverlayPreview::Ready, this, &AdjustmentSession::OnOverlayReady);
}

void AdjustmentSession::OnOverlayReady()
{
    if (m_state != State::Ended)
        m_dialog->ShowRemark(m_overlay->Remark());
    OnResultReady();
    if (m_state == State::Accepting)
        Deliver();
}

void AdjustmentSession::Start(const RGBA32iImage& picture, const SelectionMask& mask)
{
    m_isCurrent = false;
    m_widget->SetupActivation(picture.Width(), picture.Height());
    // A host-drawn widget is given no picture: it would wait for a job of its own for ever.
    if (m_overlay)
        m_overlay->Start(picture, mask);
    else
        m_widget->SetImage(picture, mask.Coverage(), mask.Offset(), mask.BoundingRect());
    m_widget->SetView(m_view);
    FollowPreviewToggle();
    m_dialog->show();
    m_dialog->activateWindow();
}

void AdjustmentSession::Restart()
{
    m_isCurrent = false;
    if (m_overlay)
        m_overlay->Restart();
    else
        m_widget->RestartProcessing();
    ComputeNow();
}

void AdjustmentSession::Accept()
{
    if (m_state != State::Open)
        return;
    ComputeNow();
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
    if (m_overlay) {
        deleteLater();
        return;
    }
    // While OK waits, this only stops the job: the answer to that wait is still to come.
    if (m_widget->WaitForProcessingFinished(true) && !wasAccepting)
        deleteLater();
}

/// The toggle in the dialog follows when the splitter is hidden from elsewhere. A dialog's widget governs the
/// splitter by its own one.
void AdjustmentSession::FollowPreviewToggle()
{
    auto* const toggle = m_dialog->findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    if (!toggle || !m_view)
        return;
    connect(m_view, &KVDocumentView::SplitterHiddenChanged, toggle, &QCheckBox::setChecked);
    if (!m_overlay)
        return;
    toggle->setChecked(
        KVApplication::GetUserValue(KVApplication::GetName(KVApplication::HidePreviewSlider), false));
    connect(toggle, &QCheckBox::toggled, m_view, &KVDocumentView::HideSplitter);
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
        m_view->SetPreview(Result());
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

/// Does not let a change wait until no other follows it.
void AdjustmentSession::ComputeNow()
{
    if (m_overlay)
        m_overlay->Flush();
    else
        m_widget->FlushPendingChange();
}

RGBA32iImage AdjustmentSession::Result() const
{
    return m_overlay ? m_overlay->Result() : m_widget->AdjustedImage();
}

void AdjustmentSession::AwaitResult()
{
    if (m_overlay ? !m_overlay->IsBusy() : m_widget->WaitForProcessingFinished(false))
        Deliver();
}

void AdjustmentSession::Deliver()
{
    const RGBA32iImage adjusted = Result();
    const bool isChangeMissed = std::exchange(m_isChangeMissed, false);
    const QString why = m_overlay ? m_overlay->Error() : QString();
    if (m_isCurrent && !isChangeMissed && !adjusted.IsEmpty()) {
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
        Messages::ShowError(m_dialog, tr("The adjustment could not be computed."), reason);
        emit Failed(reason);
    }
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
