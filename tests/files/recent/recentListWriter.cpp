// SPDX-License-Identifier: MIT
// Changes the stored recent list in an endless loop, and prints a line after each change.
//
// usage: recent_list_writer FOLDER [--once FILE]
//
// With a file, it adds only that one, as the program does after its start, and ends once it is
// stored.

#include "core/VelmoraSettings.h"
#include "files/recent/RecentScreenshots.h"
#include "filesystem/FileUrls.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

int addOnce(const ScreenshotFolderAccess &access, const QString &path)
{
    RecentScreenshots recent(access);
    recent.load();
    recent.add(FileUrls::fromPath(path));
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&path] {
        const bool isStored = VelmoraSettings::open().waitUntilStored(0ms);
        if (isStored && VelmoraSettings::recentScreenshots().value(0) == path)
            QCoreApplication::quit();
    });
    look.start(20ms);
    QTimer::singleShot(20s, [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QDir folder(arguments.value(1));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    const ScreenshotFolderAccess access = {
        [&folder] { return FileUrls::fromPath(folder.path()); },
        [](const QUrl &, int) { return QList<QUrl>(); },
        [](const QUrl &) { return ScreenshotFolderAccess::Date(); }};
    if (arguments.value(2) == u"--once"_s)
        return addOnce(access, folder.filePath(arguments.value(3)));
    for (qsizetype change = 0; !names.isEmpty(); ++change) {
        auto recent = std::make_unique<RecentScreenshots>(access);
        recent->load();
        recent->add(FileUrls::fromPath(folder.filePath(names.at(change % names.size()))));
        VelmoraSettings::open().waitUntilStored(10s);
        std::puts("changed");
        std::fflush(stdout);
    }
}
