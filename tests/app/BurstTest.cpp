// SPDX-License-Identifier: MIT
#include "tests/app/AppRig.h"
#include "tests/recognition/DrawnPage.h"
#include "tests/world/TestProgram.h"

#include <QAbstractEventDispatcher>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <ctime>

using namespace Qt::StringLiterals;

namespace
{

using Duration = std::chrono::duration<double, std::milli>;
using namespace std::chrono_literals;

constexpr int screenshots = 10;

/// One frame of a display at 60 Hz. Sanitizers make everything several times as slow.
constexpr Duration longestTurn =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    16ms * 20;
#else
    16ms;
#endif

/// The processor time of the event loop's turns in this thread; delays by other threads and
/// programs do not count.
class Turns : public QObject
{
public:
    Turns()
    {
        const QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance();
        // At the end of a turn, dispatchers emit one or the other.
        connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &Turns::end);
        connect(loop, &QAbstractEventDispatcher::awake, this, &Turns::end);
    }

    void begin()
    {
        m_last = used();
        m_longest = {};
        m_count = 0;
    }

    Duration longest() const { return m_longest; }
    int count() const { return m_count; }

private:
    static Duration used()
    {
        ::timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    void end()
    {
        const Duration now = used();
        m_longest = std::max(m_longest, now - m_last);
        m_last = now;
        ++m_count;
    }

    Duration m_last{};
    Duration m_longest{};
    int m_count = 0;
};

/// A full screen of text with a heading of its own.
QImage page(const QString &heading)
{
    DrawnPage page(QSize(1920, 1080));
    page.font(u"DejaVu Sans"_s, 30).text(QPoint(60, 80), heading);
    page.font(u"DejaVu Sans"_s, 15);
    for (int y = 140; y < 1040; y += 26)
        page.text(QPoint(60, y), u"The river was quiet and the boats lay still"_s);
    return page.image();
}

QStringList namesInTray()
{
    QStringList names;
    for (const ScreenshotRowView *row : AppRig::rows()) {
        if (row->isVisible())
            names.append(row->findChild<QLineEdit *>()->text());
    }
    return names;
}

/// Whether the log says that our own folder is watched; other tests write to it, too.
bool isWatching(const LogTail &log)
{
    const QStringList messages = log.messagesWith(u"watch"_s);
    const qsizetype own = messages.indexOf(u"watching "_s + AppRig::folder());
    return own >= 0 && messages.indexOf(u"watcher start"_s, own) >= 0;
}

} // namespace

class BurstTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tenScreenshotsAtOnceNeverHoldUpTheTray()
    {
        Platform platform = nativePlatform();
        QTemporaryDir elsewhere(AppRig::folder() + u"/../XXXXXX"_s);
        const QStringList subjects{u"garden"_s,  u"kitchen"_s, u"harbour"_s, u"mountain"_s,
                                   u"station"_s, u"theatre"_s, u"airport"_s, u"library"_s,
                                   u"orchard"_s, u"museum"_s};
        QCOMPARE(subjects.size(), screenshots);
        for (int index = 0; index < screenshots; ++index)
            QVERIFY(page(u"Minutes about "_s + subjects[index])
                        .save(elsewhere.filePath(u"%1.png"_s.arg(index))));

        VelmoraApp app(platform);
        const LogTail log;
        Turns turns;
        app.applicationDidFinishLaunching();
        QTRY_VERIFY(isWatching(log));
        QTRY_VERIFY(AppRig::windowTitled(u"Velmora"_s));
        // The first row creates fonts, symbols and a window that all others use.
        QVERIFY(page(u"Minutes about palace"_s).save(AppRig::folder() + u"/first.png"_s));
        QTRY_VERIFY(namesInTray().join(u' ').contains(u"palace"_s));

        turns.begin();
        for (int index = 0; index < screenshots; ++index) {
            const QString name = u"%1.png"_s.arg(index);
            QVERIFY(QFile::rename(elsewhere.filePath(name), AppRig::folder() + u'/' + name));
        }
        // The tray keeps three rows; each of them ends up with the name of one of the ten.
        const auto areNamed = [&] {
            const QStringList names = namesInTray();
            return names.size() == 3 &&
                   std::all_of(names.begin(), names.end(), [&](const QString &name) {
                       return std::any_of(
                           subjects.begin(), subjects.end(),
                           [&](const QString &subject) { return name.contains(subject); });
                   });
        };
        QTRY_VERIFY_WITH_TIMEOUT(areNamed(), 60'000);
        qInfo() << "turns" << turns.count() << "the longest in ms" << turns.longest().count();
        QVERIFY(turns.count() > screenshots);
        QVERIFY2(turns.longest() <= longestTurn,
                 qPrintable(u"%1 ms"_s.arg(turns.longest().count())));
    }
};

VELMORA_WIDGETS_TEST(BurstTest)

#include "BurstTest.moc"
