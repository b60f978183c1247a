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

/// Finds screenshots, by their names and, if the user has agreed, by their text. Then all
/// screenshots of the folder are read in the background, and the index follows what happens to
/// them. As long as nobody has agreed there is no database, no thread and no timer.
///
/// Main thread, which asks no file system for anything.
class ScreenshotSearch : public QObject
{
    Q_OBJECT
public:
    struct Services {
        TextRecognizer &recognizer;
        PowerSource &power;
        /// Called on background threads.
        NameSearch::List screenshotsIn;
        /// Whether a new screenshot is waiting for its name. Nothing is read then.
        std::function<bool()> isBusy;
    };

    explicit ScreenshotSearch(Services services,
                              const QString &databaseFolder = SearchStore::defaultFolder(),
                              QObject *parent = nullptr);
    ~ScreenshotSearch() override;

    /// Which screenshots are to be found. To be called before the others.
    void setFolder(const QUrl &folder);

    /// Whether texts are kept. Stored by who asks the user.
    bool keepsTexts() const { return *m_keeps; }
    void keepTexts();

    /// Deletes all that was stored, and keeps no more.
    QFuture<bool> forgetTexts();

    /// The best `limit` screenshots for these words; see SearchIndex. Without consent those of the
    /// folder whose names hold them.
    QFuture<QList<SearchHit>> find(const QString &words, int limit);

    /// Looks up what others have done to the folder's files; for when somebody begins to search.
    void lookAgain();

    /// How many of the known screenshots have been read.
    QFuture<SearchIndex::Progress> progress();

    // What happens to screenshots:

    /// A new one: nothing is read until it has its name, and a moment longer.
    void arrived(const QUrl &file, const QString &application);
    void moved(const QUrl &from, const QUrl &to, SearchIndex::Place place);

Q_SIGNALS:
    /// Something else may be found now.
    void changed();

private:
    /// Runs in the thread of the database, unless the texts have been forgotten since.
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
    QHash<QUrl, QString> m_arrived; ///< with their applications; not in the index yet
    bool m_isReading = false;
    bool m_isListing = false;
    QTimer m_quiet; ///< runs while a new screenshot has the machine for itself
    QTimer m_later;
    BackgroundReader m_reader;
    BackgroundThread m_thread;
};
