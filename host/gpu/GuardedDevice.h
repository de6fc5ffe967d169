#pragma once

#include "image/KVImage.h"

#include <QSet>
#include <QString>

#include <atomic>
#include <memory>

class SelectiveColorsDevice;
struct SelectiveColorsJob;

/// A device that is left alone once it failed, so that the processor goes on in its place.
///
/// The log tells each cause once. Used by one thread at a time, not always the one that made it.
class GuardedDevice
{
public:
    /// `device` is not null.
    explicit GuardedDevice(std::unique_ptr<SelectiveColorsDevice> device);
    ~GuardedDevice();

    /// For people.
    const QString& Name() const { return m_name; }

    /// Gets the device ready. One that failed gets another chance, but not after the third failure without a
    /// success between them.
    void Prepare();

    /// Writes the adjusted source of `job` to `result`, a picture of the same size; stops early once `abort`
    /// is set. False where the processor has to do it; `result` holds anything then.
    [[nodiscard]] bool Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                              const std::atomic<bool>& abort);

    /// Lets go of the pictures that are kept between jobs.
    void ReleasePictures();

private:
    void GiveUp(const QString& problem);

    const std::unique_ptr<SelectiveColorsDevice> m_device;
    const QString m_name;
    bool m_isInUse = true;
    int m_failures = 0; ///< one after the other
    QSet<QString> m_told;
};
