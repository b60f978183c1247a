// SPDX-License-Identifier: MIT
#include "core/VelmoraSettings.h"
#include "filesystem/FileUrls.h"
#include "platform/prepareProcess.h"
#include "tests/tray/ControllerFixture.h"

#include <QApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>
#include <QWindow>

#include <unistd.h>

using namespace std::chrono_literals;

namespace
{

/// A program with a tray, which gets a second row after a while, and one more for each line of
/// standard input, unless the line is "corner" and one: then the tray moves there. Prints the new
/// names of files, and "typing" or "resting" when it gets or loses the keyboard.
class TrayProgram : public ControllerFixture
{
public:
    TrayProgram()
    {
        begin();
        m_tray->onRenamed = [](const QUrl &url) {
            QTextStream(stdout) << FileUrls::lastPathComponent(url) << Qt::endl;
        };
        add("one.png");
        QTimer::singleShot(1s, qApp, [this] { add("two.png"); });
        QObject::connect(qApp, &QGuiApplication::focusWindowChanged, [](const QWindow *window) {
            QTextStream(stdout) << (window ? "typing" : "resting") << Qt::endl;
        });
        QObject::connect(&m_input, &QSocketNotifier::activated, &m_input, [this] { read(); });
    }

private:
    void read()
    {
        QFile input;
        if (!input.open(STDIN_FILENO, QFile::ReadOnly | QFile::Unbuffered))
            return;
        const QByteArray name = input.readLine().trimmed();
        if (name.isEmpty())
            m_input.setEnabled(false);
        else if (name.startsWith("corner "))
            moveTo(name.mid(7));
        else
            add(name.constData());
    }

    void moveTo(const QByteArray &corner)
    {
        VelmoraSettings::setTrayPosition(corner == "topLeft" ? TrayPosition::topLeft
                                                             : TrayPosition::bottomRight);
        m_tray->layoutPanel();
    }

    QSocketNotifier m_input{STDIN_FILENO, QSocketNotifier::Read};
};

} // namespace

int main(int argc, char *argv[])
{
    prepareProcess();
    QApplication application(argc, argv);
    const TrayProgram program;
    return QApplication::exec();
}
