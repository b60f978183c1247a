// SPDX-License-Identifier: MIT
// Measures the names of screenshots, and the time until they are there, over the real path: from
// the file to the suggested name, one at a time, warm.
//
// usage: naming_bench [--page] FOLDER
//
// FOLDER contains pictures and their truth.json. Prints one line per picture (tab-separated: file,
// name, milliseconds, right words, wrong words); at the end a JSON object with the summary. --page:
// the engine reads the whole page in one call, instead of our own reading.

#include "bench/NamingTruth.h"
#include "bench/PageRecognizer.h"
#include "imaging/ScreenshotImages.h"
#include "naming/NameWords.h"
#include "naming/ScreenshotNamer.h"
#include "platform/FileWriters.h"
#include "platform/TextRecognizer.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

/// Passes on what another recogniser reads, and records it.
class Listener : public TextRecognizer
{
public:
    explicit Listener(std::unique_ptr<TextRecognizer> reader) : m_reader(std::move(reader)) {}

    void recognize(const Page &page, const LineHandler &onLine, const Cancelled &cancelled) override
    {
        text.clear();
        m_reader->recognize(
            page,
            [&](const QString &line) {
                text += line + QLatin1Char(' ');
                return onLine(line);
            },
            cancelled);
    }

    void warmUp() override { m_reader->warmUp(); }

    QString text; ///< read once the name is there

private:
    std::unique_ptr<TextRecognizer> m_reader;
};

/// The program is idle for this long before its memory is measured.
constexpr std::chrono::seconds rest{3};

struct Sums {
    QList<double> milliseconds;
    int right = 0;
    int wrong = 0;
    int inHeadline = 0;
    int withText = 0;
    int covered = 0;
    int withoutText = 0;
    int silent = 0;
};

void letRest()
{
    QEventLoop loop;
    QTimer::singleShot(rest, &loop, &QEventLoop::quit);
    loop.exec();
}

double residentMegabytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * double(::sysconf(_SC_PAGESIZE)) / 1e6;
}

/// The words of the name that came from the text: without the application's words, and without
/// those of a name for a picture with no text.
QStringList wordsFromText(const QString &name, const QString &appName, const QString &text)
{
    NameWords expected(appName);
    expected.add(text);
    const bool hasApplication = !ScreenshotNamer::applicationTokens(appName).isEmpty();
    if (expected.words().size() == (hasApplication ? 1 : 0))
        return {};
    const QStringList words = name.section(QLatin1Char('.'), 0, -2).split(QLatin1Char('-'));
    return words.mid(hasApplication ? 1 : 0);
}

void judge(const NamingTruth &truth, const QString &name, const QString &text, double milliseconds,
           Sums &sums)
{
    const QStringList textWords = wordsFromText(name, truth.appName(), text);
    int right = 0;
    for (const QString &word : std::as_const(textWords)) {
        right += truth.isRight(word, text) ? 1 : 0;
        sums.inHeadline += truth.isInHeadline(word) ? 1 : 0;
    }
    const int wrong = int(textWords.size()) - right;
    std::printf("%s\t%s\t%.1f\t%d\t%d\n", qPrintable(truth.file()), qPrintable(name), milliseconds,
                right, wrong);
    sums.milliseconds.append(milliseconds);
    sums.right += right;
    sums.wrong += wrong;
    (truth.hasText() ? sums.withText : sums.withoutText) += 1;
    sums.covered += truth.hasText() && right >= 2 ? 1 : 0;
    sums.silent += !truth.hasText() && textWords.isEmpty() ? 1 : 0;
}

/// The value that this share of all values does not exceed.
double percentile(QList<double> values, double share)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::max(0, int(std::ceil(share * double(values.size()))) - 1)];
}

double share(int part, int whole)
{
    return whole > 0 ? double(part) / whole : 1;
}

void print(const Sums &sums, double megabytes)
{
    double total = 0;
    for (double milliseconds : sums.milliseconds)
        total += milliseconds;
    const int words = sums.right + sums.wrong;
    const QJsonObject summary{
        {u"total_ms"_s, std::round(total)},
        {u"median_ms"_s, percentile(sums.milliseconds, 0.5)},
        {u"p95_ms"_s, percentile(sums.milliseconds, 0.95)},
        {u"precision"_s, share(sums.right, words)},
        {u"coverage"_s, share(sums.covered, sums.withText)},
        {u"headline"_s, share(sums.inHeadline, words)},
        {u"silence"_s, share(sums.silent, sums.withoutText)},
        {u"memory_mb"_s, std::round(megabytes)},
    };
    std::puts(QJsonDocument(summary).toJson(QJsonDocument::Compact).constData());
}

Sums measure(const QString &folder, const QList<NamingTruth> &pictures, Listener &recognizer)
{
    Sums sums;
    const std::unique_ptr<FileWriters> writers = makeFileWriters();
    ScreenshotImages images(*writers);
    ScreenshotNamer namer(recognizer, images);
    for (const NamingTruth &picture : pictures) {
        const QUrl file = QUrl::fromLocalFile(folder + QLatin1Char('/') + picture.file());
        QElapsedTimer timer;
        timer.start();
        const QString name = namer.suggestFilename(file, picture.appName()).result();
        judge(picture, name, recognizer.text, double(timer.nsecsElapsed()) / 1e6, sums);
    }
    return sums;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QStringList arguments = application.arguments().mid(1);
    const bool page = arguments.removeAll(u"--page"_s) > 0;
    const auto pictures = NamingTruth::read(arguments.value(0));
    if (!pictures) {
        std::fputs("usage: naming_bench [--page] FOLDER-WITH-truth.json\n", stderr);
        return 2;
    }
    const double before = residentMegabytes();
    Listener recognizer(page ? makePageRecognizer() : makeTextRecognizer());
    recognizer.warmUp();
    const Sums sums = measure(arguments[0], *pictures, recognizer);
    letRest();
    print(sums, residentMegabytes() - before);
    return 0;
}
