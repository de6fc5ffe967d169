#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// Message boxes that stay beside the user's work: the call returns at once, and the box goes by itself.
namespace Messages {

/// What failed, and why.
void ShowError(QWidget* parent, const QString& what, const QString& why);
/// What the user should know of something that was done.
void ShowNote(QWidget* parent, const QString& what, const QString& why);

} // namespace Messages
