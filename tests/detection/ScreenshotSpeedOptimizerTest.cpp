// SPDX-License-Identifier: MIT
#include "detection/ScreenshotSpeedOptimizer.h"

#include "core/VelmoraLog.h"
#include "tests/detection/RememberedPreferences.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace
{

QStringList shell(const char *script, const QString &argument = {})
{
    return {QStringLiteral("-c"), QString::fromUtf8(script), argument};
}

/// What this test, and anything else that is running, has logged since this object was created.
class LogSince
{
public:
    LogSince() : m_log(QStringLiteral("/tmp/Velmora.log")), m_begin(m_log.size()) {}

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

    void disablingTheThumbnailIsLoggedStoredAndToldByCommandsEachTime()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(QStringLiteral("told"));
        RememberedPreferences preferences;
        preferences.commands = {
            {QStringLiteral("/bin/sh"), shell("printf 1 >> \"$0\"; exit 1", marker)},
            {QStringLiteral("/bin/sh"), shell("printf 2 >> \"$0\"", marker)}};
        LogSince log;
        ScreenshotSpeedOptimizer::disableAppleThumbnail(preferences);
        ScreenshotSpeedOptimizer::disableAppleThumbnail(preferences);
        QVERIFY(ScreenshotSpeedOptimizer::isAppleThumbnailDisabled(preferences));
        QFile told(marker);
        QVERIFY(told.open(QIODevice::ReadOnly));
        QCOMPARE(told.readAll(), QByteArray("1212"));
        QVERIFY(log.text().count(" disable Apple screenshot thumbnail\n") >= 2);
    }

    void aCommandIsWaitedFor()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(QStringLiteral("ended"));
        ScreenshotSpeedOptimizer::run(QStringLiteral("/bin/sh"),
                                      shell("sleep 0.2; touch \"$0\"", marker));
        QVERIFY(QFile::exists(marker));
    }

    void whatACommandPrintsOrAsksGoesNowhere()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(QStringLiteral("ended"));
        // More output than a pipe holds, and an input that is at its end.
        ScreenshotSpeedOptimizer::run(
            QStringLiteral("/bin/sh"),
            shell("head -c 1000000 /dev/zero; head -c 1000000 /dev/zero >&2; cat; touch \"$0\"",
                  marker));
        QVERIFY(QFile::exists(marker));
    }

    void argumentsAreGivenAsTheyStand()
    {
        const QTemporaryDir directory;
        const QString marker = directory.filePath(QStringLiteral("a \"b\" $c\\"));
        ScreenshotSpeedOptimizer::run(QStringLiteral("/usr/bin/touch"), {marker});
        QVERIFY(QFile::exists(marker));
    }

    void aCommandThatCantBeStartedIsLogged()
    {
        LogSince log;
        ScreenshotSpeedOptimizer::run(
            QStringLiteral("/nonexistent/tool"),
            {QStringLiteral("write"), QStringLiteral("a b"), QStringLiteral("false")});
        QVERIFY(log.text().contains(" command failed /nonexistent/tool write a b false\n"));
    }

    void aCommandThatFailsIsNotLogged()
    {
        LogSince log;
        ScreenshotSpeedOptimizer::run(QStringLiteral("/bin/false"), {QStringLiteral("unlogged")});
        ScreenshotSpeedOptimizer::run(QStringLiteral("/bin/sh"), shell("kill -9 $$"));
        const QByteArray text = log.text();
        QVERIFY(!text.contains("command failed /bin/false"));
        QVERIFY(!text.contains("command failed /bin/sh"));
    }
};

VELMORA_EVENTS_TEST(ScreenshotSpeedOptimizerTest)
#include "ScreenshotSpeedOptimizerTest.moc"
