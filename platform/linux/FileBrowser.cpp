// SPDX-License-Identifier: MIT
#include "platform/FileBrowser.h"

#include "filesystem/FileUrls.h"
#include "platform/linux/file-browser/FileManager.h"
#include "platform/linux/x11/UserTime.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>

#include <chrono>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

using namespace std::chrono_literals;

/// Starting a file manager takes a while; one that takes longer than this counts as broken.
constexpr auto answerLimit = 3s;

/// The bus name shared by all file managers: the first one to start owns it.
QString anyFileManager()
{
    return u"org.freedesktop.FileManager1"_s;
}

bool isConfined()
{
    return QFileInfo::exists(u"/.flatpak-info"_s) || qEnvironmentVariableIsSet("SNAP");
}

/// One request to show a file, and the ways to fulfil it, each tried when the one before has
/// failed: the user's own file manager over the bus and by its command line, any file manager, the
/// portal when the program is confined, and any program that opens a folder. Deletes itself.
class Revelation : public QObject
{
public:
    Revelation(const QUrl &file, QObject *parent)
        : QObject(parent)
        , m_file(file)
        , m_folder(FileUrls::parentFolder(file))
        , m_isThere(FileUrls::exists(file))
    {
        if (const auto entry = isConfined() ? std::nullopt : defaultFileManager())
            addWaysOf(fileManager(*entry).value_or(FileManager()));
        m_ways.append([this] { askFileManager(anyFileManager()); });
        if (isConfined())
            m_ways.append([this] { askPortal(); });
        m_ways.append([this] { openFolder(); });
    }

    /// @param startupId allows the file manager to come to the front
    void start(const QString &startupId)
    {
        m_startupId = startupId;
        tryNextWay();
    }

private:
    void addWaysOf(const FileManager &manager)
    {
        if (!manager.busName.isEmpty())
            m_ways.append([this, manager] { askFileManager(manager.busName); });
        if (m_isThere && !manager.program.isEmpty())
            m_ways.append([this, manager] { run(manager); });
    }

    void tryNextWay() { m_ways.takeFirst()(); }

    /// Sends the call, and tries the next way unless it succeeds in time.
    void send(const QDBusMessage &call)
    {
        const auto limit = std::chrono::milliseconds(answerLimit);
        const QDBusPendingCall pending =
            QDBusConnection::sessionBus().asyncCall(call, static_cast<int>(limit.count()));
        auto *watcher = new QDBusPendingCallWatcher(pending, this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            if (watcher->isError())
                tryNextWay();
            else
                deleteLater();
        });
    }

    void askFileManager(const QString &busName)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            busName, u"/org/freedesktop/FileManager1"_s, u"org.freedesktop.FileManager1"_s,
            m_isThere ? u"ShowItems"_s : u"ShowFolders"_s);
        const QUrl shown = m_isThere ? m_file : m_folder;
        call << QStringList{QString::fromLatin1(shown.toEncoded())} << m_startupId;
        send(call);
    }

    void run(const FileManager &manager)
    {
        QProcess process;
        process.setProgram(manager.program);
        process.setArguments(manager.arguments + QStringList{m_file.toLocalFile()});
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!m_startupId.isEmpty())
            environment.insert(u"DESKTOP_STARTUP_ID"_s, m_startupId);
        process.setProcessEnvironment(environment);
        if (process.startDetached())
            deleteLater();
        else
            tryNextWay();
    }

    void askPortal()
    {
        const QUrl shown = m_isThere ? m_file : m_folder;
        const int descriptor =
            ::open(QFile::encodeName(shown.toLocalFile()).constData(), O_PATH | O_CLOEXEC);
        if (descriptor < 0)
            return tryNextWay();
        QDBusMessage call = QDBusMessage::createMethodCall(
            u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
            u"org.freedesktop.portal.OpenURI"_s, u"OpenDirectory"_s);
        call << QString() << QVariant::fromValue(QDBusUnixFileDescriptor(descriptor))
             << QVariantMap();
        ::close(descriptor);
        send(call);
    }

    void openFolder()
    {
        QDesktopServices::openUrl(m_folder);
        deleteLater();
    }

    QUrl m_file;
    QUrl m_folder;
    bool m_isThere;
    QString m_startupId;
    QList<std::function<void()>> m_ways;
};

class DesktopFileBrowser : public FileBrowser
{
public:
    void reveal(const QUrl &file) override
    {
        const QPointer<Revelation> revelation = new Revelation(file, &m_revelations);
        if (!m_userTime)
            m_userTime = std::make_unique<UserTime>();
        m_userTime->renew([this, revelation](quint32 time) {
            if (revelation)
                revelation->start(startupId(time));
        });
    }

private:
    /// In the format of the Startup Notification Protocol. The window manager reads the time from
    /// it when the file manager's window asks for the focus.
    QString startupId(quint32 time)
    {
        if (time == 0)
            return {};
        return u"velmora-%1-%2_TIME%3"_s.arg(QCoreApplication::applicationPid())
            .arg(++m_launches)
            .arg(time);
    }

    QObject m_revelations;
    std::unique_ptr<UserTime> m_userTime;
    int m_launches = 0;
};

} // namespace

std::unique_ptr<FileBrowser> makeFileBrowser()
{
    return std::make_unique<DesktopFileBrowser>();
}
