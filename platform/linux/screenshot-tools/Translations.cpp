// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/Translations.h"

#include <QFile>
#include <QStandardPaths>

#include <libintl.h>

using namespace Qt::StringLiterals;

QString Translations::translated(const char *catalogue, const char *text)
{
    const QStringList folders = QStandardPaths::locateAll(
        QStandardPaths::GenericDataLocation, u"locale"_s, QStandardPaths::LocateDirectory);
    ::bind_textdomain_codeset(catalogue, "UTF-8");
    for (const QString &folder : folders) {
        ::bindtextdomain(catalogue, QFile::encodeName(folder).constData());
        // Without a translation, the same pointer comes back.
        if (const char *const result = ::dgettext(catalogue, text); result != text)
            return QString::fromUtf8(result);
    }
    return QString::fromUtf8(text);
}
