// SPDX-License-Identifier: MIT
#include "detection/ScreenshotSpeedOptimizer.h"

#include "core/VelmoraLog.h"
#include "tests/detection/RememberedPreferences.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QStringList shell(const char *script, const QString &argument = {})
{
    return {u"-c"_s, QString::fromUtf8(script), argument};
}

/// What this test, and anything else that is running, has logged since this object was created.
class LogSince
{
public:
    LogSince() : m_log(u"/tmp/Velmora.log"_s), m_begin(m_log.size()) {}

    QByteArray text()
    {
        VelmoraLog::waitUntilWritten(std::chrono::seconds(10));
        if (!m_log.open(QIODevice::ReadOnly) || !m_log.seek(m_begin))
            return {};
        return m_log.readAll();
    }

private:
    QFile m_log;
    qint64 m_begin;
};

} // namespace

class ScreenshotSpeedOptimizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theThumbnailIsDisabledOnlyWhereThatIsStored()
    {
        RememberedPreferences preferences;
        QVERIFY(!ScreenshotSpeedOptimizer::isAppleThumbnailDisabled(preferences));
        preferences.storedThumbnail = true;
        QVERIFY(!ScreenshotSpeedOptimizer::isAppleThumbnailDisabled(preferences));
        preferences.storedThumbnail = false;
        QVERIFY(ScreenshotSpeedOptimizer::isAppleThumbnailDisabled(preferences));
    }

    void disablingTheThumbnailIsLoggedStoredAndSetByCommandsEachTime()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(u"told"_s);
        RememberedPreferences preferences;
        preferences.commands = {{u"/bin/sh"_s, shell("printf 1 >> \"$0\"; exit 1", marker)},
                                {u"/bin/sh"_s, shell("printf 2 >> \"$0\"", marker)}};
        LogSince log;
        ScreenshotSpeedOptimizer::disableAppleThumbnail(preferences);
        ScreenshotSpeedOptimizer::disableAppleThumbnail(preferences);
        QVERIFY(ScreenshotSpeedOptimizer::isAppleThumbnailDisabled(preferences));
        QFile seen(marker);
        QVERIFY(seen.open(QIODevice::ReadOnly));
        QCOMPARE(seen.readAll(), QByteArray("1212"));
        QVERIFY(log.text().count(" disable Apple screenshot thumbnail\n") >= 2);
    }

    void aCommandIsWaitedFor()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(u"ended"_s);
        ScreenshotSpeedOptimizer::run(u"/bin/sh"_s, shell("sleep 0.2; touch \"$0\"", marker));
        QVERIFY(QFile::exists(marker));
    }

    void whatACommandPrintsOrAsksGoesNowhere()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(u"ended"_s);
        // More output than a pipe holds, and an input that is at its end.
        ScreenshotSpeedOptimizer::run(
            u"/bin/sh"_s,
            shell("head -c 1000000 /dev/zero; head -c 1000000 /dev/zero >&2; cat; touch \"$0\"",
                  marker));
        QVERIFY(QFile::exists(marker));
    }

    void argumentsAreGivenAsTheyStand()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(u"a \"b\" $c\\"_s);
        ScreenshotSpeedOptimizer::run(u"/usr/bin/touch"_s, {marker});
        QVERIFY(QFile::exists(marker));
    }

    void aCommandThatCantBeStartedIsLogged()
    {
        LogSince log;
        ScreenshotSpeedOptimizer::run(u"/nonexistent/tool"_s, {u"write"_s, u"a b"_s, u"false"_s});
        QVERIFY(log.text().contains(" command failed /nonexistent/tool write a b false\n"));
    }

    void aCommandThatFailsIsNotLogged()
    {
        LogSince log;
        ScreenshotSpeedOptimizer::run(u"/bin/false"_s, {u"unlogged"_s});
        ScreenshotSpeedOptimizer::run(u"/bin/sh"_s, shell("kill -9 $$"));
        const QByteArray text = log.text();
        QVERIFY(!text.contains("command failed /bin/false"));
        QVERIFY(!text.contains("command failed /bin/sh"));
    }
};

VELMORA_EVENTS_TEST(ScreenshotSpeedOptimizerTest)
#include "ScreenshotSpeedOptimizerTest.moc"
