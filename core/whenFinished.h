// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>

#include <type_traits>
#include <utility>

/// Calls `handler` with the future's result from the event loop of `receiver`'s thread, unless the
/// future was cancelled or `receiver` has been destroyed by then. Must be called on that thread.
///
/// Used instead of QFuture::then with a context, because in Qt 6.4 the context must outlive the
/// future.
template <typename Result, typename Handler>
void whenFinished(const QFuture<Result> &future, QObject *receiver, Handler handler)
{
    auto *watcher = new QFutureWatcher<Result>(receiver);
    QObject::connect(watcher, &QFutureWatcherBase::finished, receiver,
                     [watcher, handler = std::move(handler)]() mutable {
                         watcher->deleteLater();
                         if (watcher->isCanceled())
                             return;
                         if constexpr (std::is_void_v<Result>)
                             handler();
                         else
                             handler(watcher->result());
                     });
    watcher->setFuture(future);
}
