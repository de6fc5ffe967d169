#pragma once

#include <QMenu>
#include <QStringList>

/// The menu of the pictures that were opened or saved last, the newest first.
class RecentFiles : public QMenu
{
    Q_OBJECT

public:
    static constexpr int MaxFiles = 10;

    explicit RecentFiles(QWidget* parent = nullptr);

    void Add(const QString& path);
    static QStringList Paths();

signals:
    void Chosen(const QString& path);

private:
    void Fill();
};
