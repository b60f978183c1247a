// SPDX-License-Identifier: MIT
#include "core/SettingsStore.h"

#include "core/SettingsFile.h"

#include <mutex>

using namespace std::chrono_literals;

namespace
{

using Clock = std::chrono::steady_clock;

/// For the first values, which the program needs to start.
constexpr auto longestWaitForFirstRead = 50ms;
/// A third of a frame.
constexpr auto longestWaitForChanges = 5ms;
/// After a slow answer, reads do not wait for the disk for this long.
constexpr auto timeOfImpatience = 1s;
/// For callers that can wait.
constexpr auto longestRead = 60s;
/// At program exit.
constexpr auto longestWaitAtEnd = 2s;

} // namespace

/// Shared with the thread, which may outlive the store.
struct SettingsStore::State {
    explicit State(const QString &domain) : path(), file(domain) { path = file.path(); }

    QString path;
    SettingsFile file; ///< used by the thread only

    std::mutex lock; ///< guards everything below
    SettingsFile::Values stored;
    SettingsFile::Changes unstored;
    bool isRead = false;
    bool isWaitedFor = false;
    bool isLookQueued = false;

    void look()
    {
        {
            const std::scoped_lock locker(lock);
            isLookQueued = false;
        }
        const SettingsFile::Values values = file.read();
        const std::scoped_lock locker(lock);
        stored = values;
        isRead = true;
    }

    /// Changes that the disk refused are tried again with the next change.
    void store()
    {
        SettingsFile::Changes changes;
        {
            const std::scoped_lock locker(lock);
            changes = unstored;
        }
        const bool isStored = changes.isEmpty() || file.write(changes);
        const SettingsFile::Values values = file.read();
        const std::scoped_lock locker(lock);
        stored = values;
        isRead = true;
        for (auto each = changes.cbegin(); isStored && each != changes.cend(); ++each) {
            // It may have been set again in the meantime.
            if (unstored.value(each.key()) == each.value())
                unstored.remove(each.key());
        }
    }
};

SettingsStore::SettingsStore(const QString &domain)
    : m_state(std::make_shared<State>(domain)), m_thread(0ms)
{
    lookAgain();
    m_thread.run([state = m_state] { state->file.tidy(); });
}

SettingsStore::~SettingsStore()
{
    waitUntilStored(longestWaitAtEnd);
}

QString SettingsStore::fileName() const
{
    return m_state->path;
}

QVariant SettingsStore::value(const QString &key) const
{
    askForChanges();
    const std::scoped_lock locker(m_state->lock);
    const auto unstored = m_state->unstored.constFind(key);
    return unstored != m_state->unstored.cend() ? *unstored : m_state->stored.value(key);
}

QStringList SettingsStore::allKeys() const
{
    askForChanges();
    const std::scoped_lock locker(m_state->lock);
    SettingsFile::Values values = m_state->stored;
    for (auto each = m_state->unstored.cbegin(); each != m_state->unstored.cend(); ++each) {
        if (each.value().isValid())
            values.insert(each.key(), each.value());
        else
            values.remove(each.key());
    }
    return values.keys();
}

void SettingsStore::setValue(const QString &key, const QVariant &value)
{
    const bool isList = value.typeId() == QMetaType::QStringList;
    {
        const std::scoped_lock locker(m_state->lock);
        m_state->unstored.insert(key, isList ? value : QVariant(value.toString()));
    }
    m_thread.run([state = m_state] { state->store(); });
}

void SettingsStore::remove(const QString &key)
{
    {
        const std::scoped_lock locker(m_state->lock);
        m_state->unstored.insert(key, QVariant());
    }
    m_thread.run([state = m_state] { state->store(); });
}

void SettingsStore::clear()
{
    waitUntilRead(longestRead);
    const QStringList keys = allKeys();
    for (const QString &key : keys)
        remove(key);
}

void SettingsStore::readAgain() const
{
    lookAgain();
    m_thread.waitForTasks(longestRead);
}

bool SettingsStore::waitUntilRead(std::chrono::milliseconds longestWait) const
{
    const auto isRead = [this] {
        const std::scoped_lock locker(m_state->lock);
        return m_state->isRead;
    };
    if (!isRead())
        m_thread.waitForTasks(longestWait);
    return isRead();
}

bool SettingsStore::waitUntilStored(std::chrono::milliseconds longestWait) const
{
    const auto isStored = [this] {
        const std::scoped_lock locker(m_state->lock);
        return m_state->unstored.isEmpty();
    };
    if (!isStored())
        m_thread.waitForTasks(longestWait);
    return isStored();
}

void SettingsStore::lookAgain() const
{
    {
        const std::scoped_lock locker(m_state->lock);
        if (m_state->isLookQueued)
            return;
        m_state->isLookQueued = true;
    }
    m_thread.run([state = m_state] { state->look(); });
}

void SettingsStore::askForChanges() const
{
    bool isFirst = false;
    {
        const std::scoped_lock locker(m_state->lock);
        isFirst = !std::exchange(m_state->isWaitedFor, true);
    }
    if (isFirst && waitUntilRead(longestWaitForFirstRead))
        return;
    const bool isBusy = m_thread.tasksLeft() > 0;
    lookAgain();
    if (isBusy || Clock::now() < m_patientFrom.load())
        return;
    if (!m_thread.waitForTasks(longestWaitForChanges))
        m_patientFrom = Clock::now() + timeOfImpatience;
}
