// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntries.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

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
        m_own = m_place->filePath(QStringLiteral("own/applications"));
        m_system = m_place->filePath(QStringLiteral("system/applications"));
        for (const char *name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES"})
            qunsetenv(name);
        qputenv("LANG", "C.UTF-8");
    }

    void theUsersEntryHidesTheSystemsOfTheSameId()
    {
        write(m_own + QStringLiteral("/a.desktop"), application("Mine"));
        write(m_system + QStringLiteral("/a.desktop"), application("Theirs"));
        QCOMPARE(nameOf(QStringLiteral("a")), QStringLiteral("Mine"));
    }

    void anEntryThatTheUserDeletedHidesTheSystems()
    {
        write(m_own + QStringLiteral("/a.desktop"), application("Mine", "Hidden=true\n"));
        write(m_system + QStringLiteral("/a.desktop"), application("Theirs", "StartupWMClass=A\n"));
        const DesktopEntries entries = read();
        QVERIFY(!entries.contains(QStringLiteral("a")));
        QVERIFY(!entries.claimant(QStringLiteral("A")));
    }

    void aSubfolderIsPartOfTheId()
    {
        write(m_system + QStringLiteral("/kde/deep/tool.desktop"), application("Tool"));
        QCOMPARE(nameOf(QStringLiteral("kde-deep-tool")), QStringLiteral("Tool"));
    }

    void aFolderLinkedIntoItselfComesToAnEnd()
    {
        write(m_system + QStringLiteral("/a.desktop"), application("A"));
        QVERIFY(QFile::link(m_system, m_system + QStringLiteral("/again")));
        QVERIFY(read().contains(QStringLiteral("a")));
    }

    void onlyApplicationsCount()
    {
        write(m_system + QStringLiteral("/link.desktop"),
              "[Desktop Entry]\nType=Link\nName=Link\nURL=https://example.org\n");
        write(m_system + QStringLiteral("/broken.desktop"), "\x00\xff no entry");
        write(m_system + QStringLiteral("/empty.desktop"), "");
        const DesktopEntries entries = read();
        for (const char *id : {"link", "broken", "empty"})
            QVERIFY(!entries.contains(QString::fromLatin1(id)));
    }

    void aShownEntryClaimsAWindowBeforeAHiddenOne()
    {
        write(m_system + QStringLiteral("/a.desktop"),
              application("Hidden", "StartupWMClass=Thing\nNoDisplay=true\n"));
        QCOMPARE(read().claimant(QStringLiteral("Thing")), QStringLiteral("a"));
        write(m_system + QStringLiteral("/b.desktop"),
              application("Shown", "StartupWMClass=Thing\n"));
        QCOMPARE(read().claimant(QStringLiteral("Thing")), QStringLiteral("b"));
    }

    void ofTwoClaimantsTheOneNamedSoIsTaken()
    {
        write(m_system + QStringLiteral("/a.desktop"), application("A", "StartupWMClass=thing\n"));
        write(m_system + QStringLiteral("/thing.desktop"),
              application("B", "StartupWMClass=thing\n"));
        QCOMPARE(read().claimant(QStringLiteral("thing")), QStringLiteral("thing"));
        QVERIFY(!read().claimant(QStringLiteral("Thing")));
    }

    void aNameResemblesAnIdOnlyWhenNoOtherIsMeant()
    {
        write(m_system + QStringLiteral("/org.kde.dolphin.desktop"), application("Dolphin"));
        QCOMPARE(read().resembling(QStringLiteral("Dolphin")), QStringLiteral("org.kde.dolphin"));
        write(m_system + QStringLiteral("/org.sea.Dolphin.desktop"), application("Sea"));
        QVERIFY(!read().resembling(QStringLiteral("Dolphin")));
    }

    void whatIsInstalledOrRemovedMakesTheEntriesOutdated()
    {
        write(m_system + QStringLiteral("/sub/a.desktop"), application("A"));
        // A folder that changed a moment ago is never trusted, so wait until one is.
        DesktopEntries entries;
        QTRY_VERIFY((entries = read(), !entries.isOutdated()));
        write(m_system + QStringLiteral("/sub/b.desktop"), application("B"));
        QVERIFY(entries.isOutdated());

        QTRY_VERIFY((entries = read(), !entries.isOutdated()));
        QVERIFY(QFile::remove(m_system + QStringLiteral("/sub/a.desktop")));
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
        write(m_system + QStringLiteral("/files.desktop"),
              application("Files", "Name[de]=Dateien\nName[de_CH]=Dateien CH\nName[pt_BR]="
                                   "Arquivos\nName[sr@latin]=Datoteke\nName[sr]=Датотеке\n"
                                   "GenericName[fr]=Gestionnaire\n"));
        qputenv(variable.constData(), locale);
        QCOMPARE(nameOf(QStringLiteral("files")), name);
    }

    void theListOfPreferredLanguagesComesFirst()
    {
        write(m_system + QStringLiteral("/files.desktop"),
              application("Files", "Name[de]=Dateien\nName[it]=File\n"));
        qputenv("LANG", "de_DE.UTF-8");
        qputenv("LANGUAGE", "fr:it:de");
        QCOMPARE(nameOf(QStringLiteral("files")), QStringLiteral("File"));
    }

    void valuesAreReadWithTheirEscapesAndSpaces()
    {
        write(m_system + QStringLiteral("/a.desktop"),
              "# comment\r\n\n[Desktop Entry]\r\nType = Application\r\nName = A\\sb\\\\c \r\n"
              "OnlyShowIn=GNOME;XFCE;\nNoDisplay=false\nHidden=perhaps\n"
              "[Desktop Action x]\nName=Other\n");
        const auto entry = read().entry(QStringLiteral("a"));
        QVERIFY(entry);
        QCOMPARE(entry->string("Name"), QStringLiteral("A b\\c"));
        QCOMPARE(entry->list("OnlyShowIn"),
                 (QStringList{QStringLiteral("GNOME"), QStringLiteral("XFCE")}));
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
