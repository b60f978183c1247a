// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"

#include <QApplication>
#include <QTimer>

using namespace std::chrono_literals;

namespace
{

/// A program with a tray, which gets a second row after a while.
class TrayProgram : public ControllerFixture
{
public:
    TrayProgram()
    {
        begin();
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
