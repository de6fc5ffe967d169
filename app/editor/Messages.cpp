#include "editor/Messages.h"

#include "editor/ProgramName.h"

#include <QMessageBox>

namespace {

void Show(QMessageBox::Icon icon, QWidget* parent, const QString& what, const QString& why)
{
    auto* const box = new QMessageBox(icon, ProgramName(), what, QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(why);
    box->open();
}

} // namespace

void Messages::ShowError(QWidget* parent, const QString& what, const QString& why)
{
    Show(QMessageBox::Warning, parent, what, why);
}

void Messages::ShowNote(QWidget* parent, const QString& what, const QString& why)
{
    Show(QMessageBox::Information, parent, what, why);
}
