// Changes the stored recent list without end, and writes a line after each change.
//
// usage: recent_list_writer FOLDER

#include "files/recent/RecentScreenshots.h"
#include "filesystem/FileUrls.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <memory>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QDir folder(QCoreApplication::arguments().value(1));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    const ScreenshotFolderAccess access = {
        [&folder] { return FileUrls::fromPath(folder.path()); },
        [](const QUrl &, int) { return QList<QUrl>(); },
        [](const QUrl &) { return ScreenshotFolderAccess::Date(); }};
    for (qsizetype change = 0; !names.isEmpty(); ++change) {
        auto recent = std::make_unique<RecentScreenshots>(access);
        recent->load();
        recent->add(FileUrls::fromPath(folder.filePath(names.at(change % names.size()))));
        recent.reset();
        std::puts("changed");
        std::fflush(stdout);
    }
}
