#pragma once

#include <QCoreApplication>

class QWidget;

/// What the program is, and its version.
class AboutBox
{
    Q_DECLARE_TR_FUNCTIONS(AboutBox)

public:
    static void Show(QWidget* parent);
};
