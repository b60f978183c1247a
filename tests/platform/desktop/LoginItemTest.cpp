// SPDX-License-Identifier: MIT
#include "platform/LoginItem.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20'000;

QString run(const QString &program, const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished(patience);
    return QString::fromUtf8(process.readAll()).trimmed();
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void write(const QString &path, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(content);
}

} // namespace

class LoginItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_place.emplace();
        const QString own = m_place->filePath(u"config"_s);
        const QString system = m_place->filePath(u"xdg"_s);
        qputenv("XDG_CONFIG_HOME", own.toUtf8());
        qputenv("XDG_CONFIG_DIRS", system.toUtf8());
        qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
        const QString name = u"/autostart/app.velmora.Velmora.desktop"_s;
        m_ownEntry = own + name;
        m_systemEntry = system + name;
        m_item = makeLoginItem();
    }

    void itIsOffUntilItIsTurnedOn()
    {
        QVERIFY(!m_item->isEnabled());
        QVERIFY(!m_item->setEnabled(true));
        QVERIFY(m_item->isEnabled());
        QVERIFY(!m_item->setEnabled(false));
        QVERIFY(!m_item->isEnabled());
        QVERIFY(!QFile::exists(m_ownEntry));
    }

    void turningOffWhatIsOffIsNoFailure() { QVERIFY(!m_item->setEnabled(false)); }

    void theEntryIsValid()
    {
        QVERIFY(!m_item->setEnabled(true));
        QCOMPARE(run(u"desktop-file-validate"_s, {m_ownEntry}), QString());
    }

    void theRealStateIsReadEachTime_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<bool>("enabled");
        const auto row = [](const char *lines, bool enabled) {
            QTest::newRow(QByteArray(lines).replace('\n', ' ').constData())
                << QByteArray(lines) << enabled;
        };
        row("Exec=/bin/true", true);
        row("", false);
        row("Exec=/bin/true\nHidden=true", false);
        row("Exec=/bin/true\nHidden=false", true);
        row("Exec=/bin/true\nX-GNOME-Autostart-enabled=false", false);
        row("Exec=/bin/true\nX-GNOME-Autostart-enabled=true", true);
        row("Exec=/bin/true\nOnlyShowIn=GNOME;XFCE;", true);
        row("Exec=/bin/true\nOnlyShowIn=KDE;", false);
        row("Exec=/bin/true\nNotShowIn=GNOME;", false);
        row("Exec=/bin/true\nNotShowIn=KDE;", true);
        row("Exec=/bin/true\nTryExec=/bin/true", true);
        row("Exec=/bin/true\nTryExec=true", true);
        row("Exec=/bin/true\nTryExec=/gone/velmora", false);
        row("Exec=/bin/true\nTryExec=/etc/passwd", false);
    }

    void theRealStateIsReadEachTime()
    {
        QFETCH(QByteArray, lines);
        QFETCH(bool, enabled);
        QVERIFY(!m_item->isEnabled());
        write(m_ownEntry, "[Desktop Entry]\nType=Application\nName=Velmora\n" + lines + '\n');
        QCOMPARE(m_item->isEnabled(), enabled);
    }

    void anotherProgramsChangeIsOvercomeByTurningItOn()
    {
        for (const char *lines : {"Exec=/bin/true\nHidden=true\n", "Exec=x\nTryExec=/gone\n",
                                  "X-GNOME-Autostart-enabled=false\n"}) {
            write(m_ownEntry, QByteArray("[Desktop Entry]\nType=Application\n") + lines);
            QVERIFY(!m_item->isEnabled());
            QVERIFY(!m_item->setEnabled(true));
            QVERIFY(m_item->isEnabled());
        }
    }

    void anEntryForAllUsersCountsUntilTheUserTurnsItOff()
    {
        write(m_systemEntry, "[Desktop Entry]\nType=Application\nName=Velmora\nExec=/bin/true\n");
        QVERIFY(m_item->isEnabled());
        QVERIFY(!m_item->setEnabled(false));
        QVERIFY(!m_item->isEnabled());
        QVERIFY(contentOf(m_ownEntry).contains(u"Hidden=true"_s));
        QCOMPARE(run(u"desktop-file-validate"_s, {m_ownEntry}), QString());
        QVERIFY(!m_item->setEnabled(true));
        QVERIFY(m_item->isEnabled());
    }

    void aFailureIsDescribed()
    {
        write(m_place->filePath(u"config"_s), "a file where the folder should be");
        const std::optional<QString> failure = m_item->setEnabled(true);
        QVERIFY(failure && !failure->isEmpty());
        QVERIFY(!m_item->isEnabled());
    }

    void aDeadLinkIsTurnedOffToo()
    {
        QVERIFY(QDir().mkpath(QFileInfo(m_ownEntry).path()));
        QVERIFY(QFile::link(u"/gone/velmora.desktop"_s, m_ownEntry));
        QVERIFY(!m_item->setEnabled(false));
        QVERIFY(!QFileInfo(m_ownEntry).isSymLink());
    }

    void noHalfWrittenEntryIsLeftBehind()
    {
        QVERIFY(!m_item->setEnabled(true));
        const QFileInfo entry(m_ownEntry);
        QCOMPARE(entry.dir().entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void realSessionsStartTheProgram_data()
    {
        QTest::addColumn<QString>("runner");
        QTest::addColumn<QString>("folder");
        const QStringList folders = {
            u"plain"_s,
            u"My Programs"_s,
            u"it's (mine) & yours; <all> ~ * ? # |"_s,
            u"größer"_s,
        };
        for (const QString &folder : folders) {
            QTest::addRow("openbox %s", qPrintable(folder)) << openbox() << folder;
            QTest::addRow("gio %s", qPrintable(folder)) << gio() << folder;
        }
        QTest::newRow("gio quotes") << gio() << u"a\"b`c$d\\e"_s;
    }

    void realSessionsStartTheProgram()
    {
        QFETCH(QString, runner);
        QFETCH(QString, folder);
        const QString program = installIn(folder);
        QCOMPARE(run(program, {u"on"_s}), u"done"_s);
        QCOMPARE(run(program, {u"state"_s}), u"on"_s);
        QCOMPARE(run(u"desktop-file-validate"_s, {m_ownEntry}), QString());
        startSession(runner);
        QTRY_COMPARE_WITH_TIMEOUT(contentOf(m_place->filePath(u"started"_s)), u"1 "_s + program,
                                  patience);
    }

    void aPercentSignIsNoFieldCode()
    {
        const QString program = installIn(u"50% off %f"_s);
        QCOMPARE(run(program, {u"on"_s}), u"done"_s);
        QCOMPARE(run(program, {u"state"_s}), u"on"_s);
        QCOMPARE(run(u"desktop-file-validate"_s, {m_ownEntry}), QString());
        QVERIFY(contentOf(m_ownEntry).contains(u"/50%% off %%f/velmora\"\n"_s));
    }

    void whatIsTurnedOffIsNotStarted()
    {
        const QString program = installIn(u"plain"_s);
        QCOMPARE(run(program, {u"on"_s}), u"done"_s);
        QCOMPARE(run(program, {u"off"_s}), u"done"_s);
        // Another entry shows when the session has started everything.
        const QString last = m_place->filePath(u"last"_s);
        write(QFileInfo(m_ownEntry).path() + u"/zz-last.desktop"_s,
              "[Desktop Entry]\nType=Application\nName=Last\nExec=touch " + last.toUtf8() + '\n');
        startSession(openbox());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(last), patience);
        QVERIFY(!QFile::exists(m_place->filePath(u"started"_s)));
    }

    void whatIsNoEntryIsNeitherReadNorLost_data()
    {
        QTest::addColumn<QByteArray>("target"); // of a link; empty for a pipe
        QTest::newRow("a pipe") << QByteArray();
        QTest::newRow("a link to a device") << QByteArray("/dev/zero");
        QTest::newRow("a link to a file") << QByteArray("/etc/hostname");
    }

    void whatIsNoEntryIsNeitherReadNorLost()
    {
        QFETCH(QByteArray, target);
        QVERIFY(QDir().mkpath(QFileInfo(m_ownEntry).path()));
        const QByteArray path = QFile::encodeName(m_ownEntry);
        QCOMPARE(target.isEmpty() ? ::mkfifo(path.constData(), 0600)
                                  : ::symlink(target.constData(), path.constData()),
                 0);
        QVERIFY(!m_item->isEnabled());
        QVERIFY(!m_item->setEnabled(true));
        QVERIFY(m_item->isEnabled());
        const QFileInfo aside(m_ownEntry + u".aside-1"_s);
        QVERIFY(target.isEmpty() ? aside.exists() && !aside.isFile()
                                 : aside.symLinkTarget() == QString::fromUtf8(target));
        QVERIFY(!contentOf(u"/etc/hostname"_s).contains(u"Desktop"_s));
    }

private:
    static QString openbox() { return u"/usr/lib/x86_64-linux-gnu/openbox-xdg-autostart"_s; }

    /// Reads entries the way GNOME's session does.
    static QString gio() { return u"gio"_s; }

    QString installIn(const QString &folder)
    {
        const QString path = m_place->filePath(folder);
        [&] {
            QVERIFY(QDir().mkpath(path));
            QVERIFY(QFile::copy(QStringLiteral(LOGIN_ITEM_PROCESS), path + u"/velmora"_s));
        }();
        return path + u"/velmora"_s;
    }

    void startSession(const QString &runner)
    {
        QProcessEnvironment session = QProcessEnvironment::systemEnvironment();
        session.insert(u"STARTED_FOLDER"_s, m_place->path());
        const QStringList arguments =
            runner == gio() ? QStringList{u"launch"_s, m_ownEntry} : QStringList{u"GNOME"_s};
        run(runner, arguments, session);
    }

    std::optional<QTemporaryDir> m_place;
    QString m_ownEntry;
    QString m_systemEntry;
    std::unique_ptr<LoginItem> m_item;
};

VELMORA_EVENTS_TEST(LoginItemTest)
#include "LoginItemTest.moc"
