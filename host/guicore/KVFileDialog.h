#pragma once

#include <QString>

class QWidget;

/// The host's dialogs for files. They remember nothing: where to start is the caller's to say.
namespace KVFileDialog {

/// Asks for one existing file and waits for the answer: its path, or an empty text if the user cancelled or
/// `parent` was destroyed meanwhile. `directory` may name a file, which is then selected; where there
/// is nothing of that name, the dialog begins in the user's home. `filter` is as in QFileDialog: several,
/// separated by ";;".
QString GetOpenFileName(QWidget* parent, const QString& caption, const QString& directory,
                        const QString& filter);

} // namespace KVFileDialog
