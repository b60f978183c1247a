// SPDX-License-Identifier: MIT
// Measures how much memory hostile pictures cost: everything that is done to a new screenshot at
// once (its thumbnail, its name, and pasting it), for one picture after the other and then for all
// at the same time.
//
// usage: picture_memory
//
// Prints one line per picture (tab-separated: file, kilobytes, most megabytes above rest, seconds,
// thumbnail, name). Exits with 1 when something took more than the 400 MB that are allowed.

#include "bench/HostilePictures.h"
#include "core/releaseFreeMemory.h"
#include "filesystem/OpenFile.h"
#include "imaging/ScreenshotImages.h"
#include "imaging/decodeImage.h"
#include "naming/ScreenshotNamer.h"
#include "platform/FileWriters.h"
#include "platform/TextRecognizer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <future>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr double allowedMegabytes = 400;
constexpr QSize thumbnailBounds{128, 100};

double statusMegabytes(const char *key)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QFile::ReadOnly))
        qFatal("this needs /proc");
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(QByteArrayView(key).size()).simplified().split(' ').first().toDouble() *
                   1024 / 1e6;
    }
    return 0;
}

/// Returns what is held now, and records the maximum from now on.
double startCounting()
{
    releaseFreeMemory();
    QFile file(u"/proc/self/clear_refs"_s);
    if (!file.open(QFile::WriteOnly | QFile::Unbuffered) || file.write("5") != 1)
        qFatal("this needs /proc");
    return statusMegabytes("VmRSS:");
}

/// What happens when the user copies the picture and pastes it.
bool paste(const QString &path)
{
    const std::shared_ptr<OpenFile> file = OpenFile::open(path);
    const auto bytes = file ? readWhole(file->descriptor(), maximumClipboardBytes) : std::nullopt;
    return bytes && !decodeImage(*bytes).isNull();
}

struct Services {
    std::unique_ptr<FileWriters> writers = makeFileWriters();
    std::unique_ptr<TextRecognizer> recognizer = makeTextRecognizer();
};

/// Does everything to them at once. False when it took too much.
bool measure(const QStringList &paths, const QString &title, Services &services)
{
    const double before = startCounting();
    QElapsedTimer timer;
    timer.start();
    QSize thumbnailSize;
    QString lastName;
    {
        ScreenshotImages images(*services.writers);
        ScreenshotNamer namer(*services.recognizer, images);
        QList<QFuture<QString>> names;
        QList<QFuture<QImage>> thumbnails;
        for (const QString &path : paths) {
            const QUrl file = QUrl::fromLocalFile(path);
            thumbnails.append(images.thumbnail(file, thumbnailBounds));
            names.append(namer.suggestFilename(file, QString()));
        }
        // Only the first, because there is only one clipboard.
        const auto pasted = std::async(std::launch::async, paste, paths.first());
        for (const QFuture<QImage> &thumbnail : std::as_const(thumbnails))
            thumbnailSize = thumbnail.result().size();
        for (const QFuture<QString> &name : std::as_const(names))
            lastName = name.result();
        pasted.wait();
    }
    const double most = statusMegabytes("VmHWM:") - before;
    std::printf("%s\t%lld\t%.0f\t%.1f\t%dx%d\t%s\n", qPrintable(title),
                static_cast<long long>(QFileInfo(paths.last()).size() / 1000), most,
                double(timer.elapsed()) / 1000, thumbnailSize.width(), thumbnailSize.height(),
                qPrintable(lastName));
    std::fflush(stdout);
    return most <= allowedMegabytes;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    const QStringList pictures = HostilePictures::write(folder.path());
    Services services;
    services.recognizer->warmUp();
    bool isAllowed = true;
    for (const QString &picture : pictures)
        isAllowed &= measure({picture}, QFileInfo(picture).fileName(), services);
    isAllowed &= measure(pictures, u"all at once"_s, services);
    return isAllowed ? 0 : 1;
}
