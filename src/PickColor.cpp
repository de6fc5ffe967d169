#include "PickColor.h"

#include "gui/KVColorDialog.h"

#include <QPointer>

void PickColor(QWidget* owner, const QString& title, const QColor& color, const ColorTaker& accept,
               const ColorTaker& preview, Qt::WindowFlags flags)
{
    const QPointer<QWidget> alive(owner);
    const QPointer<KVColorDialog> dialog = new KVColorDialog(owner, flags);
    dialog->setWindowTitle(title);
    dialog->SetColor(color);
    const QColor before = dialog->GetColor(); // what `color` refers to may change or go
    if (preview)
        QObject::connect(dialog, &KVColorDialog::ColorChanged, owner, preview);
    const bool isAccepted = dialog->Exec() == QDialog::Accepted;
    const QColor chosen = dialog ? dialog->GetColor() : before;
    delete dialog;
    if (!alive)
        return;
    if (isAccepted)
        accept(chosen);
    else if (preview)
        preview(before);
}
