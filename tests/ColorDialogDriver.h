#pragma once

#include "gui/KVColorDialog.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVector>

#include <functional>

/// Plays the user of a colour dialog that runs an event loop of its own.
namespace ColorDialogDriver {

using Colors = QVector<QColor>;

/// Calls `act` with the colour dialog that opens next, in its event loop. The dialog is closed if `act` has
/// not done so, as when a check in it failed.
inline void InTheDialog(const std::function<void(KVColorDialog&)>& act)
{
    QTimer::singleShot(0, qApp, [act] {
        auto* const dialog = qobject_cast<KVColorDialog*>(QApplication::activeModalWidget());
        QVERIFY2(dialog, "no colour dialog opened");
        const QPointer<KVColorDialog> open(dialog);
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

inline void Close(KVColorDialog& dialog, bool isAccepted)
{
    if (isAccepted)
        dialog.accept();
    else
        dialog.reject();
}

/// The colour in the middle of a button's icon.
inline QRgb SwatchOf(const QPushButton& button)
{
    const QSize size = button.iconSize();
    return button.icon().pixmap(size).toImage().pixel(size.width() / 2, size.height() / 2);
}

/// The rows that every panel with a live preview is tested by: what is picked, how the dialog ends, how often
/// a change is announced on the way and after it. `afterAccepting` is 1 for a panel that announces every
/// colour that is accepted, even one that it shows already.
inline void AddRows(const QColor& first, const QColor& second, int afterAccepting = 0)
{
    QTest::addColumn<Colors>("picks");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow("accept changed") << Colors{first, second} << true << 2 << afterAccepting;
    QTest::newRow("accept unchanged") << Colors{} << true << 0 << afterAccepting;
    QTest::newRow("cancel changed") << Colors{first, second} << false << 2 << 1;
    QTest::newRow("cancel unchanged") << Colors{} << false << 0 << 0;
    QTest::newRow("the same colour twice") << Colors{first, first} << true << 1 << afterAccepting;
}

} // namespace ColorDialogDriver
