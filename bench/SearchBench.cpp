// SPDX-License-Identifier: MIT
// Measures the search: the size of its index, and the time of a query and of adding a screenshot.
// The texts are the lines of real pictures, shuffled.
//
// usage: search_bench FOLDER-WITH-PICTURES [COUNT]

#include "filesystem/FileUrls.h"
#include "imaging/decodeImage.h"
#include "platform/TextRecognizer.h"
#include "search/SearchIndex.h"
#include "search/searchTerms.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>

using namespace Qt::StringLiterals;

namespace
{

using Pages = QList<QStringList>;

Pages pagesIn(const QString &folder)
{
    const std::unique_ptr<TextRecognizer> recognizer = makeTextRecognizer();
    recognizer->warmUp();
    Pages pages;
    int pictures = 0;
    QElapsedTimer timer;
    timer.start();
    for (const QString &name : QDir(folder).entryList({u"*.png"_s}, QDir::Files)) {
        const QImage picture = decodeImage(FileUrls::fromPath(folder + u'/' + name));
        QStringList lines;
        recognizer->recognize(
            picture,
            [&lines](const QString &line) {
                lines << line;
                return true;
            },
            [] { return false; });
        ++pictures;
        if (!lines.isEmpty())
            pages << lines;
    }
    std::printf("reading: %.2f whole pictures a second, one after the other (%d)\n",
                pictures * 1e3 / double(std::max<qint64>(1, timer.elapsed())), pictures);
    return pages;
}

/// Texts as long as the pages, made of lines from all of them.
QStringList shuffledPage(const Pages &pages, const QStringList &lines, std::mt19937 &random)
{
    const auto pick = [&random](qsizetype count) {
        return std::uniform_int_distribution<qsizetype>(0, count - 1)(random);
    };
    QStringList page;
    for (qsizetype left = pages[pick(pages.size())].size(); left > 0; --left)
        page << lines[pick(lines.size())];
    return page;
}

double percentile(QList<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[std::max(0, int(std::ceil(share * double(values.size()))) - 1)];
}

/// Processor time, for a machine with other work to do.
double processorMilliseconds()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

struct Times {
    QList<double> elapsed;
    QList<double> processor;

    template <typename Work>
    void measure(Work work)
    {
        QElapsedTimer timer;
        timer.start();
        const double before = processorMilliseconds();
        work();
        processor << processorMilliseconds() - before;
        elapsed << double(timer.nsecsElapsed()) / 1e6;
    }
};

void print(const char *what, const Times &times)
{
    std::printf("%-26s median %6.2f ms, 95th percentile %6.2f ms; processor %6.2f and %6.2f ms\n",
                what, percentile(times.elapsed, 0.5), percentile(times.elapsed, 0.95),
                percentile(times.processor, 0.5), percentile(times.processor, 0.95));
}

/// What the user types on the way to words of a page: every beginning of each.
QStringList queriesFrom(const Pages &pages, std::mt19937 &random)
{
    QStringList queries;
    for (int number = 0; number < 60; ++number) {
        const QStringList &page = pages[qsizetype(random() % quint64(pages.size()))];
        const QString &line = page[qsizetype(random() % quint64(page.size()))];
        const QString words = SearchTerms::ofQuery(line).mid(0, 3).join(u' ');
        for (qsizetype length = 1; length <= words.size(); ++length) {
            if (words[length - 1] != u' ')
                queries << words.first(length);
        }
    }
    return queries;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const Pages pages = pagesIn(arguments.value(1));
    if (pages.isEmpty()) {
        std::fputs("usage: search_bench FOLDER-WITH-PICTURES [COUNT]\n", stderr);
        return 2;
    }
    const int count = arguments.value(2, u"10000"_s).toInt();
    QStringList lines;
    for (const QStringList &page : pages)
        lines << page;

    std::mt19937 random(1);
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir(u"pictures"_s);
    SearchIndex index(folder.filePath(u"index"_s));
    qint64 textBytes = 0;
    Times adding;
    for (int number = 0; number < count; ++number) {
        const QUrl url = FileUrls::fromPath(
            folder.filePath(u"pictures/gazette-harvest-festival-%1.png"_s.arg(number)));
        QFile(url.toLocalFile()).open(QFile::WriteOnly);
        const QStringList text = shuffledPage(pages, lines, random);
        textBytes += text.join(u'\n').toUtf8().size();
        const FileIdentity file = fileIdentity(url.toLocalFile()).value_or(FileIdentity());
        adding.measure([&] {
            index.add({{url, file, u"Gazette"_s}});
            index.setText(file, text);
        });
    }
    index.close();

    Times queries;
    Times singleLetters;
    for (const QString &query : queriesFrom(pages, random)) {
        Times &times = query.size() == 1 ? singleLetters : queries;
        times.measure([&] { index.find(query, 50); });
    }
    index.close();
    const qint64 size = QFileInfo(folder.filePath(u"index/search.db"_s)).size();
    std::printf("%d screenshots, %.0f bytes of text each\n", count, double(textBytes) / count);
    std::printf("index: %.0f bytes a screenshot over its text\n", double(size - textBytes) / count);
    print("query", queries);
    print("query of a single letter", singleLetters);
    print("adding a screenshot", adding);
    return 0;
}
