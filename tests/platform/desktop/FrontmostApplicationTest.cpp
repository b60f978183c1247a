// SPDX-License-Identifier: MIT
#include "platform/FrontmostApplication.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <map>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::milliseconds patience = std::chrono::seconds(10);

QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(int(patience.count()));
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

/// A real program with a real window.
class Terminal
{
public:
    Terminal(const QString &instance, const QString &windowClass)
    {
        m_process.start(u"xterm"_s, {u"-name"_s, instance, u"-class"_s, windowClass, u"-e"_s,
                                     u"echo $WINDOWID; exec sleep 1000"_s});
        const QString pid = QString::number(m_process.processId());
        [&] { QTRY_VERIFY(!run(u"xdotool"_s, search(pid)).isEmpty()); }();
        m_window = run(u"xdotool"_s, search(pid)).section(u'\n', 0, 0);
    }

    ~Terminal() { close(); }

    void close()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    void set(const QStringList &property)
    {
        run(u"xprop"_s, QStringList{u"-id"_s, m_window} + property);
    }

    void activate() const
    {
        run(u"xdotool"_s, {u"windowactivate"_s, m_window});
        const auto active = [] { return run(u"xdotool"_s, {u"getactivewindow"_s}); };
        QTRY_COMPARE(active(), m_window);
    }

    QString window() const { return m_window; }
    qint64 processId() const { return m_process.processId(); }

private:
    static QStringList search(const QString &pid)
    {
        return {u"search"_s, u"--onlyvisible"_s, u"--pid"_s, pid};
    }

    QProcess m_process;
    QString m_window;
};

QString setting(const char *text)
{
    return QString::fromUtf8(text);
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ');
}

} // namespace

class FrontmostApplicationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<Application>();
        m_folder = qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s;
        QVERIFY(QDir().mkpath(m_folder));
        install("fox", "Name=Fox Browser\nName[de]=Fuchs\nStartupWMClass=Fox-esr\n");
        install("paint", "Name=Paint Box\n");
        install("org.velmoratest.Notes", "Name=Field Notes\n");
        install("web-mail", "Name=Web Mail\nStartupWMClass=crx_mail\n");
        install("big-editor", "Name=Big Editor\n");
        m_front = makeFrontmostApplication();
        m_activated.emplace(m_front.get(), &FrontmostApplication::activated);
    }

    void init() { m_activated->clear(); }

    void theEntryThatClaimsTheClassGivesNameAndIdentifier()
    {
        expect("Navigator", "Fox-esr", {setting("Fox Browser"), setting("fox")});
    }

    void aClaimOfTheInstanceComesBeforeThatOfTheClass()
    {
        expect("crx_mail", "Fox-esr", {setting("Web Mail"), setting("web-mail")});
    }

    void theEntryNamedAsTheInstanceOrClassIsFound()
    {
        expect("paint", "Whatever", {setting("Paint Box"), setting("paint")});
        expect("whatever", "paint", {setting("Paint Box"), setting("paint")});
        expect("whatever", "Paint", {setting("Paint Box"), setting("paint")});
        expect("whatever", "Big Editor", {setting("Big Editor"), setting("big-editor")});
        expect("notes", "Notes", {setting("Field Notes"), setting("org.velmoratest.Notes")});
    }

    void withoutAnEntryTheClassIsTheName()
    {
        expect("tool", "someTool", {setting("SomeTool"), std::nullopt});
    }

    void theIdThatAToolkitNotesOnItsWindowIsUsed()
    {
        const Terminal before(setting("x"), setting("paint"));
        before.activate();
        Terminal terminal(setting("unheard"), setting("Unheard"));
        terminal.set(words("-f _GTK_APPLICATION_ID 8u -set _GTK_APPLICATION_ID "
                           "org.velmoratest.Notes"));
        before.activate();
        terminal.activate();
        QTRY_COMPARE(m_front->current(),
                     (Application{setting("Field Notes"), setting("org.velmoratest.Notes")}));
        terminal.set(words("-remove _GTK_APPLICATION_ID"));
        terminal.set(words("-f _KDE_NET_WM_DESKTOP_FILE 8u -set _KDE_NET_WM_DESKTOP_FILE "
                           "paint.desktop"));
        QTRY_COMPARE(m_front->current(), (Application{setting("Paint Box"), setting("paint")}));
    }

    void aDialogStandsForTheWindowThatItBelongsTo()
    {
        const Terminal leader(setting("x"), setting("paint"));
        Terminal dialog(setting("x"), setting("Dialog"));
        dialog.set(words("-f WM_TRANSIENT_FOR 32x -set WM_TRANSIENT_FOR") +
                   QStringList{leader.window()});
        dialog.activate();
        QTRY_COMPARE(m_front->current(), (Application{setting("Paint Box"), setting("paint")}));
    }

    void dialogsThatNameEachOtherComeToAnEnd()
    {
        Terminal one(setting("x"), setting("One"));
        Terminal two(setting("x"), setting("Two"));
        one.set(words("-f WM_TRANSIENT_FOR 32x -set WM_TRANSIENT_FOR") + QStringList{two.window()});
        two.set(words("-f WM_TRANSIENT_FOR 32x -set WM_TRANSIENT_FOR") + QStringList{one.window()});
        run(setting("xdotool"), {setting("windowfocus"), one.window()});
        QVERIFY(m_front->current().has_value());
    }

    void theNameIsInTheUsersLanguage()
    {
        const QByteArray language = qgetenv("LANG");
        qputenv("LANG", "de_AT.UTF-8");
        expect("Navigator", "Fox-esr", {setting("Fuchs"), setting("fox")});
        qputenv("LANG", language);
    }

    void activationIsToldOncePerChange()
    {
        const Terminal paint(setting("x"), setting("paint"));
        const Terminal fox(setting("x"), setting("Fox-esr"));
        paint.activate();
        QTRY_COMPARE(lastActivated(), (Application{setting("Paint Box"), setting("paint")}));
        m_activated->clear();
        fox.activate();
        QTRY_COMPARE(lastActivated(), (Application{setting("Fox Browser"), setting("fox")}));
        paint.activate();
        QTRY_COMPARE(lastActivated(), (Application{setting("Paint Box"), setting("paint")}));
        QCOMPARE(m_activated->size(), 2);
    }

    void askingDoesNotSwallowTheNews()
    {
        const Terminal fox(setting("x"), setting("Fox-esr"));
        const Terminal paint(setting("x"), setting("paint"));
        paint.activate();
        QTRY_COMPARE(lastActivated(), (Application{setting("Paint Box"), setting("paint")}));
        m_activated->clear();
        activateUnheard(fox);
        QTRY_COMPARE(m_front->current(), (Application{setting("Fox Browser"), setting("fox")}));
        QTRY_COMPARE(lastActivated(), (Application{setting("Fox Browser"), setting("fox")}));
    }

    void whoWasToldByAskingIsToldOfTheReturn()
    {
        const Terminal paint(setting("x"), setting("paint"));
        const Terminal fox(setting("x"), setting("Fox-esr"));
        // The case before may have ended with the other one.
        paint.activate();
        QTRY_COMPARE(lastActivated(), (Application{setting("Paint Box"), setting("paint")}));
        fox.activate();
        QTRY_COMPARE(lastActivated(), (Application{setting("Fox Browser"), setting("fox")}));
        m_activated->clear();
        // All of it before the program learns of the first change.
        activateUnheard(paint);
        // A busy X server may answer too late for the first time.
        QTRY_COMPARE(m_front->current(), (Application{setting("Paint Box"), setting("paint")}));
        activateUnheard(fox);
        QTRY_COMPARE(lastActivated(), (Application{setting("Fox Browser"), setting("fox")}));
    }

    void panelsToolsAndOwnWindowsLeaveThePreviousApplication_data()
    {
        QTest::addColumn<QString>("instance");
        QTest::addColumn<QString>("windowClass");
        QTest::addColumn<QString>("type");
        const auto row = [](const char *instance, const char *windowClass, const char *type = "") {
            QTest::addRow("%s %s %s", instance, windowClass, type)
                << setting(instance) << setting(windowClass) << setting(type);
        };
        row("flameshot", "flameshot");
        row("x", "Xfce4-screenshooter");
        row("x", "xdg-desktop-portal-gnome");
        row("velmora", "velmora");
        row("x", "Rofi");
        row("thing", "Thing", "_NET_WM_WINDOW_TYPE_DOCK");
        row("thing", "Thing", "_NET_WM_WINDOW_TYPE_DESKTOP");
        row("thing", "Thing", "_NET_WM_WINDOW_TYPE_NOTIFICATION");
    }

    void panelsToolsAndOwnWindowsLeaveThePreviousApplication()
    {
        QFETCH(QString, instance);
        QFETCH(QString, windowClass);
        QFETCH(QString, type);
        Terminal other(instance, windowClass);
        if (!type.isEmpty())
            other.set(words("-f _NET_WM_WINDOW_TYPE 32a -set _NET_WM_WINDOW_TYPE") +
                      QStringList{type});
        const Terminal paint(setting("x"), setting("paint"));
        paint.activate();
        const Application paintBox = {setting("Paint Box"), setting("paint")};
        QTRY_COMPARE(m_front->current(), paintBox);
        m_activated->clear();
        other.activate();
        // The news of Paint Box itself may come as late as this.
        const auto isInFront = [&] {
            return m_front->current() == paintBox && lastActivated().value_or(paintBox) == paintBox;
        };
        QVERIFY(Waiting::staysTrue(isInFront, 500ms));
    }

    void aWindowOfThisProcessLeavesThePreviousApplication()
    {
        const Terminal paint(setting("x"), setting("paint"));
        paint.activate();
        QTRY_COMPARE(m_front->current(), (Application{setting("Paint Box"), setting("paint")}));
        QWindow own;
        own.setTitle(setting("own"));
        own.show();
        QVERIFY(QTest::qWaitForWindowActive(&own));
        QCOMPARE(m_front->current(), (Application{setting("Paint Box"), setting("paint")}));
    }

    void windowsMayDieAtAnyTime()
    {
        for (int round = 0; round < 6; ++round) {
            Terminal terminal(setting("x"), round % 2 ? setting("paint") : setting("Fox-esr"));
            terminal.activate();
            m_front->current();
            terminal.close();
            m_front->current();
        }
        expect("x", "paint", {setting("Paint Box"), setting("paint")});
    }

    void anApplicationThatEndedIsStillTheLastOne()
    {
        Terminal paint(setting("x"), setting("paint"));
        paint.activate();
        QTRY_COMPARE(m_front->current(), (Application{setting("Paint Box"), setting("paint")}));
        paint.close();
        const QStringList ofWindow = {setting("-id"), paint.window(), setting("WM_CLASS")};
        QTRY_VERIFY(!run(setting("xprop"), ofWindow).contains(setting("paint")));
        QCOMPARE(m_front->current(), (Application{setting("Paint Box"), setting("paint")}));
    }

    void whatIsInstalledLaterIsFound()
    {
        const Terminal late(setting("x"), setting("latecomer"));
        late.activate();
        QTRY_COMPARE(m_front->current(), (Application{setting("Latecomer"), std::nullopt}));
        install("latecomer", "Name=Late Comer\n");
        QTRY_COMPARE(m_front->current(),
                     (Application{setting("Late Comer"), setting("latecomer")}));
        QTRY_COMPARE(lastActivated(), (Application{setting("Late Comer"), setting("latecomer")}));
    }

    void theApplicationInFrontAtTheStartIsToldWhenKnown()
    {
        const Terminal paint(setting("x"), setting("paint"));
        paint.activate();
        const auto fresh = makeFrontmostApplication();
        const QSignalSpy told(fresh.get(), &FrontmostApplication::activated);
        QTRY_COMPARE(told.size(), 1);
        QCOMPARE(told[0][0].value<Application>(),
                 (Application{setting("Paint Box"), setting("paint")}));
        QCOMPARE(fresh->current(), (Application{setting("Paint Box"), setting("paint")}));
    }

    void whoListensLateIsToldAllTheSame()
    {
        const Terminal paint(setting("x"), setting("paint"));
        paint.activate();
        const auto fresh = makeFrontmostApplication();
        // By then it has been found out, with no receiver connected.
        QTRY_COMPARE(fresh->current(), (Application{setting("Paint Box"), setting("paint")}));
        bool turned = false;
        QTimer::singleShot(std::chrono::milliseconds(50), [&turned] { turned = true; });
        QTRY_VERIFY(turned);
        const QSignalSpy told(fresh.get(), &FrontmostApplication::activated);
        QTRY_COMPARE(told.size(), 1);
        QCOMPARE(told[0][0].value<Application>(),
                 (Application{setting("Paint Box"), setting("paint")}));
    }

    void besideAWaylandDesktopNoActiveWindowMeansThatTheApplicationHasNoName()
    {
        qputenv("WAYLAND_DISPLAY", "wayland-none");
        const auto fresh = makeFrontmostApplication();
        qunsetenv("WAYLAND_DISPLAY");
        const QSignalSpy told(fresh.get(), &FrontmostApplication::activated);
        {
            const Terminal paint(setting("x"), setting("paint"));
            paint.activate();
            QTRY_COMPARE(fresh->current(), (Application{setting("Paint Box"), setting("paint")}));
        }
        QTRY_COMPARE(fresh->current(), Application());
        QTRY_VERIFY(!told.isEmpty() && told.last().first().value<Application>() == Application());
    }

private:
    void install(const QByteArray &id, const QByteArray &lines)
    {
        QFile file(m_folder + u'/' + QString::fromUtf8(id) + u".desktop"_s);
        QVERIFY(file.open(QFile::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nExec=true\n" + lines);
    }

    void expect(const char *instance, const char *windowClass, const Application &application)
    {
        const Terminal terminal(setting(instance), setting(windowClass));
        terminal.activate();
        QTRY_COMPARE(m_front->current(), application);
    }

    /// Without running this program's event loop.
    static void activateUnheard(const Terminal &terminal)
    {
        run(setting("xdotool"), {setting("windowactivate"), setting("--sync"), terminal.window()});
    }

    std::optional<Application> lastActivated() const
    {
        if (m_activated->isEmpty())
            return std::nullopt;
        return m_activated->last().first().value<Application>();
    }

    QString m_folder;
    std::unique_ptr<FrontmostApplication> m_front;
    std::optional<QSignalSpy> m_activated;
};

VELMORA_WIDGETS_TEST(FrontmostApplicationTest)
#include "FrontmostApplicationTest.moc"
