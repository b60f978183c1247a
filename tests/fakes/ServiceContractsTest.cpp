// SPDX-License-Identifier: MIT
#include "tests/fakes/FakeFrontmostApplication.h"
#include "tests/fakes/FakeLoginItem.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/files/TestFiles.h"
#include "tests/recognition/DrawnPage.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"
#include "tests/world/XClip.h"
#include "tests/world/XDesktop.h"

#include <QSignalSpy>
#include <QTest>

#include <array>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr int patience = 20'000;

/// A pasteboard, and which file another program sees on it.
struct TestedPasteboard {
    std::unique_ptr<Pasteboard> pasteboard;
    std::function<std::optional<QUrl>()> seenFile;
};

TestedPasteboard realPasteboard()
{
    const auto seenFile = []() -> std::optional<QUrl> {
        const QByteArray list = XClip::read(u"text/uri-list"_s).trimmed();
        return list.isEmpty() ? std::nullopt : std::optional(QUrl::fromEncoded(list));
    };
    return {makePasteboard(), seenFile};
}

TestedPasteboard fakePasteboard()
{
    auto fake = std::make_unique<FakePasteboard>();
    const FakePasteboard *pasteboard = fake.get();
    return {std::move(fake), [pasteboard]() -> std::optional<QUrl> {
                return pasteboard->contents ? pasteboard->contents->file : std::nullopt;
            }};
}

PasteboardContents fileContents(const QUrl &file)
{
    PasteboardContents contents;
    contents.file = file;
    return contents;
}

/// Which application is in front, and how the user turns to another one: to the first or to the
/// second of two.
struct TestedFrontmost {
    std::unique_ptr<FrontmostApplication> frontmost;
    std::function<void(int)> turnTo;
};

TestedFrontmost realFrontmost(const std::shared_ptr<const TestFiles> &files)
{
    const auto terminal = [&files](const QString &name) {
        return std::make_shared<Terminal>(files->url(name).toLocalFile());
    };
    const std::array windows = {terminal(u"first"_s), terminal(u"second"_s)};
    // Both are xterms; another class makes them two applications.
    XDesktop::run(u"xprop"_s, {u"-id"_s, QString::number(windows[1]->window()), u"-f"_s,
                               u"WM_CLASS"_s, u"8s"_s, u"-set"_s, u"WM_CLASS"_s, u"second"_s});
    return {makeFrontmostApplication(),
            [windows, files](int which) { windows.at(std::size_t(which))->activate(); }};
}

TestedFrontmost fakeFrontmost(const std::shared_ptr<const TestFiles> &)
{
    auto fake = std::make_unique<FakeFrontmostApplication>();
    FakeFrontmostApplication *frontmost = fake.get();
    return {std::move(fake), [frontmost](int which) {
                frontmost->bringToFront({which == 0 ? u"One"_s : u"Two"_s, std::nullopt});
            }};
}

/// Finds what it should in `page()`.
std::unique_ptr<TextRecognizer> fakeRecognizer()
{
    auto fake = std::make_unique<FakeTextRecognizer>();
    fake->setLines({u"Quarterly report"_s, u"Numbers for the board"_s});
    return fake;
}

QImage page()
{
    DrawnPage page(QSize(640, 200));
    page.text(QPoint(60, 60), u"Quarterly report"_s);
    page.text(QPoint(60, 120), u"Numbers for the board"_s);
    return page.image();
}

/// The lines that are read of a picture until there are `most`, or until it is cancelled.
QStringList linesOf(TextRecognizer &recognizer, const QImage &picture, int most, bool isCancelled)
{
    QStringList lines;
    const auto onLine = [&lines, most](const QString &line) {
        lines.append(line);
        return lines.size() < most;
    };
    recognizer.recognize(picture, onLine, [isCancelled] { return isCancelled; });
    return lines;
}

} // namespace

using MakePasteboard = std::function<TestedPasteboard()>;
using MakeFrontmost = std::function<TestedFrontmost(const std::shared_ptr<const TestFiles> &)>;
using MakeLoginItem = std::function<std::unique_ptr<LoginItem>()>;
using MakeRecognizer = std::function<std::unique_ptr<TextRecognizer>()>;
Q_DECLARE_METATYPE(MakePasteboard)
Q_DECLARE_METATYPE(MakeFrontmost)
Q_DECLARE_METATYPE(MakeLoginItem)
Q_DECLARE_METATYPE(MakeRecognizer)

