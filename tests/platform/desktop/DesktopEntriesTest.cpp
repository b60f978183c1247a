// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntries.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

void write(const QString &path, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray application(const QByteArray &name, const QByteArray &more = {})
{
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more;
}

} // namespace

class DesktopEntriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_place.emplace();
        m_own = m_place->filePath(u"own/applications"_s);
        m_system = m_place->filePath(u"system/applications"_s);
        for (const char *name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES"})
            qunsetenv(name);
        qputenv("LANG", "C.UTF-8");
    }

    void theUsersEntryHidesTheSystemsOfTheSameId()
    {
        write(m_own + u"/a.desktop"_s, application("Mine"));
        write(m_system + u"/a.desktop"_s, application("Theirs"));
        QCOMPARE(nameOf(u"a"_s), u"Mine"_s);
    }

    void anEntryThatTheUserDeletedHidesTheSystems()
    {
        write(m_own + u"/a.desktop"_s, application("Mine", "Hidden=true\n"));
        write(m_system + u"/a.desktop"_s, application("Theirs", "StartupWMClass=A\n"));
        const DesktopEntries entries = read();
        QVERIFY(!entries.contains(u"a"_s));
        QVERIFY(!entries.claimant(u"A"_s));
    }

    void aSubfolderIsPartOfTheId()
    {
        write(m_system + u"/kde/deep/tool.desktop"_s, application("Tool"));
        QCOMPARE(nameOf(u"kde-deep-tool"_s), u"Tool"_s);
    }

    void aFolderLinkedIntoItselfComesToAnEnd()
    {
        write(m_system + u"/a.desktop"_s, application("A"));
        QVERIFY(QFile::link(m_system, m_system + u"/again"_s));
        QVERIFY(read().contains(u"a"_s));
    }

    void onlyApplicationsCount()
    {
        write(m_system + u"/link.desktop"_s,
              "[Desktop Entry]\nType=Link\nName=Link\nURL=https://example.org\n");
        write(m_system + u"/broken.desktop"_s, "\x00\xff no entry");
        write(m_system + u"/empty.desktop"_s, "");
        const DesktopEntries entries = read();
        for (const char *id : {"link", "broken", "empty"})
            QVERIFY(!entries.contains(QString::fromLatin1(id)));
    }

    void aShownEntryClaimsAWindowBeforeAHiddenOne()
    {
        write(m_system + u"/a.desktop"_s,
              application("Hidden", "StartupWMClass=Thing\nNoDisplay=true\n"));
        QCOMPARE(read().claimant(u"Thing"_s), u"a"_s);
        write(m_system + u"/b.desktop"_s, application("Shown", "StartupWMClass=Thing\n"));
        QCOMPARE(read().claimant(u"Thing"_s), u"b"_s);
    }

    void ofTwoClaimantsTheOneNamedSoIsTaken()
    {
        write(m_system + u"/a.desktop"_s, application("A", "StartupWMClass=thing\n"));
        write(m_system + u"/thing.desktop"_s, application("B", "StartupWMClass=thing\n"));
        QCOMPARE(read().claimant(u"thing"_s), u"thing"_s);
        QVERIFY(!read().claimant(u"Thing"_s));
    }

    void aNameResemblesAnIdOnlyWhenNoOtherIsMeant()
    {
        write(m_system + u"/org.kde.dolphin.desktop"_s, application("Dolphin"));
        QCOMPARE(read().resembling(u"Dolphin"_s), u"org.kde.dolphin"_s);
        write(m_system + u"/org.sea.Dolphin.desktop"_s, application("Sea"));
        QVERIFY(!read().resembling(u"Dolphin"_s));
    }

    void whatIsInstalledOrRemovedMakesTheEntriesOutdated()
    {
        write(m_system + u"/sub/a.desktop"_s, application("A"));
        // A folder that changed a moment ago is never trusted, so wait until one is.
        DesktopEntries entries;
        QTRY_VERIFY((entries = read(), !entries.isOutdated()));
        write(m_system + u"/sub/b.desktop"_s, application("B"));
        QVERIFY(entries.isOutdated());

        QTRY_VERIFY((entries = read(), !entries.isOutdated()));
        QVERIFY(QFile::remove(m_system + u"/sub/a.desktop"_s));
        QVERIFY(entries.isOutdated());

        QTRY_VERIFY((entries = read(), !entries.isOutdated()));
        QVERIFY(QDir().mkpath(m_own));
        QVERIFY(entries.isOutdated());
    }

    void theNameIsReadInTheUsersLanguage_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QString>("name");
        const auto row = [](const char *variable, const char *locale, const char *name) {
            QTest::addRow("%s=%s", variable, locale)
                << QByteArray(variable) << QByteArray(locale) << QString::fromUtf8(name);
        };
        row("LANG", "C.UTF-8", "Files");
        row("LANG", "POSIX", "Files");
        row("LANG", "fr_FR.UTF-8", "Files");
        row("LANG", "de_DE.UTF-8", "Dateien");
        row("LC_MESSAGES", "de_CH", "Dateien CH");
        row("LC_ALL", "pt_BR.UTF-8@euro", "Arquivos");
        row("LANG", "sr_RS.UTF-8@latin", "Datoteke");
        row("LANG", "sr_RS.UTF-8", "Датотеке");
    }

    void theNameIsReadInTheUsersLanguage()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, locale);
        QFETCH(QString, name);
        write(m_system + u"/files.desktop"_s,
              application("Files", "Name[de]=Dateien\nName[de_CH]=Dateien CH\nName[pt_BR]="
                                   "Arquivos\nName[sr@latin]=Datoteke\nName[sr]=Датотеке\n"
                                   "GenericName[fr]=Gestionnaire\n"));
        qputenv(variable.constData(), locale);
        QCOMPARE(nameOf(u"files"_s), name);
    }

    void theListOfPreferredLanguagesComesFirst()
    {
        write(m_system + u"/files.desktop"_s,
              application("Files", "Name[de]=Dateien\nName[it]=File\n"));
        qputenv("LANG", "de_DE.UTF-8");
        qputenv("LANGUAGE", "fr:it:de");
        QCOMPARE(nameOf(u"files"_s), u"File"_s);
    }

    void valuesAreReadWithTheirEscapesAndSpaces()
    {
        write(m_system + u"/a.desktop"_s,
              "# comment\r\n\n[Desktop Entry]\r\nType = Application\r\nName = A\\sb\\\\c \r\n"
              "OnlyShowIn=GNOME;XFCE;\nNoDisplay=false\nHidden=perhaps\n"
              "[Desktop Action x]\nName=Other\n");
        const auto entry = read().entry(u"a"_s);
        QVERIFY(entry);
        QCOMPARE(entry->string("Name"), u"A b\\c"_s);
        QCOMPARE(entry->list("OnlyShowIn"), (QStringList{u"GNOME"_s, u"XFCE"_s}));
        QCOMPARE(entry->boolean("NoDisplay"), false);
        QVERIFY(!entry->boolean("Hidden"));
        QVERIFY(!entry->boolean("Missing"));
    }

private:
    DesktopEntries read() const { return DesktopEntries::read({m_own, m_system}); }

    QString nameOf(const QString &id) const
    {
        const std::optional<DesktopEntry> entry = read().entry(id);
        return entry ? entry->localizedString("Name") : QString();
    }

    std::optional<QTemporaryDir> m_place;
    QString m_own;
    QString m_system;
};

VELMORA_EVENTS_TEST(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
