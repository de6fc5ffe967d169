#pragma once

#include "adjustmentgui_catalog_export.h"
#include "catalog/AdjustmentDialog.h"
#include "image/KVImage.h"
#include "operations/Selection.h"

#include <QObject>
#include <QPointer>

class KVDocumentView;

/// One run of an adjustment as a dialog, from its opening to OK or Cancel.
///
/// Shows the preview in the view while the dialog is open. OK waits for the preview of the last change, in
/// the widget's own progress dialog if it takes long; a wait that the user aborts leaves the dialog open.
/// Cancel hides dialog and preview at once, and the session goes when the job behind them has stopped. A
/// session deletes itself after either. This is all that a host does for a dialog; what it does with the
/// result is its own. GUI thread only.
class ADJUSTMENTGUI_CATALOG_EXPORT AdjustmentSession : public QObject
{
    Q_OBJECT

public:
    /// `view`, which may be null, shows the preview; `parent` is the window that the dialog belongs to.
    AdjustmentSession(const AdjustmentEntry& entry, KVDocumentView* view, QWidget* parent);
    ~AdjustmentSession() override;

    AdjustmentDialog* Dialog() const { return m_dialog; }
    bool IsOpen() const { return m_state == State::Open || m_state == State::Accepting; }

    /// Shows the dialog and starts the first preview. Nobody may write to the picture's pixels from now on.
    /// OK fails where there was no memory for the mask.
    void Start(const RGBA32iImage& picture, const operations::Selection& mask);
    /// Starts a preview of settings that the widget was given without announcing them.
    void Restart();

public slots:
    void Accept();
    void Reject();

signals:
    /// The result of the last settings; the dialog is closed.
    void Accepted(const RGBA32iImage& adjusted);
    void Rejected();
    /// OK had no result, and the person was told why; the dialog stays open.
    void Failed(const QString& why);
    /// The view shows the preview of the last settings, or soon will.
    void PreviewReady();

private:
    enum class State
    {
        Open,
        Accepting, ///< OK was pressed; the controls are disabled
        Ended,     ///< the dialog is hidden and delivers nothing any more
    };

    void ConnectWidget();
    void FollowPreviewToggle();
    void OnDataChanged();
    void OnResultReady();
    void OnFinished(int result);
    void AwaitResult();
    void Deliver();
    void Tell(const QString& reason);
    void Reopen();
    void HideAll();

    QPointer<AdjustmentDialog> m_dialog;
    YDTaskWidget* const m_widget;
    QPointer<KVDocumentView> m_view;
    State m_state = State::Open;
    bool m_isMaskMissing = false;  ///< what is adjusted without it would be another part
    bool m_isCurrent = false;      ///< the widget's result is newer than the last change
    bool m_isChangeMissed = false; ///< the settings changed by themselves while OK waited
    bool m_isRetry = false;        ///< OK has computed the result anew already
};
