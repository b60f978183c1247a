// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntry.h"

#include "core/readSmallFile.h"

#include <glib.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr char group[] = G_KEY_FILE_DESKTOP_GROUP;

struct Free {
    void operator()(char *text) const { g_free(text); }
    void operator()(char **texts) const { g_strfreev(texts); }
    void operator()(GKeyFile *file) const { g_key_file_free(file); }
};

/// Takes ownership of the text.
QString taken(char *text)
{
    const std::unique_ptr<char, Free> owned(text);
    return QString::fromUtf8(text).trimmed();
}

} // namespace

/// From now on GLib only reads it, which several threads may do at once.
struct DesktopEntry::Parsed {
    std::unique_ptr<GKeyFile, Free> file{g_key_file_new()};
};

std::optional<DesktopEntry> DesktopEntry::read(const QString &path)
{
    const QByteArray content = contentOfSmallFile(path, Links::Follow).value_or(QByteArray());
    const auto parsed = std::make_shared<Parsed>();
    GKeyFile *file = parsed->file.get();
    const bool isRead = g_key_file_load_from_data(file, content.constData(), gsize(content.size()),
                                                  G_KEY_FILE_KEEP_TRANSLATIONS, nullptr);
    return isRead && g_key_file_has_group(file, group) ? std::optional(DesktopEntry(parsed))
                                                       : std::nullopt;
}

QString DesktopEntry::string(const char *key) const
{
    return taken(g_key_file_get_string(m_parsed->file.get(), group, key, nullptr));
}

QString DesktopEntry::localizedString(const char *key) const
{
    return taken(g_key_file_get_locale_string(m_parsed->file.get(), group, key, nullptr, nullptr));
}

QStringList DesktopEntry::list(const char *key) const
{
    gsize count = 0;
    const std::unique_ptr<char *, Free> parts(
        g_key_file_get_string_list(m_parsed->file.get(), group, key, &count, nullptr));
    QStringList result;
    for (gsize number = 0; number < count; ++number) {
        const QString part = QString::fromUtf8(parts.get()[number]);
        if (!part.isEmpty())
            result.append(part);
    }
    return result;
}

std::optional<bool> DesktopEntry::boolean(const char *key) const
{
    GError *error = nullptr;
    const bool value = g_key_file_get_boolean(m_parsed->file.get(), group, key, &error);
    const bool isBoolean = !error;
    g_clear_error(&error);
    return isBoolean ? std::optional(value) : std::nullopt;
}

bool DesktopEntry::isApplication() const
{
    return string("Type") == "Application"_L1 && !boolean("Hidden").value_or(false);
}
