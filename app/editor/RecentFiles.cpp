#include "editor/RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace {

QString SettingsKey() { return QStringLiteral("files/recent"); }

} // namespace

RecentFiles::RecentFiles(QWidget* parent) : QMenu(parent)
{
    setTitle(tr("Open &Recent"));
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &RecentFiles::Fill);
}

QStringList RecentFiles::Paths() { return QSettings().value(SettingsKey()).toStringList().mid(0, MaxFiles); }

void RecentFiles::Add(const QString& path)
{
    QStringList paths = Paths();
    paths.removeAll(path);
    paths.prepend(path);
    QSettings().setValue(SettingsKey(), QStringList(paths.mid(0, MaxFiles)));
}

void RecentFiles::Fill()
{
    clear();
    const QStringList paths = Paths();
    for (const QString& path : paths) {
        QString name = QFileInfo(path).fileName();
        QAction* const action = addAction(name.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setToolTip(QDir::toNativeSeparators(path));
        connect(action, &QAction::triggered, this, [this, path] { emit Chosen(path); });
    }
    if (paths.isEmpty())
        addAction(tr("No pictures opened yet"))->setEnabled(false);
    addSeparator();
    QAction* const forget = addAction(tr("&Clear List"));
    forget->setEnabled(!paths.isEmpty());
    connect(forget, &QAction::triggered, this, [] { QSettings().remove(SettingsKey()); });
}
