// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/ScreenshotImages.h"

#include <QFuture>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class HeldIdentity;

/// One screenshot, shared by all who deal with it: which file it is, where it is now, and which
/// application was in front when it was taken. Made on the main thread, and used there where
/// nothing else is said.
class Screenshot : public QObject
{
    Q_OBJECT
public:
    using Held = ScreenshotImages::Held;

    Screenshot(const QUrl &url, const QString &applicationName, ScreenshotImages &images);
    ~Screenshot() override;

    /// Where the file is, as far as the program has moved it itself; standardised. Any thread.
    QUrl url() const;

    /// The application in front.
    QString applicationName() const { return m_applicationName; }

    /// Opens the file and remembers which one it is; once, however often it is called. Any other
    /// thread; blocks.
    void open();

    /// Lets those who wait for the opening take what they need. Then the file is let go, so that
    /// its disk can be unmounted; which file it is stays known.
    void tellOpened();

    /// Calls `then` when the file has been opened or could not be, unless `receiver` is gone; at
    /// once where that is known.
    void whenOpened(QObject *receiver, std::function<void()> then);

    /// The same when nobody writes the file any more, or the wait for that is over.
    void whenComplete(QObject *receiver, std::function<void()> then);

    /// For those who have just been told that the file is open; null when there was none.
    Held held() const;

    void letGo();

    /// Whether the file at the place is this one and no other. Any other thread; blocks.
    bool isAt(const QUrl &place) const;

    /// The program has moved the file. Any other thread; blocks.
    enum class Place { Folder, Trash };
    void moved(const QUrl &url, Place place);

    /// Opens the file once more, where it is now. Any other thread; blocks.
    void openAgain();

    /// Whether the program has moved it to the trash. Any thread.
    bool isInTrash() const;

    /// Once the user has typed, the program no longer renames by itself.
    bool isNamedByUser() const { return m_isNamedByUser; }
    void setNamedByUser() { m_isNamedByUser = true; }

Q_SIGNALS:
    void opened();

    /// Something that was asked for has not been done a moment later.
    void takesLong(const QString &work);

private:
    bool isOpen() const;

    const QString m_applicationName;
    ScreenshotImages &m_images;
    bool m_isNamedByUser = false;
    std::optional<QFuture<void>> m_completion;

    std::mutex m_opening;
    mutable std::mutex m_mutex; ///< held for a moment only, guards what follows
    QUrl m_url;
    Place m_place = Place::Folder;
    Held m_held;
    /// Null where there was no file. Follows the file when another program writes it anew in its
    /// place, until this program moves it.
    std::shared_ptr<const HeldIdentity> m_identity;
    bool m_isOpen = false;
};

using ScreenshotPointer = std::shared_ptr<Screenshot>;
