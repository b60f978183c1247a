// SPDX-License-Identifier: MIT
#include "platform/FrontmostApplication.h"
#include "tests/world/Sway.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::chrono::milliseconds patience = std::chrono::seconds(20);

/// A real program with a window on the Wayland desktop, which has the focus once this is
/// constructed.
class Window
{
public:
    Window(const Sway &sway, const QString &applicationId)
    {
        sway.start(m_process, u"foot"_s,
                   {u"--app-id"_s, applicationId, u"sh"_s, u"-c"_s, u"exec sleep 1000"_s});
        const auto isInFront = [&] { return sway.focusedApplication() == applicationId; };
        if (!QTest::qWaitFor(isInFront, int(patience.count())))
            qWarning() << applicationId << "does not come to the front";
    }
    ~Window() { close(); }
    void close()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

const Application paintBox = {u"Paint Box"_s, u"paint"_s};
const Application foxBrowser = {u"Fox Browser"_s, u"org.velmoratest.Fox"_s};

} // namespace

/// The application in front on a wlroots desktop, with real windows of both kinds.
class FrontmostOnWaylandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
        qRegisterMetaType<Application>();
        install(u"paint"_s, "Name=Paint Box\n");
        install(u"org.velmoratest.Fox"_s, "Name=Fox Browser\n");
        m_sway = std::make_unique<Sway>(Sway::X11::Yes);
        qputenv("WAYLAND_DISPLAY", m_sway->display().toUtf8());
        m_front = makeFrontmostApplication();
    }

    void theWindowWithTheFocusIsKnown()
    {
        const QSignalSpy activated(m_front.get(), &FrontmostApplication::activated);
        const Window paint(*m_sway, u"paint"_s);
        QTRY_COMPARE(m_front->current(), paintBox);
        const Window fox(*m_sway, u"org.velmoratest.Fox"_s);
        QTRY_COMPARE(m_front->current(), foxBrowser);
        focus(u"paint"_s);
        QTRY_COMPARE(m_front->current(), paintBox);
        QTRY_COMPARE(activated.size(), 3);
        QCOMPARE(activated.last().first().value<Application>(), paintBox);
    }

    void whatWasInFrontAtTheStartIsKnown()
    {
        const Window paint(*m_sway, u"paint"_s);
        QTRY_COMPARE(m_front->current(), paintBox);
        const auto fresh = makeFrontmostApplication();
        QTRY_COMPARE(fresh->current(), paintBox);
    }

    void toolsShellsAndOwnWindowsLeaveThePreviousApplication_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id : {"org.flameshot.Flameshot", "satty", "app.velmora.Velmora", "wofi"})
            QTest::newRow(id) << QString::fromLatin1(id);
    }

    void toolsShellsAndOwnWindowsLeaveThePreviousApplication()
    {
        QFETCH(QString, id);
        const Window paint(*m_sway, u"paint"_s);
        QTRY_COMPARE(m_front->current(), paintBox);
        const QSignalSpy activated(m_front.get(), &FrontmostApplication::activated);
        const Window other(*m_sway, id);
        QCOMPARE(m_front->current(), paintBox);
        focus(u"paint"_s);
        QTRY_COMPARE(m_sway->focusedApplication(), u"paint"_s);
        QCOMPARE(m_front->current(), paintBox);
        QVERIFY(activated.isEmpty());
    }

    void anEmptyWorkspaceLeavesThePreviousApplication()
    {
        const Window paint(*m_sway, u"paint"_s);
        QTRY_COMPARE(m_front->current(), paintBox);
        m_sway->command(u"workspace 2"_s);
        QTRY_COMPARE(m_sway->focusedApplication(), QString());
        QCOMPARE(m_front->current(), paintBox);
        m_sway->command(u"workspace 1"_s);
    }

    void windowsMayCloseAtAnyTime()
    {
        const Window paint(*m_sway, u"paint"_s);
        for (int round = 0; round < 5; ++round) {
            Window fox(*m_sway, u"org.velmoratest.Fox"_s);
            QTRY_COMPARE(m_front->current(), foxBrowser);
            fox.close();
            QTRY_COMPARE(m_front->current(), paintBox);
        }
    }

    void windowsOfXAreKnownBesideThem()
    {
        const Window fox(*m_sway, u"org.velmoratest.Fox"_s);
        QTRY_COMPARE(m_front->current(), foxBrowser);
        m_sway->command(u"exec xterm -class paint -e sh -c 'exec sleep 1000'"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_front->current(), paintBox, int(patience.count()));
        m_sway->command(u"[class=paint] kill"_s);
        QTRY_COMPARE(m_front->current(), foxBrowser);
    }

    void aCompositorThatEndsLeavesThePreviousApplication()
    {
        const Window paint(*m_sway, u"paint"_s);
        QTRY_COMPARE(m_front->current(), paintBox);
        m_sway.reset();
        QCOMPARE(m_front->current(), paintBox);
    }

private:
    static void install(const QString &id, const QByteArray &lines)
    {
        const QString folder = qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s;
        QVERIFY(QDir().mkpath(folder));
        QFile file(folder + u'/' + id + u".desktop"_s);
        QVERIFY(file.open(QFile::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nExec=true\n" + lines);
    }

    void focus(const QString &id) const { m_sway->command(u"[app_id=\""_s + id + u"\"] focus"_s); }

    std::unique_ptr<Sway> m_sway;
    std::unique_ptr<FrontmostApplication> m_front;
};

VELMORA_WIDGETS_TEST(FrontmostOnWaylandTest)
#include "FrontmostOnWaylandTest.moc"
