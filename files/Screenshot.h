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

/// One screenshot, shared by everything that handles it: which file it is, where it is now, and
/// which application was in front when it was taken. Created on the main thread, and used there
/// unless stated otherwise.
class Screenshot : public QObject
{
    Q_OBJECT
public:
    using Held = ScreenshotImages::Held;

    Screenshot(const QUrl &url, const QString &applicationName, ScreenshotImages &images);
    ~Screenshot() override;

    /// Where the file is, standardised. Follows only moves by this program. Any thread.
    QUrl url() const;

    /// The application that was in front.
    QString applicationName() const { return m_applicationName; }

    /// Opens the file and records its identity. Later calls do nothing. Any thread but the main
    /// one; blocks.
    void open();

    /// Emits opened(), so that receivers can take what they need. Then closes the file, so that its
    /// disk can be unmounted; the file's identity is kept.
    void reportOpened();

    /// Calls `then` once the file has been opened or could not be, unless `receiver` has been
    /// destroyed. Calls it at once if that has already happened.
    void whenOpened(QObject *receiver, std::function<void()> then);

    /// The same, once no program writes the file any more or the wait for that is over.
    void whenComplete(QObject *receiver, std::function<void()> then);

    /// The open file; null after closeFile(), or if there was no file. Use it in the callbacks that
    /// learn that the file is open.
    Held held() const;

    void closeFile();

    /// Whether the file at `place` is this very file. Any thread but the main one; blocks.
    bool isAt(const QUrl &place) const;

    /// Records that the program has moved the file. Any thread but the main one; blocks.
    enum class Place { Folder, Trash };
    void moved(const QUrl &url, Place place);

    /// Opens the file again, where it is now. Any thread but the main one; blocks.
    void openAgain();

    /// Whether the program has moved the file to the trash. Any thread.
    bool isInTrash() const;

    /// Once the user has typed a name, the program no longer renames the file itself.
    bool isNamedByUser() const { return m_isNamedByUser; }
    void setNamedByUser() { m_isNamedByUser = true; }

Q_SIGNALS:
    void opened();

    /// An action on this screenshot is not finished after a short delay.
    void takesLong(const QString &work);

private:
    bool isOpen() const;

    const QString m_applicationName;
    ScreenshotImages &m_images;
    bool m_isNamedByUser = false;
    std::optional<QFuture<void>> m_completion;

    std::mutex m_opening;
    mutable std::mutex m_mutex; ///< held only briefly; guards the members below
    QUrl m_url;
    Place m_place = Place::Folder;
    Held m_held;
    /// Null if there was no file. If another program replaces the file by writing it again, this
    /// follows it, until this program moves the file.
    std::shared_ptr<const HeldIdentity> m_identity;
    bool m_isOpen = false;
};

using ScreenshotPointer = std::shared_ptr<Screenshot>;
