// SPDX-License-Identifier: MIT
#include "files/Screenshot.h"

#include "core/whenFinished.h"
#include "filesystem/FileUrls.h"
#include "imaging/HeldScreenshot.h"

Screenshot::Screenshot(const QUrl &url, const QString &applicationName, ScreenshotImages &images)
    : m_applicationName(applicationName), m_images(images), m_url(FileUrls::standardized(url))
{
}

Screenshot::~Screenshot() = default;

QUrl Screenshot::url() const
{
    const std::lock_guard lock(m_mutex);
    return m_url;
}

void Screenshot::open()
{
    const std::lock_guard opening(m_opening);
    if (isOpen())
        return;
    const Held held = m_images.hold(url());
    const std::lock_guard lock(m_mutex);
    m_held = held;
    if (held)
        m_identity = held->currentIdentity();
    m_isOpen = true;
}

void Screenshot::reportOpened()
{
    Q_EMIT opened();
    if (!m_completion)
        m_completion = m_images.completion(held());
    closeFile();
}

void Screenshot::whenOpened(QObject *receiver, std::function<void()> then)
{
    if (isOpen())
        then();
    else
        connect(this, &Screenshot::opened, receiver, std::move(then), Qt::SingleShotConnection);
}

void Screenshot::whenComplete(QObject *receiver, std::function<void()> then)
{
    whenOpened(receiver, [this, receiver, then = std::move(then)] {
        if (!m_completion)
            m_completion = m_images.completion(held());
        if (m_completion->isFinished())
            then();
        else
            whenFinished(*m_completion, receiver, then);
    });
}

Screenshot::Held Screenshot::held() const
{
    const std::lock_guard lock(m_mutex);
    return m_held;
}

void Screenshot::closeFile()
{
    const std::lock_guard lock(m_mutex);
    m_held.reset();
}

bool Screenshot::isAt(const QUrl &place) const
{
    const std::optional<FileIdentity> there = fileIdentity(place.toLocalFile());
    const std::lock_guard lock(m_mutex);
    return there && m_identity && there->sameFile(m_identity->current());
}

void Screenshot::moved(const QUrl &url, Place place)
{
    // A copy on another disk is another file.
    const std::optional<FileIdentity> there = fileIdentity(url.toLocalFile());
    const std::lock_guard lock(m_mutex);
    m_url = url;
    m_place = place;
    if (there)
        m_identity = std::make_shared<HeldIdentity>(*there);
}

void Screenshot::openAgain()
{
    const Held held = m_images.hold(url());
    const std::lock_guard lock(m_mutex);
    m_held = held;
}

bool Screenshot::isInTrash() const
{
    const std::lock_guard lock(m_mutex);
    return m_place == Place::Trash;
}

bool Screenshot::isOpen() const
{
    const std::lock_guard lock(m_mutex);
    return m_isOpen;
}
