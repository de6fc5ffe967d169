#pragma once

#include <QPainterPath>
#include <QRect>

#include <memory>

/// One number of 16 bits for each pixel of a part of a picture: how far a shape covers it, 65535 wholly.
///
/// The resolution beyond 8 bits keeps what three blurs round away invisible.
class CoveragePlane
{
public:
    static constexpr quint16 Full = 65535;

    /// Nothing is covered yet. No memory to be had gives a plane that is not valid.
    explicit CoveragePlane(const QRect& area);

    bool IsValid() const { return m_values != nullptr; }
    QRect Area() const { return m_area; }
    quint16* Row(int index) const { return m_values.get() + qsizetype(index) * m_area.width(); }

    /// Covers what `shape`, in coordinates of the picture, covers, with antialiased edges. False, and the
    /// plane holds anything, where there is no memory for that; the same holds for Blur().
    [[nodiscard]] bool Draw(const QPainterPath& shape);

    /// Blurs with a good approximation of a Gaussian: three boxes of nearly one width.
    /// Source: P. Kovesi, "Fast Almost-Gaussian Filtering", DICTA 2010. What lies beyond the area counts as
    /// its border goes on.
    [[nodiscard]] bool Blur(double sigma);

    /// The smallest part, in coordinates of the picture, that holds every covered pixel; empty if none is.
    QRect CoveredArea() const;

    /// Pixels that a blur reaches beyond a shape.
    static int BlurReach(double sigma);

private:
    QRect m_area;
    std::shared_ptr<quint16> m_values;
};
