#pragma once

#include <QJsonObject>

/// What the times of a run depend on.
namespace Machine {

/// The processor's name, its cores, the vector sets that the kernels may use, what slows its gathers,
/// compiler and Qt, and a checksum of the program with the libraries of its build ("build"); all but "cores",
/// a number, as texts.
QJsonObject Facts();

/// The same for people, but for the checksum.
QString Describe(const QJsonObject& facts);

} // namespace Machine
