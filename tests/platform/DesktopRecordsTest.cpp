// SPDX-License-Identifier: MIT
#include "platform/DesktopRecords.h"
#include "platform/linux/desktop-records/RecentDocuments.h"
#include "platform/linux/desktop-records/fileUri.h"
#include "tests/world/SlowDisk.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr int patience = 40'000;

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QFile::WriteOnly) &&
           file.write(content) == content.size();
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QString listPath()
{
    return qEnvironmentVariable("XDG_DATA_HOME") + u"/recently-used.xbel"_s;
}

/// In the form that GNOME's library writes, with an entry for this URI between two others.
QByteArray listWith(const QByteArray &uri)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<xbel version=\"1.0\"\n"
           "      xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\"\n"
           "      xmlns:mime=\"http://www.freedesktop.org/standards/shared-mime-info\"\n"
           ">\n"
           "  <bookmark href=\"file:///home/a/letter.odt\" added=\"2026-11-21T08:00:00.000000Z\" "
           "modified=\"2026-11-21T08:00:00.000000Z\" visited=\"2026-11-21T08:00:00.000000Z\">\n"
           "    <info>\n"
           "      <metadata owner=\"http://freedesktop.org\">\n"
           "        <mime:mime-type type=\"application/vnd.oasis.opendocument.text\"/>\n"
           "        <bookmark:applications>\n"
           "          <bookmark:application name=\"Writer\" exec=\"&apos;writer %u&apos;\" "
           "modified=\"2026-11-21T08:00:00.000000Z\" count=\"3\"/>\n"
           "        </bookmark:applications>\n"
           "      </metadata>\n"
           "    </info>\n"
           "  </bookmark>\n"
           "  <bookmark href=\"" +
           uri +
           "\" added=\"2026-11-22T08:00:00.000000Z\" modified=\"2026-11-22T08:00:00.000000Z\" "
           "visited=\"2026-11-22T08:00:00.000000Z\">\n"
           "    <info>\n"
           "      <metadata owner=\"http://freedesktop.org\">\n"
           "        <mime:mime-type type=\"image/png\"/>\n"
           "        <bookmark:groups>\n"
           "          <bookmark:group>Screenshots</bookmark:group>\n"
           "        </bookmark:groups>\n"
           "        <bookmark:applications>\n"
           "          <bookmark:application name=\"Screenshot\" exec=\"&apos;shot %u&apos;\" "
           "modified=\"2026-11-22T08:00:00.000000Z\" count=\"1\"/>\n"
           "        </bookmark:applications>\n"
           "      </metadata>\n"
           "    </info>\n"
           "  </bookmark>\n"
           "  <bookmark href=\"sftp://server/home/a/b.png\"/>\n"
           "</xbel>";
}

QString thumbnail(const QString &size, const QByteArray &uri)
{
    const QByteArray sum = QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex();
    return qEnvironmentVariable("XDG_CACHE_HOME") + u"/thumbnails/"_s + size + u'/' +
           QString::fromLatin1(sum) + u".png"_s;
}

QUrl url(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

} // namespace

class DesktopRecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QFile::remove(listPath());
        QDir(qEnvironmentVariable("XDG_CACHE_HOME") + u"/thumbnails"_s).removeRecursively();
        m_records = makeDesktopRecords();
    }

    void theRecentDocumentStandsUnderItsNewName_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char *name, const char *before, const char *from, const char *to,
                            const char *after) {
            QTest::newRow(name) << QByteArray(before) << QString::fromUtf8(from)
                                << QString::fromUtf8(to) << QByteArray(after);
        };
        row("plain", "file:///p/a.png", "/p/a.png", "/p/b.png", "file:///p/b.png");
        row("GNOME's spelling", "file:///p/Screenshot%20from%202026-11-22%2008-00-00.png",
            "/p/Screenshot from 2026-11-22 08-00-00.png", "/p/x y.png", "file:///p/x%20y.png");
        row("KDE's spelling", "file:///p/B%C3%BCro;%20[1].png", "/p/Büro; [1].png",
            "/p/naïve #1%.png", "file:///p/na%C3%AFve%20%231%25.png");
        row("entities", "file:///p/a&amp;b&apos;c.png", "/p/a&b'c.png", "/p/d&e'f.png",
            "file:///p/d&amp;e&apos;f.png");
    }

    void theRecentDocumentStandsUnderItsNewName()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QByteArray, after);
        QVERIFY(write(listPath(), listWith(before)));
        QVERIFY(QFile::setPermissions(listPath(), QFile::ReadOwner | QFile::WriteOwner));
        m_records->fileMoved(url(from), url(to));
        QTRY_COMPARE_WITH_TIMEOUT(read(listPath()), listWith(after), patience);
        QCOMPARE(QFile::permissions(listPath()) & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }

    void whatIsNotedAfterTheMovesNamesTheLastPlace()
    {
        m_records->fileMoved(url(u"/p/a.png"_s), url(u"/p/b.png"_s));
        m_records->fileMoved(url(u"/p/b.png"_s), url(u"/p/c.png"_s));
        Waiting::letPass(300ms);
        QVERIFY(write(listPath(), listWith("file:///p/a.png")));
        QTRY_COMPARE_WITH_TIMEOUT(read(listPath()), listWith("file:///p/c.png"), patience);
        // There and back again.
        m_records->fileMoved(url(u"/p/c.png"_s), url(u"/p/a.png"_s));
        QTRY_COMPARE_WITH_TIMEOUT(read(listPath()), listWith("file:///p/a.png"), patience);
        QVERIFY(Waiting::staysTrue([&] { return read(listPath()) == listWith("file:///p/a.png"); },
                                   6s));
    }

    void noPlaceStandsThereTwice()
    {
        const QByteArray list = "<xbel>\n  <bookmark href=\"file:///p/a.png\"/>\n"
                                "  <bookmark href=\"file:///p/b.png\" title=\"kept\"/>\n</xbel>\n";
        QCOMPARE(RecentDocuments::moved(list, {{u"/p/a.png"_s, u"/p/b.png"_s}}),
                 QByteArray("<xbel>\n  <bookmark href=\"file:///p/b.png\" title=\"kept\"/>\n"
                            "</xbel>\n"));
    }

    void whatIsNoListIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        for (const char *content :
             {"", "<bookmark ", "<bookmark href=", "<bookmark href=\"file:///p/a.png",
              "<bookmark href=\"file:///p/a.png\">", "file:///p/a.png",
              "<bookmark xhref=\"file:///p/a.png\"/>", "<bookmark href=\"http://host/p/a.png\"/>"})
            QTest::newRow(content) << QByteArray(content);
    }

    void whatIsNoListIsLeftAlone()
    {
        QFETCH(QByteArray, content);
        QCOMPARE(RecentDocuments::moved(content, {{u"/p/a.png"_s, u"/p/b.png"_s}}), content);
    }

    void aLinkedListStaysALinkAndAPipeHoldsNobodyUp()
    {
        const QTemporaryDir elsewhere;
        const QString real = elsewhere.filePath(u"list"_s);
        QVERIFY(write(real, listWith("file:///p/a.png")));
        QVERIFY(QFile::link(real, listPath()));
        m_records->fileMoved(url(u"/p/a.png"_s), url(u"/p/b.png"_s));
        QTRY_COMPARE_WITH_TIMEOUT(read(real), listWith("file:///p/b.png"), patience);
        QVERIFY(QFileInfo(listPath()).isSymLink());

        QVERIFY(QFile::remove(listPath()));
        QCOMPARE(::mkfifo(QFile::encodeName(listPath()).constData(), 0600), 0);
        RecentDocuments::move({{u"/p/a.png"_s, u"/p/b.png"_s}});
        QVERIFY(!QFileInfo(listPath()).isFile());
        QVERIFY(QFile::remove(listPath()));
    }

    void noThumbnailOfTheOldPlaceIsLeft()
    {
        const QTemporaryDir folder;
        const QString from = folder.filePath(u"Screenshot; [ü].png"_s);
        const QString to = folder.filePath(u"to.png"_s);
        const QByteArray kdes = url(from).toEncoded();
        QVERIFY(fileUri(from) != kdes);
        const QStringList orphans = {thumbnail(u"normal"_s, fileUri(from)),
                                     thumbnail(u"x-large"_s, kdes),
                                     thumbnail(u"fail/gnome-thumbnail-factory"_s, fileUri(from))};
        const QString other = thumbnail(u"normal"_s, fileUri(to));
        for (const QString &path : orphans + QStringList{other})
            QVERIFY(write(path, "thumbnail"));
        m_records->fileMoved(url(from), url(to));
        for (const QString &path : orphans)
            QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(path), patience);
        // A thumbnailer that was at work comes late.
        Waiting::letPass(300ms);
        QVERIFY(write(orphans.first(), "thumbnail"));
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(orphans.first()), patience);
        QVERIFY(QFile::exists(other));
    }

    void aTrashedFileLeavesNoThumbnail()
    {
        const QString path = u"/nowhere/a.png"_s;
        QVERIFY(write(thumbnail(u"large"_s, fileUri(path)), "thumbnail"));
        QVERIFY(write(listPath(), listWith("file:///nowhere/a.png")));
        m_records->fileTrashed(url(path));
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(thumbnail(u"large"_s, fileUri(path))), patience);
        QCOMPARE(read(listPath()), listWith("file:///nowhere/a.png"));
    }

    void whatIsRememberedOfAnotherFileThatTookThePlaceStays()
    {
        const QTemporaryDir folder;
        const QString from = folder.filePath(u"a.png"_s);
        QVERIFY(write(from, "another"));
        QVERIFY(write(thumbnail(u"normal"_s, fileUri(from)), "thumbnail"));
        QVERIFY(write(listPath(), listWith(fileUri(from))));
        m_records->fileMoved(url(from), url(folder.filePath(u"b.png"_s)));
        // Another one shows when the work is done.
        const QString marker = thumbnail(u"normal"_s, fileUri(u"/p/marker.png"_s));
        QVERIFY(write(marker, "thumbnail"));
        m_records->fileTrashed(url(u"/p/marker.png"_s));
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(marker), patience);
        Waiting::letPass(500ms);
        QVERIFY(QFile::exists(thumbnail(u"normal"_s, fileUri(from))));
        QCOMPARE(read(listPath()), listWith(fileUri(from)));
    }

    void theMainThreadNeverTouchesTheDisk()
    {
        QVERIFY(write(listPath(), listWith("file:///p/a.png")));
        SlowDisk::startCounting();
        m_records->fileMoved(url(u"/p/a.png"_s), url(u"/p/b.png"_s));
        Waiting::letPass(1500ms);
        const QByteArrayList calls = SlowDisk::mainThreadCalls();
        QVERIFY2(calls.isEmpty(), calls.join('\n').constData());
        QCOMPARE(read(listPath()), listWith("file:///p/b.png"));
    }

private:
    std::unique_ptr<DesktopRecords> m_records;
};

VELMORA_EVENTS_TEST(DesktopRecordsTest)
#include "DesktopRecordsTest.moc"
