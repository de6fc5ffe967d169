#pragma once

#include "gui/BeforeAfterSplitter.h"
#include "gui/MarchingAnts.h"
#include "gui/PictureLayer.h"
#include "gui/SelectionDrag.h"
#include "gui/ZoomView.h"

#include <QImage>

/// Shows one picture, beside it the same picture as an adjustment would leave it, and a selection.
///
/// Scene coordinates are picture pixels: the scene rectangle is the picture. Mouse events reach the scene
/// as in every graphics view, but for those that the view takes itself: presses that pan, and left ones
/// that drag the splitter or draw with the selection tool. While an override cursor is set somebody picks
/// from the picture, and left presses that do not pan all go to the scene.
///
/// Below 100 % the picture is scaled smoothly, from there on each pixel is seen as a square. A repaint
/// costs what the viewport's size costs, whatever the picture's; no pixels but the seen ones are touched
/// on the GUI thread.
class KVDocumentView : public ZoomView
{
    Q_OBJECT

public:
    enum class SelectionTool
    {
        None,
        Rectangle,
        Ellipse
    };
    Q_ENUM(SelectionTool)

    explicit KVDocumentView(QWidget* parent = nullptr);

    /// The document's picture; empty for none. Nobody may write to its pixels while the view has it. When
    /// the preview becomes the document's picture, set it here before the preview is taken away, so that
    /// it stays on the screen without a break.
    void SetImage(const RGBA32iImage& image);
    /// The picture as adjusted, of the same size; empty when there is none. Nobody may write to its pixels
    /// while the view has it.
    void SetPreview(const RGBA32iImage& preview);
    const RGBA32iImage& Image() const { return m_before.Picture(); }
    const RGBA32iImage& Preview() const { return m_after.Picture(); }

    bool IsSplitterHidden() const { return m_isSplitterHidden; }
    /// Where the splitter stands in the visible part of the picture: 0 at the left, 1 at the right end.
    double SplitterShare() const { return m_splitter.Share(); }
    void SetSplitterShare(double share);

    /// What a drag with the left button draws. Shift makes it a square or a circle, Esc gives it up.
    void SetSelectionTool(SelectionTool tool);
    SelectionTool CurrentSelectionTool() const { return m_tool; }
    /// The outline of the selection, in picture coordinates; empty for none.
    void SetSelectionOutline(const QPainterPath& outline);
    const QPainterPath& SelectionOutline() const { return m_ants.Outline(); }

public slots:
    /// Hides the line between before and after, so that the adjusted picture alone is seen.
    void HideSplitter(bool hide);

signals:
    void SplitterHiddenChanged(bool hidden);
    /// A shape was drawn with the selection tool, `pictureRect` around it in whole picture pixels.
    void SelectionDrawn(const QRectF& pictureRect, KVDocumentView::SelectionTool tool);
    /// A click with the selection tool, or a drag that missed the picture.
    void SelectionCleared();

protected:
    QCursor CursorAt(const QPoint& mouse) const override;

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    /// What the held left button does at present, apart from panning.
    enum class Gesture
    {
        None,
        MoveSplitter,
        DrawSelection
    };

    /// What a repaint needs to know of the view, so that threads need not ask a widget.
    struct Frame
    {
        PictureLayer::Placement placement;
        QRect visible; ///< part of the picture
        int split = 0; ///< first column of the after side
        bool isDark = false;
        bool hasAfter = false;
    };

    Frame CurrentFrame() const;
    PictureLayer::Placement CurrentPlacement() const { return {ToView({0, 0}), Scale()}; }
    QRect VisiblePicture() const;
    QSize PictureSize() const { return {Image().Width(), Image().Height()}; }
    bool IsSplitterShown() const;
    void DrawPictures(QPainter& painter, const QRect& area, const Frame& frame) const;
    void DrawPicturesOnAllCores(QPainter& painter, const QRect& area, const Frame& frame);
    void DrawOverlay(QPainter& painter, const QRect& area);

    bool BeginGesture(const QMouseEvent& event);
    void ContinueGesture(const QPoint& mouse, Qt::KeyboardModifiers modifiers);
    void EndGesture(const QPoint& mouse, Qt::KeyboardModifiers modifiers);
    void CancelGesture();
    void ShowDraft();

    PictureLayer m_before;
    PictureLayer m_after;
    QImage m_canvas; ///< what threads draw a large repaint into; null until there was one
    bool m_isSplitterHidden = false;
    BeforeAfterSplitter m_splitter;
    MarchingAnts m_ants;  ///< around the selection
    MarchingAnts m_draft; ///< around the shape that is being drawn

    SelectionTool m_tool = SelectionTool::None;
    Gesture m_gesture = Gesture::None;
    QPoint m_pressPosition;
    double m_shareBefore = 0.5; ///< the splitter's, when its drag began
    int m_grabOffset = 0;       ///< from the splitter to the mouse that drags it
    bool m_isDragged = false;   ///< the mouse left the place of the press
    SelectionDrag m_drag;
};
