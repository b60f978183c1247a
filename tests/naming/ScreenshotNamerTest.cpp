// SPDX-License-Identifier: MIT
#include "naming/ScreenshotNamer.h"

#include "core/VelmoraTimestamp.h"
#include "naming/NameFile.h"
#include "naming/NameWords.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ScreenshotNamerTest : public QObject
{
    Q_OBJECT

    static QUrl file(const char *path) { return QUrl::fromLocalFile(QString::fromUtf8(path)); }

    static QString named(const char *text, const char *appName,
                         const QUrl &fileURL = file("/shots/a.png"))
    {
        const QString application = QString::fromUtf8(appName);
        NameWords words(application);
        words.add(QString::fromUtf8(text));
        return NameFile::nameFromWords(words.words(), application, fileURL);
    }

    static QString sanitized(const char *name, const char *fallback = "fall.png")
    {
        return ScreenshotNamer::sanitize(QString::fromUtf8(name), QString::fromUtf8(fallback));
    }

    static QString tokens(const char *text)
    {
        return ScreenshotNamer::tokens(QString::fromUtf8(text)).join(u'|');
    }

    static QString applicationTokens(const char *appName)
    {
        return ScreenshotNamer::applicationTokens(QString::fromUtf8(appName)).join(u'|');
    }

private Q_SLOTS:
    void aNameIsTheApplicationAndTheFirstWords_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("application");
        QTest::addColumn<QString>("name");
        const auto row = [](const char *text, const char *application, const char *name) {
            QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(application)
                                << QString::fromUtf8(name);
        };
        row("Pull Request #1423 — Review comments", "Google Chrome",
            "chrome-pull-request-review-comments.png");
        row("Pull Request #1423 — Review comments unresolved", "Google Chrome",
            "chrome-pull-request-review-comments.png");
        row("Mon 12 Jan 2026 Notification Center 10 42 File Edit View", "Google Chrome",
            "chrome.png");
        row("", "Safari", "safari.png");
        row("Slack channel", "Slack", "slack-channel.png");
        row("Café Résumé", "", "cafe-resume.png");
        row("quarterly figures", "Adobe Photoshop Lightroom", "adobe-quarterly-figures.png");
        row("photoshop figures", "Adobe Photoshop Lightroom", "adobe-figures.png");
        row("plan plan PLAN planBoard", "", "plan-board.png");
        row("abcdefghijklmnopqrstuvwxy abcdefghijklmnopqrstuvwx", "",
            "abcdefghijklmnopqrstuvwx.png");
        row("12345 ²³⁴ ١٢٣٤ 10km", "", "10km.png");
        row("Budget", "Notification Center", "budget.png");
        row("プロジェクト計画 がんばる", "", "プロジェクト計画-がんばる.png");
        row("Привет мир йод", "", "привет-мир-иод.png");
    }
    void aNameIsTheApplicationAndTheFirstWords()
    {
        QFETCH(QString, text);
        QFETCH(QString, application);
        QFETCH(QString, name);
        QCOMPARE(named(text.toUtf8().constData(), application.toUtf8().constData()), name);
    }

    void withoutAnyWordTheNameIsTheFallback()
    {
        for (const char *application : {"", "Notification Center", "的"}) {
            const QString before = velmoraTimestamp();
            const QString name = named("the 12 of May", application);
            const QString after = velmoraTimestamp();
            QVERIFY(name == u"screenshot-screen-%1.png"_s.arg(before) ||
                    name == u"screenshot-screen-%1.png"_s.arg(after));
        }
        QCOMPARE(named("the 12 of May", "Preview"), u"preview.png"_s);
    }

    void theFallbackNameTellsTheApplicationAndTheTime()
    {
        const auto fallback = [](const char *application, const char *path) {
            return ScreenshotNamer::fallbackName(QString::fromUtf8(application), file(path));
        };
        const QRegularExpression stamp(u"-screen-\\d{8}-\\d{6}"_s);
        const auto unstamped = [&](QString name) { return name.replace(stamp, u"-STAMP"_s); };
        QCOMPARE(unstamped(fallback("Preview", "/a/b.png")), u"preview-STAMP.png"_s);
        QCOMPARE(unstamped(fallback("", "/a/b.PNG")), u"screenshot-STAMP.png"_s);
        QCOMPARE(unstamped(fallback("Adobe Photoshop Lightroom", "/a/b.jpg")),
                 u"adobe-photoshop-STAMP.jpg"_s);
        QCOMPARE(unstamped(fallback("Google Chrome", "/a/b")), u"chrome-STAMP"_s);
    }

    void theExtensionIsInLowerCaseInTheEnd()
    {
        QCOMPARE(named("Budget", "", file("/shots/Shot.PNG")), u"budget.png"_s);
        QCOMPARE(named("Budget", "", file("/shots/Shot.Tiff")), u"budget.tiff"_s);
        QCOMPARE(named("Budget", "", file("/shots/Shot")), u"budget"_s);
    }

    void aSpaceComesBeforeACapitalThatFollowsASmallLetter()
    {
        const auto split = [](const char *text) {
            return ScreenshotNamer::splitCamelCase(QString::fromUtf8(text));
        };
        QCOMPARE(split("GitHubDesktop"), u"Git Hub Desktop"_s);
        QCOMPARE(split("iPhone"), u"i Phone"_s);
        QCOMPARE(split("PDFViewer"), u"PDFViewer"_s);
        QCOMPARE(split("caféÉté"), u"café Été"_s);
        QCOMPARE(split("cafe\u0301E\u0301te"), u"cafe\u0301 E\u0301te"_s);
        QCOMPARE(split("straßeÄ"), u"straße Ä"_s);
        QCOMPARE(split("a1B"), u"a1B"_s);
        QCOMPARE(split("𐐨𐐀"), u"𐐨 𐐀"_s);
        QCOMPARE(split(""), QString());
    }

    void tokensAreRunsOfLettersAndNumbersInLowerCase()
    {
        QCOMPARE(tokens("Don't stop-it snake_case 3.14"), u"don|t|stop|it|snake|case|3|14"_s);
        QCOMPARE(tokens("GitHubDesktop"), u"git|hub|desktop"_s);
        QCOMPARE(tokens("  —!  "), QString());
        QCOMPARE(tokens("STRASSE Straße STRAẞE"), u"strasse|strasse|strasse"_s);
        QCOMPARE(tokens("ﬁnal oﬃce"), u"final|office"_s);
        QCOMPARE(tokens("ΟΔΟΣ οδός"), u"οδοσ|οδοσ"_s);
        QCOMPARE(tokens("ısı"), u"ısı"_s);
        QCOMPARE(tokens("ＡＢＣ１２"), u"ａｂｃ１２"_s);
        QCOMPARE(tokens("𐐀𐐁 🙂 x"), u"𐐨𐐩|x"_s);
    }

    void accentsAreRemovedAndOtherSignsAreNot()
    {
        QCOMPARE(tokens("Ångström Việt ŻÓŁW"), u"angstrom|viet|zołw"_s);
        QCOMPARE(tokens("Ελλάδα"), u"ελλαδα"_s);
        QCOMPARE(tokens("ЁЛКА"), u"елка"_s);
        QCOMPARE(tokens("İstanbul"), u"istanbul"_s);
        QCOMPARE(tokens("שָׁלוֹם"), u"שלום"_s);
        QCOMPARE(tokens("كِتَاب"), u"كتاب"_s);
        QCOMPARE(tokens("ガギグ ぱぴ"), u"ガギグ|ぱぴ"_s);
        QCOMPARE(tokens("हिन्दी में"), u"हिन्दी|में"_s);
        QCOMPARE(tokens("한국어 문서"), u"한국어|문서"_s);
    }

    void charactersAreCountedAsReadersCountThem()
    {
        const auto meaningful = [](const QStringList &list) {
            return ScreenshotNamer::meaningfulTokens(list);
        };
        const QStringList hindi = {u"में"_s, u"कि"_s, u"दस्तावेज़"_s};
        QCOMPARE(meaningful(hindi), QStringList{u"दस्तावेज़"_s});
        QCOMPARE(meaningful({u"𐐨𐐨"_s}), QStringList());
        QCOMPARE(meaningful({u"𐐨𐐨𐐨"_s}).size(), 1);
        // Twenty-four characters of two code points each are a word; twenty-five are not.
        const QString letter = u"कि"_s;
        QCOMPARE(named((letter.repeated(24) + u" x"_s).toUtf8().constData(), ""),
                 letter.repeated(24) + u".png"_s);
        QVERIFY(named(letter.repeated(25).toUtf8().constData(), "")
                    .startsWith("screenshot-screen-"_L1));
    }

    void meaningfulTokensAreLongEnoughAndCountOnce()
    {
        const QStringList given = {u"ab"_s, u"abc"_s, u"the"_s, u"abc"_s, u"123"_s, u"may"_s};
        QCOMPARE(ScreenshotNamer::meaningfulTokens(given), (QStringList{u"abc"_s, u"123"_s}));
    }

    void stopWordsSayNothing()
    {
        const QStringList words =
            u"the and for with from this that you your are was were have has had not but can "
            "all app window untitled screenshot screen shot image file edit view open close "
            "click copy paste new done cancel save menu back next search home mon tue wed thu "
            "fri sat sun monday tuesday wednesday thursday friday saturday sunday jan feb mar "
            "apr may jun jul aug sep oct nov dec january february march april june july august "
            "september october november december notification notifications center "
            "usernotificationcenter systemuiserver"_s.split(u' ');
        QCOMPARE(words.size(), 85);
        QCOMPARE(ScreenshotNamer::meaningfulTokens(words), QStringList());
        QCOMPARE(ScreenshotNamer::meaningfulTokens({u"windows"_s}).size(), 1);
    }

    void someApplicationsHaveAShortName_data()
    {
        QTest::addColumn<QString>("application");
        QTest::addColumn<QString>("expected");
        const std::pair<const char *, const char *> rows[] = {
            {"Google Chrome", "chrome"},
            {"Microsoft Edge", "edge"},
            {"Visual Studio Code", "vscode"},
            {"Code", "vscode"},
            {"System Settings", "settings"},
            {"System Preferences", "settings"},
            {"Notification Center", ""},
            {"User Notification Center", "user"},
            {"Safari", "safari"},
            {"App Store", "store"},
            {"Adobe Photoshop Lightroom", "adobe|photoshop"},
            {"Google Chrome Beta", "google|chrome"},
            {"GitHubDesktop", "git|hub"},
            {"", ""},
            {"qt", ""}};
        for (const auto &[application, expected] : rows)
            QTest::newRow(application)
                << QString::fromUtf8(application) << QString::fromUtf8(expected);
    }
    void someApplicationsHaveAShortName()
    {
        QFETCH(QString, application);
        QFETCH(QString, expected);
        QCOMPARE(applicationTokens(application.toUtf8().constData()), expected);
    }

    void aSafeNameHasWordsJoinedByHyphens()
    {
        QCOMPARE(sanitized("My Résumé (final)!.PNG"), u"my-resume-final.png"_s);
        QCOMPARE(sanitized("--a--b__c--.png"), u"a-b-c.png"_s);
        QCOMPARE(sanitized("GitHub.png"), u"github.png"_s);
        QCOMPARE(sanitized("a/b/c d.jpg"), u"c-d.jpg"_s);
        QCOMPARE(sanitized("1 2 3 4 5 6 7 8 9 10.png"), u"1-2-3-4-5-6-7-8.png"_s);
        QCOMPARE(sanitized("日本語 メモ.png"), u"日本語-メモ.png"_s);
        QCOMPARE(sanitized("a\u202Eb\nc.png"), u"a-b-c.png"_s);
    }

    void whatANameLacksComesFromTheFallback()
    {
        QCOMPARE(sanitized("plan"), u"plan.png"_s);
        QCOMPARE(sanitized("!!!.jpg"), u"fall.jpg"_s);
        QCOMPARE(sanitized(""), u"fall.png"_s);
        QCOMPARE(sanitized("", "Fall Back.PNG"), u"Fall Back.png"_s);
        QCOMPARE(sanitized("plan", "fall"), u"plan"_s);
        QCOMPARE(sanitized(".png"), u"png.png"_s);
        QCOMPARE(sanitized("version 1.2 final"), u"version-1-2-final.png"_s);
    }

    void aLongNameIsCutToFiftyEightCharacters()
    {
        const QString a = QString(30, u'a');
        const QString b = QString(40, u'b');
        QCOMPARE(ScreenshotNamer::sanitize(a + u' ' + b, u"x.png"_s),
                 a + u'-' + b.left(27) + u".png"_s);
        const QString c = QString(57, u'c');
        QCOMPARE(ScreenshotNamer::sanitize(c + u" d.png"_s, QString()), c + u"-.png"_s);
        QCOMPARE(named("abcdefghijklmnopqrst bcdefghijklmnopqrstu cdefghijklmnopqrstuv", ""),
                 u"abcdefghijklmnopqrst-bcdefghijklmnopqrstu-cdefghijklmnopqr.png"_s);
    }

    void aNameNeverTakesMoreBytesThanFileSystemsAllow()
    {
        const QString letter = u"क्षि"_s;
        const QString name = ScreenshotNamer::sanitize(letter.repeated(58), u"x.png"_s);
        QVERIFY(name.toUtf8().size() <= 245);
        QVERIFY(name.toUtf8().size() >= 230);
        QVERIFY(letter.repeated(58).startsWith(name.chopped(4)));
        QCOMPARE(name.chopped(4).size() % letter.size(), 0);
        const QString japanese = u"日"_s.repeated(70);
        QCOMPARE(ScreenshotNamer::sanitize(japanese, u"x.png"_s), japanese.left(58) + u".png"_s);
    }

    void theUsersLanguageDoesNotMatter()
    {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::Turkish));
        const QString name = named("TITLE INDEX", "");
        QLocale::setDefault(before);
        QCOMPARE(name, u"title-index.png"_s);
    }
};

VELMORA_PLAIN_TEST(ScreenshotNamerTest)
#include "ScreenshotNamerTest.moc"
