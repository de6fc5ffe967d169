#pragma once

#include <QWidget>

/// What the host knows of every adjustment widget: that its user changed something in it.
class KVAdjustmentWidget : public QWidget
{
    Q_OBJECT

public:
    explicit KVAdjustmentWidget(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

    /// Tells the host that the user's settings changed; every control slot calls it before it emits
    /// its own signals.
    void AboutUserParamsChanged();

signals:
    void UserParamsChanged();
};
