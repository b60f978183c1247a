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
#include <QTest>

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
    [&] { QCOMPARE(item->nextLine(), QStringLiteral("runs")); }();
    return item;
}

bool hasStatusNotifierWatcher()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(
        QStringLiteral("org.kde.StatusNotifierWatcher"));
}

QVariant busProperty(const QString &service, const QString &path, const QString &interface,
                     const QString &name)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setAutoStartService(false);
    call << interface << name;
    const QDBusReply<QDBusVariant> reply = QDBusConnection::sessionBus().call(call);
    return reply.isValid() ? reply.value().variant() : QVariant();
}

/// The bus address of the item registered with the panel.
QString registeredItem()
{
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    return busProperty(watcher, QStringLiteral("/StatusNotifierWatcher"), watcher,
                       QStringLiteral("RegisteredStatusNotifierItems"))
        .toStringList()
        .value(0)
        .section(u'/', 0, 0);
}

QString propertyOfItem(const QString &name)
{
    return busProperty(registeredItem(), QStringLiteral("/StatusNotifierItem"),
                       QStringLiteral("org.kde.StatusNotifierItem"), name)
        .toString();
}

QDBusMessage callMenu(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(registeredItem(), QStringLiteral("/MenuBar"),
                                       QStringLiteral("com.canonical.dbusmenu"), method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

/// The menu as another program reads it.
QList<Entry> menuOnBus()
{
    const QDBusMessage reply =
        callMenu(QStringLiteral("GetLayout"), {0, -1, QVariant::fromValue(QStringList())});
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
        const bool enabled = entry.properties.value(QStringLiteral("enabled"), true).toBool();
        const QString label = entry.properties.value(QStringLiteral("label")).toString();
        const QString type = entry.properties.value(QStringLiteral("type")).toString();
        lines.append((type.isEmpty() || type == u"standard" ? label : type) +
                     (enabled ? QString() : QStringLiteral(" (disabled)")));
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
        QCOMPARE(chosen(*item, leftButton, first), QStringLiteral("triggered First"));
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
        QCOMPARE(chosen(*item, button, first), QStringLiteral("triggered First"));
        QCOMPARE(chosen(*item, button, third), QStringLiteral("triggered Third"));
        // By now it is enabled and has another name.
        QCOMPARE(chosen(*item, button, second), QStringLiteral("triggered Second again"));
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
        QCOMPARE(chosen(*item, leftButton, first), QStringLiteral("triggered First"));
    }

    void titlesAndStatesAreReadOverTheBus()
    {
        const auto panel = StatusBars::startPanel();
        const auto item = startItem();
        const QStringList atFirst = {QStringLiteral("First"), QStringLiteral("Second (disabled)"),
                                     QStringLiteral("separator"), QStringLiteral("Third")};
        QTRY_COMPARE_WITH_TIMEOUT(describe(menuOnBus()), atFirst, patience);

        const int idOfThird = menuOnBus().at(3).id;
        callMenu(QStringLiteral("Event"), {idOfThird, QStringLiteral("clicked"),
                                           QVariant::fromValue(QDBusVariant(QString())), uint(0)});
        QCOMPARE(item->nextLine(), QStringLiteral("triggered Third"));
        const QStringList afterwards = {QStringLiteral("First"), QStringLiteral("Second again"),
                                        QStringLiteral("separator"), QStringLiteral("Third")};
        QTRY_COMPARE_WITH_TIMEOUT(describe(menuOnBus()), afterwards, patience);
    }

    void anInstalledSymbolIsGivenByItsName()
    {
        const auto panel = StatusBars::startPanel();
        auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(!registeredItem().isEmpty(), patience);
        QCOMPARE(propertyOfItem(QStringLiteral("IconName")), QString());
        item.reset();
        QTRY_VERIFY_WITH_TIMEOUT(registeredItem().isEmpty(), patience);

        const QString folder =
            qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/icons/hicolor/symbolic/apps");
        const QString name = QStringLiteral("app.velmora.Velmora-symbolic");
        const QString installed = folder + u'/' + name + QStringLiteral(".svg");
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::copy(QStringLiteral(SYMBOLIC_ICON), installed));
        item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(!registeredItem().isEmpty(), patience);
        QCOMPARE(propertyOfItem(QStringLiteral("IconName")), name);
        QVERIFY(QFile::remove(installed));
    }

    void theItemIsEmbeddedInAnOlderTray()
    {
        const auto tray = StatusBars::startOlderTray();
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        for (const int button : {leftButton, rightButton}) {
            QCOMPARE(chosen(*item, button, first), QStringLiteral("triggered First"));
            QCOMPARE(chosen(*item, button, third), QStringLiteral("triggered Third"));
        }
    }

    void anEmbeddedItemBearsItsName()
    {
        const auto tray = StatusBars::startOlderTray();
        const auto item = startItem();
        QTRY_VERIFY_WITH_TIMEOUT(StatusBars::itemOnScreen(), patience);
        const auto isNamed = [] {
            QProcess search;
            search.start(
                QStringLiteral("xdotool"),
                {QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("^Velmora$")});
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
        QCOMPARE(chosen(*item, leftButton, first), QStringLiteral("triggered First"));
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
