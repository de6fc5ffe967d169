#pragma once

#include <QSpinBox>

/// A spin box for pages that scroll: the wheel changes it only while it has the focus.
class KVSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit KVSpinBox(QWidget* parent = nullptr);

protected:
    void wheelEvent(QWheelEvent* event) override;
};
