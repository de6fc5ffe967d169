#pragma once

#include <QDoubleSpinBox>

/// A spin box for fractions, on pages that scroll.
///
/// The wheel changes it only while it has the focus. Comma and point are both the decimal separator,
/// whatever the locale; the locale's own appears in the field. A box that shows group separators keeps the
/// locale's reading of both.
class KVDoubleSpinBox : public QDoubleSpinBox
{
    Q_OBJECT

public:
    explicit KVDoubleSpinBox(QWidget* parent = nullptr);

    QValidator::State validate(QString& text, int& position) const override;
    double valueFromText(const QString& text) const override;

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    QString WithLocaleSeparator(const QString& text) const;
};
