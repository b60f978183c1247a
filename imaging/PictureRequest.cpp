// SPDX-License-Identifier: MIT
#include "imaging/PictureRequest.h"

PictureRequest::PictureRequest(Kind kind, QSize bounds) : m_kind(kind), m_bounds(bounds)
{
    m_promise.start();
}

PictureRequest::~PictureRequest()
{
    if (!m_answered)
        answer({});
}

void PictureRequest::answer(const DecodedPicture &picture)
{
    m_answered = true;
    m_promise.addResult(m_promise.isCanceled() ? QImage() : wanted(picture));
    m_promise.finish();
}

QImage PictureRequest::wanted(const DecodedPicture &picture) const
{
    switch (m_kind) {
    case Kind::Top:
        return picture.top;
    case Kind::Completion:
        return {};
    case Kind::Thumbnail:
        break;
    }
    const QImage &whole = picture.overview;
    const bool fits = whole.width() <= m_bounds.width() && whole.height() <= m_bounds.height();
    if (whole.isNull())
        return {};
    // A thumbnail lives long, so it must not keep the memory of a whole picture.
    if (fits)
        return whole.copy();
    return whole.scaled(m_bounds.expandedTo({1, 1}), Qt::KeepAspectRatio, Qt::SmoothTransformation);
}
