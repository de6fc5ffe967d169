#pragma once

#include "image/SelectiveParams.h"

#include <QList>

#include <string_view>

class QDataStream;

/// The parameters of the selective colours: those of nine ranges, and how percentages are meant.
struct SelectiveParamsList
{
    /// Any other number, as a stored record may hold, means the same as Absolute.
    enum Mode : qint32
    {
        Relative = 0, ///< of the ink that a pixel has
        Absolute = 1  ///< of full ink
    };

    static constexpr int Ranges = 9;
    static constexpr std::string_view Tag = "KVSelectiveColors 1.00000";

    /// Of reds, yellows, greens, cyans, blues, magentas, whites, neutrals and blacks. Nine in a stream.
    QList<SelectiveParams> targets = NoChange();
    Mode mode = Relative;

    /// Reads the tag as raw bytes, the number of ranges as a quint32, the four values of each as the stream
    /// writes floats, and the mode as a qint32. A stream that holds anything but nine ranges, or ends before
    /// the mode does, leaves the record as it was, and false is the answer. No value is checked.
    [[nodiscard]] bool Read(QDataStream& stream);
    /// Writes what Read() reads; false if not all of it went out, and with nothing written for a list of
    /// other than nine, which could never be read again.
    [[nodiscard]] bool Write(QDataStream& stream) const;

    friend bool operator==(const SelectiveParamsList& x, const SelectiveParamsList& y)
    {
        return x.targets == y.targets && x.mode == y.mode;
    }
    friend bool operator!=(const SelectiveParamsList& x, const SelectiveParamsList& y) { return !(x == y); }

private:
    static QList<SelectiveParams> NoChange();
};

/// The name under which the mode travels through signals.
using Mode = SelectiveParamsList::Mode;
