#pragma once

#include "YDAdjustmentWidget.h"

#include <QString>

/// Writes down what a widget of an adjustment announces: each change is the host's notification, the
/// adjustment's own signal and DataChanged(), in this order.
class Announcements
{
public:
    template <class Widget>
    explicit Announcements(Widget& widget)
    {
        QObject::connect(&widget, &KVAdjustmentWidget::UserParamsChanged, &m_receiver,
                         [this] { m_order.append(QLatin1String("host ")); });
        QObject::connect(&widget, &Widget::ValueChanged, &m_receiver,
                         [this] { m_order.append(QLatin1String("value ")); });
        QObject::connect(&widget, &YDAdjustmentWidget::DataChanged, &m_receiver,
                         [this] { m_order.append(QLatin1String("data ")); });
    }

    /// How many changes there were since it was last asked; -1 if one was not announced in order.
    int Take()
    {
        const QString change = QStringLiteral("host value data ");
        const int count = m_order.size() / change.size();
        const bool isInOrder = m_order == change.repeated(count);
        m_order.clear();
        return isInOrder ? count : -1;
    }

private:
    QString m_order;
    QObject m_receiver; ///< gone first, and the connections with it
};
