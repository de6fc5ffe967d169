#include "YDHistogramFeed.h"

#include "gui/HistogramWidget.h"

#include <array>

YDHistogramFeed::YDHistogramFeed(HistogramWidget* histogram) : m_histogram(histogram) {}

YDHistogramFeed::~YDHistogramFeed() = default;

void YDHistogramFeed::OnSourceChanged(const RGBA32iImage& source)
{
    {
        // A read lock is enough: nobody else puts a picture here, and who counts one holds a value of it.
        const QReadLocker locker(&m_lock);
        if (!source.SharesPixelsWith(m_source.GetImage()))
            m_source.SetImage(source);
    }
    m_histogram->SetImage(&m_source);
}

void YDHistogramFeed::AttachQImage(const YDSharedImage<QImage>* image) { m_histogram->SetImage(image); }

void YDHistogramFeed::AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image)
{
    m_histogram->SetImage(image);
}

void YDHistogramFeed::UpdateHistogramm() { m_histogram->RebuildHistogramm(); }

int YDHistogramFeed::IndexToHistogrammChannel(int index)
{
    constexpr std::array<int, 4> Masks{HistogramPlot::AllChannels, HistogramPlot::Red, HistogramPlot::Green,
                                       HistogramPlot::Blue};
    return index >= 0 && index < int(Masks.size()) ? Masks[std::size_t(index)] : HistogramPlot::AllChannels;
}
