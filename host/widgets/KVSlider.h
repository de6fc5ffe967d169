#pragma once

#include <QSlider>

/// A slider for pages that scroll and for values that are picked by eye.
///
/// The wheel moves it only while it has the focus; otherwise the page around it scrolls. A left press
/// beside the handle brings the handle there and goes on as a drag, with the signals of a drag. A double
/// click is two presses and nothing more.
class KVSlider : public QSlider
{
    Q_OBJECT

public:
    explicit KVSlider(QWidget* parent = nullptr);
    explicit KVSlider(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QRect HandleRect() const;
};
