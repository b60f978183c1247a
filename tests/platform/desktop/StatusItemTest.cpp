// SPDX-License-Identifier: MIT
#include "StatusBars.h"
#include "tests/world/TestProgram.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

using StatusBars::Program;

namespace
{

constexpr int patience = 15'000;

/// The positions of the menu's entries, as shares of its height.
constexpr double first = 0.15;
constexpr double second = 0.48;
constexpr double third = 0.83;

constexpr int leftButton = 1;
constexpr int rightButton = 3;

/// One entry of a menu on the bus.
struct Entry {
    int id = 0;
    QVariantMap properties;
};

std::unique_ptr<Program> startItem()
{
    auto item = std::make_unique<Program>(QStringLiteral(STATUS_ITEM_PROCESS), QStringList());
    [&] { QCOMPARE(item->nextLine(), u"runs"_s); }();
    return item;
}

bool hasStatusNotifierWatcher()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(
        u"org.kde.StatusNotifierWatcher"_s);
}

QVariant busProperty(const QString &service, const QString &path, const QString &interface,
                     const QString &name)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call.setAutoStartService(false);
    call << interface << name;
    const QDBusReply<QDBusVariant> reply = QDBusConnection::sessionBus().call(call);
    return reply.isValid() ? reply.value().variant() : QVariant();
}

/// The bus address of the item registered with the panel.
QString registeredItem()
{
    const QString watcher = u"org.kde.StatusNotifierWatcher"_s;
    return busProperty(watcher, u"/StatusNotifierWatcher"_s, watcher,
                       u"RegisteredStatusNotifierItems"_s)
        .toStringList()
        .value(0)
        .section(u'/', 0, 0);
}

QString propertyOfItem(const QString &name)
{
    return busProperty(registeredItem(), u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s,
                       name)
        .toString();
}

