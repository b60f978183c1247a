// SPDX-License-Identifier: MIT
#include "platform/linux/desktop-search/FoundResults.h"

#include <QPointer>
#include <QTimer>

#include <memory>

using namespace std::chrono_literals;

namespace
{

constexpr qsizetype mostResults = 10;
constexpr qsizetype mostKnown = 200;

/// Desktops show them at half this size, or at this size on a high-density screen.
constexpr QSize thumbnailBounds(96, 96);

constexpr auto longestWait = 400ms;

/// Distinguishes it from other programs' results.
QString idOf(const QUrl &file)
{
    return file.toString(QUrl::FullyEncoded);
}

} // namespace

/// A request for thumbnails, answered when the last one has arrived or the time is up.
struct FoundResults::Pictures {
    QStringList ids;
    Answer answer;
    qsizetype missing = 0;
};

void FoundResults::find(const QString &words, const Answer &answer)
{
    const QPointer<FoundResults> self(this);
    m_source.find(words, [self, answer](const QList<DesktopSearch::Result> &found) {
        if (!self)
            return answer({});
        QList<Result> results;
        for (const DesktopSearch::Result &each : found.mid(0, mostResults)) {
            self->remember(each);
            results.append({idOf(each.file), each, {}});
        }
        answer(results);
    });
}

void FoundResults::remember(const DesktopSearch::Result &result)
{
    const QString id = idOf(result.file);
    m_order.removeOne(id);
    m_order.append(id);
    m_known.insert(id, result);
    while (m_order.size() > mostKnown) {
        const QString oldest = m_order.takeFirst();
        m_known.remove(oldest);
        m_thumbnails.remove(oldest);
    }
}

void FoundResults::describe(const QStringList &ids, const Answer &answer)
{
    const auto pictures = std::make_shared<Pictures>();
    pictures->answer = answer;
    for (const QString &id : ids) {
        if (m_known.contains(id))
            pictures->ids << id;
    }
    const auto finish = [this, pictures] {
        if (!pictures->answer)
            return;
        QList<Result> results;
        for (const QString &id : std::as_const(pictures->ids))
            results.append({id, m_known.value(id), m_thumbnails.value(id)});
        std::exchange(pictures->answer, {})(results);
    };
    for (const QString &id : std::as_const(pictures->ids)) {
        if (m_thumbnails.contains(id))
            continue;
        ++pictures->missing;
        m_source.thumbnail(m_known.value(id).file, thumbnailBounds,
                           [self = QPointer(this), id, pictures, finish](const QImage &image) {
                               if (!self)
                                   return;
                               if (!image.isNull())
                                   self->m_thumbnails.insert(id, BusImage::of(image));
                               if (--pictures->missing == 0)
                                   finish();
                           });
    }
    if (pictures->missing == 0)
        finish();
    else
        QTimer::singleShot(longestWait, this, finish);
}

std::optional<QUrl> FoundResults::file(const QString &id) const
{
    const auto known = m_known.constFind(id);
    return known == m_known.cend() ? std::nullopt : std::optional(known->file);
}
