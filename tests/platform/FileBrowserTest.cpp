// SPDX-License-Identifier: MIT
#include "tests/platform/FileBrowserFixture.h"
#include "tests/world/Commands.h"
#include "tests/world/TestProgram.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QElapsedTimer>
#include <QRegularExpression>
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

/// Which file manager is asked to show a file, and how. Its answers are the test's.
class FileBrowserTest : public QObject, private FileBrowserFixture
{
    Q_OBJECT

    std::unique_ptr<Commands> m_commands;
    std::unique_ptr<FakeFileManager> m_manager;
    QTemporaryDir m_systemFolder;

    static QDBusConnection serviceBus()
    {
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"services"_s);
    }
    static QString uri(const QUrl &url) { return QString::fromLatin1(url.toEncoded()); }

private Q_SLOTS:
    void initTestCase()
    {
        // Before a file manager has the real one started.
        QVERIFY(serviceBus().registerService(u"org.freedesktop.portal.Desktop"_s));
        m_commands = std::make_unique<Commands>();
        // Keeps what is installed on the machine out of the test.
        qputenv("XDG_DATA_DIRS", QFile::encodeName(m_systemFolder.path()));
    }

    void init()
    {
        begin();
        m_commands->clear();
        m_manager = std::make_unique<FakeFileManager>();
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject(u"/org/freedesktop/FileManager1"_s, m_manager.get(),
                                   QDBusConnection::ExportAllSlots));
        // The bus may have started a real one, which is still ending.
        QTRY_VERIFY_WITH_TIMEOUT(bus.registerService(u"org.freedesktop.FileManager1"_s), 20'000);
    }

    void cleanup()
    {
        serviceBus().unregisterService(u"org.freedesktop.FileManager1"_s);
        serviceBus().unregisterObject(u"/org/freedesktop/FileManager1"_s);
        qunsetenv("SNAP");
        qunsetenv("XDG_CURRENT_DESKTOP");
        end();
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
};

VELMORA_WIDGETS_TEST(FileBrowserTest)
#include "FileBrowserTest.moc"
