// SPDX-License-Identifier: MIT
#include "style/VelmoraPalette.h"
#include "tests/world/Sway.h"
#include "tests/world/TestProgram.h"

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
        type(u"hello\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(contents(typed()), u"hello"_s, patience);
        QVERIFY(isSeenAt(trayPlace(2)));
    }

private:
    QString typed() const { return m_folder.filePath(u"typed"_s); }

    static QString contents(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    }

    /// Waits first, because programs lose keys of a keyboard that they do not know yet.
    void type(const QString &text) const { m_sway->run(u"wtype"_s, {u"-s"_s, u"300"_s, text}); }

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
};

VELMORA_WIDGETS_TEST(TrayOnSwayTest)
#include "TrayOnSwayTest.moc"
