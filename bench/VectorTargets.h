#pragma once

#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

#include <QString>

#include <vector>

/// The instruction sets that the vector module may use, by name and bit, the best first; none without the
/// module. Its form without vectors is not among them.
namespace VectorTargets {

struct Target
{
    QString name;
    qint64 bit;
};

inline std::vector<Target> All()
{
    static const auto supported = AVX2LIB::Find(VectorKernels::SupportedTargets);
    static const auto name = AVX2LIB::Find(VectorKernels::TargetName);
    std::vector<Target> targets;
    if (!supported || !name)
        return targets;
    for (qint64 left = supported(); left != 0; left &= left - 1) {
        const Target target{QString::fromLatin1(name(left & -left)), left & -left};
        if (target.name != QLatin1String("SCALAR"))
            targets.push_back(target);
    }
    return targets;
}

/// Confines the kernels to one instruction set while it lives.
class Restriction
{
public:
    explicit Restriction(qint64 bit) { Restrict(bit); }
    ~Restriction() { Restrict(0); }
    Q_DISABLE_COPY(Restriction)

private:
    static void Restrict(qint64 bits)
    {
        static const auto restrict = AVX2LIB::Find(VectorKernels::RestrictTargets);
        if (restrict)
            restrict(bits);
    }
};

} // namespace VectorTargets
