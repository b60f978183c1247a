// SPDX-License-Identifier: MIT
#include "tests/world/DocumentPortal.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20'000; // milliseconds

QString busName()
{
    return u"org.freedesktop.portal.Documents"_s;
}

/// The portal's program, as its package tells the bus; empty when it is not installed.
QString program()
{
    QFile service(QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                         u"dbus-1/services/%1.service"_s.arg(busName())));
    if (!service.open(QFile::ReadOnly))
        return {};
    const QList<QByteArray> lines = service.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("Exec="))
            return QFile::decodeName(line.mid(5).trimmed());
    }
    return {};
}

/// Its files are in a file system of its own.
QString mountPoint()
{
    return qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/doc"_s;
}

bool isMounted()
{
    QFile mounts(u"/proc/self/mounts"_s);
    return mounts.open(QFile::ReadOnly) &&
           mounts.readAll().contains(QFile::encodeName(mountPoint()));
}

} // namespace

DocumentPortal::DocumentPortal()
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    // Or it would stay for ever if the test ended while it is frozen.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(program(), QStringList());
    if (!QTest::qWaitFor([] { return isOnTheBus() && isMounted(); }, patience))
        qWarning("the document portal does not start");
}

DocumentPortal::~DocumentPortal()
{
    thaw();
    m_process.terminate();
    if (!m_process.waitForFinished(patience))
        m_process.kill();
    if (!QTest::qWaitFor([] { return !isOnTheBus() && !isMounted(); }, patience))
        qWarning("the document portal leaves its files");
}

std::optional<QString> DocumentPortal::obstacle()
{
    if (::access("/dev/fuse", R_OK | W_OK) != 0)
        return u"there is no /dev/fuse that this user may open"_s;
    if (program().isEmpty())
        return u"the document portal is not installed"_s;
    if (QProcess::execute(u"bwrap"_s, {u"--ro-bind"_s, u"/"_s, u"/"_s, u"true"_s}) != 0)
        return u"bwrap is not installed, or can't make a sandbox here"_s;
    return std::nullopt;
}

bool DocumentPortal::isOnTheBus()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(busName());
}

bool DocumentPortal::knows(const QByteArray &key)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        busName(), u"/org/freedesktop/portal/documents"_s, u"org.freedesktop.portal.FileTransfer"_s,
        u"RetrieveFiles"_s);
    call << QString::fromLatin1(key) << QVariantMap();
    return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
}

void DocumentPortal::freeze()
{
    ::kill(pid_t(m_process.processId()), SIGSTOP);
}

void DocumentPortal::thaw()
{
    ::kill(pid_t(m_process.processId()), SIGCONT);
}

std::optional<DocumentPortal::Received>
DocumentPortal::receive(const std::optional<QByteArray> &key)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QString::fromUtf8(SANDBOXED_RECEIVER),
                  key ? QStringList{QString::fromUtf8(*key)} : QStringList());
    if (!QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, patience))
        qWarning("the sandboxed program does not end");
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    const QString path = QString::fromUtf8(process.readLine()).chopped(1);
    return Received{path, process.readAll()};
}
