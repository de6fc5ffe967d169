#include "editor/EditorStatusBar.h"

#include "editor/DocumentWindow.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QProgressBar>

#include <cmath>

namespace {

constexpr double Percent = 100.0;
constexpr int BusyWidth = 90;
constexpr int BusyHeight = 6;
constexpr int LabelMargin = 8;

QString ZoomText(double zoom)
{
    const double percent = zoom * Percent;
    return EditorStatusBar::tr("%1 %").arg(QLocale().toString(percent, 'f', percent < 10 ? 1 : 0));
}

QString ChannelsText(const YDRGBA32i& pixel)
{
    // Spaces as wide as digits keep the numbers in their places.
    constexpr QChar FigureSpace(0x2007);
    return QStringLiteral("%1 %2 %3")
        .arg(pixel.r, 3, 10, FigureSpace)
        .arg(pixel.g, 3, 10, FigureSpace)
        .arg(pixel.b, 3, 10, FigureSpace);
}

} // namespace

EditorStatusBar::EditorStatusBar(QWidget* parent)
    : QStatusBar(parent), m_work(new QLabel(this)), m_busy(new QProgressBar(this)), m_pixel(new QLabel(this)),
      m_depth(new QLabel(this)), m_size(new QLabel(this)), m_zoom(new QComboBox(this))
{
    m_busy->setRange(0, 0);
    m_busy->setTextVisible(false);
    m_busy->setFixedSize(BusyWidth, BusyHeight);
    m_pixel->setObjectName(QStringLiteral("PixelLabel"));
    m_pixel->setToolTip(tr("Place and red, green and blue of the pixel under the mouse"));
    m_size->setObjectName(QStringLiteral("SizeLabel"));
    m_size->setToolTip(tr("Size of the picture in pixels"));
    m_depth->setText(tr("8 bits a channel"));
    m_depth->setToolTip(tr("The file holds more than 8 bits a channel; the picture was reduced to 8."));
    m_zoom->setObjectName(QStringLiteral("ZoomCombo"));
    m_zoom->setEditable(true);
    m_zoom->setInsertPolicy(QComboBox::NoInsert);
    m_zoom->setCompleter(nullptr);
    m_zoom->setAccessibleName(tr("Zoom"));
    m_zoom->setToolTip(tr("Zoom: choose one, or type per cent"));
    for (const double zoom : {0.1, 0.25, 0.5, 1.0, 2.0, 4.0, 8.0, 16.0})
        m_zoom->addItem(ZoomText(zoom), zoom);
    m_zoom->setFocusPolicy(Qt::ClickFocus);
    connect(m_zoom, QOverload<int>::of(&QComboBox::activated), this, &EditorStatusBar::OnZoomEntered);
    connect(m_zoom->lineEdit(), &QLineEdit::editingFinished, this, &EditorStatusBar::OnZoomEntered);

    addWidget(m_busy);
    addWidget(m_work, 1);
    for (QLabel* const label : {m_pixel, m_depth, m_size})
        label->setContentsMargins(LabelMargin, 0, LabelMargin, 0);
    for (QWidget* const widget : std::initializer_list<QWidget*>{m_pixel, m_depth, m_size, m_zoom})
        addPermanentWidget(widget);
    ShowWork(QString());
    SetWindow(nullptr);
}

EditorStatusBar::~EditorStatusBar() = default;

void EditorStatusBar::SetWindow(DocumentWindow* window)
{
    if (m_window && m_window != window) {
        m_window->View()->disconnect(this);
        m_window->View()->viewport()->removeEventFilter(this);
    }
    if (window && m_window != window) {
        connect(window->View(), &KVDocumentView::ZoomChanged, this, &EditorStatusBar::ShowZoom);
        window->View()->viewport()->installEventFilter(this);
        window->View()->viewport()->setMouseTracking(true);
    }
    m_window = window;
    m_pixel->clear();
    ShowPicture();
    ShowZoom();
}

void EditorStatusBar::ShowWork(const QString& text)
{
    m_work->setText(text);
    m_work->setVisible(!text.isEmpty());
    m_busy->setVisible(!text.isEmpty());
}

bool EditorStatusBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseMove)
        ShowPixel(static_cast<QMouseEvent*>(event)->pos());
    else if (event->type() == QEvent::Leave)
        m_pixel->clear();
    return QStatusBar::eventFilter(watched, event);
}

/// The pixel as it is, and where a preview is shown, as it will be.
void EditorStatusBar::ShowPixel(const QPoint& mouse)
{
    m_pixel->clear();
    if (!m_window)
        return;
    const QPointF place = m_window->View()->mapToScene(mouse);
    const RGBA32iImage picture = m_window->GetDocument()->Picture();
    if (place.x() < 0 || place.y() < 0 || place.x() >= picture.Width() || place.y() >= picture.Height())
        return;
    const int x = int(place.x());
    const int y = int(place.y());
    QString text = tr("%1, %2:  %3").arg(x).arg(y).arg(ChannelsText(picture.Row(y)[x]));
    const RGBA32iImage preview = m_window->View()->Preview();
    if (x < preview.Width() && y < preview.Height())
        text += QStringLiteral("  →  ") + ChannelsText(preview.Row(y)[x]);
    m_pixel->setText(text);
}

void EditorStatusBar::ShowZoom()
{
    m_zoom->setEnabled(m_window != nullptr);
    m_zoom->setEditText(m_window ? ZoomText(m_window->View()->Zoom()) : QString());
}

void EditorStatusBar::ShowPicture()
{
    const QSize size = m_window ? m_window->GetDocument()->Size() : QSize();
    m_size->setText(m_window ? tr("%1 × %2").arg(size.width()).arg(size.height()) : QString());
    m_depth->setVisible(m_window && m_window->GetDocument()->IsDepthReduced());
}

void EditorStatusBar::OnZoomEntered()
{
    if (!m_window)
        return;
    QString text = m_zoom->currentText();
    bool isNumber = false;
    const double percent = QLocale().toDouble(text.remove(QLatin1Char('%')).trimmed(), &isNumber);
    const bool isChanged = m_zoom->currentText() != ZoomText(m_window->View()->Zoom());
    if (isNumber && std::isfinite(percent) && percent > 0 && isChanged)
        m_window->View()->SetZoom(percent / Percent);
    ShowZoom();
    m_window->View()->setFocus();
}
