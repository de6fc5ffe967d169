#pragma once

#include <QComboBox>

/// A combo box for panels, which are narrow and scroll.
///
/// The wheel changes it only while it has the focus. It fills the width that it is given and asks for
/// little, however long its items are; the list that drops down is as wide as the longest of them.
class YDCommonComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit YDCommonComboBox(QWidget* parent = nullptr);

    void showPopup() override;

protected:
    void wheelEvent(QWheelEvent* event) override;
};
