// SPDX-License-Identifier: MIT
#include "command/WorkList.h"

#include "command/ToolNames.h"
#include "command/filePaths.h"
#include "filesystem/ImageNames.h"
#include "filesystem/namesInFolder.h"

#include <QSet>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace std::string_view_literals;

/// The extensions of pictures that can be decoded.
constexpr std::array imageExtensions = {"png"sv,  "jpg"sv, "jpeg"sv, "heic"sv,
                                        "tiff"sv, "tif"sv, "webp"sv};

constexpr size_t inputPart = 1U << 16U; // bytes

bool isFolder(const QByteArray &path)
{
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isPictureName(const QByteArray &name)
{
    return ImageNames::isVisible({name.constData(), size_t(name.size())}, imageExtensions);
}

QByteArray allOfStandardInput()
{
    QByteArray content;
    std::vector<char> part(inputPart);
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, part.data(), part.size());
        if (count > 0)
            content.append(part.data(), count);
        else if (count == 0 || errno != EINTR)
            return content;
    }
}

class Collector
{
public:
    explicit Collector(const CommandOptions &options) : m_options(options) {}

    void add(const QByteArray &place)
    {
        if (place == "-")
            addFromStandardInput();
        else
            addPlace(place);
    }

    WorkList list;

private:
    bool isWanted(const QByteArray &path) const
    {
        return m_options.all || m_options.mode == CommandOptions::Mode::Text ||
               ToolNames::isToolName(FilePaths::nameText(path));
    }

    void addFromStandardInput()
    {
        const char end = m_options.format == OutputFormat::Null ? '\0' : '\n';
        for (const QByteArray &name : allOfStandardInput().split(end)) {
            if (!name.isEmpty())
                addPlace(name);
        }
    }

    void addPlace(const QByteArray &place)
    {
        if (isFolder(place))
            addFolder(place);
        else if (!FilePaths::isTaken(place))
            list.failures.push_back({place, std::strerror(errno)});
        else
            addPicture(place);
    }

    void addFolder(const QByteArray &folder)
    {
        const std::optional<std::vector<QByteArray>> names = namesInFolder(folder);
        if (!names) {
            list.failures.push_back({folder, std::strerror(errno)});
            return;
        }
        const QByteArray opening = folder.endsWith('/') ? folder : folder + '/';
        for (const QByteArray &name : *names) {
            if (isPictureName(name) && !isFolder(opening + name))
                addPicture(opening + name);
        }
    }

    void addPicture(const QByteArray &path)
    {
        const qsizetype known = m_known.size();
        m_known.insert(path);
        if (m_known.size() == known)
            return;
        if (isWanted(path))
            list.pictures.push_back(path);
        else
            ++list.leftAlone;
    }

    const CommandOptions &m_options;
    QSet<QByteArray> m_known;
};

} // namespace

WorkList WorkList::of(const CommandOptions &options)
{
    Collector collector(options);
    for (const QByteArray &place : options.places)
        collector.add(place);
    return std::move(collector.list);
}
