// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/Translations.h"

#include "platform/ScreenshotPreferences.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>

using namespace Qt::StringLiterals;

namespace
{

QByteArray number(quint32 value)
{
    return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
}

/// A message catalogue as GNU gettext reads it, with one text.
QByteArray catalogue(const QByteArray &text, const QByteArray &translation)
{
    // An empty text carries the encoding. Texts are sorted, and each ends with a zero byte.
    const QByteArray header = "Content-Type: text/plain; charset=UTF-8\n";
    const QList<QByteArray> texts = {QByteArray(), text};
    const QList<QByteArray> translations = {header, translation};
    constexpr quint32 tables = 28;
    constexpr quint32 tableSize = 2 * 8;
    QByteArray result = number(0x950412de) + number(0) + number(2) + number(tables) +
                        number(tables + tableSize) + number(0) + number(tables + 2 * tableSize);
    QByteArray strings;
    for (const QByteArray &string : texts + translations) {
        result += number(static_cast<quint32>(string.size())) +
                  number(tables + 2 * tableSize + static_cast<quint32>(strings.size()));
        strings += string + '\0';
    }
    return result + strings;
}

bool install(const QString &dataFolder, const QByteArray &content)
{
    const QString folder = dataFolder + u"/locale/de/LC_MESSAGES"_s;
    QFile file(folder + u"/gnome-shell.mo"_s);
    return QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

} // namespace

class TranslationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // A German session, on a machine that may not have the locale.
        const QString locale = m_directory.filePath(u"de_DE.UTF-8"_s);
        QProcess localedef;
        localedef.start(u"localedef"_s, {u"-i"_s, u"de_DE"_s, u"-f"_s, u"UTF-8"_s, locale});
        QVERIFY2(localedef.waitForFinished() && QDir(locale).exists(),
                 "the package locales is needed");
        qputenv("LOCPATH", QFile::encodeName(m_directory.path()));
        qputenv("LC_ALL", "de_DE.UTF-8");
        QVERIFY(std::setlocale(LC_ALL, ""));
        const QString data = m_directory.filePath(u"data"_s);
        QVERIFY(QDir().mkpath(data + u"/empty/locale"_s));
        QVERIFY(install(data + u"/full"_s, catalogue("Screenshots", "Bildschirmfotos mit ß")));
        qputenv("XDG_DATA_DIRS",
                QFile::encodeName(data + u"/none:"_s + data + u"/empty:"_s + data + u"/full"_s));
    }

    void anotherProgramsTextIsTranslated()
    {
        QCOMPARE(Translations::translated("gnome-shell", "Screenshots"),
                 u"Bildschirmfotos mit ß"_s);
    }

    void aTextWithoutATranslationStays()
    {
        QCOMPARE(Translations::translated("gnome-shell", "Something"), u"Something"_s);
        QCOMPARE(Translations::translated("no-such-program", "Screenshots"), u"Screenshots"_s);
    }

    void gnomesFolderHasItsNameInTheLanguageOfTheSession()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        QCOMPARE(makeScreenshotPreferences()->desktopToolFolder(),
                 QString(QDir::homePath() + u"/Bildschirmfotos mit ß"_s));
    }

private:
    QTemporaryDir m_directory;
};

VELMORA_EVENTS_TEST(TranslationsTest)
#include "TranslationsTest.moc"
