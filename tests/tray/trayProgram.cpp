// SPDX-License-Identifier: MIT
#include "filesystem/FileUrls.h"
#include "tests/tray/ControllerFixture.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>

using namespace std::chrono_literals;

namespace
{

/// A program with a tray, which gets a second row after a while. Prints the new names of files.
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
    }
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const TrayProgram program;
    return QApplication::exec();
}
