#include "editor/AboutBox.h"

#include "editor/ProgramName.h"
#include "editor/ToolIcons.h"

#include <QMessageBox>

void AboutBox::Show(QWidget* parent)
{
    constexpr int IconSide = 64;
    auto* const box = new QMessageBox(
        QMessageBox::NoIcon, tr("About %1").arg(ProgramName()),
        QStringLiteral("<h3>%1&nbsp;%2</h3>").arg(ProgramName(), QCoreApplication::applicationVersion()),
        QMessageBox::Close, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIconPixmap(ToolIcons::Application().pixmap(IconSide));
    box->setInformativeText(tr(
        "Opens photographs, adjusts them or a selected part, and shows the effect while the controls move. "
        "Profile and metadata of the files are kept."));
    box->open();
}
