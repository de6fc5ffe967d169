#pragma once

#include <QPointer>
#include <QStatusBar>
#include <QStringList>

class DocumentWindow;
class QComboBox;
class QLabel;
class QProgressBar;

/// What is going on, the pixel under the mouse, the picture's size and depth, and the zoom, which can be
/// changed here.
class EditorStatusBar : public QStatusBar
{
    Q_OBJECT

public:
    explicit EditorStatusBar(QWidget* parent = nullptr);
    ~EditorStatusBar() override;

    /// Null for no document.
    void SetWindow(DocumentWindow* window);
    /// A bar moves while `text` is not empty.
    void ShowWork(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowPixel(const QPoint& mouse);
    void ShowZoom();
    void ShowPicture();
    void OnZoomEntered();

    QPointer<DocumentWindow> m_window;
    QLabel* m_work;
    QProgressBar* m_busy;
    QLabel* m_pixel;
    QLabel* m_depth;
    QLabel* m_size;
    QComboBox* m_zoom;
};
