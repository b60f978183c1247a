// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QObject>
#include <QSize>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

/// The desktop's own search, which asks programs for results. Main thread.
class DesktopSearch : public QObject
{
    Q_OBJECT
public:
    struct Result {
        QUrl file;
        QString line; ///< that contains the words; may be empty
    };

    /// Where the desktop's questions go. Each function calls `answer` once, now or later.
    struct Source {
        using Results = std::function<void(const QList<Result> &)>;
        std::function<void(const QString &words, const Results &answer)> find;

        /// A null image when there is none.
        using Picture = std::function<void(const QImage &)>;
        std::function<void(const QUrl &file, QSize bounds, const Picture &answer)> thumbnail;
    };

    /// From now on the desktop is answered; it finds out by itself that there is something to ask.
    virtual void offer(const Source &source) = 0;

    /// From now on the desktop is not answered.
    virtual void withdraw() = 0;

Q_SIGNALS:
    // The user has chosen one of the results that the desktop was given:
    void openRequested(const QUrl &file);
    void revealRequested(const QUrl &file);
    /// The user wants to continue the search in the program.
    void searchRequested(const QString &words);
};

std::unique_ptr<DesktopSearch> makeDesktopSearch();
