// SPDX-License-Identifier: MIT
#include "platform/linux/applications/FocusHistory.h"

#include "core/whenFinished.h"
#include "platform/linux/applications/ApplicationOfWindow.h"

#include <QFuture>
#include <QMetaMethod>
#include <QtConcurrent>

#include <utility>

FocusHistory::FocusHistory(std::unique_ptr<FocusSource> source) : m_source(std::move(source))
{
    connect(m_source.get(), &FocusSource::focusChanged, this, &FocusHistory::note);
    readEntries();
}

FocusHistory::~FocusHistory() = default;

std::optional<Application> FocusHistory::current()
{
    m_source->update();
    readEntriesWhenOutdated();
    return m_application;
}

void FocusHistory::note(const std::optional<FocusedWindow> &window)
{
    if (window && isWorkingWindow(*window)) {
        m_working = window;
        identify();
    } else if (!window && !m_source->seesAllWindows()) {
        m_working.reset();
        setApplication({});
    }
    readEntriesWhenOutdated();
}

/// Done at once: a moment later the window's process may be gone.
void FocusHistory::identify()
{
    if (m_entries && m_working)
        setApplication(applicationOf(*m_working, *m_entries));
}

void FocusHistory::setApplication(const Application &application)
{
    if (m_application == application)
        return;
    m_application = application;
    m_hasNews = true;
    announceSoon();
}

void FocusHistory::announceSoon()
{
    QMetaObject::invokeMethod(this, &FocusHistory::announce, Qt::QueuedConnection);
}

/// With no receiver connected, the change is kept for the first one.
void FocusHistory::announce()
{
    static const QMetaMethod signal = QMetaMethod::fromSignal(&FrontmostApplication::activated);
    if (isSignalConnected(signal) && std::exchange(m_hasNews, false))
        Q_EMIT activated(*m_application);
}

void FocusHistory::connectNotify(const QMetaMethod &signal)
{
    if (signal == QMetaMethod::fromSignal(&FrontmostApplication::activated))
        announceSoon();
}

void FocusHistory::readEntriesWhenOutdated()
{
    if (m_entries && m_entries->isOutdated())
        readEntries();
}

void FocusHistory::readEntries()
{
    if (m_isReading)
        return;
    m_isReading = true;
    const auto reading =
        QtConcurrent::run(&DesktopEntries::read, DesktopEntries::standardFolders());
    whenFinished(reading, this, [this](const DesktopEntries &entries) {
        m_isReading = false;
        m_entries = entries;
        identify();
    });
}
