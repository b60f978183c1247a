// SPDX-License-Identifier: MIT
#include "tests/core/SettingsStoreFixture.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

mode_t modeOf(const QString &name)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(name).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

/// What is stored and read again, also beside other processes.
class SettingsStoreTest : public QObject, private SettingsStoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { clear(); }
    void cleanup() { end(); }

    void whatIsSetIsSeenAtOnceAndStoredSoon()
    {
        begin();
        QVERIFY(!m_store->value(key).isValid());
        m_store->setValue(key, u"fifteenSeconds"_s);
        QCOMPARE(value(), u"fifteenSeconds"_s);
        m_store->setValue(other, true);
        QCOMPARE(m_store->allKeys().size(), 2);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=fifteenSeconds\nzOther=true\n"));
        m_store->remove(key);
        QVERIFY(!m_store->value(key).isValid());
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(), QByteArray("[General]\nzOther=true\n"));
    }

    void whatIsStoredIsReadAgain()
    {
        const QStringList list = {u"/a, b.png"_s, u"/c.png"_s};
        begin();
        m_store->setValue(key, u"x"_s);
        m_store->setValue(other, list);
        m_store.reset();
        begin();
        QCOMPARE(value(), u"x"_s);
        QCOMPARE(m_store->value(other).toStringList(), list);
    }

    void aMissingFolderIsMadeForItsOwnerAlone()
    {
        QVERIFY(QDir().rmdir(folder()));
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(modeOf(folder()), mode_t(0700));
        QCOMPARE(modeOf(path()), mode_t(0600));
    }

    void whatIsThereAlreadyBecomesItsOwnersAlone()
    {
        fill(path(), "[General]\ntrayDuration=x\n");
        QCOMPARE(::chmod(encoded(path()).constData(), 0644), 0);
        QCOMPARE(::chmod(encoded(folder()).constData(), 0755), 0);
        begin();
        QTRY_COMPARE(modeOf(path()), mode_t(0600));
        QTRY_COMPARE(modeOf(folder()), mode_t(0700));
        QCOMPARE(value(), u"x"_s);
        QCOMPARE(::chmod(encoded(path()).constData(), 0644), 0);
        m_store->setValue(key, u"y"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(modeOf(path()), mode_t(0600));
    }

    void aChangeByAnotherProcessIsSeenAtTheNextRead()
    {
        fill(path(), "[General]\ntrayDuration=0\n");
        begin();
        for (int i = 0; i < 200; ++i) {
            // Written in place or replaced, but always of the same size.
            const QByteArray text =
                QByteArray("[General]\ntrayDuration=") + QByteArray::number(100 + i) + '\n';
            if (i % 2 == 0) {
                fill(path(), text);
            } else {
                fill(path() + u'2', text);
                QCOMPARE(::rename(encoded(path() + u'2').constData(), encoded(path()).constData()),
                         0);
            }
            QTRY_COMPARE_WITH_TIMEOUT(value(), QString::number(100 + i), 2000);
        }
        QVERIFY(QFile::remove(path()));
        QTRY_VERIFY_WITH_TIMEOUT(!m_store->value(key).isValid(), 2000);
    }

    void anotherProcessKeepsWhatItHasStoredBeside()
    {
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        fill(path(), "; mine\n[General]\ntrayDuration=x\nzOther=theirs\n\n[Theirs]\na=1\n");
        m_store->setValue(key, u"y"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(),
                 QByteArray("; mine\n[General]\ntrayDuration=y\nzOther=theirs\n\n[Theirs]\na=1\n"));
        QCOMPARE(m_store->value(other).toString(), u"theirs"_s);
    }

    void whatIsStoredAlreadyIsNotWrittenAgain()
    {
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        const auto serial = [] {
            struct stat status = {};
            return ::lstat(encoded(path()).constData(), &status) == 0 ? status.st_ino : 0;
        };
        const ino_t before = serial();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(serial(), before);
    }

    void nothingIsTakenFromTheFilesForAllUsers()
    {
        const QString system = QDir::homePath() + u"/xdg"_s;
        QVERIFY(QDir().mkpath(system + u"/velmora"_s));
        fill(system + u"/velmora/store.conf"_s, "[General]\ntrayDuration=system\n");
        fill(system + u"/velmora.conf"_s, "[General]\ntrayDuration=system\n");
        qputenv("XDG_CONFIG_DIRS", encoded(system));
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        QVERIFY(!m_store->value(key).isValid());
        qunsetenv("XDG_CONFIG_DIRS");
    }
};

VELMORA_EVENTS_TEST(SettingsStoreTest)
#include "SettingsStoreTest.moc"
