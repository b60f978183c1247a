// SPDX-License-Identifier: MIT
#include "platform/FileBrowser.h"

#include "filesystem/FileUrls.h"
#include "tests/world/Commands.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// A service that records calls, and answers, refuses or stays silent.
class FakeFileManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum class Answer { Done, Error, None };
    Answer answer = Answer::Done;
    QStringList asked;
    QStringList startupIds;

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &startupId)
    {
        note(u"items"_s, uris, startupId);
    }
    void ShowFolders(const QStringList &uris, const QString &startupId)
    {
        note(u"folders"_s, uris, startupId);
    }

private:
    void note(const QString &method, const QStringList &uris, const QString &startupId)
    {
        asked << method + u' ' + uris.join(u' ');
        startupIds << startupId;
        if (answer == Answer::Error)
            sendErrorReply(QDBusError::Failed, u"no display"_s);
        setDelayedReply(answer != Answer::Done);
    }
};

/// The portal's interface for opening folders; records the file behind the descriptor.
class FakePortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.OpenURI")

public:
    QStringList asked;

public Q_SLOTS:
    QDBusObjectPath OpenDirectory(const QString &, const QDBusUnixFileDescriptor &file,
                                  const QVariantMap &)
    {
        asked << QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(file.fileDescriptor()));
        return QDBusObjectPath(u"/request"_s);
    }
};

} // namespace

class FileBrowserTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Commands> m_commands;
    std::unique_ptr<FakeFileManager> m_manager;
    std::unique_ptr<FileBrowser> m_browser;
    QUrl m_shot;
    QTemporaryDir m_systemFolder;
    QByteArray m_dataFolders;

    static QDBusConnection serviceBus()
    {
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"services"_s);
    }

    /// Makes it the user's program for opening folders.
    static void choose(const QString &entry, const QString &list = u"mimeapps.list"_s)
    {
        write(qEnvironmentVariable("XDG_CONFIG_HOME") + u'/' + list,
              "[Default Applications]\ninode/directory=gone.desktop;" + entry.toUtf8() + ";\n");
        install(entry);
    }

    static void install(const QString &entry)
    {
        write(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications/"_s + entry,
              "[Desktop Entry]\nType=Application\nName=Files\nExec=true\n");
    }

    static void write(const QString &path, const QByteArray &content)
    {
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(content);
    }

    static QString uri(const QUrl &url) { return QString::fromLatin1(url.toEncoded()); }
    QUrl folder() const { return FileUrls::fromPath(m_folder->path()); }

