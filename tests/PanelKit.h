#pragma once

#include "YDAdjustmentWidget.h"
#include "gui/YodiCustomSlider.h"
#include "image/KVImage.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDataStream>
#include <QGroupBox>
#include <QLineEdit>
#include <QLinearGradient>
#include <QSignalSpy>
#include <QStringList>
#include <QtTest>

#include <initializer_list>
#include <limits>

/// What the tests of panels share: a panel with its children, its user, what it announces, its record's bytes
/// and its pictures.
///
/// What holds for every panel is not checked with these, panel by panel, but by the tables of
/// tst_AdjustmentCatalog, tst_AdjustmentContracts, tst_ColorButtons, tst_PanelForms and tst_RecordStreams.
namespace PanelKit {

constexpr int PatienceMs = 20000;
/// Longer than the delay in which changes are gathered, so that a job that would start has started.
constexpr int QuietMs = 150;
constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();

/// Settings under a name of the tests' own and of each program, whoever runs them.
inline const bool HasItsOwnSettings = [] {
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    return true;
}();

/// The child called `name`; ends the test program where there is none of that kind.
template <class T>
T* Child(const QWidget& widget, const char* name)
{
    T* const child = widget.findChild<T*>(QString::fromLatin1(name));
    if (!child)
        qFatal("There is no child \"%s\" of its kind.", name);
    return child;
}

/// A widget of an adjustment, as a dialog or as a panel; tests derive from it and name the children.
template <class Widget>
struct Panel
{
    explicit Panel(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return PanelKit::Child<T>(widget, name);
    }

    /// What the preview shows of `source`; empty where none comes.
    RGBA32iImage Preview(const RGBA32iImage& source, const RGBA32iImage& mask = {}, const QPoint& offset = {},
                         const QRect& bounds = {})
    {
        QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
        widget.SetImage(source, mask, offset, bounds);
        return ready.wait(PatienceMs) ? widget.AdjustedImage() : RGBA32iImage();
    }

    Widget widget;
};

/// What a panel announces, in order: "host", "value", "data".
class Announcements
{
public:
    template <class Widget>
    explicit Announcements(Widget& widget) : Announcements(widget, &Widget::ValueChanged, "value")
    {}
    /// Of a panel whose own signal is another.
    template <class Widget, class Signal>
    Announcements(Widget& widget, Signal own, const char* name)
    {
        Hear(widget, &KVAdjustmentWidget::UserParamsChanged, "host");
        Hear(widget, own, name);
        Hear(widget, &YDAdjustmentWidget::DataChanged, "data");
    }

    /// Listens to one more signal, or to the same once more under another name.
    template <class Widget, class Signal>
    void Hear(Widget& widget, Signal signal, const char* what)
    {
        QObject::connect(&widget, signal, &m_receiver,
                         [this, what] { m_order.append(QString::fromLatin1(what)); });
    }

    /// What was announced since the last call, separated by spaces.
    QString Take()
    {
        const QString all = m_order.join(QLatin1Char(' '));
        m_order.clear();
        return all;
    }

private:
    QStringList m_order;
    QObject m_receiver; ///< gone first, and the connections with it
};

/// So many changes, as almost every panel announces them.
inline QString Changes(int count)
{
    QStringList changes;
    for (int i = 0; i < count; ++i)
        changes.append(QStringLiteral("host value data"));
    return changes.join(QLatin1Char(' '));
}

inline QString OneChange() { return Changes(1); }

/// Operates a control as its user does: moves it, chooses in it, checks it or types into it. Of a control
/// with several handles it is the first.
inline void Operate(QWidget& control, const QVariant& value)
{
    if (auto* const handles = qobject_cast<YodiCustomSlider*>(&control)) {
        handles->ChangeValue(0, value.toInt());
        return;
    }
    if (auto* const button = qobject_cast<QAbstractButton*>(&control)) {
        if (button->isChecked() != value.toBool())
            button->click();
        return;
    }
    for (const char* const property : {"value", "currentIndex", "checked", "text"})
        if (control.property(property).isValid()) {
            control.setProperty(property, value);
            return;
        }
    qFatal("Nobody can operate \"%s\".", qPrintable(control.objectName()));
}

/// The colour in the middle of a button's icon.
inline QRgb SwatchOf(const QAbstractButton& button)
{
    const QSize size = button.iconSize();
    return button.icon().pixmap(size).toImage().pixel(size.width() / 2, size.height() / 2);
}

/// What a control shows, in words: a number, the text that is chosen or typed, "on" or "off", a colour; of a
/// control with several handles their places.
inline QString ShownBy(const QWidget& control)
{
    if (const auto* const handles = qobject_cast<const YodiCustomSlider*>(&control)) {
        QStringList places;
        for (uint handle = 0; handle < handles->ControlCount(); ++handle)
            places.append(QString::number(handles->Value(handle)));
        return places.join(QLatin1Char('/'));
    }
    if (const auto* const box = qobject_cast<const QComboBox*>(&control))
        return box->currentText();
    if (const auto* const line = qobject_cast<const QLineEdit*>(&control))
        return line->text();
    const auto* const button = qobject_cast<const QAbstractButton*>(&control);
    if (button && !button->isCheckable())
        return QColor(SwatchOf(*button)).name();
    const QVariant isChecked = control.property("checked");
    return isChecked.isValid() ? QString::fromLatin1(isChecked.toBool() ? "on" : "off")
                               : control.property("value").toString();
}

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

/// What the functor `rule` makes of each pixel of `source`.
template <class Rule>
RGBA32iImage ByFunctor(const Rule& rule, const RGBA32iImage& source)
{
    const RGBA32iImage image = source.DeepCopy();
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.Width(); ++x)
            rule(image.Row(y)[x]);
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

} // namespace PanelKit
