#pragma once

#include "editor/EditorOptions.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class AdjustmentSession;
class DocumentWindow;
class MainWindow;

/// Does by itself what a user would do: opens a picture in the main window, runs an adjustment through its
/// dialog, presses OK. Writes a picture of the window with the dialog, and the adjusted picture.
///
/// Ends the event loop with 0, or 1 where something failed, which standard error names.
class RenderCommand : public QObject
{
    Q_OBJECT

public:
    RenderCommand(MainWindow& window, const EditorOptions& options);
    ~RenderCommand() override;

    void Start();

private:
    void OnOpened(DocumentWindow* window);
    void OnSessionStarted(AdjustmentSession* session);
    void OnPreview();
    void OnTick();
    [[nodiscard]] QString TakePictureOfWindow();
    void PressOk();
    void WriteResult();
    void Fail(const QString& error);

    MainWindow& m_window;
    const EditorOptions m_options;
    QPointer<DocumentWindow> m_document;
    QPointer<AdjustmentSession> m_session;
    QTimer m_quietTimer;
    int m_quietTicks = 0;
};
