#pragma once

#include <QColorDialog>

/// A modal dialog in which the user picks a colour.
///
/// The user picks opaque colours. Until then the dialog holds the colour that it was given as it was given,
/// alpha and colour model included, so that accepting it unchanged changes nothing.
class KVColorDialog : public QColorDialog
{
    Q_OBJECT

public:
    explicit KVColorDialog(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

    /// Shows `color`, any there is, without a signal.
    void SetColor(const QColor& color);
    QColor GetColor() const { return m_color; }

    /// Runs the dialog until it is closed: 1 if the user accepted, else 0; 0 too when the dialog is destroyed
    /// meanwhile, with its parent for instance, so one that has a parent is not for the stack.
    int Exec();

signals:
    /// The user came to another colour and may go on.
    void ColorChanged(const QColor& color);

private slots:
    void OnCurrentColorChanged(const QColor& color);

private:
    QColor m_color = Qt::white; ///< as in a new QColorDialog
    bool m_isSetting = false;
};