/// What these services promise, checked on the real ones and on those that other tests use.
class ServiceContractsTest : public QObject
{
    Q_OBJECT

    const std::shared_ptr<const TestFiles> m_files = std::make_shared<TestFiles>();
    const QUrl m_shot = m_files->make(u"a b é%25.png"_s);
    const QUrl m_other = m_files->make(u"other.png"_s);

    template <typename Make>
    static void addRows(const Make &real, const Make &fake)
    {
        QTest::addColumn<Make>("make");
        QTest::newRow("real") << real;
        QTest::newRow("fake") << fake;
    }
    static void addPasteboards() { addRows<MakePasteboard>(realPasteboard, fakePasteboard); }
    static void addFrontmosts() { addRows<MakeFrontmost>(realFrontmost, fakeFrontmost); }
    static void addLoginItems()
    {
        addRows<MakeLoginItem>(makeLoginItem, [] { return std::make_unique<FakeLoginItem>(); });
    }
    static void addRecognizers() { addRows<MakeRecognizer>(makeTextRecognizer, fakeRecognizer); }

private Q_SLOTS:
    void init() { XClip::take("before"); }

    void whatIsWrittenReplacesWhatIsOnThePasteboard_data() { addPasteboards(); }
    void whatIsWrittenReplacesWhatIsOnThePasteboard()
    {
        QFETCH(MakePasteboard, make);
        const TestedPasteboard tested = make();
        QVERIFY(tested.pasteboard->write(fileContents(m_shot)));
        QCOMPARE(tested.seenFile(), m_shot);
        QVERIFY(tested.pasteboard->write(fileContents(m_other)));
        QCOMPARE(tested.seenFile(), m_other);
    }

    void clearingThePasteboardLeavesNothing_data() { addPasteboards(); }
    void clearingThePasteboardLeavesNothing()
    {
        QFETCH(MakePasteboard, make);
        const TestedPasteboard tested = make();
        tested.pasteboard->write(fileContents(m_shot));
        tested.pasteboard->clear();
        QVERIFY(!tested.seenFile());
        tested.pasteboard->fileMoved(m_shot, m_other);
        QVERIFY(!tested.seenFile());
    }

    void aFileThatMovesIsNamedAtItsNewPlace_data() { addPasteboards(); }
    void aFileThatMovesIsNamedAtItsNewPlace()
    {
        QFETCH(MakePasteboard, make);
        const TestedPasteboard tested = make();
        tested.pasteboard->write(fileContents(m_shot));
        tested.pasteboard->fileMoved(m_shot, m_other);
        QCOMPARE(tested.seenFile(), m_other);
        const QUrl third = m_files->url(u"third.png"_s);
        tested.pasteboard->fileMoved(m_other, third);
        QCOMPARE(tested.seenFile(), third);
    }

    void anotherFileThatMovesChangesNothing_data() { addPasteboards(); }
    void anotherFileThatMovesChangesNothing()
    {
        QFETCH(MakePasteboard, make);
        const TestedPasteboard tested = make();
        tested.pasteboard->write(fileContents(m_shot));
        tested.pasteboard->fileMoved(m_other, m_files->url(u"third.png"_s));
        QCOMPARE(tested.seenFile(), m_shot);
    }

    void aPictureAloneNamesNoFile_data() { addPasteboards(); }
    void aPictureAloneNamesNoFile()
    {
        QFETCH(MakePasteboard, make);
        const TestedPasteboard tested = make();
        PasteboardContents picture;
        picture.picture = {QByteArray("bytes"), PasteboardContents::ImageType::Png, {}};
        QVERIFY(tested.pasteboard->write(picture));
        QVERIFY(!tested.seenFile());
    }

