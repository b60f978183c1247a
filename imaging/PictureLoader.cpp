// SPDX-License-Identifier: MIT
#include "imaging/PictureLoader.h"

#include "core/releaseFreeMemory.h"
#include "imaging/pictureEnd.h"

#include <QDateTime>

#include <algorithm>
#include <limits>

namespace
{

/// Before all decoding, so that decoded pictures do not pile up.
constexpr int answerPriority = std::numeric_limits<int>::max();

CompletionWait::Time now()
{
    return std::chrono::steady_clock::now();
}

/// Zero for a file whose last change is in the future.
std::chrono::milliseconds unchangedFor(const FileIdentity &identity)
{
    const qint64 changed = identity.statusChanged / 1'000'000;
    return std::chrono::milliseconds(
        std::max<qint64>(0, QDateTime::currentMSecsSinceEpoch() - changed));
}

} // namespace

PictureLoader::PictureLoader(FileWriters &writers, std::shared_ptr<PictureBudget> budget)
    : m_writers(writers), m_budget(std::move(budget)), m_dropTimer(this)
{
    m_dropTimer.setSingleShot(true);
    connect(&m_dropTimer, &QTimer::timeout, this, &PictureLoader::dropUnusedPictures);
    m_budget->setOnReturn([this] {
        QMetaObject::invokeMethod(this, &PictureLoader::resumePostponed, Qt::QueuedConnection);
    });
}

PictureLoader::~PictureLoader()
{
    m_pool.clear();
    m_pool.waitForDone();
    m_budget->setOnReturn({});
}

void PictureLoader::load(const std::shared_ptr<HeldScreenshot> &file,
                         const std::shared_ptr<PictureRequest> &request)
{
    const auto running = m_waits.find(keyOf(*file));
    if (running != m_waits.end()) {
        running->second->requests.push_back(request);
        return;
    }
    const std::shared_ptr<OpenFile> open = file->open();
    const std::optional<FileIdentity> identity = open ? open->identity() : std::nullopt;
    if (!identity) {
        request->answer({});
        return;
    }
    const DecodedPicture picture = m_pictures.find(*identity, now());
    if (!picture.isNull()) {
        answer({request}, picture);
        return;
    }
    const WaitPointer wait(
        new Wait{file, CompletionWait(*identity, unchangedFor(*identity), now()), {request}});
    m_waits.emplace(keyOf(*file), wait);
    probe(wait);
}

PictureLoader::FileKey PictureLoader::keyOf(const HeldScreenshot &file)
{
    return {file.identity().device, file.identity().serial};
}

bool PictureLoader::isWanted(const Wait &wait)
{
    return std::any_of(wait.requests.begin(), wait.requests.end(),
                       [](const auto &request) { return !request->isCanceled(); });
}

void PictureLoader::probe(const WaitPointer &wait)
{
    const OpenFilePointer file = isWanted(*wait) ? wait->file->open() : nullptr;
    const std::optional<FileIdentity> identity = file ? file->identity() : std::nullopt;
    if (!identity) {
        finish(wait, {});
        return;
    }
    const FileWriters::Answer answer = m_writers.writersOf(file->descriptor());
    const auto reachesEnd = [&file] { return reachesPictureEnd(file->descriptor()); };
    proceed(wait, wait->completion.probed(answer, *identity, now(), reachesEnd));
}

void PictureLoader::decode(const WaitPointer &wait)
{
    // A file that waits for its turn in the pool is not kept open for it.
    const auto work = [this, wait] {
        const OpenFilePointer file = wait->file->open();
        const Decoding decoding = file ? decodePicture(file->descriptor(), m_budget) : Decoding();
        // If it was rewritten meanwhile, it has changed.
        const OpenFilePointer standing = file ? wait->file->open() : nullptr;
        const OpenFilePointer &newest = standing ? standing : file;
        const std::optional<FileIdentity> identity = newest ? newest->identity() : std::nullopt;
        QMetaObject::invokeMethod(this, [=, this] { decoded(wait, identity, decoding); });
    };
    m_pool.start(work, ++m_decodePriority);
}

void PictureLoader::decoded(const WaitPointer &wait, const std::optional<FileIdentity> &identity,
                            const Decoding &decoding)
{
    if (!identity) {
        finish(wait, {});
        return;
    }
    if (decoding.lackingBytes > 0) {
        postpone(wait, decoding.lackingBytes);
        return;
    }
    const DecodedPicture &picture = decoding.picture;
    const CompletionWait::Step step = wait->completion.decoded(!picture.isNull(), *identity, now());
    if (step == CompletionWait::Step::Finish) {
        remember(*identity, picture);
        finish(wait, picture);
    } else {
        proceed(wait, step);
    }
}

void PictureLoader::postpone(const WaitPointer &wait, qint64 bytes)
{
    m_pictures.clear();
    m_postponed.push_back({wait, bytes});
    // Memory may have been released in the meantime.
    resumePostponed();
}

void PictureLoader::resumePostponed()
{
    if (m_postponed.empty() || !m_budget->hasRoom(m_postponed.back().bytes))
        return;
    const WaitPointer wait = m_postponed.back().wait;
    m_postponed.pop_back();
    probe(wait);
    // The others are tried once this one has taken its memory.
    QMetaObject::invokeMethod(this, &PictureLoader::resumePostponed, Qt::QueuedConnection);
}

void PictureLoader::proceed(const WaitPointer &wait, CompletionWait::Step step)
{
    if (step == CompletionWait::Step::Decode) {
        decode(wait);
    } else if (step == CompletionWait::Step::Wait) {
        QTimer::singleShot(wait->completion.pause(now()), Qt::PreciseTimer, this,
                           [this, wait] { probe(wait); });
    } else {
        finish(wait, {});
    }
}

void PictureLoader::finish(const WaitPointer &wait, const DecodedPicture &picture)
{
    m_waits.erase(keyOf(*wait->file));
    answer(wait->requests, picture);
    wait->requests.clear();
}

void PictureLoader::answer(const Requests &requests, const DecodedPicture &picture)
{
    for (const std::shared_ptr<PictureRequest> &request : requests) {
        if (request->kind() == PictureRequest::Kind::Thumbnail && !picture.isNull())
            m_pool.start([request, picture] { request->answer(picture); }, answerPriority);
        else
            request->answer(picture);
    }
}

void PictureLoader::remember(const FileIdentity &identity, const DecodedPicture &picture)
{
    m_pictures.insert(identity, picture, now());
    if (!m_dropTimer.isActive())
        m_dropTimer.start(PictureCache::lifetime);
}

void PictureLoader::dropUnusedPictures()
{
    m_pictures.dropUnused(now());
    if (m_pictures.isEmpty())
        releaseFreeMemory();
    else
        m_dropTimer.start(PictureCache::lifetime / 4);
}
