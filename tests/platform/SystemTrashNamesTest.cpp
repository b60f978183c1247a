// SPDX-License-Identifier: MIT
#include "tests/platform/SystemTrashFixture.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Under which name a file lies in the freedesktop trash.
class SystemTrashNamesTest : public QObject, private SystemTrashFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void aTakenNameGetsACounterBeforeTheExtension()
    {
        m_trash->trash(m_files->make(u"Shot.png"_s, "1"));
        m_trash->trash(m_files->make(u"Shot.png"_s, "2"));
        const auto third = m_trash->trash(m_files->make(u"Shot.png"_s, "3"));
        QCOMPARE(third.location->toLocalFile(), homeTrashed(u"Shot.3.png"_s));
        QCOMPARE(filesIn(homeTrash() + u"/files"_s),
                 (QStringList{u"Shot.2.png"_s, u"Shot.3.png"_s, u"Shot.png"_s}));
        QCOMPARE(notedPath(homeInfo(u"Shot.3.png"_s)), pathOf(m_files->url(u"Shot.png"_s)));
        QCOMPARE(m_trash->trash(m_files->make(u"Shot"_s)).location->toLocalFile(),
                 homeTrashed(u"Shot"_s));
        QCOMPARE(m_trash->trash(m_files->make(u"Shot"_s)).location->toLocalFile(),
                 homeTrashed(u"Shot.2"_s));
    }

    void aTrashedFileWithoutANoteIsNotReplaced()
    {
        QVERIFY(QDir().mkpath(homeTrash() + u"/files"_s));
        TestFiles::write(FileUrls::fromPath(homeTrashed(u"Shot.png"_s)), "an orphan");
        const auto trashed = m_trash->trash(m_files->make(u"Shot.png"_s));
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(u"Shot.2.png"_s));
        QCOMPARE(contentOf(homeTrashed(u"Shot.png"_s)), QByteArray("an orphan"));
        QVERIFY(!QFile::exists(homeInfo(u"Shot.png"_s)));
        QVERIFY(QFile::exists(homeInfo(u"Shot.2.png"_s)));
    }

    void aNoteWithoutAFileKeepsItsName()
    {
        QVERIFY(QDir().mkpath(homeTrash() + u"/info"_s));
        TestFiles::write(FileUrls::fromPath(homeInfo(u"Shot.png"_s)), "an orphan");
        const auto trashed = m_trash->trash(m_files->make(u"Shot.png"_s));
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(u"Shot.2.png"_s));
        QCOMPARE(contentOf(homeInfo(u"Shot.png"_s)), QByteArray("an orphan"));
    }

    void aLongNameIsCutBetweenCharacters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("end");
        QTest::newRow("letters") << QString(251, u'n') + u".png"_s << u".png"_s;
        QTest::newRow("two bytes each") << QString(125, QChar(0xE9)) + u".jpeg"_s << u".jpeg"_s;
        QTest::newRow("three bytes each") << QString(83, QChar(0x65E5)) + u".heic"_s << u".heic"_s;
        QTest::newRow("four bytes each") << u"😀"_s.repeated(62) + u".png"_s << u".png"_s;
        QTest::newRow("all extension") << u"a." + QString(253, u'x') << QString();
        QTest::newRow("no extension") << QString(255, u'n') << QString();
    }
    void aLongNameIsCutBetweenCharacters()
    {
        QFETCH(QString, name);
        QFETCH(QString, end);
        const QByteArray suffix(".trashinfo");
        for (int time = 0; time < 3; ++time) {
            const auto trashed = m_trash->trash(m_files->make(name));
            QVERIFY2(!trashed.error, trashed.error.message().c_str());
            const QString kept = FileUrls::lastPathComponent(*trashed.location);
            const qsizetype length = kept.toUtf8().size() + suffix.size();
            QVERIFY2(length <= 255 && length > 248, QByteArray::number(length).constData());
            QVERIFY(!kept.contains(QChar::ReplacementCharacter));
            QVERIFY2(kept.endsWith(end), qPrintable(kept));
            QCOMPARE(notedPath(homeInfo(kept)).right(10),
                     pathOf(m_files->url(name)).toPercentEncoding("/").right(10));
            QVERIFY(!m_trash->restore(*trashed.location, m_files->url(name)));
            m_trash->trash(m_files->url(name));
        }
    }
};

VELMORA_EVENTS_TEST(SystemTrashNamesTest)
#include "SystemTrashNamesTest.moc"
