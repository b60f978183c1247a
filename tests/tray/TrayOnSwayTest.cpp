// SPDX-License-Identifier: MIT
#include "style/VelmoraPalette.h"
#include "tests/world/Sway.h"
#include "tests/world/TestProgram.h"
#include "tests/world/WaylandPointer.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20000;

/// The size of the headless screen.
constexpr QSize screenSize = {1280, 720};

QRect trayPlace(int rows)
{
    const int height = 72 * rows + 6 * (rows - 1) + 16;
    return {screenSize.width() - 620 - 44, screenSize.height() - height - 44, 620, height};
}

/// In the row at the top.
QPoint nameIn(const QRect &tray)
{
    return tray.topLeft() + QPoint(200, 56);
}

QPoint copyButtonIn(const QRect &tray)
{
    return tray.topLeft() + QPoint(476, 44);
}

} // namespace

/// The tray on a wlroots desktop, where its windows belong to an X server inside the compositor.
class TrayOnSwayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
        m_sway = std::make_unique<Sway>(Sway::X11::Yes);
        m_sway->start(m_terminal, u"foot"_s,
                      {u"--app-id"_s, u"terminal"_s, u"sh"_s, u"-c"_s, u"cat > \"$0\""_s, typed()});
        QTRY_VERIFY_WITH_TIMEOUT(m_sway->tree().isEmpty() == false && QFile::exists(typed()),
                                 patience);
        // The inner X server accepts only the desktop's own user.
        m_sway->command(
            u"exec \"xhost +local: && echo $DISPLAY > %1/display\""_s.arg(m_sway->folder()));
        QTRY_VERIFY_WITH_TIMEOUT(!contents(m_sway->folder() + u"/display"_s).isEmpty(), patience);

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DISPLAY"_s, contents(m_sway->folder() + u"/display"_s));
        m_tray.setProcessEnvironment(environment);
        m_tray.start(QString::fromUtf8(TRAY_PROGRAM), {});
        m_pointer = std::make_unique<WaylandPointer>(m_sway->display(), screenSize);
    }

    void cleanupTestCase()
    {
        for (QProcess *process : {&m_tray, &m_terminal}) {
            process->kill();
            process->waitForFinished();
        }
    }

    void itStandsInItsCornerAndLeavesTheKeyboard()
    {
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(1)) || isSeenAt(trayPlace(2)), patience);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
        typeLineAfter([] {}, u"hello"_s);
        QTRY_COMPARE_WITH_TIMEOUT(contents(typed()), u"hello"_s, patience);
        QVERIFY(isSeenAt(trayPlace(2)));
    }

    void aClickOnAButtonLeavesTheKeyboard()
    {
        typeLineAfter([&] { m_pointer->click(copyButtonIn(trayPlace(2))); }, u"after a button"_s);
        QTRY_VERIFY_WITH_TIMEOUT(contents(typed()).endsWith(u"after a button"_s), patience);
    }

    void aClickIntoANameTakesTheKeyboardUntilAClickElsewhere()
    {
        m_pointer->click(nameIn(trayPlace(2)));
        QTRY_VERIFY_WITH_TIMEOUT(!terminalHasKeyboard(), patience);
        typeLineAfter([] {}, u" fresh"_s);
        QTRY_VERIFY_WITH_TIMEOUT(hasRenamedTo("fresh"), patience);
        QVERIFY(isSeenAt(trayPlace(2)));

        m_pointer->click({300, 300});
        QTRY_VERIFY_WITH_TIMEOUT(terminalHasKeyboard(), patience);
        typeLineAfter([] {}, u"after a name"_s);
        QTRY_VERIFY_WITH_TIMEOUT(contents(typed()).endsWith(u"after a name"_s), patience);
        QVERIFY(!contents(typed()).contains(u"fresh"_s));
        QVERIFY(isSeenAt(trayPlace(2)));
    }

    void underAFullScreenWindowItHasTheKeyboardWhileTheMouseIsThere()
    {
        m_sway->command(u"fullscreen enable"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
        const auto isRenamed = [&] {
            // Otherwise the second round's click would be into a name that has the keyboard.
            m_pointer->moveTo({300, 300});
            typeLineAfter([&] { m_pointer->click(nameIn(trayPlace(2))); }, u" other"_s);
            return QTest::qWaitFor([&] { return hasRenamedTo("other"); }, 1000);
        };
        QVERIFY(QTest::qWaitFor(isRenamed, patience));
        typeLineAfter([&] { m_pointer->moveTo({300, 300}); }, u"after the tray"_s);
        QTRY_VERIFY_WITH_TIMEOUT(contents(typed()).endsWith(u"after the tray"_s), patience);
        QVERIFY(isSeenAt(trayPlace(2)));
    }

private:
    /// Types the text and a return. The keyboard is there before the action: when a new one comes,
    /// sway gives it to the window that it calls focused, and that is never an unmanaged one.
    void typeLineAfter(const std::function<void()> &act, const QString &text) const
    {
        QProcess typing;
        m_sway->start(typing, u"wtype"_s, {u"-s"_s, u"1500"_s, text, u"-k"_s, u"Return"_s});
        QTRY_VERIFY_WITH_TIMEOUT(m_sway->hasKeyboard(), patience);
        act();
        QTRY_COMPARE_WITH_TIMEOUT(typing.state(), QProcess::NotRunning, patience);
        QTRY_VERIFY_WITH_TIMEOUT(!m_sway->hasKeyboard(), patience);
    }

    bool hasRenamedTo(const char *word)
    {
        m_renamed += m_tray.readAllStandardOutput();
        return m_renamed.contains(word);
    }

    bool terminalHasKeyboard() const { return m_sway->focusedApplication() == u"terminal"_s; }

    QString typed() const { return m_folder.filePath(u"typed"_s); }

    static QString contents(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    }

    bool isSeenAt(const QRect &place) const
    {
        const QImage screen = QImage::fromData(m_sway->run(u"grim"_s, {u"-"_s}));
        return screen.size() == screenSize &&
               screen.pixel(place.left() + 300, place.top() + 4) == VelmoraPalette::tray().rgb() &&
               screen.pixel(place.left() + 300, place.bottom() - 4) == VelmoraPalette::tray().rgb();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Sway> m_sway;
    QProcess m_terminal;
    QProcess m_tray;
    QByteArray m_renamed;
    std::unique_ptr<WaylandPointer> m_pointer;
};

VELMORA_WIDGETS_TEST(TrayOnSwayTest)
#include "TrayOnSwayTest.moc"
