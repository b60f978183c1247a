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

namespace
{

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

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
        note(s("items"), uris, startupId);
    }
    void ShowFolders(const QStringList &uris, const QString &startupId)
    {
        note(s("folders"), uris, startupId);
    }

private:
    void note(const QString &method, const QStringList &uris, const QString &startupId)
    {
        asked << method + u' ' + uris.join(u' ');
        startupIds << startupId;
        if (answer == Answer::Error)
            sendErrorReply(QDBusError::Failed, s("no display"));
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
        asked << QFile::symLinkTarget(s("/proc/self/fd/%1").arg(file.fileDescriptor()));
        return QDBusObjectPath(s("/request"));
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
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, s("services"));
    }

    /// Makes it the user's program for opening folders.
    static void choose(const QString &entry, const QString &list = s("mimeapps.list"))
    {
        write(qEnvironmentVariable("XDG_CONFIG_HOME") + u'/' + list,
              "[Default Applications]\ninode/directory=gone.desktop;" + entry.toUtf8() + ";\n");
        install(entry);
    }

    static void install(const QString &entry)
    {
        write(qEnvironmentVariable("XDG_DATA_HOME") + s("/applications/") + entry,
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
        m_commands = std::make_unique<Commands>();
        // Keeps what is installed on the machine out of the test.
        m_dataFolders = qgetenv("XDG_DATA_DIRS");
        qputenv("XDG_DATA_DIRS", QFile::encodeName(m_systemFolder.path()));
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_shot = FileUrls::child(folder(), s("a b é%25#.png"));
        QFile file(m_shot.toLocalFile());
        QVERIFY(file.open(QFile::WriteOnly));
        if (m_commands)
            m_commands->clear();
        m_manager = std::make_unique<FakeFileManager>();
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject(s("/org/freedesktop/FileManager1"), m_manager.get(),
                                   QDBusConnection::ExportAllSlots));
        // A real one from another test may still be ending.
        QTRY_VERIFY(bus.registerService(s("org.freedesktop.FileManager1")));
        m_browser = makeFileBrowser();
    }

    void cleanup()
    {
        serviceBus().unregisterService(s("org.freedesktop.FileManager1"));
        serviceBus().unregisterObject(s("/org/freedesktop/FileManager1"));
        qunsetenv("SNAP");
        qunsetenv("XDG_CURRENT_DESKTOP");
        const QDir configuration(qEnvironmentVariable("XDG_CONFIG_HOME"));
        for (const QString &list : configuration.entryList({s("*mimeapps.list")}))
            QVERIFY(QFile::remove(configuration.filePath(list)));
        QDir(qEnvironmentVariable("XDG_DATA_HOME") + s("/applications")).removeRecursively();
    }

    void theFileManagerIsAskedToShowTheFile()
    {
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{s("items ") + uri(m_shot)});
        QVERIFY(uri(m_shot).endsWith(s("/a%20b%20%C3%A9%2525%23.png")));
        QCOMPARE(m_commands->calls(), QStringList());
    }

    void ofAFileThatIsGoneTheFolderIsShown()
    {
        QVERIFY(QFile::remove(m_shot.toLocalFile()));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{s("folders ") + uri(folder())});
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
        choose(s("org.gnome.Nautilus.desktop"));
        FakeFileManager own;
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, s("own"));
        QVERIFY(bus.registerObject(s("/org/freedesktop/FileManager1"), &own,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(s("org.gnome.Nautilus")));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(own.asked, QStringList{s("items ") + uri(m_shot)});
        QCOMPARE(m_manager->asked, QStringList());
        QVERIFY(bus.unregisterService(s("org.gnome.Nautilus")));
    }

    void theFileManagerMayComeToTheFront()
    {
        for (int time = 1; time <= 2; ++time) {
            m_browser->reveal(m_shot);
            QTRY_COMPARE(m_manager->asked.size(), time);
        }
        const QRegularExpression form(s("^velmora-\\d+-\\d+_TIME([1-9]\\d*)$"));
        for (const QString &startupId : std::as_const(m_manager->startupIds))
            QVERIFY2(form.match(startupId).hasMatch(), qPrintable(startupId));
        QVERIFY(m_manager->startupIds.first() != m_manager->startupIds.last());
    }

    void oneThatDoesNotRunIsStarted_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("command");
        QTest::newRow("Nautilus") << s("org.gnome.Nautilus.desktop") << s("nautilus --select %1");
        QTest::newRow("Dolphin") << s("org.kde.dolphin.desktop") << s("dolphin --select %1");
        QTest::newRow("Nemo") << s("nemo.desktop") << s("nemo %1");
        QTest::newRow("Caja") << s("caja-folder-handler.desktop") << s("caja --select %1");
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
        choose(s("org.kde.dolphin.desktop"));
        choose(s("nemo.desktop"), s("mate-mimeapps.list"));
        m_commands->add(s("dolphin"));
        m_commands->add(s("nemo"));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_commands->calls(), QStringList{s("nemo ") + m_shot.toLocalFile()});
    }

    void withoutAChoiceTheSystemsCounts()
    {
        write(m_systemFolder.filePath(s("applications/mimeinfo.cache")),
              "[MIME Cache]\ninode/directory=nemo.desktop;org.kde.dolphin.desktop;\n");
        install(s("org.kde.dolphin.desktop"));
        m_commands->add(s("dolphin"));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_commands->calls(),
                     QStringList{s("dolphin --select ") + m_shot.toLocalFile()});
        QVERIFY(QFile::remove(m_systemFolder.filePath(s("applications/mimeinfo.cache"))));
    }

    void oneThatIsNotKnownLeavesItToAnyOther()
    {
        choose(s("some.other.desktop"));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{s("items ") + uri(m_shot)});
    }

    void oneThatIsNotInstalledLeavesItToAnyOther()
    {
        choose(s("org.kde.dolphin.desktop"));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked, QStringList{s("items ") + uri(m_shot)});
    }

    void aRefusalOpensTheFolder()
    {
        m_manager->answer = FakeFileManager::Answer::Error;
        m_commands->add(s("xdg-open"));
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_commands->calls(), QStringList{s("xdg-open ") + uri(folder())});
    }

    void aSilentFileManagerIsNotWaitedForLongerThanThreeSeconds()
    {
        m_manager->answer = FakeFileManager::Answer::None;
        m_commands->add(s("xdg-open"));
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
        QVERIFY(bus.registerObject(s("/org/freedesktop/portal/desktop"), &portal,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(s("org.freedesktop.portal.Desktop")));
        m_manager->answer = FakeFileManager::Answer::Error;
        qputenv("SNAP", "/snap/velmora");
        m_browser->reveal(m_shot);
        QTRY_COMPARE(portal.asked, QStringList{m_shot.toLocalFile()});
        bus.unregisterService(s("org.freedesktop.portal.Desktop"));
        bus.unregisterObject(s("/org/freedesktop/portal/desktop"));
    }

    void aBrowserThatEndsWhileItWaitsDoesNothingMore()
    {
        m_manager->answer = FakeFileManager::Answer::None;
        m_browser->reveal(m_shot);
        QTRY_COMPARE(m_manager->asked.size(), 1);
        m_browser.reset();
        serviceBus().unregisterService(s("org.freedesktop.FileManager1"));
        QCoreApplication::processEvents();
        QCOMPARE(m_commands->calls(), QStringList());
    }

    /// The last tests: they need the real commands.
    void theRealFileManagerOpensAWindowOfTheFolder()
    {
        serviceBus().unregisterService(s("org.freedesktop.FileManager1"));
        const QString service =
            s("/usr/share/dbus-1/services/org.xfce.Thunar.FileManager1.service");
        if (!QFile::exists(service))
            QSKIP("Thunar is not installed");
        m_commands.reset();
        m_dataFolders.isEmpty() ? qunsetenv("XDG_DATA_DIRS")
                                : qputenv("XDG_DATA_DIRS", m_dataFolders);
        choose(s("thunar.desktop"));
        m_browser->reveal(m_shot);
        const auto windowNames = [] {
            return XDesktop::run(s("xdotool"), {s("search"), s("--onlyvisible"), s("--class"),
                                                s("thunar"), s("getwindowname"), s("%@")});
        };
        const QString name = FileUrls::lastPathComponent(folder());
        QTRY_VERIFY_WITH_TIMEOUT(windowNames().contains(name), 20'000);
        XDesktop::run(s("thunar"), {s("-q")});
    }

    void cajaComesToTheFront()
    {
        if (QStandardPaths::findExecutable(s("caja")).isEmpty())
            QSKIP("Caja is not installed");
        serviceBus().unregisterService(s("org.freedesktop.FileManager1"));
        choose(s("caja-folder-handler.desktop"));
        // It is already running; the user is in another application.
        QProcess caja;
        caja.setStandardErrorFile(QProcess::nullDevice());
        caja.start(s("caja"), {s("--no-desktop"), m_systemFolder.path()});
        const auto active = [] {
            return XDesktop::run(s("xdotool"), {s("getactivewindow"), s("getwindowname")});
        };
        const QString other = QFileInfo(m_systemFolder.path()).fileName();
        QTRY_VERIFY_WITH_TIMEOUT(active().startsWith(other), 20'000);
        const Terminal terminal(m_systemFolder.filePath(s("typed")));
        terminal.activate();
        XDesktop::type(s("words"));
        m_browser->reveal(m_shot);
        const QString name = FileUrls::lastPathComponent(folder());
        QTRY_VERIFY_WITH_TIMEOUT(active().startsWith(name), 20'000);
        caja.kill();
        caja.waitForFinished();
    }
};

VELMORA_WIDGETS_TEST(FileBrowserTest)
#include "FileBrowserTest.moc"
