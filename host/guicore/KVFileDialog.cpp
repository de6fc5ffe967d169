#include "guicore/KVFileDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QPointer>

namespace {

/// A folder that there is: QFileDialog would take the last part of another for the name of a file.
QString FolderOf(const QFileInfo& start)
{
    if (start.isFile())
        return start.path();
    return start.isDir() ? start.filePath() : QDir::homePath();
}

} // namespace

// Not QFileDialog::getOpenFileName(), whose dialog is on the stack and would be deleted by a parent that
// goes.
QString KVFileDialog::GetOpenFileName(QWidget* parent, const QString& caption, const QString& directory,
                                      const QString& filter)
{
    const QFileInfo start(directory);
    const QPointer<QFileDialog> dialog = new QFileDialog(parent, caption, FolderOf(start), filter);
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
