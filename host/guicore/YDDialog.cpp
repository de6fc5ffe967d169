#include "guicore/YDDialog.h"

#include <QEventLoop>
#include <QHideEvent>

YDDialog::YDDialog(QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags) {}

int YDDialog::Exec(bool modal)
{
    if (m_loop)
        return Rejected;
    const bool deleteOnClose = testAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_DeleteOnClose, false); // the result is read after the closing
    const Qt::WindowModality modality = windowModality();
    setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
    setResult(Rejected);

    QEventLoop loop;
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    m_loop = &loop;
    const QPointer<YDDialog> alive(this);
    show();
    if (alive && isVisible()) // showing may have closed it already
        loop.exec(QEventLoop::DialogExec);
    if (!alive)
        return Rejected;

    m_loop.clear();
    const int code = result();
    setWindowModality(modality);
    if (deleteOnClose)
        delete this;
    return code;
}

void YDDialog::hideEvent(QHideEvent* event)
{
    QDialog::hideEvent(event);
    if (m_loop && !event->spontaneous())
        m_loop->quit();
}
