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

void PictureRequest::answer(const QImage &picture)
{
    m_answered = true;
    m_promise.addResult(m_promise.isCanceled() ? QImage() : wanted(picture));
    m_promise.finish();
}

QImage PictureRequest::wanted(const QImage &picture) const
{
    switch (m_kind) {
    case Kind::Picture:
        return picture;
    case Kind::Completion:
        return {};
    case Kind::Thumbnail:
        break;
    }
    const bool fits = picture.width() <= m_bounds.width() && picture.height() <= m_bounds.height();
    if (picture.isNull() || fits)
        return picture;
    return picture.scaled(m_bounds.expandedTo({1, 1}), Qt::KeepAspectRatio,
                          Qt::SmoothTransformation);
}
