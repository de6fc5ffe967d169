#pragma once

#include <QMdiArea>

/// The area of the documents: tabs that can be closed and moved.
class YDMdiArea : public QMdiArea
{
    Q_OBJECT

public:
    explicit YDMdiArea(QWidget* parent = nullptr);
    ~YDMdiArea() override;

    /// The window that holds the living area, the newest one where there are several; null when there is
    /// none. Parent of the dialogs that belong to no document.
    static QWidget* MainWindow();
};
