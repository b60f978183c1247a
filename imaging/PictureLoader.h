// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/CompletionWait.h"
#include "imaging/HeldScreenshot.h"
#include "imaging/PictureBudget.h"
#include "imaging/PictureCache.h"
#include "imaging/PictureRequest.h"
#include "imaging/decodeImage.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <map>
#include <memory>
#include <utility>
#include <vector>

/// Waits for files to be complete, and has them decoded. Lives in a thread with an event loop,
/// which it never blocks for long; decoding and scaling run in a pool, the newest file first.
class PictureLoader : public QObject
{
    Q_OBJECT
public:
    PictureLoader(FileWriters &writers, std::shared_ptr<PictureBudget> budget);
    /// Drops all requests, and waits for the pictures that are being decoded.
    ~PictureLoader() override;

    void load(const std::shared_ptr<HeldScreenshot> &file,
              const std::shared_ptr<PictureRequest> &request);

private:
    using Requests = std::vector<std::shared_ptr<PictureRequest>>;

    /// A file being waited for, and the requests for it.
    struct Wait {
        std::shared_ptr<HeldScreenshot> file;
        CompletionWait completion;
        Requests requests;
    };
    using WaitPointer = std::shared_ptr<Wait>;
    using OpenFilePointer = std::shared_ptr<OpenFile>;
    using FileKey = std::pair<quint64, quint64>;

    static FileKey keyOf(const HeldScreenshot &file);
    static bool isWanted(const Wait &wait);
    void probe(const WaitPointer &wait);
    void decode(const WaitPointer &wait);
    void decoded(const WaitPointer &wait, const std::optional<FileIdentity> &identity,
                 const Decoding &decoding);
    void postpone(const WaitPointer &wait, qint64 bytes);
    void resumePostponed();
    void proceed(const WaitPointer &wait, CompletionWait::Step step);
    void finish(const WaitPointer &wait, const DecodedPicture &picture);
    void answer(const Requests &requests, const DecodedPicture &picture);
    void remember(const FileIdentity &identity, const DecodedPicture &picture);
    void dropUnusedPictures();

    FileWriters &m_writers;
    std::map<FileKey, WaitPointer> m_waits;
    /// Waits for other pictures to be released; newest last.
    struct Postponed {
        WaitPointer wait;
        qint64 bytes;
    };
    std::vector<Postponed> m_postponed;
    std::shared_ptr<PictureBudget> m_budget;
    PictureCache m_pictures;
    QTimer m_dropTimer;
    int m_decodePriority = 0;
    QThreadPool m_pool;
};
