// SPDX-License-Identifier: MIT
#include "tests/platform/FileBrowserFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

/// Showing a file in file managers that are installed.
class RealFileManagersTest : public QObject, private FileBrowserFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void theRealFileManagerOpensAWindowOfTheFolder()
    {
        const QString service =
            u"/usr/share/dbus-1/services/org.xfce.Thunar.FileManager1.service"_s;
        if (!QFile::exists(service))
            QSKIP("Thunar is not installed");
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
        choose(u"caja-folder-handler.desktop"_s);
        const QTemporaryDir elsewhere;
        // It is already running; the user is in another application.
        QProcess caja;
        caja.setStandardErrorFile(QProcess::nullDevice());
        caja.start(u"caja"_s, {u"--no-desktop"_s, elsewhere.path()});
        const auto active = [] {
            return XDesktop::run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s});
        };
        const QString other = QFileInfo(elsewhere.path()).fileName();
        QTRY_VERIFY_WITH_TIMEOUT(active().startsWith(other), 20'000);
        const Terminal terminal(elsewhere.filePath(u"typed"_s));
        terminal.activate();
        XDesktop::type(u"words"_s);
        m_browser->reveal(m_shot);
        const QString name = FileUrls::lastPathComponent(folder());
        QTRY_VERIFY_WITH_TIMEOUT(active().startsWith(name), 20'000);
        caja.kill();
        caja.waitForFinished();
    }
};

VELMORA_WIDGETS_TEST(RealFileManagersTest)
#include "RealFileManagersTest.moc"
