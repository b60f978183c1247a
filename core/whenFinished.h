// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>

#include <type_traits>
#include <utility>

/// Calls `handler` with the future's result, from the event loop of the thread that `receiver`
/// lives on, unless the future was cancelled or `receiver` is gone by then. Called on that thread.
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
