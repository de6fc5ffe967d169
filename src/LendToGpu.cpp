#include "LendToGpu.h"

#include "gpu/KVGpuService.h"

#include <QCoreApplication>
#include <QPointer>

#include <cstddef>
#include <deque>
#include <map>

namespace {

constexpr std::size_t MostLoans = 8; ///< of one service

struct Loan
{
    RGBA32iImage picture;
    RGBA32iImage mask;
};

/// The loans of one service, the oldest first.
struct Ledger
{
    QPointer<const KVGpuService> service; ///< null: gone, whatever lives at its address by now
    std::deque<Loan> loans;
};

using Ledgers = std::map<const KVGpuService*, Ledger>;

Ledgers& TheLedgers()
{
    static auto* const ledgers = new Ledgers; // a service may outlive the statics
    return *ledgers;
}

void EndOldest(const KVGpuService* service)
{
    const auto found = TheLedgers().find(service);
    if (found != TheLedgers().end() && !found->second.loans.empty())
        found->second.loans.pop_front();
}

void EndAll(const KVGpuService* service)
{
    const auto found = TheLedgers().find(service);
    if (found != TheLedgers().end() && !found->second.service)
        TheLedgers().erase(found);
}

Ledger& LedgerOf(KVGpuService& service)
{
    Ledger& ledger = TheLedgers()[&service];
    if (ledger.service)
        return ledger;
    ledger = {&service, {}};
    const KVGpuService* const key = &service;
    QObject* const context = QCoreApplication::instance(); // of the GUI thread, whose the ledgers are
    QObject::connect(
        &service, &KVGpuService::finished, context, [key] { EndOldest(key); }, Qt::QueuedConnection);
    QObject::connect(&service, &QObject::destroyed, context, [key] { EndAll(key); });
    return ledger;
}

} // namespace

bool LendToGpu(KVGpuService& service, const RGBA32iImage& picture, const RGBA32iImage& mask)
{
    Ledger& ledger = LedgerOf(service);
    if (ledger.loans.size() >= MostLoans)
        return false;
    ledger.loans.push_back({picture, mask});
    return true;
}
