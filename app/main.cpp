// SPDX-License-Identifier: MIT
#include "app/VelmoraApp.h"
#include "core/BackgroundThread.h"
#include "core/VelmoraIdentity.h"
#include "core/VelmoraSettings.h"
#include "platform/Platform.h"
#include "platform/prepareProcess.h"
#include "style/VelmoraAssets.h"

#include <QApplication>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{

/// The diagnostic log is the program's only output: messages from libraries are dropped.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

int run(int argc, char *argv[])
{
    qInstallMessageHandler(dropMessage);
    prepareProcess();
    // They are read while the application object is being made.
    VelmoraSettings::open();
    QApplication application(argc, argv);
    // The title of the status item, and the program's name for screen readers.
    QApplication::setApplicationName(u"Velmora"_s);
    QApplication::setApplicationVersion(QStringLiteral(VELMORA_VERSION));
    QGuiApplication::setDesktopFileName(velmoraBundleIdentifier());
    QApplication::setWindowIcon(VelmoraAssets::logoImage());
    QApplication::setQuitOnLastWindowClosed(false);

    Platform platform = nativePlatform();
    if (!platform.runningInstance->claim())
        return 0;

    quitWhenTerminated(application);

    VelmoraApp velmora(platform);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &velmora,
                     &VelmoraApp::applicationWillTerminate);
    QMetaObject::invokeMethod(&velmora, &VelmoraApp::applicationDidFinishLaunching,
                              Qt::QueuedConnection);
    return QApplication::exec();
}

/// An abandoned thread may be using the globals of libraries. Made before the program's globals,
/// this is destroyed after them, when settings and log are stored, and before those of libraries.
class EndWithAbandonedThread
{
public:
    ~EndWithAbandonedThread()
    {
        if (BackgroundThread::isAnyAbandoned())
            std::_Exit(m_status);
    }

    int withStatus(int status) { return m_status = status; }

private:
    int m_status = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    static EndWithAbandonedThread end;
    return end.withStatus(run(argc, argv));
}
