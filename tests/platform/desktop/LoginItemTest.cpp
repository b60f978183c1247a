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
        const QString own = m_place->filePath(QStringLiteral("config"));
        const QString system = m_place->filePath(QStringLiteral("xdg"));
        qputenv("XDG_CONFIG_HOME", own.toUtf8());
        qputenv("XDG_CONFIG_DIRS", system.toUtf8());
        qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
        const QString name = QStringLiteral("/autostart/app.velmora.Velmora.desktop");
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
        QCOMPARE(run(QStringLiteral("desktop-file-validate"), {m_ownEntry}), QString());
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
        QVERIFY(contentOf(m_ownEntry).contains(QStringLiteral("Hidden=true")));
        QCOMPARE(run(QStringLiteral("desktop-file-validate"), {m_ownEntry}), QString());
        QVERIFY(!m_item->setEnabled(true));
        QVERIFY(m_item->isEnabled());
    }

    void aFailureIsDescribed()
    {
        write(m_place->filePath(QStringLiteral("config")), "a file where the folder should be");
        const std::optional<QString> failure = m_item->setEnabled(true);
        QVERIFY(failure && !failure->isEmpty());
        QVERIFY(!m_item->isEnabled());
    }

    void aDeadLinkIsTurnedOffToo()
    {
        QVERIFY(QDir().mkpath(QFileInfo(m_ownEntry).path()));
        QVERIFY(QFile::link(QStringLiteral("/gone/velmora.desktop"), m_ownEntry));
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
            QStringLiteral("plain"),
            QStringLiteral("My Programs"),
            QStringLiteral("it's (mine) & yours; <all> ~ * ? # |"),
            QStringLiteral("größer"),
        };
        for (const QString &folder : folders) {
            QTest::addRow("openbox %s", qPrintable(folder)) << openbox() << folder;
            QTest::addRow("gio %s", qPrintable(folder)) << gio() << folder;
        }
        QTest::newRow("gio quotes") << gio() << QStringLiteral("a\"b`c$d\\e");
    }

    void realSessionsStartTheProgram()
    {
        QFETCH(QString, runner);
        QFETCH(QString, folder);
        const QString program = installIn(folder);
        QCOMPARE(run(program, {QStringLiteral("on")}), QStringLiteral("done"));
        QCOMPARE(run(program, {QStringLiteral("state")}), QStringLiteral("on"));
        QCOMPARE(run(QStringLiteral("desktop-file-validate"), {m_ownEntry}), QString());
        startSession(runner);
        QTRY_COMPARE_WITH_TIMEOUT(contentOf(m_place->filePath(QStringLiteral("started"))),
                                  QStringLiteral("1 ") + program, patience);
    }

    void aPercentSignIsNoFieldCode()
    {
        const QString program = installIn(QStringLiteral("50% off %f"));
        QCOMPARE(run(program, {QStringLiteral("on")}), QStringLiteral("done"));
        QCOMPARE(run(program, {QStringLiteral("state")}), QStringLiteral("on"));
        QCOMPARE(run(QStringLiteral("desktop-file-validate"), {m_ownEntry}), QString());
        QVERIFY(contentOf(m_ownEntry).contains(QStringLiteral("/50%% off %%f/velmora\"\n")));
    }

    void whatIsTurnedOffIsNotStarted()
    {
        const QString program = installIn(QStringLiteral("plain"));
        QCOMPARE(run(program, {QStringLiteral("on")}), QStringLiteral("done"));
        QCOMPARE(run(program, {QStringLiteral("off")}), QStringLiteral("done"));
        // Another entry shows when the session has started everything.
        const QString last = m_place->filePath(QStringLiteral("last"));
        write(QFileInfo(m_ownEntry).path() + QStringLiteral("/zz-last.desktop"),
              "[Desktop Entry]\nType=Application\nName=Last\nExec=touch " + last.toUtf8() + '\n');
        startSession(openbox());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(last), patience);
        QVERIFY(!QFile::exists(m_place->filePath(QStringLiteral("started"))));
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
        const QFileInfo aside(m_ownEntry + QStringLiteral(".aside-1"));
        QVERIFY(target.isEmpty() ? aside.exists() && !aside.isFile()
                                 : aside.symLinkTarget() == QString::fromUtf8(target));
        QVERIFY(!contentOf(QStringLiteral("/etc/hostname")).contains(QStringLiteral("Desktop")));
    }

private:
    static QString openbox()
    {
        return QStringLiteral("/usr/lib/x86_64-linux-gnu/openbox-xdg-autostart");
    }

    /// Reads entries the way GNOME's session does.
    static QString gio() { return QStringLiteral("gio"); }

    QString installIn(const QString &folder)
    {
        const QString path = m_place->filePath(folder);
        [&] {
            QVERIFY(QDir().mkpath(path));
            QVERIFY(
                QFile::copy(QStringLiteral(LOGIN_ITEM_PROCESS), path + QStringLiteral("/velmora")));
        }();
        return path + QStringLiteral("/velmora");
    }

    void startSession(const QString &runner)
    {
        QProcessEnvironment session = QProcessEnvironment::systemEnvironment();
        session.insert(QStringLiteral("STARTED_FOLDER"), m_place->path());
        const QStringList arguments = runner == gio()
                                          ? QStringList{QStringLiteral("launch"), m_ownEntry}
                                          : QStringList{QStringLiteral("GNOME")};
        run(runner, arguments, session);
    }

    std::optional<QTemporaryDir> m_place;
    QString m_ownEntry;
    QString m_systemEntry;
    std::unique_ptr<LoginItem> m_item;
};

VELMORA_EVENTS_TEST(LoginItemTest)
#include "LoginItemTest.moc"