    void theApplicationInFrontIsReportedOncePerChange_data() { addFrontmosts(); }
    void theApplicationInFrontIsReportedOncePerChange()
    {
        QFETCH(MakeFrontmost, make);
        const TestedFrontmost tested = make(m_files);
        tested.turnTo(0);
        QTRY_VERIFY_WITH_TIMEOUT(tested.frontmost->current(), patience);
        const Application first = *tested.frontmost->current();
        QSignalSpy activated(tested.frontmost.get(), &FrontmostApplication::activated);
        QTRY_COMPARE_WITH_TIMEOUT(activated.size(), 1, patience);
        tested.turnTo(1);
        QTRY_COMPARE_WITH_TIMEOUT(activated.size(), 2, patience);
        QVERIFY(activated.at(1).at(0).value<Application>() != first);
        QCOMPARE(tested.frontmost->current(), activated.at(1).at(0).value<Application>());
        tested.turnTo(1);
        QVERIFY(Waiting::staysTrue([&activated] { return activated.size() == 2; }, 500ms));
    }

    void whoConnectsLaterLearnsOfTheLastChange_data() { addFrontmosts(); }
    void whoConnectsLaterLearnsOfTheLastChange()
    {
        QFETCH(MakeFrontmost, make);
        const TestedFrontmost tested = make(m_files);
        tested.turnTo(0);
        QTRY_VERIFY_WITH_TIMEOUT(tested.frontmost->current(), patience);
        const std::optional<Application> before = tested.frontmost->current();
        tested.turnTo(1);
        QTRY_VERIFY_WITH_TIMEOUT(tested.frontmost->current() != before, patience);
        const QSignalSpy first(tested.frontmost.get(), &FrontmostApplication::activated);
        QTRY_COMPARE_WITH_TIMEOUT(first.size(), 1, patience);
        QCOMPARE(first.at(0).at(0).value<Application>(), tested.frontmost->current());
        const QSignalSpy second(tested.frontmost.get(), &FrontmostApplication::activated);
        QVERIFY(Waiting::staysTrue([&second] { return second.isEmpty(); }, 500ms));
    }

    void aLoginItemIsWhatItWasSetToLast_data() { addLoginItems(); }
    void aLoginItemIsWhatItWasSetToLast()
    {
        QFETCH(MakeLoginItem, make);
        const auto item = make();
        QVERIFY(!item->isEnabled());
        for (const bool enabled : {true, true, false, false, true, false}) {
            QVERIFY(!item->setEnabled(enabled));
            QCOMPARE(item->isEnabled(), enabled);
        }
    }

    void aLoginItemThatCantBeSetSaysSoAndStaysAsItIs_data()
    {
        const auto failing = [] {
            auto item = std::make_unique<FakeLoginItem>();
            item->failure = u"no room"_s;
            return item;
        };
        addRows<MakeLoginItem>(makeLoginItem, failing);
    }
    void aLoginItemThatCantBeSetSaysSoAndStaysAsItIs()
    {
        QFETCH(MakeLoginItem, make);
        const QByteArray configuration = qgetenv("XDG_CONFIG_HOME");
        // A file where the folder should be.
        qputenv("XDG_CONFIG_HOME", m_shot.toLocalFile().toUtf8());
        const auto item = make();
        const std::optional<QString> failure = item->setEnabled(true);
        QVERIFY(failure && !failure->isEmpty());
        QVERIFY(!item->isEnabled());
        qputenv("XDG_CONFIG_HOME", configuration);
    }

    void linesComeInOrderUntilThereAreEnough_data() { addRecognizers(); }
    void linesComeInOrderUntilThereAreEnough()
    {
        QFETCH(MakeRecognizer, make);
        const auto recognizer = make();
        const QStringList both = {u"Quarterly report"_s, u"Numbers for the board"_s};
        QCOMPARE(linesOf(*recognizer, page(), 10, false), both);
        QCOMPARE(linesOf(*recognizer, page(), 1, false), both.first(1));
    }

    void aCancelledReadingAndANullPictureHaveNoLines_data() { addRecognizers(); }
    void aCancelledReadingAndANullPictureHaveNoLines()
    {
        QFETCH(MakeRecognizer, make);
        const auto recognizer = make();
        QCOMPARE(linesOf(*recognizer, page(), 10, true), QStringList());
        QCOMPARE(linesOf(*recognizer, {}, 10, false), QStringList());
    }
};

VELMORA_WIDGETS_TEST(ServiceContractsTest)
#include "ServiceContractsTest.moc"
