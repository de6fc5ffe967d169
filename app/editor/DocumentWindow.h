#pragma once

#include "editor/Document.h"
#include "editor/PictureSaver.h"
#include "gui/KVDocumentView.h"

#include <QPointer>
#include <QWidget>

class AdjustmentSession;
struct AdjustmentEntry;

/// The tab of one document: its view, its selection tools, the adjustment that is open on it, its saving.
class DocumentWindow : public QWidget
{
    Q_OBJECT

public:
    explicit DocumentWindow(const OpenedPicture& opened, QWidget* parent = nullptr);
    ~DocumentWindow() override;

    Document* GetDocument() { return &m_document; }
    KVDocumentView* View() const { return m_view; }

    /// Opens the adjustment's dialog; only one is open at a time.
    void RunAdjustment(const AdjustmentEntry& entry);
    /// The adjustment that is open; null if none is.
    AdjustmentSession* Session() const;

    bool IsSaving() const { return m_saver.IsBusy(); }
    /// Closing waits for a file to be written.
    bool IsClosingAfterSave() const { return m_closeAfterSave; }
    void GiveUpClosing() { m_closeAfterSave = false; }

public slots:
    void Save();
    void SaveAs();

signals:
    /// What the window allows changed: a session began or ended, saving began or ended.
    void StateChanged();
    void SessionStarted(AdjustmentSession* session);
    void Saved(const QString& path);
    void SaveFailed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void StartSession(const AdjustmentEntry& entry, const operations::Selection& mask);
    void EndSession(QObject* session);
    void PlaceDialog(QWidget* dialog) const;
    void SaveTo(const QString& path, const QByteArray& format, int quality);
    void OnSelectionDrawn(const QRectF& area, KVDocumentView::SelectionTool tool);
    void OnSaved(const SaveRequest& request, const QString& warning);
    void OnSaveFailed(const QString& error);
    bool MayClose();
    void SaveAndClose();
    void UpdateTitle();

    Document m_document;
    KVDocumentView* m_view;
    PictureSaver m_saver;
    QPointer<AdjustmentSession> m_session;
    bool m_closeAfterSave = false;
    int m_quality = -1; ///< chosen in this session of the document; -1: good
};
