// SPDX-License-Identifier: MIT
#include "platform/linux/desktop-records/fileUri.h"

#include <QFile>

#include <memory>

#include <glib.h>

QByteArray fileUri(const QString &path)
{
    const std::unique_ptr<gchar, decltype(&g_free)> uri(
        g_filename_to_uri(QFile::encodeName(path).constData(), nullptr, nullptr), &g_free);
    return uri ? QByteArray(uri.get()) : QByteArray();
}
