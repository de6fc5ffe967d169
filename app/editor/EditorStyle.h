#pragma once

#include <QProxyStyle>

/// A style as it is, but for what does not fit a photo editor on light and dark: dialog buttons bear no
/// pictures, marks that close things are drawn in the palette's colour, and check boxes are seen on dark.
class EditorStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Belongs to the caller, as QApplication::setStyle() wants it.
    static QStyle* Create(const QString& baseStyle);

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                       const QWidget* widget) const override;

private:
    explicit EditorStyle(const QString& baseStyle);
};
