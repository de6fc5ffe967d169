#include "editor/AdjustmentSession.h"

#include "YDAdjustmentWidget.h"
#include "editor/AdjustmentDialog.h"
#include "editor/Messages.h"
#include "editor/PresetMenu.h"
#include "gui/KVDocumentView.h"

#include <QCheckBox>

AdjustmentSession::AdjustmentSession(const AdjustmentEntry& entry, KVDocumentView* view, QWidget* parent)
    : QObject(parent), m_dialog(new AdjustmentDialog(entry, parent)), m_widget(m_dialog->Widget()),
      m_view(view)
{
    ConnectWidget();
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
    connect(m_widget, &YDAdjustmentWidget::ImageReady, this, &AdjustmentSession::OnImageReady);
    connect(m_widget, &YDAdjustmentWidget::DataChanged, this, [this] { m_isCurrent = false; });
}

void AdjustmentSession::Start(const RGBA32iImage& picture, const SelectionMask& mask)
{
    m_isCurrent = false;
    m_widget->SetImage(picture, mask.Coverage(), mask.Offset(), mask.BoundingRect());
    m_widget->SetView(m_view);
    FollowPreviewToggle();
    m_dialog->show();
    m_dialog->activateWindow();
}

void AdjustmentSession::Restart()
{
    m_isCurrent = false;
    m_widget->RestartProcessing();
}

void AdjustmentSession::Accept()
{
    if (m_state != State::Open)
        return;
    m_widget->FlushPendingChange();
    m_state = State::Accepting;
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
    auto* const toggle = m_widget->findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    if (toggle && m_view)
        connect(m_view, &KVDocumentView::SplitterHiddenChanged, toggle, &QCheckBox::setChecked);
}

void AdjustmentSession::OnImageReady()
{
    m_isCurrent = true;
    if (m_state != State::Ended && m_view)
        m_view->SetPreview(m_widget->AdjustedImage());
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
    if (m_isCurrent && !adjusted.IsEmpty()) {
        m_state = State::Ended;
        emit Accepted(adjusted);
        HideAll();
        deleteLater();
    } else if (!m_isRetry) {
        // The settings changed by themselves while OK waited.
        m_isRetry = true;
        m_widget->StartProcessing();
        AwaitResult();
    } else {
        Reopen();
        Messages::ShowError(m_dialog, tr("The adjustment could not be computed."),
                            tr("There may be too little memory for this picture."));
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
