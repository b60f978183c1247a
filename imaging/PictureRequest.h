// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/DecodedPicture.h"

#include <QFuture>
#include <QImage>
#include <QPromise>
#include <QSize>

/// A request for a picture. Dropping it answers it with a null image. One thread at a time.
class PictureRequest
{
public:
    enum class Kind {
        Top,        ///< the upper part: the whole picture unless it is huge
        Thumbnail,  ///< the whole picture scaled down to fit bounds
        Completion, ///< only that the wait is over
    };

    explicit PictureRequest(Kind kind, QSize bounds = {});
    ~PictureRequest();
    Q_DISABLE_COPY_MOVE(PictureRequest)

    Kind kind() const { return m_kind; }
    QFuture<QImage> future() const { return m_promise.future(); }
    bool isCanceled() const { return m_promise.isCanceled(); }

    /// Answers each with the kind of picture that was asked for. Scaling takes time.
    void answer(const DecodedPicture &picture);

private:
    QImage wanted(const DecodedPicture &picture) const;

    Kind m_kind;
    QSize m_bounds;
    bool m_answered = false;
    QPromise<QImage> m_promise;
};
