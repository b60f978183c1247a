// SPDX-License-Identifier: MIT
#include "platform/DesktopSearch.h"
#include "platform/linux/desktop-search/BusImage.h"
#include "platform/linux/desktop-search/KdeRunner.h"
#include "tests/world/TestProgram.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20'000;

const QUrl first = QUrl::fromLocalFile(u"/home/anna/Pictures/harvest festival.png"_s);
const QUrl second = QUrl::fromLocalFile(u"/home/anna/Pictures/ferry.png"_s);

/// Acts as a desktop: another connection to the same bus.
class Desktop
{
public:
    Desktop() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"desktop"_s)) {}
    ~Desktop() { QDBusConnection::disconnectFromBus(u"desktop"_s); }

    QDBusMessage askGnome(const QString &method, const QVariantList &arguments)
    {
        return ask(u"/app/velmora/Velmora/SearchProvider"_s, u"org.gnome.Shell.SearchProvider2"_s,
                   method, arguments);
    }
    QDBusMessage askKde(const QString &method, const QVariantList &arguments)
    {
        return ask(u"/app/velmora/Velmora/Runner"_s, u"org.kde.krunner1"_s, method, arguments);
    }
    bool seesProgram()
    {
        return m_bus.interface()->isServiceRegistered(u"app.velmora.Velmora.Search"_s);
    }

private:
    QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                     const QVariantList &arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(u"app.velmora.Velmora.Search"_s, path,
                                                           interface, method);
        call.setArguments(arguments);
        // The program answers from the same event loop.
        QDBusPendingCallWatcher watcher(m_bus.asyncCall(call, patience));
        QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
        if (!watcher.isFinished())
            finished.wait(patience);
        return watcher.reply();
    }

    QDBusConnection m_bus;
};

} // namespace

/// The service on a private session bus, queried the way GNOME Shell and KRunner do it.
class DesktopSearchTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<DesktopSearch> m_search;
    std::unique_ptr<Desktop> m_desktop;
    QString m_words;
    bool m_hasPictures = true;

    DesktopSearch::Source source()
    {
        DesktopSearch::Source source;
        source.find = [this](const QString &words, const DesktopSearch::Source::Results &answer) {
            m_words = words;
            answer(words.startsWith(u"har"_s) ? QList<DesktopSearch::Result>(
                                                    {{first, u"Harvest on Friday"_s}, {second, {}}})
                                              : QList<DesktopSearch::Result>());
        };
        source.thumbnail = [this](const QUrl &, QSize bounds,
                                  const DesktopSearch::Source::Picture &answer) {
            if (!m_hasPictures)
                return;
            QImage picture(bounds.width(), bounds.height() / 2, QImage::Format_RGB32);
            picture.fill(QColor(10, 20, 30));
            answer(picture);
        };
        return source;
    }
    QStringList found(const QString &word)
    {
        return m_desktop->askGnome(u"GetInitialResultSet"_s, {QStringList{word}})
            .arguments()
            .value(0)
            .toStringList();
    }

