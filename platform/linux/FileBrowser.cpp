#include "platform/FileBrowser.h"

#include "filesystem/FileUrls.h"
#include "platform/linux/file-browser/fileManagerCommand.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <chrono>
#include <fcntl.h>
#include <unistd.h>

namespace
{

using namespace std::chrono_literals;

/// A file manager that has to be started first takes a while; one that takes longer is taken for
/// broken.
constexpr auto answerLimit = 3s;

/// One wish to see a file, and the ways to fulfil it, each tried when the one before has failed:
/// the file manager by its common interface, the portal where the program is confined, the default
/// file manager's command line, and any program that opens a folder. Deletes itself.
class Revelation : public QObject
{
public:
    Revelation(const QUrl &file, QObject *parent)
        : QObject(parent)
        , m_file(file)
        , m_folder(FileUrls::parentFolder(file))
        , m_isThere(FileUrls::exists(file))
    {
    }

    void start()
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.FileManager1"),
            QStringLiteral("/org/freedesktop/FileManager1"),
            QStringLiteral("org.freedesktop.FileManager1"),
            m_isThere ? QStringLiteral("ShowItems") : QStringLiteral("ShowFolders"));
        const QUrl shown = m_isThere ? m_file : m_folder;
        call << QStringList{QString::fromLatin1(shown.toEncoded())} << QString();
        send(call, [this] { isConfined() ? askPortal() : askForDefault(); });
    }

private:
    /// Calls, and goes on with `otherwise` unless the call succeeds in time.
    void send(const QDBusMessage &call, const std::function<void()> &otherwise)
    {
        const auto limit = std::chrono::milliseconds(answerLimit);
        const QDBusPendingCall pending =
            QDBusConnection::sessionBus().asyncCall(call, static_cast<int>(limit.count()));
        auto *watcher = new QDBusPendingCallWatcher(pending, this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, otherwise] {
            if (watcher->isError())
                otherwise();
            else
                deleteLater();
        });
    }

    static bool isConfined()
    {
        return QFileInfo::exists(QStringLiteral("/.flatpak-info")) ||
               qEnvironmentVariableIsSet("SNAP");
    }

    void askPortal()
    {
        const QUrl shown = m_isThere ? m_file : m_folder;
        const int descriptor =
            ::open(QFile::encodeName(shown.toLocalFile()).constData(), O_PATH | O_CLOEXEC);
        if (descriptor < 0)
            return askForDefault();
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.portal.Desktop"),
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.OpenURI"), QStringLiteral("OpenDirectory"));
        call << QString() << QVariant::fromValue(QDBusUnixFileDescriptor(descriptor))
             << QVariantMap();
        ::close(descriptor);
        send(call, [this] { askForDefault(); });
    }

    void askForDefault()
    {
        auto *query = new QProcess(this);
        connect(query, &QProcess::finished, this, [this, query] {
            runDefault(QString::fromUtf8(query->readAllStandardOutput()).trimmed());
        });
        connect(query, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                runDefault({});
        });
        QTimer::singleShot(answerLimit, query, &QProcess::kill);
        query->setStandardErrorFile(QProcess::nullDevice());
        query->start(QStringLiteral("xdg-mime"),
                     {QStringLiteral("query"), QStringLiteral("default"),
                      QStringLiteral("inode/directory")});
    }

    void runDefault(const QString &desktopEntry)
    {
        const std::optional<FileManagerCommand> command =
            m_isThere ? fileManagerCommand(desktopEntry, m_file) : std::nullopt;
        if (!command || !QProcess::startDetached(command->program, command->arguments))
            QDesktopServices::openUrl(m_folder);
        deleteLater();
    }

    QUrl m_file;
    QUrl m_folder;
    bool m_isThere;
};

class DesktopFileBrowser : public FileBrowser
{
public:
    void reveal(const QUrl &file) override { (new Revelation(file, &m_revelations))->start(); }

private:
    QObject m_revelations;
};

} // namespace

std::unique_ptr<FileBrowser> makeFileBrowser()
{
    return std::make_unique<DesktopFileBrowser>();
}
