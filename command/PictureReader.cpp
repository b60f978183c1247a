// SPDX-License-Identifier: MIT
#include "command/PictureReader.h"

#include "filesystem/Descriptor.h"
#include "imaging/pictureTexts.h"
#include "naming/NameWords.h"
#include "naming/applicationOfPicture.h"
#include "platform/FileWriters.h"
#include "platform/TextRecognizer.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{

/// The limit for all pixels in memory, in bytes: two 4K screens, or one picture of `namedLimits`.
constexpr qint64 pixelBytes = 72'000'000;

/// Of a picture larger than this (two 4K screens), only the upper part is read.
constexpr PictureLimits namedLimits{17'000'000, 1'000'000};

/// Opening a device or a pipe can have side effects.
bool isRegular(const QByteArray &path)
{
    struct stat status = {};
    if (::stat(path.constData(), &status) != 0)
        return false;
    if (!S_ISREG(status.st_mode))
        errno = EINVAL;
    return S_ISREG(status.st_mode);
}

} // namespace

PictureReader::PictureReader(Wanted wanted, const QString &appName)
    : m_wanted(wanted)
    , m_appName(appName)
    , m_recognizer(makeTextRecognizer())
    , m_writers(makeFileWriters())
    , m_budget(std::make_shared<PictureBudget>(pixelBytes))
{
    m_budget->setOnReturn([this] {
        const std::lock_guard lock(m_mutex);
        m_roomReturned.notify_all();
    });
}

PictureReader::~PictureReader()
{
    m_budget->setOnReturn({});
}

PictureReading PictureReader::read(const QByteArray &path)
{
    PictureReading reading;
    reading.path = path;
    const Descriptor file(
        isRegular(path) ? ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)
                        : -1);
    const std::optional<FileIdentity> identity = file ? fileIdentity(file.number()) : std::nullopt;
    if (!identity) {
        reading.failure = errno == EINVAL ? "is not a regular file" : std::strerror(errno);
    } else if (m_writers->writersOf(file.number()) == FileWriters::Answer::Some) {
        reading.failure = "is still being written";
    } else if (const QImage image = picture(file.number()); image.isNull()) {
        reading.failure = "is not a readable picture";
    } else {
        reading.identity = *identity;
        recognize(image,
                  m_appName.isEmpty() ? applicationOfPicture(pictureTexts(file.number()))
                                      : m_appName,
                  reading);
    }
    return reading;
}

QImage PictureReader::picture(int descriptor)
{
    for (;;) {
        const Decoding decoding = decodePicture(descriptor, m_budget, namedLimits);
        if (decoding.lackingBytes == 0)
            return decoding.picture.top;
        std::unique_lock lock(m_mutex);
        m_roomReturned.wait(lock, [&] { return m_budget->hasRoom(decoding.lackingBytes); });
    }
}

void PictureReader::recognize(const QImage &picture, const QString &appName,
                              PictureReading &reading)
{
    NameWords words(appName);
    const auto onLine = [&](const QString &line) {
        if (m_wanted == Wanted::Words)
            return words.add(line);
        reading.lines.append(line);
        return true;
    };
    m_recognizer->recognize(picture, onLine, [] { return false; });
    reading.words = words.words();
}

std::optional<FileIdentity> identityOf(const QByteArray &path)
{
    const Descriptor file(::open(path.constData(), O_PATH | O_CLOEXEC));
    return file ? fileIdentity(file.number()) : std::nullopt;
}
