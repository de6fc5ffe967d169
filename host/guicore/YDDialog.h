#pragma once

#include <QDialog>
#include <QPointer>

class QEventLoop;

/// A dialog that can run its own event loop, modal or not.
class YDDialog : public QDialog
{
    Q_OBJECT

public:
    explicit YDDialog(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

    /// Shows the dialog, application-modal if `modal`, and runs an event loop until it is closed or hidden.
    ///
    /// Returns the result code: Accepted (1), Rejected (0), or what done() was given. Also 0 when the
    /// dialog is destroyed while shown, and when it is already being executed. A dialog that is deleted
    /// when closed is deleted before this returns.
    virtual int Exec(bool modal);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    QPointer<QEventLoop> m_loop; ///< runs while Exec() does
};
