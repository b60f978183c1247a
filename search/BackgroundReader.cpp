// SPDX-License-Identifier: MIT
#include "search/BackgroundReader.h"

#include "core/idleThreadPriority.h"
#include "imaging/PictureBudget.h"
#include "imaging/decodeImage.h"
#include "platform/PowerSource.h"
#include "platform/TextRecognizer.h"

#include <mutex>

using namespace std::chrono_literals;

namespace
{

/// A file that changed less than this ago may be incomplete.
constexpr auto steadyTime = 10s;

bool isSteady(const FileIdentity &file)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return now - std::chrono::nanoseconds(file.modified) > steadyTime;
}

} // namespace

/// The services that the reading thread uses. Taken away from it at the end, because it may then be
/// stuck in a file.
struct BackgroundReader::Services {
    std::shared_ptr<PictureBudget> budget;
    std::mutex mutex;
    TextRecognizer *recognizer; ///< guarded by the mutex
    PowerSource *power;         ///< guarded by the mutex
};

BackgroundReader::BackgroundReader(TextRecognizer &recognizer, PowerSource &power,
                                   std::shared_ptr<PictureBudget> budget)
    : m_services(std::make_shared<Services>())
    , m_abandoned(std::make_shared<std::atomic_bool>(false))
    , m_thread(0ms)
{
    m_services->budget = std::move(budget);
    m_services->recognizer = &recognizer;
    m_services->power = &power;
}

BackgroundReader::~BackgroundReader()
{
    abandon();
    const std::lock_guard lock(m_services->mutex);
    m_services->recognizer = nullptr;
    m_services->power = nullptr;
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
    {
        const std::lock_guard lock(services.mutex);
        if (abandoned || !services.power)
            return {Outcome::Abandoned, {}, {}};
        if (services.power->batteryInUse().value_or(100) < leastBattery)
            return {Outcome::NoPower, {}, {}};
    }
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
    const std::lock_guard lock(services.mutex);
    if (abandoned || !services.recognizer)
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
