#include "BenchPictures.h"

#include "threads/ParallelRows.h"

#include <QDir>
#include <QImageReader>
#include <QSize>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr int RowsPerBand = 16;
constexpr int NoiseLevels = 8;
constexpr double FeatherWidth = 0.1; // of the ellipse's radius

/// 3 to 2, as cameras have it.
QSize SizeOf(int megapixels)
{
    const double height = std::sqrt(megapixels * 1e6 / 1.5);
    return {int(std::lround(height * 1.5)), int(std::lround(height))};
}

QImage DrawPhotograph(const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            row[x] = qRgb(int(127.5 + 127.5 * std::sin(x / 97.0)), int(127.5 + 127.5 * std::sin(y / 61.0)),
                          int(127.5 + 127.5 * std::sin((x + y) / 149.0)));
    }
    return image;
}

QImage LoadPhotograph(const QSize& size)
{
    QImageReader reader(QStringLiteral("/usr/share/backgrounds/seeding_by_Clements_Engelhardt.jpg"));
    const QImage photograph = reader.read();
    if (photograph.isNull())
        return DrawPhotograph(size);
    return photograph.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void AddNoise(const RGBA32iImage& image)
{
    ForEachRowBand(0, image.Height(), RowsPerBand, nullptr, [&image](int first, int last) {
        std::minstd_rand random(static_cast<unsigned>(first) + 1);
        const auto moved = [](quint8 level, unsigned noise) {
            return quint8(std::clamp(level + int(noise % NoiseLevels) - NoiseLevels / 2, 0, 255));
        };
        for (int y = first; y < last; ++y) {
            YDRGBA32i* const row = image.Row(y);
            for (int x = 0; x < image.Width(); ++x) {
                const auto noise = unsigned(random());
                row[x] = {moved(row[x].b, noise >> 8), moved(row[x].g, noise >> 14),
                          moved(row[x].r, noise >> 20), row[x].a};
            }
        }
    });
}

RGBA32iImage MakeMask(const QSize& size)
{
    const RGBA32iImage mask(size.width(), size.height());
    ForEachRowBand(0, size.height(), RowsPerBand, nullptr, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            const double dy = (2.0 * y + 1.0) / size.height() - 1.0;
            for (int x = 0; x < size.width(); ++x) {
                const double dx = (2.0 * x + 1.0) / size.width() - 1.0;
                const double inside = (1.0 - std::hypot(dx, dy)) / FeatherWidth;
                const auto coverage = quint8(std::lround(255.0 * std::clamp(inside, 0.0, 1.0)));
                mask.Row(y)[x] = {coverage, coverage, coverage, coverage};
            }
        }
    });
    return mask;
}

BenchPictures MakePictures(int megapixels)
{
    const QSize size = SizeOf(megapixels);
    BenchPictures pictures;
    pictures.megapixels = megapixels;
    pictures.photograph = ImageFromQImage(LoadPhotograph(size));
    AddNoise(pictures.photograph);
    pictures.work = pictures.photograph.DeepCopy();
    pictures.reference = pictures.photograph.DeepCopy();
    pictures.mask = MakeMask(size);
    return pictures;
}

} // namespace

const BenchPictures& BenchPictures::OfSize(int megapixels)
{
    static BenchPictures pictures;
    if (pictures.megapixels != megapixels) {
        pictures = BenchPictures();
        PixelBuffer::Trim();
        pictures = MakePictures(megapixels);
    }
    return pictures;
}

void BenchPictures::Restore() const
{
    PixelBuffer::CopyRows(photograph.Pixels(), photograph.BytesPerLine(), work.Pixels(), work.BytesPerLine(),
                          work.Width() * qsizetype(sizeof(YDRGBA32i)), work.Height());
}
