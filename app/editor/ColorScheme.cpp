#include "editor/ColorScheme.h"

#include "editor/EditorStyle.h"

#include <QApplication>
#include <QPalette>
#include <QSettings>
#include <QStyle>

namespace {

QString SettingsKey() { return QStringLiteral("view/colorScheme"); }

struct Colors
{
    QColor window;
    QColor base;
    QColor alternateBase;
    QColor button;
    QColor text;
    QColor dimText;
    QColor highlight;
    QColor highlightedText;
    QColor link;
    QColor toolTip;
};

/// Neutral greys: a tinted surrounding would tint the eye's judgement of the picture.
const Colors& DarkColors()
{
    static const Colors colors{QColor(0x32, 0x32, 0x32), QColor(0x26, 0x26, 0x26), QColor(0x2c, 0x2c, 0x2c),
                               QColor(0x40, 0x40, 0x40), QColor(0xe6, 0xe6, 0xe6), QColor(0x8a, 0x8a, 0x8a),
                               QColor(0x3d, 0x7e, 0xc8), QColor(0xff, 0xff, 0xff), QColor(0x7f, 0xb2, 0xee),
                               QColor(0x46, 0x46, 0x46)};
    return colors;
}

const Colors& LightColors()
{
    static const Colors colors{QColor(0xf0, 0xf0, 0xf0), QColor(0xff, 0xff, 0xff), QColor(0xf7, 0xf7, 0xf7),
                               QColor(0xf0, 0xf0, 0xf0), QColor(0x1c, 0x1c, 0x1c), QColor(0x8c, 0x8c, 0x8c),
                               QColor(0x2f, 0x6f, 0xb8), QColor(0xff, 0xff, 0xff), QColor(0x1c, 0x5c, 0xa8),
                               QColor(0xff, 0xff, 0xf4)};
    return colors;
}

QPalette PaletteOf(const Colors& colors)
{
    QPalette palette(colors.button, colors.window);
    palette.setColor(QPalette::WindowText, colors.text);
    palette.setColor(QPalette::Base, colors.base);
    palette.setColor(QPalette::AlternateBase, colors.alternateBase);
    palette.setColor(QPalette::Text, colors.text);
    palette.setColor(QPalette::ButtonText, colors.text);
    palette.setColor(QPalette::BrightText, Qt::red);
    palette.setColor(QPalette::Highlight, colors.highlight);
    palette.setColor(QPalette::HighlightedText, colors.highlightedText);
    palette.setColor(QPalette::Link, colors.link);
    palette.setColor(QPalette::LinkVisited, colors.link);
    palette.setColor(QPalette::ToolTipBase, colors.toolTip);
    palette.setColor(QPalette::ToolTipText, colors.text);
    palette.setColor(QPalette::PlaceholderText, colors.dimText);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colors.dimText);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colors.dimText);
    return palette;
}

} // namespace

std::optional<ColorScheme::Scheme> ColorScheme::FromName(const QString& name)
{
    for (const Scheme scheme : {Scheme::System, Scheme::Light, Scheme::Dark})
        if (name == Name(scheme))
            return scheme;
    return std::nullopt;
}

QString ColorScheme::Name(Scheme scheme)
{
    switch (scheme) {
    case Scheme::System:
        return QStringLiteral("system");
    case Scheme::Light:
        return QStringLiteral("light");
    case Scheme::Dark:
        return QStringLiteral("dark");
    }
    Q_UNREACHABLE();
}

void ColorScheme::Apply(Scheme scheme)
{
    static const QString systemStyle = QApplication::style()->objectName();
    if (scheme == Scheme::System) {
        QApplication::setStyle(EditorStyle::Create(systemStyle));
        QApplication::setPalette(QPalette());
        return;
    }
    // Only Fusion takes every colour from the palette.
    QApplication::setStyle(EditorStyle::Create(QStringLiteral("Fusion")));
    QApplication::setPalette(PaletteOf(scheme == Scheme::Dark ? DarkColors() : LightColors()));
}

ColorScheme::Scheme ColorScheme::Stored()
{
    return FromName(QSettings().value(SettingsKey()).toString()).value_or(Scheme::System);
}

void ColorScheme::Store(Scheme scheme) { QSettings().setValue(SettingsKey(), Name(scheme)); }
