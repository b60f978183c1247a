// SPDX-License-Identifier: MIT
#include "recognition/engine/Engine.h"

#include "recognition/engine/LocaleModels.h"
#include "tests/recognition/DrawnPage.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QTest>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace
{

QString wordsRead(Engine &engine, const QString &text)
{
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(24);
    DrawnPage page(QSize(QFontMetrics(font).horizontalAdvance(text) + 16, 36));
    page.font(font.family(), font.pixelSize()).text(QPoint(8, 27), text);
    QStringList words;
    for (const ReadWord &word :
         engine.read(page.image().convertToFormat(QImage::Format_Grayscale8)))
        words.append(word.text);
    return words.join(u' ');
}

} // namespace

class EngineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The first test of all: threads would stay, and so those of an earlier one would be counted
    // before.
    void readingStartsNoThreads()
    {
        Engine engine({});
        const auto threads = [] {
            return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
        };
        const qsizetype before = threads();
        QCOMPARE(wordsRead(engine, u"The weather report"_s), u"The weather report"_s);
        QCOMPARE(threads(), before);
    }

    void aLocaleHasTheModelOfItsLanguage_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("models");
        QTest::addRow("none") << "C" << QStringList();
        QTest::addRow("English") << "en_GB" << QStringList();
        QTest::addRow("German") << "de_AT" << QStringList(u"deu"_s);
        QTest::addRow("French") << "fr_CA" << QStringList(u"fra"_s);
        QTest::addRow("Chinese") << "zh_CN" << QStringList(u"chi_sim"_s);
        QTest::addRow("traditional Chinese") << "zh_TW" << QStringList(u"chi_tra"_s);
    }
    void aLocaleHasTheModelOfItsLanguage()
    {
        QFETCH(QString, locale);
        QTEST(localeModels(QLocale(locale)), "models");
    }

    void lettersOfALanguageAreReadWithItsModelBesideEnglish()
    {
        const QString german = u"Größe der Straßenbahn"_s;
        Engine english({});
        QVERIFY(wordsRead(english, german) != german);
        Engine both({u"deu"_s});
        QCOMPARE(wordsRead(both, german), german);
    }

    void theLoaderPrefersOurFunctionToTheLibrarysThatBuildsUnusedTables()
    {
        const auto loadedFrom = [](void *address) {
            Dl_info info = {};
            return address && ::dladdr(address, &info)
                       ? QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath()
                       : QString();
        };
        const char *const mangledName =
            "_ZN9tesseract13UnicharAmbigs13LoadUniversalERKNS_10UNICHARSETEPS1_";
        QCOMPARE(loadedFrom(::dlsym(RTLD_DEFAULT, mangledName)),
                 QCoreApplication::applicationFilePath());
    }

    void aMissingModelLeavesEnglish()
    {
        Engine engine({u"xyz"_s});
        QCOMPARE(wordsRead(engine, u"The weather report"_s), u"The weather report"_s);
    }

    void noPictureHasNoWords()
    {
        Engine engine({});
        QVERIFY(engine.read(QImage()).empty());
    }
};

VELMORA_WIDGETS_TEST(EngineTest)

#include "EngineTest.moc"