private Q_SLOTS:
    void initTestCase()
    {
        // Before a file manager has the real one started.
        QVERIFY(serviceBus().registerService(u"org.freedesktop.portal.Desktop"_s));
        m_commands = std::make_unique<Commands>();
        // Keeps what is installed on the machine out of the test.
        m_dataFolders = qgetenv("XDG_DATA_DIRS");
        qputenv("XDG_DATA_DIRS", QFile::encodeName(m_systemFolder.path()));
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_shot = FileUrls::child(folder(), u"a b é%25#.png"_s);
        QFile file(m_shot.toLocalFile());
        QVERIFY(file.open(QFile::WriteOnly));
        if (m_commands)
            m_commands->clear();
        m_manager = std::make_unique<FakeFileManager>();
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject(u"/org/freedesktop/FileManager1"_s, m_manager.get(),
                                   QDBusConnection::ExportAllSlots));
        // A real one from another test may still be ending.
        QTRY_VERIFY_WITH_TIMEOUT(bus.registerService(u"org.freedesktop.FileManager1"_s), 20'000);
        m_browser = makeFileBrowser();
    }

    void cleanup()
    {
        serviceBus().unregisterService(u"org.freedesktop.FileManager1"_s);
        serviceBus().unregisterObject(u"/org/freedesktop/FileManager1"_s);
        qunsetenv("SNAP");
        qunsetenv("XDG_CURRENT_DESKTOP");
        const QDir configuration(qEnvironmentVariable("XDG_CONFIG_HOME"));
        for (const QString &list : configuration.entryList({u"*mimeapps.list"_s}))
            QVERIFY(QFile::remove(configuration.filePath(list)));
        QDir(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s).removeRecursively();
    }

    void theFileManagerIsAskedToShowTheFile()
    {
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{u"items "_s + uri(m_shot)});
        QVERIFY(uri(m_shot).endsWith(u"/a%20b%20%C3%A9%2525%23.png"_s));
        QCOMPARE(m_commands->calls(), QStringList());
    }

    void ofAFileThatIsGoneTheFolderIsShown()
    {
        QVERIFY(QFile::remove(m_shot.toLocalFile()));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{u"folders "_s + uri(folder())});
    }

    void revealingReturnsAtOnce()
    {
        m_manager->answer = FakeFileManager::Answer::None;
        QElapsedTimer timer;
        timer.start();
        m_browser->reveal(m_shot);
        QVERIFY(timer.elapsed() < 500);
        QTRY_COMPARE(m_manager->asked.size(), 1);
    }

    void theUsersOwnFileManagerIsAskedFirst()
    {
        choose(u"org.gnome.Nautilus.desktop"_s);
        FakeFileManager own;
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"own"_s);
        QVERIFY(bus.registerObject(u"/org/freedesktop/FileManager1"_s, &own,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(u"org.gnome.Nautilus"_s));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(own.asked, QStringList{u"items "_s + uri(m_shot)});
        QCOMPARE(m_manager->asked, QStringList());
        QVERIFY(bus.unregisterService(u"org.gnome.Nautilus"_s));
    }

    void theFileManagerMayComeToTheFront()
    {
        for (int time = 1; time <= 2; ++time) {
            m_browser->reveal(m_shot);
            QTRY_COMPARE(m_manager->asked.size(), time);
        }
        const QRegularExpression form(u"^velmora-\\d+-\\d+_TIME([1-9]\\d*)$"_s);
        for (const QString &startupId : std::as_const(m_manager->startupIds))
            QVERIFY2(form.match(startupId).hasMatch(), qPrintable(startupId));
        QVERIFY(m_manager->startupIds.first() != m_manager->startupIds.last());
    }

    void oneThatDoesNotRunIsStarted_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("command");
        QTest::newRow("Nautilus") << u"org.gnome.Nautilus.desktop"_s << u"nautilus --select %1"_s;
        QTest::newRow("Dolphin") << u"org.kde.dolphin.desktop"_s << u"dolphin --select %1"_s;
        QTest::newRow("Nemo") << u"nemo.desktop"_s << u"nemo %1"_s;
        QTest::newRow("Caja") << u"caja-folder-handler.desktop"_s << u"caja --select %1"_s;
    }

    void oneThatDoesNotRunIsStarted()
    {
        QFETCH(QString, entry);
        QFETCH(QString, command);
        choose(entry);
        m_commands->add(command.section(u' ', 0, 0));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_commands->calls(), QStringList{command.arg(m_shot.toLocalFile())});
        QCOMPARE(m_manager->asked, QStringList());
    }

    void theChoiceForTheRunningDesktopComesFirst()
    {
        qputenv("XDG_CURRENT_DESKTOP", "Other:MATE");
        choose(u"org.kde.dolphin.desktop"_s);
        choose(u"nemo.desktop"_s, u"mate-mimeapps.list"_s);
        m_commands->add(u"dolphin"_s);
        m_commands->add(u"nemo"_s);
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_commands->calls(), QStringList{u"nemo "_s + m_shot.toLocalFile()});
    }

    void withoutAChoiceTheSystemsCounts()
    {
        write(m_systemFolder.filePath(u"applications/mimeinfo.cache"_s),
              "[MIME Cache]\ninode/directory=nemo.desktop;org.kde.dolphin.desktop;\n");
        install(u"org.kde.dolphin.desktop"_s);
        m_commands->add(u"dolphin"_s);
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_commands->calls(),
                     QStringList{u"dolphin --select "_s + m_shot.toLocalFile()});
        QVERIFY(QFile::remove(m_systemFolder.filePath(u"applications/mimeinfo.cache"_s)));
    }

    void oneThatIsNotKnownLeavesItToAnyOther()
    {
        choose(u"some.other.desktop"_s);
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{u"items "_s + uri(m_shot)});
    }

    void oneThatIsNotInstalledLeavesItToAnyOther()
    {
        choose(u"org.kde.dolphin.desktop"_s);
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{u"items "_s + uri(m_shot)});
    }

    void aRefusalOpensTheFolder()
    {
        m_manager->answer = FakeFileManager::Answer::Error;
        m_commands->add(u"xdg-open"_s);
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_commands->calls(), QStringList{u"xdg-open "_s + uri(folder())});
    }

    void aSilentFileManagerIsNotWaitedForLongerThanThreeSeconds()
    {
        m_manager->answer = FakeFileManager::Answer::None;
        m_commands->add(u"xdg-open"_s);
        QElapsedTimer timer;
        timer.start();
        m_browser->reveal(m_shot);
        QTRY_COMPARE_WITH_TIMEOUT(m_commands->calls().size(), 1, 10'000);
        QVERIFY2(timer.elapsed() >= 2700, qPrintable(QString::number(timer.elapsed())));
    }

    void confinedTheProgramAsksThePortal()
    {
        FakePortal portal;
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                                   QDBusConnection::ExportAllSlots));
        m_manager->answer = FakeFileManager::Answer::Error;
        qputenv("SNAP", "/snap/velmora");
        m_browser->reveal(m_shot);
        QTRY_COMPARE(portal.asked, QStringList{m_shot.toLocalFile()});
        bus.unregisterObject(u"/org/freedesktop/portal/desktop"_s);
    }

    void aBrowserThatEndsWhileItWaitsDoesNothingMore()
    {
        m_manager->answer = FakeFileManager::Answer::None;
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked.size(), 1);
        m_browser.reset();
        serviceBus().unregisterService(u"org.freedesktop.FileManager1"_s);
        QCoreApplication::processEvents();
        QCOMPARE(m_commands->calls(), QStringList());
    }

    /// The last tests: they need the real commands.
    void theRealFileManagerOpensAWindowOfTheFolder()
    {
        serviceBus().unregisterService(u"org.freedesktop.FileManager1"_s);
        const QString service =
            u"/usr/share/dbus-1/services/org.xfce.Thunar.FileManager1.service"_s;
        if (!QFile::exists(service))
            QSKIP("Thunar is not installed");
        m_commands.reset();
        m_dataFolders.isEmpty() ? qunsetenv("XDG_DATA_DIRS")
                                : qputenv("XDG_DATA_DIRS", m_dataFolders);
        choose(u"thunar.desktop"_s);
        m_browser->reveal(m_shot);
        const auto windowNames = [] {
            return XDesktop::run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s,
                                                u"thunar"_s, u"getwindowname"_s, u"%@"_s});
        };
        const QString name = FileUrls::lastPathComponent(folder());
        QTRY_VERIFY_WITH_TIMEOUT(windowNames().contains(name), 20'000);
        XDesktop::run(u"thunar"_s, {u"-q"_s});
    }

    void cajaComesToTheFront()
    {
        if (QStandardPaths::findExecutable(u"caja"_s).isEmpty())
            QSKIP("Caja is not installed");
        serviceBus().unregisterService(u"org.freedesktop.FileManager1"_s);
        choose(u"caja-folder-handler.desktop"_s);
        // It is already running; the user is in another application.
        QProcess caja;
        caja.setStandardErrorFile(QProcess::nullDevice());
        caja.start(u"caja"_s, {u"--no-desktop"_s, m_systemFolder.path()});
        const auto active = [] {
            return XDesktop::run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s});
        };
        const QString other = QFileInfo(m_systemFolder.path()).fileName();
        QTRY_VERIFY_WITH_TIMEOUT(active().startsWith(other), 20'000);
        const Terminal terminal(m_systemFolder.filePath(u"typed"_s));
        terminal.activate();
        XDesktop::type(u"words"_s);
        m_browser->reveal(m_shot);
        const QString name = FileUrls::lastPathComponent(folder());
        QTRY_VERIFY_WITH_TIMEOUT(active().startsWith(name), 20'000);
        caja.kill();
        caja.waitForFinished();
    }
};

VELMORA_WIDGETS_TEST(FileBrowserTest)
#include "FileBrowserTest.moc"
