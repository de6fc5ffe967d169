#pragma once

#include <QFontDialog>

/// A modal dialog in which the user picks a font.
///
/// It begins with the given font, or with what comes next to it where that is not installed or cannot be
/// shown. Until the user picks another it holds the given one as it is, so that accepting it unchanged
/// changes nothing.
class YDFontDialog : public QFontDialog
{
    Q_OBJECT

public:
    explicit YDFontDialog(const QFont& font, QWidget* parent = nullptr,
                          Qt::WindowFlags flags = Qt::WindowFlags());

    QFont GetFont() const { return m_font; }

    /// Runs the dialog until it is closed: 1 if the user accepted, else 0; 0 too when the dialog is destroyed
    /// meanwhile, with its parent for instance, so one that has a parent is not for the stack.
    int Exec();

private slots:
    void OnCurrentFontChanged(const QFont& font);

private:
    QFont m_font;
    QFont m_shown; ///< the dialog's own form of it
};
