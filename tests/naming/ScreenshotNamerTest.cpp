// SPDX-License-Identifier: MIT
#include "naming/ScreenshotNamer.h"

#include "core/VelmoraTimestamp.h"
#include "naming/NameFile.h"
#include "naming/NameWords.h"
#include "tests/world/TestProgram.h"

#include <QTest>

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
        return ScreenshotNamer::tokens(QString::fromUtf8(text)).join(QLatin1Char('|'));
    }

    static QString applicationTokens(const char *appName)
    {
        return ScreenshotNamer::applicationTokens(QString::fromUtf8(appName))
            .join(QLatin1Char('|'));
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
            QVERIFY(name == QStringLiteral("screenshot-screen-%1.png").arg(before) ||
                    name == QStringLiteral("screenshot-screen-%1.png").arg(after));
        }
        QCOMPARE(named("the 12 of May", "Preview"), QStringLiteral("preview.png"));
    }

    void theFallbackNameTellsTheApplicationAndTheTime()
    {
        const auto fallback = [](const char *application, const char *path) {
            return ScreenshotNamer::fallbackName(QString::fromUtf8(application), file(path));
        };
        const QRegularExpression stamp(QStringLiteral("-screen-\\d{8}-\\d{6}"));
        const auto unstamped = [&](QString name) {
            return name.replace(stamp, QStringLiteral("-STAMP"));
        };
        QCOMPARE(unstamped(fallback("Preview", "/a/b.png")), QStringLiteral("preview-STAMP.png"));
        QCOMPARE(unstamped(fallback("", "/a/b.PNG")), QStringLiteral("screenshot-STAMP.png"));
        QCOMPARE(unstamped(fallback("Adobe Photoshop Lightroom", "/a/b.jpg")),
                 QStringLiteral("adobe-photoshop-STAMP.jpg"));
        QCOMPARE(unstamped(fallback("Google Chrome", "/a/b")), QStringLiteral("chrome-STAMP"));
    }

    void theExtensionIsInLowerCaseInTheEnd()
    {
        QCOMPARE(named("Budget", "", file("/shots/Shot.PNG")), QStringLiteral("budget.png"));
        QCOMPARE(named("Budget", "", file("/shots/Shot.Tiff")), QStringLiteral("budget.tiff"));
        QCOMPARE(named("Budget", "", file("/shots/Shot")), QStringLiteral("budget"));
    }

    void aSpaceComesBeforeACapitalThatFollowsASmallLetter()
    {
        const auto split = [](const char *text) {
            return ScreenshotNamer::splitCamelCase(QString::fromUtf8(text));
        };
        QCOMPARE(split("GitHubDesktop"), QStringLiteral("Git Hub Desktop"));
        QCOMPARE(split("iPhone"), QStringLiteral("i Phone"));
        QCOMPARE(split("PDFViewer"), QStringLiteral("PDFViewer"));
        QCOMPARE(split("caféÉté"), QStringLiteral("café Été"));
        QCOMPARE(split("cafe\u0301E\u0301te"), QStringLiteral("cafe\u0301 E\u0301te"));
        QCOMPARE(split("straßeÄ"), QStringLiteral("straße Ä"));
        QCOMPARE(split("a1B"), QStringLiteral("a1B"));
        QCOMPARE(split("𐐨𐐀"), QStringLiteral("𐐨 𐐀"));
        QCOMPARE(split(""), QString());
    }

    void tokensAreRunsOfLettersAndNumbersInLowerCase()
    {
        QCOMPARE(tokens("Don't stop-it snake_case 3.14"),
                 QStringLiteral("don|t|stop|it|snake|case|3|14"));
        QCOMPARE(tokens("GitHubDesktop"), QStringLiteral("git|hub|desktop"));
        QCOMPARE(tokens("  —!  "), QString());
        QCOMPARE(tokens("STRASSE Straße STRAẞE"), QStringLiteral("strasse|strasse|strasse"));
        QCOMPARE(tokens("ﬁnal oﬃce"), QStringLiteral("final|office"));
        QCOMPARE(tokens("ΟΔΟΣ οδός"), QStringLiteral("οδοσ|οδοσ"));
        QCOMPARE(tokens("ısı"), QStringLiteral("ısı"));
        QCOMPARE(tokens("ＡＢＣ１２"), QStringLiteral("ａｂｃ１２"));
        QCOMPARE(tokens("𐐀𐐁 🙂 x"), QStringLiteral("𐐨𐐩|x"));
    }

    void accentsAreRemovedAndOtherSignsAreNot()
    {
        QCOMPARE(tokens("Ångström Việt ŻÓŁW"), QStringLiteral("angstrom|viet|zołw"));
        QCOMPARE(tokens("Ελλάδα"), QStringLiteral("ελλαδα"));
        QCOMPARE(tokens("ЁЛКА"), QStringLiteral("елка"));
        QCOMPARE(tokens("İstanbul"), QStringLiteral("istanbul"));
        QCOMPARE(tokens("שָׁלוֹם"), QStringLiteral("שלום"));
        QCOMPARE(tokens("كِتَاب"), QStringLiteral("كتاب"));
        QCOMPARE(tokens("ガギグ ぱぴ"), QStringLiteral("ガギグ|ぱぴ"));
        QCOMPARE(tokens("हिन्दी में"), QStringLiteral("हिन्दी|में"));
        QCOMPARE(tokens("한국어 문서"), QStringLiteral("한국어|문서"));
    }

    void charactersAreCountedAsReadersCountThem()
    {
        const auto meaningful = [](const QStringList &list) {
            return ScreenshotNamer::meaningfulTokens(list);
        };
        const QStringList hindi = {QStringLiteral("में"), QStringLiteral("कि"),
                                   QStringLiteral("दस्तावेज़")};
        QCOMPARE(meaningful(hindi), QStringList{QStringLiteral("दस्तावेज़")});
        QCOMPARE(meaningful({QStringLiteral("𐐨𐐨")}), QStringList());
        QCOMPARE(meaningful({QStringLiteral("𐐨𐐨𐐨")}).size(), 1);
        // Twenty-four characters of two code points each are a word; twenty-five are not.
        const QString letter = QStringLiteral("कि");
        QCOMPARE(named((letter.repeated(24) + QStringLiteral(" x")).toUtf8().constData(), ""),
                 letter.repeated(24) + QStringLiteral(".png"));
        QVERIFY(named(letter.repeated(25).toUtf8().constData(), "")
                    .startsWith(QLatin1String("screenshot-screen-")));
    }

    void meaningfulTokensAreLongEnoughAndCountOnce()
    {
        const QStringList given = {QStringLiteral("ab"),  QStringLiteral("abc"),
                                   QStringLiteral("the"), QStringLiteral("abc"),
                                   QStringLiteral("123"), QStringLiteral("may")};
        QCOMPARE(ScreenshotNamer::meaningfulTokens(given),
                 (QStringList{QStringLiteral("abc"), QStringLiteral("123")}));
    }

    void stopWordsSayNothing()
    {
        const QStringList words =
            QStringLiteral(
                "the and for with from this that you your are was were have has had not but can "
                "all app window untitled screenshot screen shot image file edit view open close "
                "click copy paste new done cancel save menu back next search home mon tue wed thu "
                "fri sat sun monday tuesday wednesday thursday friday saturday sunday jan feb mar "
                "apr may jun jul aug sep oct nov dec january february march april june july august "
                "september october november december notification notifications center "
                "usernotificationcenter systemuiserver")
                .split(QLatin1Char(' '));
        QCOMPARE(words.size(), 85);
        QCOMPARE(ScreenshotNamer::meaningfulTokens(words), QStringList());
        QCOMPARE(ScreenshotNamer::meaningfulTokens({QStringLiteral("windows")}).size(), 1);
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
        QCOMPARE(sanitized("My Résumé (final)!.PNG"), QStringLiteral("my-resume-final.png"));
        QCOMPARE(sanitized("--a--b__c--.png"), QStringLiteral("a-b-c.png"));
        QCOMPARE(sanitized("GitHub.png"), QStringLiteral("github.png"));
        QCOMPARE(sanitized("a/b/c d.jpg"), QStringLiteral("c-d.jpg"));
        QCOMPARE(sanitized("1 2 3 4 5 6 7 8 9 10.png"), QStringLiteral("1-2-3-4-5-6-7-8.png"));
        QCOMPARE(sanitized("日本語 メモ.png"), QStringLiteral("日本語-メモ.png"));
        QCOMPARE(sanitized("a\u202Eb\nc.png"), QStringLiteral("a-b-c.png"));
    }

    void whatANameLacksComesFromTheFallback()
    {
        QCOMPARE(sanitized("plan"), QStringLiteral("plan.png"));
        QCOMPARE(sanitized("!!!.jpg"), QStringLiteral("fall.jpg"));
        QCOMPARE(sanitized(""), QStringLiteral("fall.png"));
        QCOMPARE(sanitized("", "Fall Back.PNG"), QStringLiteral("Fall Back.png"));
        QCOMPARE(sanitized("plan", "fall"), QStringLiteral("plan"));
        QCOMPARE(sanitized(".png"), QStringLiteral("png.png"));
        QCOMPARE(sanitized("version 1.2 final"), QStringLiteral("version-1-2-final.png"));
    }

    void aLongNameIsCutToFiftyEightCharacters()
    {
        const QString a = QString(30, QLatin1Char('a'));
        const QString b = QString(40, QLatin1Char('b'));
        QCOMPARE(ScreenshotNamer::sanitize(a + QLatin1Char(' ') + b, QStringLiteral("x.png")),
                 a + QLatin1Char('-') + b.left(27) + QStringLiteral(".png"));
        const QString c = QString(57, QLatin1Char('c'));
        QCOMPARE(ScreenshotNamer::sanitize(c + QStringLiteral(" d.png"), QString()),
                 c + QStringLiteral("-.png"));
        QCOMPARE(named("abcdefghijklmnopqrst bcdefghijklmnopqrstu cdefghijklmnopqrstuv", ""),
                 QStringLiteral("abcdefghijklmnopqrst-bcdefghijklmnopqrstu-cdefghijklmnopqr.png"));
    }

    void aNameNeverTakesMoreBytesThanFileSystemsAllow()
    {
        const QString letter = QStringLiteral("क्षि");
        const QString name =
            ScreenshotNamer::sanitize(letter.repeated(58), QStringLiteral("x.png"));
        QVERIFY(name.toUtf8().size() <= 245);
        QVERIFY(name.toUtf8().size() >= 230);
        QVERIFY(letter.repeated(58).startsWith(name.chopped(4)));
        QCOMPARE(name.chopped(4).size() % letter.size(), 0);
        const QString japanese = QStringLiteral("日").repeated(70);
        QCOMPARE(ScreenshotNamer::sanitize(japanese, QStringLiteral("x.png")),
                 japanese.left(58) + QStringLiteral(".png"));
    }

    void theUsersLanguageDoesNotMatter()
    {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::Turkish));
        const QString name = named("TITLE INDEX", "");
        QLocale::setDefault(before);
        QCOMPARE(name, QStringLiteral("title-index.png"));
    }
};

VELMORA_PLAIN_TEST(ScreenshotNamerTest)
#include "ScreenshotNamerTest.moc"
