// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"
#include "search/BackgroundReader.h"
#include "search/NameSearch.h"
#include "search/SearchIndex.h"

#include <QFuture>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <atomic>
#include <memory>

/// Finds screenshots by their names and, if the user has agreed, by their text. Then all
/// screenshots in the folder are read in the background, and the index follows what happens to
/// them. Until the user agrees there is no database, no thread and no timer.
///
/// Main thread, which never accesses the file system.
class ScreenshotSearch : public QObject
{
    Q_OBJECT
public:
    struct Services {
        std::shared_ptr<TextRecognizer> recognizer;
        std::shared_ptr<PowerSource> power;
        std::shared_ptr<PictureBudget> budget; ///< for the pictures that are read
        /// Called on background threads.
        NameSearch::List screenshotsIn;
        /// Whether a new screenshot is waiting for its name; meanwhile nothing is read.
        std::function<bool()> isBusy;
    };

    explicit ScreenshotSearch(Services services,
                              const QString &databaseFolder = SearchStore::defaultFolder(),
                              QObject *parent = nullptr);
    ~ScreenshotSearch() override;

    /// Sets the folder whose screenshots are searched. Call this before the other functions.
    void setFolder(const QUrl &folder);

    /// Whether texts are kept. The caller that asks the user stores the answer.
    bool keepsTexts() const { return *m_keeps; }
    void keepTexts();

    /// Deletes everything that was stored, and stores no more.
    QFuture<bool> forgetTexts();

    /// The best `limit` screenshots for these words; see SearchIndex. Without consent, those in the
    /// folder whose names contain them.
    QFuture<QList<SearchHit>> find(const QString &words, int limit);

    /// Looks for changes that other programs have made in the folder. For the start of a search.
    void lookAgain();

    /// How many of the known screenshots have been read.
    QFuture<SearchIndex::Progress> progress();

    // Events of screenshots:

    /// A new screenshot. Until shortly after it has its name, nothing is read.
    void arrived(const QUrl &file, const QString &application);
    void moved(const QUrl &from, const QUrl &to, SearchIndex::Place place);

Q_SIGNALS:
    /// Searches may have other results now.
    void changed();

private:
    /// Runs on the database's thread, unless the texts have been forgotten in the meantime.
    template <typename Work>
    auto ask(Work work);

    void giveWay();
    void goOn();
    void addArrived();
    void readNext();
    void take(const BackgroundReader::Reading &reading);
    void tryLater();

    Services m_services;
    QUrl m_folder;
    std::shared_ptr<SearchIndex> m_index;
    std::shared_ptr<NameSearch> m_names;
    std::shared_ptr<std::atomic_bool> m_keeps;
    QHash<QUrl, QString> m_arrived; ///< not in the index yet, with their applications
    bool m_isReading = false;
    bool m_isListing = false;
    QTimer m_quiet; ///< while it runs, nothing is read, so that a new screenshot is not slowed down
    QTimer m_later;
    BackgroundReader m_reader;
    BackgroundThread m_lister;
    BackgroundThread m_thread; ///< the database's
};
