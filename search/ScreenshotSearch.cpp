// SPDX-License-Identifier: MIT
#include "search/ScreenshotSearch.h"

#include "core/lowerThreadPriority.h"
#include "core/whenFinished.h"

#include <limits>

using namespace std::chrono_literals;

namespace
{

/// After the last event of a new screenshot; by then it has been renamed.
constexpr auto quietTime = 3s;

/// After a full disk, a lock, a low battery, a lack of memory, or an incomplete file.
constexpr auto timeToNextTry = 1min;

/// For storing the last changes at program exit. What is lost is read again.
constexpr auto longestWaitAtEnd = 1s;

using Entries = QList<SearchIndex::Entry>;

std::optional<Entries> entriesOf(const std::optional<QList<QUrl>> &files)
{
    if (!files)
        return std::nullopt;
    Entries entries;
    for (const QUrl &url : *files) {
        if (const std::optional<FileIdentity> file = fileIdentity(url.toLocalFile()))
            entries.append({url, *file, {}});
    }
    return entries;
}

} // namespace

ScreenshotSearch::ScreenshotSearch(Services services, const QString &databaseFolder,
                                   QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_index(std::make_shared<SearchIndex>(databaseFolder))
    , m_names(std::make_shared<NameSearch>(m_services.screenshotsIn))
    , m_keeps(std::make_shared<std::atomic_bool>(false))
    , m_reader(m_services.recognizer, m_services.power, m_services.budget)
    , m_lister(0ms)
    , m_thread(longestWaitAtEnd)
{
    m_quiet.setSingleShot(true);
    m_quiet.callOnTimeout(this, &ScreenshotSearch::goOn);
    m_later.setSingleShot(true);
    m_later.callOnTimeout(this, &ScreenshotSearch::readNext);
}

ScreenshotSearch::~ScreenshotSearch()
{
    // The database must be closed on its own thread.
    if (*m_keeps || m_thread.tasksLeft() > 0)
        m_thread.run([index = m_index] { index->close(); });
}

template <typename Work>
auto ScreenshotSearch::ask(Work work)
{
    using Result = std::invoke_result_t<Work, SearchIndex &>;
    return m_thread.ask([index = m_index, keeps = m_keeps, work = std::move(work)] {
        return *keeps ? work(*index) : Result();
    });
}

void ScreenshotSearch::setFolder(const QUrl &folder)
{
    m_folder = folder;
    lookAgain();
}

void ScreenshotSearch::keepTexts()
{
    if (*m_keeps)
        return;
    *m_keeps = true;
    Q_EMIT changed();
    lookAgain();
}

QFuture<bool> ScreenshotSearch::forgetTexts()
{
    // Work in progress keeps using the old flag.
    *m_keeps = false;
    m_keeps = std::make_shared<std::atomic_bool>(false);
    m_arrived.clear();
    m_quiet.stop();
    m_later.stop();
    m_reader.abandon();
    Q_EMIT changed();
    return m_thread.ask([index = m_index] { return index->forget(); });
}

QFuture<QList<SearchHit>> ScreenshotSearch::find(const QString &words, int limit)
{
    return m_thread.ask([=, index = m_index, keeps = m_keeps, names = m_names, folder = m_folder] {
        const bool isIndexed = *keeps && index->exists();
        return isIndexed ? index->find(words, limit) : names->find(folder, words, limit);
    });
}

QFuture<SearchIndex::Progress> ScreenshotSearch::progress()
{
    return ask([](SearchIndex &index) { return index.progress(); });
}

void ScreenshotSearch::lookAgain()
{
    if (!*m_keeps || m_folder.isEmpty() || m_isListing)
        return;
    m_isListing = true;
    const auto list = [folder = m_folder, screenshotsIn = m_services.screenshotsIn] {
        // Not at idle priority: a search may be waiting for it.
        lowerThreadPriority();
        return entriesOf(screenshotsIn(folder));
    };
    whenFinished(m_lister.ask(list), this,
                 [this, folder = m_folder](const std::optional<Entries> &entries) {
                     m_isListing = false;
                     if (folder != m_folder)
                         return lookAgain();
                     if (!entries)
                         return;
                     const auto store = [folder, entries = *entries](SearchIndex &index) {
                         return index.setFolder(folder, entries);
                     };
                     whenFinished(ask(store), this, [this](bool isStored) {
                         Q_EMIT changed();
                         if (isStored)
                             readNext();
                         else
                             tryLater();
                     });
                 });
}

void ScreenshotSearch::arrived(const QUrl &file, const QString &application)
{
    if (!*m_keeps)
        return;
    m_arrived.insert(file, application);
    giveWay();
}

void ScreenshotSearch::moved(const QUrl &from, const QUrl &to, SearchIndex::Place place)
{
    if (!*m_keeps)
        return;
    if (const auto arrived = m_arrived.constFind(from); arrived != m_arrived.cend()) {
        const QString application = *arrived;
        m_arrived.erase(arrived);
        if (place == SearchIndex::Place::Folder)
            m_arrived.insert(to, application);
        return;
    }
    const auto move = [=](SearchIndex &index) { return index.moved(from, to, place); };
    whenFinished(ask(move), this, [this](bool) {
        Q_EMIT changed();
        readNext();
    });
}

void ScreenshotSearch::giveWay()
{
    m_reader.abandon();
    m_quiet.start(quietTime);
}

void ScreenshotSearch::goOn()
{
    if (m_services.isBusy())
        m_quiet.start(quietTime);
    else
        addArrived();
}

void ScreenshotSearch::addArrived()
{
    const auto add = [arrived = std::exchange(m_arrived, {})](SearchIndex &index) {
        Entries entries;
        for (auto each = arrived.cbegin(); each != arrived.cend(); ++each) {
            if (const auto file = fileIdentity(each.key().toLocalFile()))
                entries.append({each.key(), *file, each.value()});
        }
        return entries.isEmpty() || index.add(entries);
    };
    whenFinished(ask(add), this, [this](bool) {
        Q_EMIT changed();
        readNext();
    });
}

void ScreenshotSearch::readNext()
{
    if (!*m_keeps || m_isReading || m_quiet.isActive() || m_later.isActive())
        return;
    m_isReading = true;
    struct Next {
        std::optional<SearchIndex::Entry> entry;
        bool isBegunAnew = false;
    };
    const auto next = [](SearchIndex &index) {
        return Next{index.nextUnread(), index.isBegunAnew()};
    };
    whenFinished(ask(next), this, [this](const Next &answer) {
        if (answer.entry && !m_quiet.isActive()) {
            whenFinished(m_reader.read(answer.entry->url), this,
                         [this](const BackgroundReader::Reading &reading) { take(reading); });
            return;
        }
        m_isReading = false;
        if (answer.isBegunAnew)
            lookAgain();
    });
}

void ScreenshotSearch::take(const BackgroundReader::Reading &reading)
{
    using Outcome = BackgroundReader::Reading::Outcome;
    if (reading.outcome != Outcome::Read) {
        m_isReading = false;
        if (reading.outcome == Outcome::Abandoned)
            readNext();
        else
            tryLater();
        return;
    }
    const auto store = [reading](SearchIndex &index) {
        return index.setText(reading.file, reading.lines);
    };
    whenFinished(ask(store), this, [this](bool isStored) {
        m_isReading = false;
        Q_EMIT changed();
        if (isStored)
            readNext();
        else
            tryLater();
    });
}

void ScreenshotSearch::tryLater()
{
    if (*m_keeps)
        m_later.start(timeToNextTry);
}