private Q_SLOTS:
    void init()
    {
        m_hasPictures = true;
        m_search = makeDesktopSearch();
        m_desktop = std::make_unique<Desktop>();
        m_search->offer(source());
    }

    void gnomeFindsAndDescribesWithThumbnailNameAndLine()
    {
        const QDBusMessage ids =
            m_desktop->askGnome(u"GetInitialResultSet"_s, {QStringList{u"harvest"_s, u"fri"_s}});
        QCOMPARE(ids.signature(), u"as"_s);
        QCOMPARE(m_words, u"harvest fri"_s);
        const QStringList identifiers = ids.arguments().value(0).toStringList();
        QCOMPARE(identifiers.size(), 2);
        const QDBusMessage metas = m_desktop->askGnome(u"GetResultMetas"_s, {identifiers});
        QCOMPARE(metas.signature(), u"aa{sv}"_s);
        const auto described =
            qdbus_cast<QList<QVariantMap>>(metas.arguments().value(0).value<QDBusArgument>());
        QCOMPARE(described.size(), 2);
        QCOMPARE(described[0].value(u"id"_s).toString(), identifiers[0]);
        QCOMPARE(described[0].value(u"name"_s).toString(), u"harvest festival.png"_s);
        QCOMPARE(described[0].value(u"description"_s).toString(), u"Harvest on Friday"_s);
        const auto argument = described[0].value(u"icon-data"_s).value<QDBusArgument>();
        QCOMPARE(argument.currentSignature(), u"(iiibiiay)"_s);
        const BusImage image = qdbus_cast<BusImage>(argument);
        QCOMPARE(image.width, 2 * image.height);
        QCOMPARE(image.pixels.size(), image.bytesPerLine * image.height);
        QCOMPARE(image.pixels.left(4), QByteArray("\x0a\x14\x1e\xff", 4));
    }

    void gnomeNarrowsAndGetsNothingForOtherWords()
    {
        const QStringList before = found(u"har"_s);
        const QDBusMessage narrowed =
            m_desktop->askGnome(u"GetSubsearchResultSet"_s, {before, QStringList{u"harvest"_s}});
        QCOMPARE(narrowed.arguments().value(0).toStringList(), before);
        QCOMPARE(found(u"else"_s), QStringList());
    }

    void aResultIsOpenedAndOnlyOneThatWasGiven()
    {
        QSignalSpy opened(m_search.get(), &DesktopSearch::openRequested);
        const QString id = found(u"harvest"_s).value(0);
        m_desktop->askGnome(u"ActivateResult"_s, {id, QStringList{u"harvest"_s}, 0u});
        QCOMPARE(opened.size(), 1);
        QCOMPARE(opened[0][0].toUrl(), first);
        m_desktop->askGnome(u"ActivateResult"_s, {u"file:///etc/passwd"_s, QStringList(), 0u});
        m_desktop->askKde(u"Run"_s, {u"file:///etc/passwd"_s, QString()});
        QCOMPARE(opened.size(), 1);
    }

    void theSearchGoesOnInTheProgram()
    {
        QSignalSpy searched(m_search.get(), &DesktopSearch::searchRequested);
        m_desktop->askGnome(u"LaunchSearch"_s, {QStringList{u"har"_s, u"fest"_s}, 0u});
        QCOMPARE(searched.size(), 1);
        QCOMPARE(searched[0][0].toString(), u"har fest"_s);
    }

    void kdeGetsMatchesBestFirst()
    {
        const QDBusMessage answer = m_desktop->askKde(u"Match"_s, {u"harvest"_s});
        QCOMPARE(answer.signature(), u"a(sssida{sv})"_s);
        const auto matches =
            qdbus_cast<QList<RunnerMatch>>(answer.arguments().value(0).value<QDBusArgument>());
        QCOMPARE(matches.size(), 2);
        QCOMPARE(matches[0].text, u"harvest festival.png"_s);
        QCOMPARE(matches[0].properties.value(u"subtext"_s).toString(), u"Harvest on Friday"_s);
        QCOMPARE(matches[0].properties.value(u"urls"_s).toStringList().value(0),
                 first.toString(QUrl::FullyEncoded));
        QCOMPARE(
            matches[0].properties.value(u"icon-data"_s).value<QDBusArgument>().currentSignature(),
            u"(iiibiiay)"_s);
        QVERIFY(matches[0].relevance > matches[1].relevance);
        const QDBusMessage none = m_desktop->askKde(u"Match"_s, {u"else"_s});
        QCOMPARE(none.signature(), u"a(sssida{sv})"_s);
    }

    void kdeOpensAndRevealsByItsSecondAction()
    {
        QSignalSpy opened(m_search.get(), &DesktopSearch::openRequested);
        QSignalSpy revealed(m_search.get(), &DesktopSearch::revealRequested);
        const QDBusMessage actions = m_desktop->askKde(u"Actions"_s, {});
        QCOMPARE(actions.signature(), u"a(sss)"_s);
        const auto known =
            qdbus_cast<QList<RunnerAction>>(actions.arguments().value(0).value<QDBusArgument>());
        QCOMPARE(known.size(), 1);
        m_desktop->askKde(u"Match"_s, {u"harvest"_s});
        const QString id = second.toString(QUrl::FullyEncoded);
        m_desktop->askKde(u"Run"_s, {id, known[0].id});
        QCOMPARE(revealed.size(), 1);
        QCOMPARE(revealed[0][0].toUrl(), second);
        QVERIFY(opened.isEmpty());
        m_desktop->askKde(u"Run"_s, {id, QString()});
        QCOMPARE(opened.size(), 1);
    }

    void aPictureThatTakesLongIsNotWaitedFor()
    {
        m_hasPictures = false;
        const QDBusMessage metas = m_desktop->askGnome(u"GetResultMetas"_s, {found(u"harvest"_s)});
        const auto described =
            qdbus_cast<QList<QVariantMap>>(metas.arguments().value(0).value<QDBusArgument>());
        QCOMPARE(described.size(), 2);
        QCOMPARE(described[0].value(u"gicon"_s).toString(), u"image-x-generic"_s);
    }

    void nobodyIsAskedWhoHasNothingToOffer()
    {
        QVERIFY(m_desktop->seesProgram());
        m_search->withdraw();
        QVERIFY(!m_desktop->seesProgram());
        QCOMPARE(m_desktop->askKde(u"Match"_s, {u"harvest"_s}).type(), QDBusMessage::ErrorMessage);
        m_search->offer(source());
        QCOMPARE(found(u"harvest"_s).size(), 2);
    }
};

VELMORA_EVENTS_TEST(DesktopSearchTest)
#include "DesktopSearchTest.moc"
