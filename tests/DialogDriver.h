#pragma once

#include "gui/KVColorDialog.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QVector>

/// Plays the user of a dialog that runs an event loop of its own.
namespace DialogDriver {

using Colors = QVector<QColor>;

/// Calls `act` with the dialog that opens next, in its event loop. The dialog is closed if `act` has not done
/// so, as when a check in it failed.
template <class Dialog = KVColorDialog, class Act>
void InTheDialog(Act act)
{
    QTimer::singleShot(0, qApp, [act] {
        QWidget* const modal = QApplication::activeModalWidget();
        auto* const dialog = qobject_cast<Dialog*>(modal);
        if (!dialog && modal)
            modal->close();
        QVERIFY2(dialog, "no dialog of its kind opened");
        const QPointer<Dialog> open(dialog);
        act(*dialog);
        if (open && open->isVisible())
            open->reject();
    });
}

/// Picks as a user does, not by SetColor().
inline void Pick(KVColorDialog& dialog, const Colors& colors)
{
    for (const QColor& color : colors)
        dialog.setCurrentColor(color);
}

inline void Close(QDialog& dialog, bool isAccepted)
{
    if (isAccepted)
        dialog.accept();
    else
        dialog.reject();
}

} // namespace DialogDriver
