// SPDX-License-Identifier: MIT
#include "core/IniText.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// Some letters have a meaning in such files, some do not.
QString randomString(QRandomGenerator &random)
{
    static const QString letters =
        QString::fromUtf8(" \t\n\r\"\\',;=#[]%@()/.-_abcdefx0123456789ABxZé日😀\x01\x1f");
    QString string;
    for (quint32 i = random.bounded(12U); i > 0; --i)
        string += letters.mid(random.bounded(letters.size()), 1 + random.bounded(2));
    return QString::fromUtf8(string.toUtf8()); // no half surrogates
}

} // namespace

/// QSettings is the reference: each must be able to read what the other has written.
class IniTextTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;

    void write(const QByteArray &text) const
    {
        QFile file(m_path);
        QVERIFY(file.open(QFile::WriteOnly) && file.write(text) == text.size());
    }
    QByteArray text() const
    {
        QFile file(m_path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    QVariant bySettings(const QString &key) const
    {
        return QSettings(m_path, QSettings::IniFormat).value(key);
    }
    void writeBySettings(const QString &key, const QVariant &value) const
    {
        QSettings(m_path, QSettings::IniFormat).setValue(key, value);
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(u"store.ini"_s);
    }

    void stringsOfAllKindsAreUnderstoodBothWays()
    {
        QRandomGenerator random(20261122);
        const QString key = u"a-key_1"_s;
        for (int round = 0; round < 600; ++round) {
            const QString string = randomString(random);
            m_path = m_folder->filePath(u"%1.ini"_s.arg(round));
            write(IniText::changed("[General]\nother=1\n", {{key, string}}));
            QCOMPARE(bySettings(key).toString(), string);
            QCOMPARE(IniText::values(text()).value(key).toString(), string);
            writeBySettings(u"theirs"_s, string);
            QCOMPARE(IniText::values(text()).value(u"theirs"_s).toString(), string);
        }
    }

    void listsOfAllKindsAreUnderstoodBothWays()
    {
        QRandomGenerator random(20261123);
        const QString key = u"list"_s;
        for (int round = 0; round < 300; ++round) {
            QStringList list;
            for (quint32 i = random.bounded(4U); i > 0; --i)
                list << randomString(random);
            m_path = m_folder->filePath(u"%1.ini"_s.arg(round));
            write(IniText::changed({}, {{key, list}}));
            QCOMPARE(bySettings(key).toStringList(), list);
            QCOMPARE(IniText::values(text()).value(key).toStringList(), list);
            writeBySettings(u"theirs"_s, list);
            QCOMPARE(IniText::values(text()).value(u"theirs"_s).toStringList(), list);
        }
    }

    void everythingElseInTheTextStays()
    {
        const QByteArray before = "; mine\nfirst=1\n\n[Other]\na=1\n\n[General]\n# mine too\nb=2\n"
                                  "c=3\n\n[Last]\nb=9\n";
        QCOMPARE(IniText::changed(before, {{u"b"_s, u"new"_s}}),
                 QByteArray(before).replace("b=2", "b=new"));
        QCOMPARE(IniText::changed(before, {{u"d"_s, u"new"_s}}),
                 QByteArray(before).replace("c=3\n", "c=3\nd=new\n"));
        QCOMPARE(IniText::changed(before, {{u"c"_s, QVariant()}}),
                 QByteArray(before).replace("c=3\n", ""));
        QCOMPARE(IniText::changed(before, {{u"none"_s, QVariant()}}), before);
    }

    void aTextWithoutTheGroupGetsIt()
    {
        const QMap<QString, QVariant> changes = {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}};
        QCOMPARE(IniText::changed({}, changes), QByteArray("[General]\na=1\nb=2\n"));
        QCOMPARE(IniText::changed("[Other]\nx=1\n", changes),
                 QByteArray("[General]\na=1\nb=2\n[Other]\nx=1\n"));
        // Keys without a header belong to General.
        QCOMPARE(IniText::changed("x=1\n", changes, "Other"),
                 QByteArray("x=1\n[Other]\na=1\nb=2\n"));
    }

    void aKeyThatStandsThereTwiceCountsOnceAndIsWrittenOnce()
    {
        const QByteArray twice = "[General]\na=1\nb=2\na=3\n";
        QCOMPARE(IniText::values(twice).value(u"a"_s).toString(), u"3"_s);
        QCOMPARE(IniText::changed(twice, {{u"a"_s, u"4"_s}}), QByteArray("[General]\na=4\nb=2\n"));
    }

    void whatIsNoSettingsFileHoldsNothing()
    {
        QCOMPARE(IniText::values({}).size(), 0);
        QByteArray noise(4096, Qt::Uninitialized);
        QRandomGenerator random(7);
        random.fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
        IniText::values(noise);
        QCOMPARE(IniText::values("[General]\nkey\n=value\n@Variant(\\0\\0)\n").size(), 0);
        QCOMPARE(IniText::values("a=@Variant(\\0\\0\\0\\x1)\nb=\"open\\\n").size(), 1);
    }
};

VELMORA_EVENTS_TEST(IniTextTest)
#include "IniTextTest.moc"