QDBusMessage callMenu(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(registeredItem(), u"/MenuBar"_s,
                                                       u"com.canonical.dbusmenu"_s, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

/// The menu as another program reads it.
QList<Entry> menuOnBus()
{
    const QDBusMessage reply =
        callMenu(u"GetLayout"_s, {0, -1, QVariant::fromValue(QStringList())});
    QList<Entry> entries;
    if (reply.arguments().size() < 2)
        return entries;
    const auto layout = reply.arguments().at(1).value<QDBusArgument>();
    int rootId = 0;
    QVariantMap rootProperties;
    QVariantList children;
    layout.beginStructure();
    layout >> rootId >> rootProperties >> children;
    layout.endStructure();
    for (const QVariant &child : children) {
        const auto argument = child.value<QDBusArgument>();
        Entry entry;
        QVariantList below;
        argument.beginStructure();
        argument >> entry.id >> entry.properties >> below;
        argument.endStructure();
        entries.append(entry);
    }
    return entries;
}

QStringList describe(const QList<Entry> &entries)
{
    QStringList lines;
    for (const Entry &entry : entries) {
        const bool enabled = entry.properties.value(u"enabled"_s, true).toBool();
        const QString label = entry.properties.value(u"label"_s).toString();
        const QString type = entry.properties.value(u"type"_s).toString();
        lines.append((type.isEmpty() || type == u"standard" ? label : type) +
                     (enabled ? QString() : u" (disabled)"_s));
    }
    return lines;
}

} // namespace

class StatusItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        QTRY_VERIFY_WITH_TIMEOUT(!hasStatusNotifierWatcher(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!StatusBars::itemOnScreen(), patience);
    }

    void theItemAppearsInAPanelThatIsThere()
    {
        const auto panel = StatusBars::startPanel();
        QTRY_VERIFY_WITH_TIMEOUT(hasStatusNotifierWatcher(), patience);
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        QVERIFY(!registeredItem().isEmpty());
    }

    void theItemAppearsInAPanelThatComesLater()
    {
        const auto item = startItem();
        QVERIFY(!StatusBars::itemOnScreen());
        const auto panel = StatusBars::startPanel();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!registeredItem().isEmpty(), patience);
    }

    void theItemComesBackWithThePanel()
    {
        auto panel = StatusBars::startPanel();
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        panel.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!StatusBars::itemOnScreen(), patience);
        panel = StatusBars::startPanel();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        QCOMPARE(chosen(*item, leftButton, first), u"triggered First"_s);
    }

    void anyClickOpensTheMenuAndEachEntryWorks_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("left") << leftButton;
        QTest::newRow("right") << rightButton;
    }

    void anyClickOpensTheMenuAndEachEntryWorks()
    {
        QFETCH(int, button);
        const auto panel = StatusBars::startPanel();
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        QCOMPARE(chosen(*item, button, first), u"triggered First"_s);
        QCOMPARE(chosen(*item, button, third), u"triggered Third"_s);
        // By now it is enabled and has another name.
        QCOMPARE(chosen(*item, button, second), u"triggered Second again"_s);
    }

    void theMenuClosesWhenTheUserClicksElsewhere()
    {
        const auto panel = StatusBars::startPanel();
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        const QRect menu = StatusBars::openMenu(leftButton);
        QVERIFY(!menu.isEmpty());
        StatusBars::click(menu.bottomRight() + QPoint(200, 200), leftButton);
        QTRY_VERIFY(!StatusBars::isMenuOpen());
        QCOMPARE(chosen(*item, leftButton, first), u"triggered First"_s);
    }

    void titlesAndStatesAreReadOverTheBus()
    {
        const auto panel = StatusBars::startPanel();
        const auto item = startItem();
        const QStringList atFirst = {u"First"_s, u"Second (disabled)"_s, u"separator"_s,
                                     u"Third"_s};
        QTRY_COMPARE_WITH_TIMEOUT(describe(menuOnBus()), atFirst, patience);

        const int idOfThird = menuOnBus().at(3).id;
        callMenu(u"Event"_s,
                 {idOfThird, u"clicked"_s, QVariant::fromValue(QDBusVariant(QString())), uint(0)});
        QCOMPARE(item->nextLine(), u"triggered Third"_s);
        const QStringList afterwards = {u"First"_s, u"Second again"_s, u"separator"_s, u"Third"_s};
        QTRY_COMPARE_WITH_TIMEOUT(describe(menuOnBus()), afterwards, patience);
    }

    void anInstalledSymbolIsGivenByItsNameWhereTheBarColoursIt_data()
    {
        QTest::addColumn<QByteArray>("runningDesktop");
        QTest::addColumn<QString>("given");
        const QString name = u"app.velmora.Velmora-symbolic"_s;
        QTest::newRow("Xfce") << QByteArray("XFCE") << name;
        QTest::newRow("Ubuntu") << QByteArray("ubuntu:GNOME") << name;
        QTest::newRow("LXQt") << QByteArray("LXQt") << QString();
        QTest::newRow("unknown") << QByteArray() << QString();
    }

    void anInstalledSymbolIsGivenByItsNameWhereTheBarColoursIt()
    {
        QFETCH(const QByteArray, runningDesktop);
        QFETCH(const QString, given);
        const auto forget = qScopeGuard([] { qunsetenv("XDG_CURRENT_DESKTOP"); });
        qputenv("XDG_CURRENT_DESKTOP", runningDesktop);
        const auto panel = StatusBars::startPanel();
        auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(!registeredItem().isEmpty(), patience);
        QCOMPARE(propertyOfItem(u"IconName"_s), QString());
        item.reset();
        QTRY_VERIFY_WITH_TIMEOUT(registeredItem().isEmpty(), patience);

        const QString folder =
            qEnvironmentVariable("XDG_DATA_HOME") + u"/icons/hicolor/symbolic/apps"_s;
        const QString name = u"app.velmora.Velmora-symbolic"_s;
        const QString installed = folder + u'/' + name + u".svg"_s;
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::copy(QStringLiteral(SYMBOLIC_ICON), installed));
        item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(!registeredItem().isEmpty(), patience);
        QCOMPARE(propertyOfItem(u"IconName"_s), given);
        QVERIFY(QFile::remove(installed));
    }

    void theItemIsEmbeddedInAnOlderTray()
    {
        const auto tray = StatusBars::startOlderTray();
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        for (const int button : {leftButton, rightButton}) {
            QCOMPARE(chosen(*item, button, first), u"triggered First"_s);
            QCOMPARE(chosen(*item, button, third), u"triggered Third"_s);
        }
    }

    void anEmbeddedItemBearsItsName()
    {
        const auto tray = StatusBars::startOlderTray();
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        const auto isNamed = [] {
            QProcess search;
            search.start(u"xdotool"_s, {u"search"_s, u"--name"_s, u"^Velmora$"_s});
            search.waitForFinished();
            return !search.readAllStandardOutput().trimmed().isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(isNamed(), patience);
    }

    void theItemIsEmbeddedInAnOlderTrayThatComesLaterAndAgain()
    {
        const auto item = startItem();
        auto tray = StatusBars::startOlderTray();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        tray.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!StatusBars::itemOnScreen(), patience);
        tray = StatusBars::startOlderTray();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        QCOMPARE(chosen(*item, leftButton, first), u"triggered First"_s);
    }

    void withoutASessionBusTheOlderTrayIsUsed()
    {
        const QByteArray bus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
        const auto item = startItem();
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus);
        const auto tray = StatusBars::startOlderTray();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
    }

private:
    /// What the program prints when the user clicks this entry.
    static QString chosen(Program &item, int button, double entry)
    {
        const QRect menu = StatusBars::openMenu(button);
        StatusBars::clickMenu(menu, entry);
        return item.nextLine();
    }
};

VELMORA_WIDGETS_TEST(StatusItemTest)
#include "StatusItemTest.moc"
