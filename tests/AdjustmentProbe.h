#pragma once

#include "YDAdjustmentWidget.h"
#include "image/KVImage.h"

#include <QAbstractButton>
#include <QDataStream>
#include <QGridLayout>
#include <QIODevice>
#include <QLabel>
#include <QLinearGradient>
#include <QSlider>
#include <QSpinBox>
#include <QStringList>
#include <QtTest>

/// What the tests of adjustments look at from outside.
namespace AdjustmentProbe {

/// The child called `name`; ends the test program where there is none of that kind.
template <class T>
T* Child(const QWidget& widget, const char* name)
{
    T* const child = widget.findChild<T*>(QString::fromLatin1(name));
    if (!child)
        qFatal("There is no child \"%s\" of its kind.", name);
    return child;
}

/// What a widget announces, in order: "host", "value", "data".
template <class Widget>
class Announcements
{
public:
    explicit Announcements(Widget& widget)
    {
        Note(widget, &Widget::UserParamsChanged, "host");
        Note(widget, &Widget::ValueChanged, "value");
        Note(widget, &Widget::DataChanged, "data");
    }
    ~Announcements()
    {
        for (const QMetaObject::Connection& connection : m_connections)
            QObject::disconnect(connection);
    }
    Q_DISABLE_COPY(Announcements)

    /// What was announced since the last call, separated by spaces.
    QString Take()
    {
        const QString all = m_all.join(QLatin1Char(' '));
        m_all.clear();
        return all;
    }

private:
    template <class Signal>
    void Note(Widget& widget, Signal signal, const char* what)
    {
        m_connections.append(QObject::connect(&widget, signal, &widget,
                                              [this, what] { m_all.append(QString::fromLatin1(what)); }));
    }

    QVector<QMetaObject::Connection> m_connections;
    QStringList m_all;
};

/// One change of a control, as every adjustment announces it.
inline QString OneChange() { return QStringLiteral("host value data"); }

template <class Params>
QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
}

/// `tag` and then numbers of 32 bits, big-endian.
inline QByteArray Bytes(const char* tag, std::initializer_list<qint32> numbers)
{
    QByteArray bytes(tag);
    for (const qint32 number : numbers)
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.append(char(quint32(number) >> shift));
    return bytes;
}

/// What `panel` makes of `source`.
inline RGBA32iImage Converted(YDAdjustmentWidget& panel, const RGBA32iImage& source)
{
    RGBA32iImage image = source.DeepCopy();
    panel.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    return image;
}

/// What the pixel form of the iterative transformation `rule` makes of `source`.
template <class Rule>
RGBA32iImage ByRule(Rule rule, const RGBA32iImage& source)
{
    const RGBA32iImage image = source.DeepCopy();
    rule.SetProcessingBuffer(image.Pixels());
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.Width(); ++x)
            rule.ProcessPixel(qsizetype(y) * image.RowLength() + x);
    return image;
}

/// The style sheet of a slider whose groove has the stops of `gradient`.
inline QString GrooveSheet(const QLinearGradient& gradient)
{
    QString stops;
    const QGradientStops all = gradient.stops();
    for (const QGradientStop& stop : all)
        stops += QString::asprintf("stop: %g rgb(%d, %d, %d),", stop.first, stop.second.red(),
                                   stop.second.green(), stop.second.blue());
    return QStringLiteral("QSlider::groove:horizontal{border: 0px solid;height: 4px;border-radius: 2px;"
                          "background: qlineargradient(x1: 0, y1: 0, x2: 1, y2: 0, ") +
           stops + QStringLiteral(");}");
}

/// A label's text and place in a form.
inline void CheckLabel(const QWidget& panel, const QGridLayout& grid, int row, int column, const char* name,
                       const char* text, Qt::Alignment alignment)
{
    const auto* const label = Child<QLabel>(panel, name);
    QCOMPARE(label->text(), QString::fromLatin1(text));
    QCOMPARE(label->alignment() & ~Qt::AlignAbsolute, alignment);
    QCOMPARE(grid.itemAtPosition(row, column)->widget(), label);
}

/// A horizontal slider's range, value and place in a form.
inline void CheckSlider(const QWidget& panel, const QGridLayout& grid, int row, const char* name, int minimum,
                        int maximum, int value)
{
    const auto* const slider = Child<QSlider>(panel, name);
    QVERIFY(slider->inherits("KVSlider"));
    QCOMPARE(slider->orientation(), Qt::Horizontal);
    QCOMPARE(slider->minimum(), minimum);
    QCOMPARE(slider->maximum(), maximum);
    QCOMPARE(slider->value(), value);
    QVERIFY(slider->toolTip().isEmpty());
    QCOMPARE(grid.itemAtPosition(row, 1)->widget(), slider);
}

/// A spin box's range, value and place in a form.
inline void CheckSpinBox(const QWidget& panel, const QGridLayout& grid, int row, int column, const char* name,
                         int minimum, int maximum, int value)
{
    const auto* const spin = Child<QSpinBox>(panel, name);
    QVERIFY(spin->inherits("KVSpinBox"));
    QCOMPARE(spin->minimum(), minimum);
    QCOMPARE(spin->maximum(), maximum);
    QCOMPARE(spin->value(), value);
    QCOMPARE(spin->singleStep(), 1);
    QVERIFY(spin->toolTip().isEmpty());
    QCOMPARE(grid.itemAtPosition(row, column)->widget(), spin);
}

/// A button's kind, text and place in a form, and how many columns it spans.
template <class Button>
void CheckButton(const QWidget& panel, const QGridLayout& grid, int row, int column, int columns,
                 const char* name, const char* text)
{
    auto* const button = Child<Button>(panel, name);
    QCOMPARE(button->text(), QString::fromLatin1(text));
    int place[4];
    grid.getItemPosition(grid.indexOf(button), &place[0], &place[1], &place[2], &place[3]);
    QCOMPARE(place[0], row);
    QCOMPARE(place[1], column);
    QCOMPARE(place[3], columns);
}

} // namespace AdjustmentProbe
