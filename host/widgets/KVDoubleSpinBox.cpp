#include "widgets/KVDoubleSpinBox.h"

#include <QWheelEvent>

KVDoubleSpinBox::KVDoubleSpinBox(QWidget* parent) : QDoubleSpinBox(parent)
{
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
}

QValidator::State KVDoubleSpinBox::validate(QString& text, int& position) const
{
    text = WithLocaleSeparator(text); // as long as it was, so the position stays
    return QDoubleSpinBox::validate(text, position);
}

double KVDoubleSpinBox::valueFromText(const QString& text) const
{
    return QDoubleSpinBox::valueFromText(WithLocaleSeparator(text));
}

void KVDoubleSpinBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QDoubleSpinBox::wheelEvent(event);
    else
        event->ignore();
}

QString KVDoubleSpinBox::WithLocaleSeparator(const QString& text) const
{
    if (isGroupSeparatorShown() || text == specialValueText())
        return text;
    const int first = text.startsWith(prefix()) ? prefix().size() : 0;
    const int last = text.size() - (text.endsWith(suffix()) ? suffix().size() : 0);
    QString result = text;
    for (int i = first; i < last; ++i)
        if (result.at(i) == QLatin1Char(',') || result.at(i) == QLatin1Char('.'))
            result[i] = locale().decimalPoint();
    return result;
}
