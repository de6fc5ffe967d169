#pragma once

#include <QJsonObject>

/// What the times of a run depend on besides the code.
namespace Machine {

/// The processor's name, its cores, the vector sets that the kernels may use, what slows its gathers,
/// compiler and Qt; all but "cores", a number, as texts for people.
QJsonObject Facts();

/// The same as lines of text.
QString Describe(const QJsonObject& facts);

} // namespace Machine
