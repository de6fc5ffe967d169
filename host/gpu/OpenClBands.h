#pragma once

#include "gpu/OpenClHandle.h"
#include "gpu/SelectiveColorsJob.h"

#include <QString>

#include <vector>

class OpenClSession;

/// Rows of somebody's pixels, as they were sent to the device, for as long as this lives.
class OpenClBands
{
public:
    OpenClBands(const OpenClSession& session, const SharedPixels& pixels)
        : m_session(&session), m_pixels(pixels)
    {}

    const SharedPixels& Pixels() const { return m_pixels; }

    /// The rows [first, first + count), which are sent unless they were before; null, and why in `problem`,
    /// where that fails. The queue may still be busy with them.
    cl_mem Rows(qint64 first, qint64 count, QString& problem);

private:
    struct Band
    {
        qint64 first;
        qint64 count;
        OpenClHandle<cl_mem> buffer;
    };

    OpenClHandle<cl_mem> Send(qint64 first, qint64 count, QString& problem) const;

    const OpenClSession* m_session; // outlives this
    SharedPixels m_pixels;
    std::vector<Band> m_bands;
};
