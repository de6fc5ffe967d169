#include "gui/KVColorDialog.h"

#include "image/ColorToRgba.h"

#include <QScopedValueRollback>

KVColorDialog::KVColorDialog(QWidget* parent, Qt::WindowFlags flags) : QColorDialog(parent)
{
    if (flags != Qt::WindowFlags())
        setWindowFlags((flags & Qt::WindowType_Mask) != 0 ? flags : flags | Qt::Dialog);
    setOption(DontUseNativeDialog); // a native one may tell nothing while the user picks
    connect(this, &QColorDialog::currentColorChanged, this, &KVColorDialog::OnCurrentColorChanged);
}

void KVColorDialog::SetColor(const QColor& color)
{
    const QScopedValueRollback<bool> setting(m_isSetting, true);
    m_color = color;
    setCurrentColor(QColor(ColorToRgba(color)));
}

int KVColorDialog::Exec() { return exec(); }

void KVColorDialog::OnCurrentColorChanged(const QColor& color)
{
    if (m_isSetting)
        return;
    m_color = color;
    emit ColorChanged(color);
}
