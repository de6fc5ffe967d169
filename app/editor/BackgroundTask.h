#pragma once

#include "threads/HandOver.h"
#include "threads/PoolTasks.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>

#include <memory>
#include <optional>
#include <utility>

namespace BackgroundTask {

/// Runs `work` on the global thread pool, then `done` with its result on the calling thread, which has an
/// event loop. `done` is dropped if `context` is destroyed before; `work` runs to its end all the same, so
/// it owns what it reads.
template <class Work, class Done>
QFuture<void> Run(QObject* context, Work work, Done done)
{
    using Result = decltype(work());
    const auto result = std::make_shared<std::optional<Result>>();
    auto* const watcher = new QFutureWatcher<void>(context);
    QObject::connect(watcher, &QFutureWatcher<void>::finished, context, [watcher, result, done] {
        HandOver::Take(result.get());
        watcher->deleteLater();
        done(std::move(**result));
    });
    const QFuture<void> future = PoolTask<void>::Start([work, result] {
        *result = work();
        HandOver::Give(result.get());
    });
    watcher->setFuture(future);
    return future;
}

} // namespace BackgroundTask
