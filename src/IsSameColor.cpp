#include "IsSameColor.h"

#include <QColor>
#include <QDataStream>

namespace {

QByteArray Stored(const QColor& color)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << color;
    return bytes;
}

} // namespace

bool IsSameColor(const QColor& a, const QColor& b) { return a == b || Stored(a) == Stored(b); }
