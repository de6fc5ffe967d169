#pragma once

#include "gpu/OpenClHandle.h"
#include "image/KVImage.h"

#include <QRect>
#include <QString>

#include <atomic>
#include <memory>

class OpenClBands;
class OpenClSession;
class OpenClStaging;
struct SelectiveColorsJob;

/// One job on its way through a device, band by band.
class OpenClRun
{
public:
    /// All of it outlives the run. `mask` is null for a job without one.
    OpenClRun(const OpenClSession& session, const SelectiveColorsJob& job, const RGBA32iImage& result,
              OpenClBands& source, OpenClBands* mask);

    /// Writes the rows of the result that the job reaches, by way of `staging`, which is made where it is
    /// needed and missing, until `abort` is set. Empty text: done, or stopped. The queue may still be busy.
    [[nodiscard]] QString Run(std::unique_ptr<OpenClStaging>& staging, const std::atomic<bool>& abort);

private:
    /// Rows that are sent to the device together, and those of them that the job reaches.
    struct Band
    {
        int first;
        int count;
        int top; ///< the first that is reached
        int reached;
    };

    int RowsPerBand() const;
    QString MakeShiftTable();
    QString RunInPlace(const Band& band);
    QString RunStaged(const Band& band, OpenClStaging& staging);
    QString Launch(const Band& band, cl_mem result);

    const OpenClSession& m_session;
    const SelectiveColorsJob& m_job;
    const RGBA32iImage& m_result;
    OpenClBands& m_source;
    OpenClBands* const m_mask;
    const QRect m_reached;
    OpenClHandle<cl_mem> m_shift;
};
