// SPDX-License-Identifier: MIT
#include "imaging/HeldScreenshot.h"
#include "tests/imaging/ScreenshotImagesFixture.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace TestPictures;

/// How long a file is waited for that is still being written.
class IncompleteScreenshotTest : public QObject, private ScreenshotImagesFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void nothingIsReadBeforeTheWriterHasClosedTheFile()
    {
        QFile file(path(u"a.png"_s));
        QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
        const auto image = m_images->image(url(u"a.png"_s));
        const auto thumbnail = m_images->thumbnail(url(u"a.png"_s), {64, 40});
        const auto completion = m_images->completion(url(u"a.png"_s));
        QVERIFY(lookedAgain(3));
        file.write(m_png.left(m_png.size() / 2));
        QVERIFY(lookedAgain(3));
        file.write(m_png.mid(m_png.size() / 2).chopped(1));
        QVERIFY(lookedAgain(6));
        QVERIFY(!image.isFinished() && !thumbnail.isFinished() && !completion.isFinished());
        file.write(m_png.last(1));
        file.close();
        QVERIFY(isFinished(image) && isFinished(thumbnail));
        QVERIFY(QTest::qWaitFor([&] { return completion.isFinished(); }, patience));
        QVERIFY(lookAlike(image.result(), m_picture));
        QVERIFY(lookAlike(thumbnail.result(), fourFields({64, 40})));
    }

    void aPictureThatIsWrittenWholeIsReadSoonThoughItsWriterKeepsItOpen_data() { addFormats(); }
    void aPictureThatIsWrittenWholeIsReadSoonThoughItsWriterKeepsItOpen()
    {
        QFETCH(QString, format);
        const QByteArray bytes = encoded(m_picture, format);
        QVERIFY(isFinished(m_images->image(url(u"missing.png"_s))));
        qint64 fastest = patience;
        for (int attempt = 0; attempt < 5; ++attempt) {
            const QString name = QString::number(attempt);
            QFile file(path(name));
            QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
            file.write(bytes.first(bytes.size() - 3));
            const auto image = m_images->image(url(name));
            QVERIFY(!QTest::qWaitFor([&] { return image.isFinished(); }, 500));
            file.write(bytes.last(3));
            QElapsedTimer timer;
            timer.start();
            QVERIFY(isFinished(image));
            QVERIFY(timer.elapsed() >= 190);
            fastest = std::min(fastest, timer.elapsed());
            QVERIFY(lookAlike(image.result(), m_picture));
        }
        QVERIFY2(fastest < 400, qPrintable(QString::number(fastest)));
    }

    void aSlowToolInAnotherProcessIsWaitedFor()
    {
        const QString name = path(u"a.png"_s);
        QProcess tool;
        tool.start(u"sh"_s, {u"-c"_s, u"exec cat >\"$1\""_s, u"sh"_s, name});
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(name); }, patience));
        const auto image = m_images->image(QUrl::fromLocalFile(name));
        constexpr int pieces = 5;
        for (int piece = 0; piece < pieces; ++piece) {
            QVERIFY(lookedAgain(2));
            QVERIFY(!image.isFinished());
            const qsizetype begin = m_png.size() * piece / pieces;
            const qsizetype end = m_png.size() * (piece + 1) / pieces;
            tool.write(m_png.mid(begin, end - begin));
            QVERIFY(QTest::qWaitFor([&] { return QFile(name).size() == end; }, patience));
        }
        tool.closeWriteChannel();
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
        QVERIFY(QTest::qWaitFor([&] { return tool.state() == QProcess::NotRunning; }, patience));
    }

    void whereNobodyTellsAHalfWrittenFileIsWaitedForAllTheSame()
    {
        m_writers->unknown = true;
        QFile file(path(u"a.png"_s));
        QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
        file.write(m_png.left(m_png.size() / 2));
        const auto image = m_images->image(url(u"a.png"_s));
        QVERIFY(lookedAgain(8));
        QVERIFY(!image.isFinished());
        file.write(m_png.mid(m_png.size() / 2));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void anEmptyFileThatIsFilledLaterIsWaitedFor()
    {
        QVERIFY(write(path(u"a.png"_s), {}));
        const auto image = m_images->image(url(u"a.png"_s));
        QVERIFY(lookedAgain(3));
        QVERIFY(!image.isFinished());
        QVERIFY(write(path(u"a.png"_s), m_png));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void aBrokenFileIsNotWaitedForLong()
    {
        QVERIFY(write(path(u"a.png"_s), m_png.chopped(100)));
        QElapsedTimer timer;
        timer.start();
        const auto image = m_images->image(url(u"a.png"_s));
        QVERIFY(isFinished(image));
        QVERIFY(image.result().isNull());
        QVERIFY(timer.elapsed() < 8000);
        timer.start();
        const auto again = m_images->image(url(u"a.png"_s));
        QVERIFY(isFinished(again));
        QVERIFY(timer.elapsed() < 1500);
    }

    void aFileThatIsWrittenAnewInItsPlaceIsReadAnew_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("not complete before") << m_png.first(m_png.size() / 2);
        QTest::newRow("another picture before") << encoded(fourFields({64, 64}), u"png"_s);
        QTest::newRow("empty before") << QByteArray();
    }
    void aFileThatIsWrittenAnewInItsPlaceIsReadAnew()
    {
        QFETCH(QByteArray, before);
        QVERIFY(write(path(u"a.png"_s), before));
        const auto held = m_images->hold(url(u"a.png"_s));
        QVERIFY(write(path(u"new"_s), m_png));
        QFile writer(path(u"a.png"_s));
        QVERIFY(writer.open(QFile::ReadWrite));
        const auto image = m_images->image(held);
        QVERIFY(lookedAgain(3));
        // The way an editor writes: a new file beside it, then in its place.
        QCOMPARE(std::rename(QFile::encodeName(path(u"new"_s)).constData(),
                             QFile::encodeName(path(u"a.png"_s)).constData()),
                 0);
        writer.close();
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
        QVERIFY(held->currentIdentity()->current().sameFile(*fileIdentity(path(u"a.png"_s))));
        QVERIFY(!held->identity().sameFile(held->currentIdentity()->current()));
    }
};

VELMORA_EVENTS_TEST(IncompleteScreenshotTest)
#include "IncompleteScreenshotTest.moc"
