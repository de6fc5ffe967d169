#include "MixByOpacity.h"

#include "YDSelectionArea.h"
#include "YDTileRunner.h"
#include "image/YDBlend.h"

#include <algorithm>
#include <array>

namespace {

/// Mixes rows piece by piece, each of which stays in the nearest cache meanwhile.
class RowMixer
{
public:
    explicit RowMixer(int opacity) : m_over{opacity} {}

    /// `mask` is null where everything is mixed alike.
    void MixRow(const YDRGBA32i* adjusted, YDRGBA32i* picture, const YDRGBA32i* mask, int count)
    {
        for (int x = 0; x < count; x += PiecePixels)
            MixPiece(adjusted + x, picture + x, mask ? mask + x : nullptr, std::min(PiecePixels, count - x));
    }

private:
    static constexpr int PiecePixels = 256;
    using Piece = std::array<YDRGBA32i, PiecePixels>;

    void MixPiece(const YDRGBA32i* adjusted, YDRGBA32i* picture, const YDRGBA32i* mask, int count)
    {
        // An adjustment carries alpha through: colours are mixed as those of opaque pixels, which is what
        // keeps a translucent one as translucent as it was.
        CopyOpaque(adjusted, m_source, count);
        CopyOpaque(picture, m_mixed, count);
        m_over.ProcessRow(m_source.data(), m_mixed.data(), count);
        for (int x = 0; x < count; ++x)
            m_mixed[std::size_t(x)].a = picture[x].a;
        if (mask)
            YDBlend::YDSourceBySelection::ProcessRow(m_mixed.data(), picture, mask, count);
        else
            std::copy_n(m_mixed.begin(), count, picture);
    }

    static void CopyOpaque(const YDRGBA32i* from, Piece& to, int count)
    {
        std::transform(from, from + count, to.begin(),
                       [](const YDRGBA32i& pixel) { return YDRGBA32i(pixel.b, pixel.g, pixel.r, 255); });
    }

    const YDBlend::YDSourceOver<0> m_over;
    Piece m_source;
    Piece m_mixed;
};

} // namespace

void MixByOpacity(const YDAdjustmentJob& job, const RGBA32iImage& adjusted, int opacity)
{
    if (job.selectionBoundingRect.isEmpty()) {
        YDRowQueue rows(0, job.image.Height(), job.abort);
        YDTileRunner::RunMemoryBoundTasks([&] {
            RowMixer mixer(opacity);
            for (int y = 0; rows.Take(y);)
                mixer.MixRow(adjusted.Row(y), job.image.Row(y), nullptr, job.image.Width());
        });
        return;
    }
    const YDSelectionArea selected(job);
    YDRowQueue rows(0, selected.Height(), job.abort);
    YDTileRunner::RunMemoryBoundTasks([&] {
        RowMixer mixer(opacity);
        for (int row = 0; rows.Take(row);)
            mixer.MixRow(selected.RowOf(adjusted, row), selected.RowOf(job.image, row),
                         selected.MaskRow(job, row), selected.Width());
    });
}
