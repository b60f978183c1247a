// SPDX-License-Identifier: MIT
#include "filesystem/ImageNames.h"

#include <QFile>

#include <algorithm>

namespace
{

char toLower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

namespace ImageNames
{

bool isVisible(std::string_view name, std::span<const std::string_view> extensions)
{
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || name.front() == '.')
        return false;
    const std::string_view own = name.substr(dot + 1);
    return std::any_of(extensions.begin(), extensions.end(), [own](std::string_view known) {
        return std::equal(own.begin(), own.end(), known.begin(), known.end(),
                          [](char one, char other) { return toLower(one) == other; });
    });
}

std::optional<QString> decoded(const QByteArray &name)
{
    const QString text = QFile::decodeName(name);
    return QFile::encodeName(text) == name ? std::optional(text) : std::nullopt;
}

} // namespace ImageNames
