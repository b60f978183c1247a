// SPDX-License-Identifier: MIT
#include "search/BackgroundReader.h"

#include "core/idleThreadPriority.h"
#include "imaging/PictureBudget.h"
#include "imaging/decodeImage.h"
#include "platform/PowerSource.h"
#include "platform/TextRecognizer.h"

using namespace std::chrono_literals;

namespace
{

/// A file that changed less than this ago may be incomplete.
constexpr auto steadyTime = 10s;

constexpr auto longestWaitAtEnd = 1s;

bool isSteady(const FileIdentity &file)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return now - std::chrono::nanoseconds(file.modified) > steadyTime;
}

} // namespace

/// Shared with the reading thread, which may outlive this object.
struct BackgroundReader::Services {
    std::shared_ptr<TextRecognizer> recognizer;
    std::shared_ptr<PowerSource> power;
    std::shared_ptr<PictureBudget> budget;
};

BackgroundReader::BackgroundReader(std::shared_ptr<TextRecognizer> recognizer,
                                   std::shared_ptr<PowerSource> power,
                                   std::shared_ptr<PictureBudget> budget)
    : m_services(std::make_shared<Services>(
          Services{std::move(recognizer), std::move(power), std::move(budget)}))
    , m_abandoned(std::make_shared<std::atomic_bool>(false))
    , m_thread(longestWaitAtEnd)
{
}

BackgroundReader::~BackgroundReader()
{
    abandon();
}

void BackgroundReader::abandon()
{
    *m_abandoned = true;
    m_abandoned = std::make_shared<std::atomic_bool>(false);
}

void BackgroundReader::bePatient()
{
    static thread_local const bool isPatient = [] {
        idleThreadPriority();
        return true;
    }();
    static_cast<void>(isPatient);
}

QFuture<BackgroundReader::Reading> BackgroundReader::read(const QUrl &file)
{
    return m_thread.ask([services = m_services, abandoned = m_abandoned, file] {
        bePatient();
        return readPage(*services, file, *abandoned);
    });
}

BackgroundReader::Reading BackgroundReader::readPage(Services &services, const QUrl &url,
                                                     const std::atomic_bool &abandoned)
{
    using Outcome = Reading::Outcome;
    if (abandoned)
        return {Outcome::Abandoned, {}, {}};
    if (services.power->batteryInUse().value_or(100) < leastBattery)
        return {Outcome::NoPower, {}, {}};
    const std::shared_ptr<OpenFile> open = OpenFile::open(url.toLocalFile());
    const std::optional<FileIdentity> file = open ? open->identity() : std::nullopt;
    if (!file)
        return {Outcome::Missing, {}, {}};
    const Decoding decoding = decodePicture(open->descriptor(), services.budget);
    if (decoding.lackingBytes > 0)
        return {Outcome::NoMemory, *file, {}};
    const QImage &picture = decoding.picture.top;
    if (picture.isNull())
        return {isSteady(*file) ? Outcome::Read : Outcome::Missing, *file, {}};
    if (abandoned)
        return {Outcome::Abandoned, {}, {}};
    QStringList lines;
    services.recognizer->recognize(
        picture,
        [&lines](const QString &line) {
            lines << line;
            return true;
        },
        [&abandoned] { return abandoned.load(); });
    if (abandoned)
        return {Outcome::Abandoned, {}, {}};
    return {Outcome::Read, *file, lines};
}
