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
    const QString folder = dataFolder + QStringLiteral("/locale/de/LC_MESSAGES");
    QFile file(folder + QStringLiteral("/gnome-shell.mo"));
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
        const QString locale = m_directory.filePath(QStringLiteral("de_DE.UTF-8"));
        QProcess localedef;
        localedef.start(QStringLiteral("localedef"),
                        {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                         QStringLiteral("UTF-8"), locale});
        QVERIFY2(localedef.waitForFinished() && QDir(locale).exists(),
                 "the package locales is needed");
        qputenv("LOCPATH", QFile::encodeName(m_directory.path()));
        qputenv("LC_ALL", "de_DE.UTF-8");
        QVERIFY(std::setlocale(LC_ALL, ""));
        const QString data = m_directory.filePath(QStringLiteral("data"));
        QVERIFY(QDir().mkpath(data + QStringLiteral("/empty/locale")));
        QVERIFY(install(data + QStringLiteral("/full"),
                        catalogue("Screenshots", "Bildschirmfotos mit ß")));
        qputenv("XDG_DATA_DIRS",
                QFile::encodeName(data + QStringLiteral("/none:") + data +
                                  QStringLiteral("/empty:") + data + QStringLiteral("/full")));
    }

    void anotherProgramsTextIsTranslated()
    {
        QCOMPARE(Translations::translated("gnome-shell", "Screenshots"),
                 QStringLiteral("Bildschirmfotos mit ß"));
    }

    void aTextWithoutATranslationStays()
    {
        QCOMPARE(Translations::translated("gnome-shell", "Something"), QStringLiteral("Something"));
        QCOMPARE(Translations::translated("no-such-program", "Screenshots"),
                 QStringLiteral("Screenshots"));
    }

    void gnomesFolderHasItsNameInTheLanguageOfTheSession()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        QCOMPARE(makeScreenshotPreferences()->desktopToolFolder(),
                 QString(QDir::homePath() + QStringLiteral("/Bildschirmfotos mit ß")));
    }

private:
    QTemporaryDir m_directory;
};

VELMORA_EVENTS_TEST(TranslationsTest)
#include "TranslationsTest.moc"
