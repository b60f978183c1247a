// SPDX-License-Identifier: MIT
#include "platform/Pasteboard.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20000;

}

/// The clipboard of a compositor that offers only the newer protocol for clipboard managers.
class PasteboardOnNewerWaylandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileArrivesInEveryForm()
    {
        const TestFiles files;
        const QUrl shot = files.make(u"a b é%25.png"_s);
        const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/compositor"_s;
        QProcess compositor;
        compositor.start(QString::fromUtf8(CLIPBOARD_COMPOSITOR), {socket});
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(socket), patience);
        qputenv("WAYLAND_DISPLAY", socket.toUtf8());
        const std::unique_ptr<Pasteboard> pasteboard = makePasteboard();

        QByteArray printed;
        const auto isPrinted = [&](const char *line) {
            printed += compositor.readAllStandardOutput();
            return printed.endsWith(line);
        };
        QTRY_VERIFY_WITH_TIMEOUT(isPrinted("ready\n"), patience);
        PasteboardContents contents;
        contents.file = shot;
        pasteboard->write(contents);
        QTRY_VERIFY_WITH_TIMEOUT(isPrinted("complete\n"), patience);
        QCOMPARE(content(printed, "text/uri-list"), QByteArray(shot.toEncoded() + "\r\n"));
        QCOMPARE(content(printed, "x-special/gnome-copied-files"),
                 QByteArray("copy\n" + shot.toEncoded()));
        QCOMPARE(content(printed, "text/plain;charset=utf-8"), shot.toLocalFile().toUtf8());
        compositor.kill();
        compositor.waitForFinished();
    }

private:
    static QByteArray content(const QByteArray &printed, const QByteArray &format)
    {
        const QByteArray start = format + ' ';
        const QList<QByteArray> lines = printed.split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith(start))
                return QByteArray::fromBase64(line.mid(start.size()));
        }
        return {};
    }
};

VELMORA_WIDGETS_TEST(PasteboardOnNewerWaylandTest)
#include "PasteboardOnNewerWaylandTest.moc"
