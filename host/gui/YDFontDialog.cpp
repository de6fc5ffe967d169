#include "gui/YDFontDialog.h"

#include <QFontInfo>

#include <algorithm>

namespace {

constexpr double MaxPointSize = 512; ///< as far as the dialog's own box goes
constexpr int MaxNameLength = 1000;

/// The font with a size that can be turned into a whole number and without names that are none's.
QFont Bounded(const QFont& font)
{
    QFont bounded = font;
    if (font.pointSizeF() > 0) // not so for one that is no number
        bounded.setPointSizeF(std::min(font.pointSizeF(), MaxPointSize));
    else if (font.pixelSize() > 0)
        bounded.setPixelSize(std::min(font.pixelSize(), int(MaxPointSize)));
    else
        bounded.setPointSizeF(QFont().pointSizeF());
    if (font.family().size() > MaxNameLength)
        bounded.setFamily(QFont().family());
    if (font.styleName().size() > MaxNameLength)
        bounded.setStyleName(QString());
    bounded.setFamilies({});
    return bounded;
}

/// The installed font that is drawn in its place, by the names that the dialog's lists know it by: asked for
/// an upright font, the dialog would look for a style "Normal", and take an oblique one where upright is
/// "Book".
QFont Showable(const QFont& font)
{
    QFont showable = Bounded(font);
    const QFontInfo installed(showable);
    if (!installed.family().isEmpty()) {
        showable.setFamily(installed.family());
        showable.setStyleName(installed.styleName());
    }
    return showable;
}

} // namespace

YDFontDialog::YDFontDialog(const QFont& font, QWidget* parent, Qt::WindowFlags flags)
    : QFontDialog(parent), m_font(font)
{
    if (flags != Qt::WindowFlags())
        setWindowFlags((flags & Qt::WindowType_Mask) != 0 ? flags : flags | Qt::Dialog);
    setOption(DontUseNativeDialog); // as the colour dialog beside it
    setCurrentFont(Showable(font));
    m_shown = currentFont();
    connect(this, &QFontDialog::currentFontChanged, this, &YDFontDialog::OnCurrentFontChanged);
}

int YDFontDialog::Exec() { return exec(); }

/// Also called when the user accepts what the dialog began with.
void YDFontDialog::OnCurrentFontChanged(const QFont& font)
{
    if (font == m_shown)
        return;
    m_shown = font;
    m_font = font;
}
