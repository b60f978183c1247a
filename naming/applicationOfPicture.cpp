// SPDX-License-Identifier: MIT
#include "naming/applicationOfPicture.h"

#include "imaging/pictureTexts.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// What separates the application's name from the rest of a window's title.
constexpr QStringView separators[] = {u" — ", u" – ", u" - "};

/// An application's name is shorter than this; anything longer is the end of the title.
constexpr qsizetype longestName = 40;

/// Programs that capture other programs' windows, and libraries that write picture files.
constexpr QStringView makers[] = {
    u"screenshot", u"spectacle", u"flameshot", u"ksnip",          u"screengrab", u"grim",
    u"scrot",      u"maim",      u"shutter",   u"imagemagick",    u"gdk-pixbuf", u"libpng",
    u"qt",         u"cairo",     u"ffmpeg",    u"graphicsmagick",
};

QString endOfTitle(const QString &title)
{
    qsizetype begin = 0;
    for (const QStringView separator : separators) {
        const qsizetype at = title.lastIndexOf(separator);
        if (at >= 0)
            begin = std::max(begin, at + separator.size());
    }
    // A title with only one part may be the name of a document.
    return begin > 0 ? title.mid(begin).trimmed() : QString();
}

bool isMaker(const QString &software)
{
    return std::any_of(std::begin(makers), std::end(makers), [&software](QStringView maker) {
        return maker == u"qt" ? software.compare(maker, Qt::CaseInsensitive) == 0
                              : software.contains(maker, Qt::CaseInsensitive);
    });
}

} // namespace

QString applicationOfPicture(const PictureTexts &texts)
{
    const QString application = endOfTitle(texts.windowTitle);
    if (!application.isEmpty() && application.size() <= longestName)
        return application;
    return texts.software.size() <= longestName && !isMaker(texts.software) ? texts.software
                                                                            : QString();
}
