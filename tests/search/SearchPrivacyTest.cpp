// SPDX-License-Identifier: MIT
#include "tests/search/SearchIndexFixture.h"
#include "tests/world/TestProgram.h"

#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What is on the disk, who may read it, and that nothing of it stays if the user wants that.
class SearchPrivacyTest : public QObject, private SearchIndexFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void onlyItsOwnerMayReadIt_data()
    {
        QTest::addColumn<bool>("wasThere");
        QTest::newRow("created") << false;
        QTest::newRow("readable by others before") << true;
    }
    void onlyItsOwnerMayReadIt()
    {
        QFETCH(const bool, wasThere);
        QVERIFY(QDir().mkpath(folder()));
        ::chmod(qPrintable(folder()), 0755);
        if (wasThere) {
            SearchIndex index(folder());
            screenshot(index, u"zero.png"_s, {u"lighthouse"_s});
            index.close();
            QCOMPARE(::chmod(qPrintable(folder()), 0755), 0);
            QCOMPARE(::chmod(qPrintable(path()), 0644), 0);
        }
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        const auto mode = [](const QString &path) {
            struct stat status = {};
            ::stat(qPrintable(path), &status);
            return status.st_mode & 0777;
        };
        QCOMPARE(mode(folder()), mode_t(0700));
        const QStringList files = QDir(folder()).entryList(QDir::Files | QDir::Hidden);
        QVERIFY(files.size() > 1);
        for (const QString &name : files)
            QCOMPARE(mode(folder() + u'/' + name), mode_t(0600));
    }

    void secretsAreNotInTheFile()
    {
        {
            SearchIndex index(folder());
            screenshot(index, u"one.png"_s, {u"Password: hunter2secret"_s, u"lighthouse"_s});
            QVERIFY(index.find(u"hunter2secret"_s, 10).isEmpty());
            QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        }
        QByteArray bytes;
        for (const QFileInfo &file : QDir(folder()).entryInfoList(QDir::Files))
            bytes += TestFiles::read(FileUrls::fromPath(file.filePath()));
        QVERIFY(bytes.contains("lighthouse"));
        QVERIFY(!bytes.contains("hunter2secret"));
    }

    void aSearchMakesNoFile()
    {
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(!QFileInfo::exists(folder()));
    }

    void forgettingDeletesAllThatWasStored()
    {
        QVERIFY(QDir().mkpath(folder()));
        TestFiles::write(FileUrls::fromPath(path()), "no database");
        TestFiles::write(FileUrls::fromPath(folder() + u"/else"_s), "not ours");
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QVERIFY(!asides().isEmpty());
        QVERIFY(index.forget());
        QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList{u"else"_s});
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
    }
};

VELMORA_EVENTS_TEST(SearchPrivacyTest)
#include "SearchPrivacyTest.moc"
