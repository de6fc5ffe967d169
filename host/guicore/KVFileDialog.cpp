#include "guicore/KVFileDialog.h"

#include <QFileDialog>
#include <QPointer>

// Not QFileDialog::getOpenFileName(), whose dialog is on the stack and would be deleted by a parent that
// goes.
QString KVFileDialog::GetOpenFileName(QWidget* parent, const QString& caption, const QString& directory,
                                      const QString& filter)
{
    const QFileInfo start(directory);
    const QPointer<QFileDialog> dialog =
        new QFileDialog(parent, caption, start.isFile() ? start.path() : directory, filter);
    dialog->setFileMode(QFileDialog::ExistingFile);
    if (start.isFile())
        dialog->selectFile(start.fileName());
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return {};
    const QString name = isAccepted ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    return name;
}
