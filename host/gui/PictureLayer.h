#pragma once

#include "gui/ReducedPicture.h"
#include "threads/LatestJob.h"

#include <QObject>
#include <QPointF>
#include <QRectF>

class QPainter;

/// One picture of a document view, in a form that is quick to draw at the view's zoom.
///
/// From half size on it is drawn from its own pixels; below that from a reduced copy, which the global
/// thread pool makes. While a copy is made the last one goes on being shown, also when it is one of the
/// picture before; one copy at a time is made, so that a stream of pictures that come faster than their
/// copies is still seen to move, and ends with the last of them.
class PictureLayer : public QObject
{
    Q_OBJECT

public:
    /// How the picture lies in the view.
    struct Placement
    {
        QPointF origin;     ///< of the picture, in view coordinates
        double scale = 1.0; ///< view units per picture pixel
    };

    explicit PictureLayer(QObject* parent = nullptr);
    ~PictureLayer() override;

    const RGBA32iImage& Picture() const { return m_picture; }

    /// Another picture, at `zoom` device pixels per picture pixel. Nobody may write to its pixels while
    /// the layer has it.
    void SetPicture(const RGBA32iImage& picture, double zoom);
    void SetZoom(double zoom);

    /// Takes the picture of `other` with its reduced copy, and leaves `other` as it is.
    void TakeOver(const PictureLayer& other);

    /// Whether the picture came so lately that nothing of it was seen yet and a copy is still being made.
    bool IsAwaitingFirstCopy() const;

    /// Draws what lies inside `area`, in view coordinates; a checkerboard shows through. `painter` has no
    /// transformation of its own. The work depends on the area and not on the picture.
    void Draw(QPainter& painter, const Placement& placement, const QRect& area, bool isDark) const;

    /// The reduced copy; without pixels where there is none.
    const ReducedPicture& Copy() const { return m_copy; }

signals:
    /// The layer looks different now.
    void Changed();

private:
    /// What a copy is made of; the newest picture has the highest number.
    struct Request
    {
        quint64 picture = 0;
        int factor = 1;

        bool operator==(const Request& other) const
        {
            return picture == other.picture && factor == other.factor;
        }
    };

    /// Pixels that stand for squares of `cell` picture pixels a side, ready for QPainter.
    struct Cells
    {
        QImage image;
        QPoint first; ///< the image's first cell, counted in cells of the whole picture
        int cell = 1;
    };

    Request Wanted() const { return {m_pictureNumber, ReducedPicture::FactorForZoom(m_zoom)}; }
    Cells CellsFor(const QRectF& visible, const Placement& placement) const;
    Cells StandInFor(const QRectF& visible, const Placement& placement) const;
    bool IsKnownOpaque() const;
    void RequestCopy();
    LatestJob<ReducedPicture>::Work MakeReduction();
    void AbortReduction();
    void OnReduced(const ReducedPicture& copy);

    RGBA32iImage m_picture;
    quint64 m_pictureNumber = 0;
    double m_zoom = 1.0;
    ReducedPicture m_copy;
    Request m_copyRequest;  ///< what m_copy shows
    Request m_lastRequest;  ///< the last one that was worked on, whether it succeeded
    bool m_wasSeen = false; ///< something of this picture or the one before was drawn
    bool m_isCopyBeingMade = false;
    LatestJob<ReducedPicture> m_reduction{this, [this] { return MakeReduction(); }};
};
