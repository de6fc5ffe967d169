#include "FloodFillRows.h"

#include "Measurement.h"
#include "image/YDFloodFillHelper.h"
#include "threads/ParallelRows.h"

#include <algorithm>
#include <memory>
#include <random>

namespace {

constexpr YDRGBA32i Ground(40, 120, 60, 255);
constexpr YDRGBA32i Wall(220, 210, 200, 255);
constexpr YDRGBA32i Opaque(30, 60, 90, 255);
constexpr YDRGBA32i HalfOpaque(30, 60, 90, 127);
constexpr quint8 Tolerance = 20;

/// A picture as large as the others, `colorAt(x, y, random)` at each pixel.
template <class ColorAt>
RGBA32iImage Drawn(const BenchPictures& pictures, const ColorAt& colorAt)
{
    const RGBA32iImage image =
        RGBA32iImage::Uninitialized(pictures.photograph.Width(), pictures.photograph.Height());
    constexpr int FilledRowsPerBand = 16;
    ForEachRowBand(0, image.Height(), FilledRowsPerBand, nullptr, [&](int first, int last) {
        std::minstd_rand random(static_cast<unsigned>(first) + 1);
        for (int y = first; y < last; ++y)
            for (int x = 0; x < image.Width(); ++x)
                image.Row(y)[x] = colorAt(x, y, random);
    });
    return image;
}

RGBA32iImage OneColour(const BenchPictures& pictures)
{
    return Drawn(pictures, [](int, int, std::minstd_rand&) { return Ground; });
}

/// Below a sky a meadow of which three blades in four are within the tolerance of the one in the lower left
/// corner: half of all pixels.
RGBA32iImage Ragged(const BenchPictures& pictures)
{
    const int horizon = pictures.photograph.Height() / 3;
    const RGBA32iImage image = Drawn(pictures, [horizon](int, int y, std::minstd_rand& random) {
        constexpr unsigned Levels = (2 * Tolerance + 1) * 4 / 3;
        const auto blade = static_cast<quint8>(Ground.g - Tolerance + int((random() >> 8) % Levels));
        return y < horizon ? Wall : YDRGBA32i(Ground.b, blade, Ground.r, 255);
    });
    image.Row(image.Height() - 1)[0] = Ground;
    return image;
}

/// Teeth that hang together at the top alone.
RGBA32iImage Comb(const BenchPictures& pictures)
{
    return Drawn(pictures,
                 [](int x, int y, std::minstd_rand&) { return y > 0 && x % 2 == 1 ? Wall : Ground; });
}

/// One way, a pixel wide, that winds round the whole picture to its middle.
RGBA32iImage Spiral(const BenchPictures& pictures)
{
    const RGBA32iImage image = Drawn(pictures, [](int, int, std::minstd_rand&) { return Wall; });
    QPoint at(0, 0);
    const auto walkTo = [&](const QPoint& end) {
        const QPoint step((end.x() > at.x()) - (end.x() < at.x()), (end.y() > at.y()) - (end.y() < at.y()));
        for (; at != end; at += step)
            image.Row(at.y())[at.x()] = Ground;
    };
    QRect ring = pictures.Bounds();
    for (; ring.width() > 2 && ring.height() > 2; ring.adjust(2, 2, -2, -2)) {
        walkTo(ring.topLeft());
        walkTo(ring.topRight());
        walkTo(ring.bottomRight());
        walkTo(ring.bottomLeft());
        walkTo(ring.topLeft() + QPoint(0, 2));
    }
    return image;
}

/// A room in the middle of a large picture.
RGBA32iImage Room(const BenchPictures& pictures)
{
    constexpr int Side = 20;
    const QRect room(pictures.Bounds().center(), QSize(Side, Side));
    return Drawn(pictures,
                 [room](int x, int y, std::minstd_rand&) { return room.contains(x, y) ? Ground : Wall; });
}

struct FloodFillRow
{
    const char* name;
    RGBA32iImage (*draw)(const BenchPictures& pictures);
    YDRGBA32i color;
    QPoint (*start)(const QRect& bounds);
    bool coversPicture;
};

const FloodFillRow FloodFills[] = {
    {"one-colour", OneColour, Opaque, [](const QRect& bounds) { return bounds.topLeft(); }, true},
    {"one-colour-half-opaque", OneColour, HalfOpaque, [](const QRect& bounds) { return bounds.topLeft(); },
     true},
    {"ragged-half", Ragged, Opaque, [](const QRect& bounds) { return bounds.bottomLeft(); }, true},
    {"ragged-half-half-opaque", Ragged, HalfOpaque, [](const QRect& bounds) { return bounds.bottomLeft(); },
     true},
    {"comb", Comb, Opaque, [](const QRect& bounds) { return bounds.topLeft(); }, true},
    {"spiral", Spiral, Opaque, [](const QRect& bounds) { return bounds.topLeft(); }, true},
    {"room", Room, Opaque, [](const QRect& bounds) { return bounds.center(); }, false},
};

BenchRow RowOf(const FloodFillRow& fill)
{
    const auto drawing = std::make_shared<RGBA32iImage>();
    BenchRow row;
    row.prepare = [=](const BenchPictures& pictures) {
        if (drawing->IsEmpty())
            *drawing = fill.draw(pictures);
        PixelBuffer::CopyRows(drawing->Pixels(), drawing->BytesPerLine(), pictures.work.Pixels(),
                              pictures.work.BytesPerLine(), drawing->BytesPerLine(), drawing->Height());
    };
    row.pass = [=](const BenchPictures& pictures) {
        constexpr YDRGBA32i Near(Tolerance, Tolerance, Tolerance, 0);
        RGBA32iImage image = pictures.work;
        const QPoint start = fill.start(pictures.Bounds());
        return TimeOf([&] { YDFloodFillHelper::FloodFill(image, start, Near, fill.color, nullptr); });
    };
    row.finish = [=] { *drawing = RGBA32iImage(); };
    row.coversPicture = fill.coversPicture;
    return row;
}

} // namespace

void RegisterFloodFillRows(int megapixels)
{
    for (const FloodFillRow& fill : FloodFills)
        RegisterRow(megapixels, std::string("flood-fill/") + fill.name, RowOf(fill));
}
