// SPDX-License-Identifier: MIT
#include "detection/FolderFollower.h"
#include "detection/NewScreenshots.h"
#include "tests/detection/RandomHistory.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QTest>

#include <map>

#include <dirent.h>

using namespace std::chrono_literals;

namespace
{

using Dates = std::map<QByteArray, FileTime>;

Dates datesOf(const FolderListing::Files &files)
{
    Dates dates;
    for (auto [name, file] : files.asKeyValueRange())
        dates[name] = file.modified;
    return dates;
}

/// The content of the folder, as found by the simplest possible listing.
Dates plainListing(const QString &folder, FileTime now)
{
    Dates dates;
    const QByteArray path = QFile::encodeName(folder);
    DIR *const directory = ::opendir(path.constData());
    if (!directory)
        return dates;
    while (const dirent *const entry = ::readdir(directory)) {
        const QByteArray name = entry->d_name;
        const QByteArray lower = name.toLower();
        bool isImage = false;
        for (const char *extension : {".png", ".jpg", ".jpeg", ".heic", ".tiff"})
            isImage = isImage || lower.endsWith(extension);
        const QByteArray full = path + '/' + name;
        struct stat status = {};
        if (name.startsWith('.') || !isImage || ::lstat(full.constData(), &status) != 0)
            continue;
        const FileTime modified = FileTimes::modified(status);
        if (now - modified < 180s)
            dates[name] = modified;
    }
    ::closedir(directory);
    return dates;
}

QString described(const Dates &dates, FileTime now)
{
    QStringList parts;
    for (const auto &[name, modified] : dates)
        parts.append(QString::fromUtf8(name) + u' ' + QString::number((now - modified).count()));
    return parts.join(u'\n');
}

} // namespace

/// Two ways give the same result as listing the folder each time, whatever happens: following it by
/// events alone and, where nothing is reported, first checking whether it has changed.
class BothWaysAgreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followingAndListingReportTheSame_data()
    {
        QTest::addColumn<unsigned int>("seed");
        for (unsigned int seed = 1; seed <= 12; ++seed)
            QTest::newRow(qPrintable(QString::number(seed))) << seed;
    }

    void followingAndListingReportTheSame()
    {
        QFETCH(unsigned int, seed);
        RandomHistory history(seed);
        const QUrl folder = QUrl::fromLocalFile(history.folder());
        auto skew = 0s;
        FileTime now = FileTimes::now();
        FolderFollower follower(folder, makeFolderEvents());
        connect(&follower, &FolderFollower::changed, &follower, [&] { follower.look(now); });
        FolderListing lister(folder);
        FolderListing asker(folder);
        NewScreenshots followed(FileTimes::now());
        NewScreenshots asked(FileTimes::now());
        NewScreenshots listed(FileTimes::now());
        follower.look(now);
        QStringList acts;
        int reported = 0;
        int asleep = 0;
        for (int step = 0; step < 200; ++step) {
            now = FileTimes::now() + skew;
            for (int count = history.random(4); count >= 0; --count)
                acts.append(history.act(now));
            lister.listAgain();
            lister.look(now);
            const Dates expected = plainListing(history.folder(), now);
            QCOMPARE(described(datesOf(lister.candidates()), now), described(expected, now));
            const bool agree = QTest::qWaitFor([&] {
                // If everything is reported, look() is only called after an event.
                if (follower.hasUnreported() || now >= follower.nextAgeing())
                    follower.look(now);
                return datesOf(follower.candidates()) == expected;
            });
            if (!agree)
                qWarning().noquote() << acts.mid(acts.size() - 30).join(u'\n');
            QCOMPARE(described(datesOf(follower.candidates()), now), described(expected, now));
            asleep += follower.hasUnreported() ? 0 : 1;
            const bool askerAgrees = QTest::qWaitFor([&] {
                asker.look(now);
                return datesOf(asker.candidates()) == expected;
            });
            QVERIFY2(askerAgrees, qPrintable(acts.mid(acts.size() - 30).join(u'\n')));

            const QList<QUrl> news = listed.scan(lister.candidates());
            QCOMPARE(followed.scan(follower.candidates()), news);
            QCOMPARE(asked.scan(asker.candidates()), news);
            reported += static_cast<int>(news.size());
            if (history.random(4) == 0 && !news.isEmpty()) {
                listed.ignore(news.first());
                followed.ignore(news.first());
                asked.ignore(news.first());
            }
            // The clock advances. Sometimes it is set back, and the watcher is informed.
            const bool isSet = history.random(30) == 0;
            skew += std::chrono::seconds(isSet ? 60 - history.random(200) : history.random(60));
            if (isSet) {
                now = FileTimes::now() + skew;
                follower.look(now);
            }
        }
        QVERIFY(reported > 0);
        QVERIFY(asleep > 0);
    }
};

VELMORA_EVENTS_TEST(BothWaysAgreeTest)
#include "BothWaysAgreeTest.moc"
