// SPDX-License-Identifier: MIT
#include "tests/tray/TrayOnSwayFixture.h"

#include "style/VelmoraPalette.h"
#include "tests/world/Waiting.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

QString contents(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

} // namespace

void TrayOnSwayFixture::begin(Sway::X11 x11, const QByteArray &settings, Sway::Screens screens)
{
    m_sway = std::make_unique<Sway>(x11, settings, screens);
    const QString typedFile = m_folder.filePath(u"typed"_s);
    m_sway->start(m_terminal, u"foot"_s,
                  {u"--app-id=terminal"_s, u"--override=colors.background=ffffff"_s, u"sh"_s,
                   u"-c"_s, u"cat > \"$0\""_s, typedFile});
    QTRY_VERIFY_WITH_TIMEOUT(m_sway->tree().isEmpty() == false && QFile::exists(typedFile),
                             patience);
    startTray(x11);
    setDesktopSize(screenSize);
}

void TrayOnSwayFixture::restartTray()
{
    m_tray.kill();
    m_tray.waitForFinished();
    startTray(Sway::X11::No);
}

void TrayOnSwayFixture::setDesktopSize(QSize size)
{
    m_pointer = std::make_unique<WaylandPointer>(m_sway->display(), size);
}

void TrayOnSwayFixture::startTray(Sway::X11 x11)
{
    const QString program = QString::fromUtf8(TRAY_PROGRAM);
    if (x11 == Sway::X11::No) {
        qputenv("QT_QPA_PLATFORM", "wayland");
        m_sway->start(m_tray, program, {});
        qputenv("QT_QPA_PLATFORM", "xcb");
        return;
    }
    // The inner X server accepts only the desktop's own user.
    m_sway->command(
        u"exec \"xhost +local: && echo $DISPLAY > %1/display\""_s.arg(m_sway->folder()));
    QTRY_VERIFY_WITH_TIMEOUT(!contents(m_sway->folder() + u"/display"_s).isEmpty(), patience);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, contents(m_sway->folder() + u"/display"_s));
    m_tray.setProcessEnvironment(environment);
    m_tray.start(program, {});
}

void TrayOnSwayFixture::end()
{
    for (QProcess *process : {&m_tray, &m_terminal}) {
        process->kill();
        process->waitForFinished();
    }
    m_pointer.reset();
    m_sway.reset();
    QFile::remove(m_folder.filePath(u"typed"_s));
    m_output.clear();
}

QRect TrayOnSwayFixture::trayPlace(int rows, const QRect &screen)
{
    const QSize size(620, 72 * rows + 6 * (rows - 1) + 16);
    return {screen.bottomRight() - QPoint(size.width() + 43, size.height() + 43), size};
}

QByteArray TrayOnSwayFixture::screenSettings(const QByteArray &kind)
{
    return "output " + kind + "-1 resolution 1280x720 position 0 0\noutput " + kind +
           "-2 resolution 1280x720 position 1280 0\n";
}

void TrayOnSwayFixture::addSecondScreen(const QString &kind)
{
    const QSize both = QRect({0, 0}, screenSize).united(secondScreen).size();
    m_sway->command(u"create_output"_s);
    QTRY_COMPARE_WITH_TIMEOUT(photograph().size(), both, patience);
    m_sway->command(u"focus output %1-1"_s.arg(kind));
    setDesktopSize(both);
}

QImage TrayOnSwayFixture::photograph() const
{
    return QImage::fromData(m_sway->run(u"grim"_s, {u"-"_s}));
}

bool TrayOnSwayFixture::isSeenAt(const QRect &place, int scale) const
{
    const QImage screen = photograph();
    const auto isTray = [&](int x, int y) {
        const QPoint pixel(x * scale, y * scale);
        return screen.rect().contains(pixel) && screen.pixel(pixel) == VelmoraPalette::tray().rgb();
    };
    // Along the upper and lower edges, where no row is, and just outside.
    const int left = place.left();
    const int right = place.right();
    return isTray(left + 20, place.top() + 4) && isTray(right - 20, place.top() + 4) &&
           isTray(left + 20, place.bottom() - 4) && isTray(right - 20, place.bottom() - 4) &&
           !isTray(left + 300, place.top() - 2) && !isTray(left + 300, place.bottom() + 3) &&
           !isTray(left - 3, place.top() + 30) && !isTray(right + 3, place.top() + 30);
}

bool TrayOnSwayFixture::staysAt(const QRect &place, int scale) const
{
    return Waiting::staysTrue([&] { return isSeenAt(place, scale); }, 500ms);
}

void TrayOnSwayFixture::worksAt(const QRect &place)
{
    QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(place), patience);
    QVERIFY(staysAt(place));
    m_pointer->click(dismissButtonIn(place));
    const QRect smaller(place.topLeft() + QPoint(0, 78), place.bottomRight());
    QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(smaller), patience);
    QVERIFY(staysAt(smaller));
}

void TrayOnSwayFixture::typeLineAfter(const std::function<void()> &act, const QString &text) const
{
    QProcess typing;
    m_sway->start(typing, u"wtype"_s, {u"-s"_s, u"1500"_s, text, u"-k"_s, u"Return"_s});
    QTRY_VERIFY_WITH_TIMEOUT(m_sway->hasKeyboard(), patience);
    act();
    QTRY_COMPARE_WITH_TIMEOUT(typing.state(), QProcess::NotRunning, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!m_sway->hasKeyboard(), patience);
}

void TrayOnSwayFixture::typeLineWhen(const std::function<bool()> &isReady,
                                     const std::function<void()> &act, const QString &text) const
{
    QProcess typing;
    m_sway->start(typing, u"wtype"_s, {u"-"_s});
    QTRY_VERIFY_WITH_TIMEOUT(m_sway->hasKeyboard(), patience);
    act();
    QTRY_VERIFY_WITH_TIMEOUT(isReady(), patience);
    typing.write(text.toUtf8() + '\n');
    typing.closeWriteChannel();
    QTRY_COMPARE_WITH_TIMEOUT(typing.state(), QProcess::NotRunning, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!m_sway->hasKeyboard(), patience);
}

QString TrayOnSwayFixture::typed() const
{
    return contents(m_folder.filePath(u"typed"_s));
}

bool TrayOnSwayFixture::hasPrinted(const char *word)
{
    m_output += m_tray.readAllStandardOutput();
    return m_output.contains(word);
}

bool TrayOnSwayFixture::trayHasKeyboard()
{
    m_output += m_tray.readAllStandardOutput();
    return m_output.lastIndexOf("typing\n") > m_output.lastIndexOf("resting\n");
}
