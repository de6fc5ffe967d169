#include "batch/ReadMask.h"

#include "core/WholeFile.h"

namespace {

int Coverage(QRgb pixel) { return (qGray(pixel) * qAlpha(pixel) + 127) / 255; }

QRect CoveredRect(const QImage& mask)
{
    QRect covered;
    for (int y = 0; y < mask.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(mask.constScanLine(y));
        int first = 0;
        while (first < mask.width() && Coverage(row[first]) == 0)
            ++first;
        if (first == mask.width())
            continue;
        int last = mask.width() - 1;
        while (Coverage(row[last]) == 0)
            --last;
        covered |= QRect(QPoint(first, y), QPoint(last, y));
    }
    return covered;
}

} // namespace

QString ReadMask(const QString& path, const QPoint& position, const KVImageFileManager::ReadOptions& options,
                 operations::Selection& mask)
{
    const KVImageFileManager::ReadResult result = KVImageFileManager::Read(path, options);
    if (!result.error.isEmpty())
        return result.error;
    const QRect covered = CoveredRect(result.image);
    const RGBA32iImage pixels(covered.width(), covered.height());
    if (pixels.IsEmpty() && !covered.isEmpty())
        return WholeFile::Error(path, QCoreApplication::translate("ReadMask", "there is not enough memory"));
    for (int y = 0; y < covered.height(); ++y) {
        const auto* source = reinterpret_cast<const QRgb*>(result.image.constScanLine(covered.y() + y));
        YDRGBA32i* row = pixels.Row(y);
        for (int x = 0; x < covered.width(); ++x) {
            const auto coverage = quint8(Coverage(source[covered.x() + x]));
            row[x] = YDRGBA32i(coverage, coverage, coverage, coverage);
        }
    }
    mask = operations::Selection::Of(pixels, position + covered.topLeft());
    return {};
}
