// SPDX-License-Identifier: MIT
#include "platform/linux/kwin/KWinFocusSource.h"
#include "tests/world/TestProgram.h"

#include <QDBusConnection>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// KWin's scripting interface on the bus; it runs no scripts.
class FakeKWin : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Scripting")
public:
    FakeKWin()
    {
        m_bus.registerObject(u"/Scripting"_s, this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(u"org.kde.KWin"_s);
    }
    ~FakeKWin() override
    {
        m_bus.unregisterService(u"org.kde.KWin"_s);
        m_bus.unregisterObject(u"/Scripting"_s);
    }

    QStringList calls;
    QByteArray script;

    /// Reports the window with the focus, as the script does.
    void tell(const QStringList &window) const
    {
        const QRegularExpression form(u"callDBus\\(\"([^\"]*)\", \"([^\"]*)\", \"([^\"]*)\""_s);
        const QRegularExpressionMatch match = form.match(QString::fromUtf8(script));
        QDBusMessage message = QDBusMessage::createMethodCall(match.captured(1), match.captured(2),
                                                              match.captured(3), u"Focus"_s);
        for (const QString &property : window)
            message << property;
        m_bus.send(message);
    }

public Q_SLOTS:
    bool unloadScript(const QString &name)
    {
        calls << u"unload "_s + name;
        return false;
    }
    int loadScript(const QString &path, const QString &name)
    {
        calls << u"load "_s + name;
        QFile file(path);
        if (file.open(QFile::ReadOnly))
            script = file.readAll();
        return 7;
    }

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"kwin"_s);
};

const QString load = u"load app.velmora.Velmora.focus"_s;
const QString unload = u"unload app.velmora.Velmora.focus"_s;

} // namespace

class KWinFocusSourceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kwinIsFoundWhereItIs()
    {
        std::optional<bool> found;
        KWinFocusSource::find(this, [&found](bool isThere) { found = isThere; });
        QTRY_COMPARE(found, false);
        const FakeKWin kwin;
        KWinFocusSource::find(this, [&found](bool isThere) { found = isThere; });
        QTRY_COMPARE(found, true);
    }

    void theScriptTellsOfTheWindow()
    {
        const FakeKWin kwin;
        KWinFocusSource source;
        QList<std::optional<FocusedWindow>> told;
        connect(&source, &FocusSource::focusChanged, this,
                [&told](const auto &window) { told.append(window); });
        QTRY_COMPARE(kwin.calls, (QStringList{unload, load}));
        kwin.tell({u"kate"_s, u"Kate"_s, u"org.kde.kate"_s, u"4711"_s, u"window"_s});
        QTRY_COMPARE(told.size(), 1);
        QCOMPARE(told[0]->instance, u"kate"_s);
        QCOMPARE(told[0]->windowClass, u"Kate"_s);
        QCOMPARE(told[0]->notedIds, QStringList{u"org.kde.kate"_s});
        QCOMPARE(told[0]->processId, 4711);
        QVERIFY(told[0]->isOrdinary);
        kwin.tell({u"plasmashell"_s, u"plasmashell"_s, {}, u"1"_s, u"shell"_s});
        kwin.tell({{}, {}, {}, {}, u"none"_s});
        QTRY_COMPARE(told.size(), 3);
        QVERIFY(!told[1]->isOrdinary);
        QVERIFY(!told[2]);
    }

    void theScriptIsTakenBackAtTheEnd()
    {
        const FakeKWin kwin;
        {
            const KWinFocusSource source;
            QTRY_COMPARE(kwin.calls.size(), 2);
        }
        QTRY_COMPARE(kwin.calls, (QStringList{unload, load, unload}));
    }

    void aKWinThatComesAgainIsGivenTheScriptAgain()
    {
        auto kwin = std::make_unique<FakeKWin>();
        const KWinFocusSource source;
        QTRY_COMPARE(kwin->calls.size(), 2);
        kwin.reset();
        kwin = std::make_unique<FakeKWin>();
        QTRY_COMPARE(kwin->calls, (QStringList{unload, load}));
    }
};

VELMORA_EVENTS_TEST(KWinFocusSourceTest)
#include "KWinFocusSourceTest.moc"
