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

/// The desktop's own search, which asks programs for what they have found. Main thread.
class DesktopSearch : public QObject
{
    Q_OBJECT
public:
    struct Result {
        QUrl file;
        QString line; ///< in which the words stand; may be empty
    };

    /// What the desktop asks for. Each calls `answer` once, soon or later.
    struct Source {
        using Results = std::function<void(const QList<Result> &)>;
        std::function<void(const QString &words, const Results &answer)> find;

        /// Null where there is none.
        using Picture = std::function<void(const QImage &)>;
        std::function<void(const QUrl &file, QSize bounds, const Picture &answer)> thumbnail;
    };

    /// From now on the desktop is answered; it learns that there is something to ask by itself.
    virtual void offer(const Source &source) = 0;

    /// The desktop is not answered any more.
    virtual void withdraw() = 0;

Q_SIGNALS:
    // What the user has chosen, of results that the desktop has been given:
    void openRequested(const QUrl &file);
    void revealRequested(const QUrl &file);
    /// The user wants to go on searching in the program.
    void searchRequested(const QString &words);
};

std::unique_ptr<DesktopSearch> makeDesktopSearch();
