// SPDX-License-Identifier: MIT
#include "platform/Pasteboard.h"

#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"
#include "tests/world/DocumentPortal.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"
#include "tests/world/XClip.h"

#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr int patience = 20'000; // milliseconds

QStringList transferFormats()
{
    return {u"application/vnd.portal.filetransfer"_s, u"application/vnd.portal.files"_s};
}

PasteboardContents contentsOf(const QUrl &file)
{
    PasteboardContents contents;
    contents.file = file;
    return contents;
}

/// As the program itself reads it, without another program between.
QByteArray keyOnClipboard()
{
    return QGuiApplication::clipboard()->mimeData()->data(transferFormats().first());
}

bool isOffered()
{
    const QStringList offered = XClip::formats();
    const QStringList wanted = transferFormats();
    return std::all_of(wanted.begin(), wanted.end(),
                       [&offered](const QString &format) { return offered.contains(format); });
}

bool isNowhereOffered()
{
    return XClip::formats().filter(u"vnd.portal"_s).isEmpty();
}

qsizetype openDescriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size();
}

} // namespace

/// How sandboxed programs get a copied file: through the file-transfer portal, the real one.
class FileTransferTest : public QObject
{
    Q_OBJECT

    const TestFiles m_files{};
    std::unique_ptr<DocumentPortal> m_portal;
    std::unique_ptr<Pasteboard> m_pasteboard;

    QUrl renamed(const QUrl &file, const QString &name) const
    {
        const QUrl to = m_files.url(name);
        if (!QFile::rename(file.toLocalFile(), to.toLocalFile()))
            qFatal("can't rename a file");
        return to;
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (const std::optional<QString> obstacle = DocumentPortal::obstacle())
            QSKIP(qPrintable(*obstacle));
    }

    void init()
    {
        if (!m_portal)
            m_portal = std::make_unique<DocumentPortal>();
        XClip::take("before");
        m_pasteboard = makePasteboard();
        // The program has to notice the portal.
        m_pasteboard->write(contentsOf(m_files.make(u"first.png"_s)));
        QTRY_VERIFY_WITH_TIMEOUT(isOffered(), patience);
    }

    void cleanup() { m_pasteboard.reset(); }
    void cleanupTestCase() { m_portal.reset(); }

    void aSandboxedProgramReadsTheCopiedFile()
    {
        const QUrl shot = m_files.make(u"a b é%25.png"_s, "the shot");
        QVERIFY(m_pasteboard->write(contentsOf(shot)));
        QVERIFY(isOffered());
        const auto received = DocumentPortal::receive();
        QVERIFY(received);
        QCOMPARE(received->content, "the shot"_ba);
        QCOMPARE(received->path.section(u'/', -1), shot.fileName());
        QVERIFY(received->path.startsWith(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/doc/"_s));
    }

    void bothNamesOfTheFormatCarryTheSameKey()
    {
        m_pasteboard->write(contentsOf(m_files.make(u"shot.png"_s)));
        const QByteArray key = XClip::read(transferFormats().first());
        QVERIFY(!key.isEmpty());
        QCOMPARE(XClip::read(transferFormats().last()), key);
    }

    void aSecondPasteGetsTheFileToo()
    {
        m_pasteboard->write(contentsOf(m_files.make(u"twice.png"_s, "twice")));
        QVERIFY(DocumentPortal::receive());
        const auto again = DocumentPortal::receive();
        QVERIFY(again);
        QCOMPARE(again->content, "twice"_ba);
    }

    void aSandboxedProgramCantChangeTheFile()
    {
        const QUrl shot = m_files.make(u"kept.png"_s, "kept");
        m_pasteboard->write(contentsOf(shot));
        const auto received = DocumentPortal::receive();
        QVERIFY(received);
        const QString inSandbox = qEnvironmentVariable("XDG_RUNTIME_DIR") +
                                  u"/doc/by-app/org.example.Receiver/"_s +
                                  received->path.section(u'/', -2);
        QFile file(inSandbox);
        QVERIFY(file.open(QFile::ReadOnly));
        QCOMPARE(file.readAll(), "kept"_ba);
        file.close();
        QVERIFY(!file.open(QFile::WriteOnly));
        QVERIFY(!QFile::remove(inSandbox));
        QCOMPARE(TestFiles::read(shot), "kept"_ba);
    }

    void afterARenameTheFileIsReceivedWhereItIsNow()
    {
        const QUrl shot = m_files.make(u"old name.png"_s, "moved");
        m_pasteboard->write(contentsOf(shot));
        const QByteArray former = XClip::read(transferFormats().first());
        const QUrl now = renamed(shot, u"new name.png"_s);
        m_pasteboard->fileMoved(shot, now);
        const auto received = DocumentPortal::receive();
        QVERIFY(received);
        QCOMPARE(received->content, "moved"_ba);
        QCOMPARE(received->path.section(u'/', -1), u"new name.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!DocumentPortal::knows(former), patience);
    }

    void aPictureAloneIsNoTransfer()
    {
        PasteboardContents contents;
        contents.picture = {"bytes"_ba, PasteboardContents::ImageType::Png, {}};
        m_pasteboard->write(contents);
        QVERIFY(isNowhereOffered());
    }

    void aTransferEndsWhenTheClipboardHoldsSomethingElse()
    {
        m_pasteboard->write(contentsOf(m_files.make(u"shot.png"_s)));
        const QByteArray key = XClip::read(transferFormats().first());
        QVERIFY(DocumentPortal::knows(key));
        XClip::take("somebody else's");
        QTRY_VERIFY_WITH_TIMEOUT(!DocumentPortal::knows(key), patience);
    }

    void aFileThatIsGoneIsNotOffered()
    {
        m_pasteboard->write(contentsOf(m_files.url(u"never there.png"_s)));
        QTRY_VERIFY_WITH_TIMEOUT(isNowhereOffered(), patience);
        QVERIFY(Waiting::staysTrue([] { return isNowhereOffered(); }, 500ms));
    }

    void aPortalThatDoesNotAnswerHoldsNobodyUp()
    {
        const QUrl shot = m_files.make(u"shot.png"_s);
        m_portal->freeze();
        QElapsedTimer time;
        time.start();
        m_pasteboard->write(contentsOf(shot));
        const qint64 written = time.restart();
        QCOMPARE(keyOnClipboard(), QByteArray());
        const qint64 read = time.elapsed();
        m_portal->thaw();
        // The bound is 16 ms; a busy machine may give the processor to others meanwhile.
        QVERIFY2(written < 200, qPrintable(QString::number(written)));
        QVERIFY2(read < 200, qPrintable(QString::number(read)));
        QTRY_VERIFY_WITH_TIMEOUT(!keyOnClipboard().isEmpty(), patience);
    }

    void aPortalThatDoesNotAnswerIsSoonNoLongerOffered()
    {
        m_portal->freeze();
        m_pasteboard->write(contentsOf(m_files.make(u"shot.png"_s)));
        QTRY_VERIFY_WITH_TIMEOUT(isNowhereOffered(), patience);
        m_portal->thaw();
    }

    void whatAPortalThatEndsKnewIsNoLongerOffered()
    {
        const QUrl shot = m_files.make(u"shot.png"_s, "the shot");
        m_pasteboard->write(contentsOf(shot));
        QVERIFY(isOffered());
        m_portal.reset();
        QTRY_VERIFY_WITH_TIMEOUT(isNowhereOffered(), patience);
        m_portal = std::make_unique<DocumentPortal>();
        QTRY_VERIFY_WITH_TIMEOUT(isOffered(), patience);
        const auto received = DocumentPortal::receive();
        QVERIFY(received);
        QCOMPARE(received->content, "the shot"_ba);
    }

    void withoutAPortalNothingIsOfferedAndNoneIsStarted()
    {
        m_portal.reset();
        const std::unique_ptr<Pasteboard> pasteboard = makePasteboard();
        QVERIFY(pasteboard->write(contentsOf(m_files.make(u"shot.png"_s))));
        const auto isLeftAlone = [] { return isNowhereOffered() && !DocumentPortal::isOnTheBus(); };
        QVERIFY(Waiting::staysTrue(isLeftAlone, 1000ms));
    }

    void aThousandCopiesLeaveOneTransfer()
    {
        QSet<QByteArray> keys;
        const QUrl shots[] = {m_files.make(u"one.png"_s), m_files.make(u"other.png"_s)};
        m_pasteboard->write(contentsOf(shots[0]));
        QTRY_VERIFY_WITH_TIMEOUT(!keyOnClipboard().isEmpty(), patience);
        const qsizetype before = openDescriptors();
        for (int copy = 0; copy < 1000; ++copy) {
            m_pasteboard->write(contentsOf(shots[copy % 2]));
            // Most copies are replaced before the portal knows of them, some after that.
            if (copy % 4 == 0)
                keys.insert(keyOnClipboard());
        }
        QTRY_VERIFY_WITH_TIMEOUT(!keyOnClipboard().isEmpty(), patience);
        const QByteArray last = keyOnClipboard();
        QVERIFY(DocumentPortal::knows(last));
        keys.remove(last);
        QVERIFY2(keys.size() > 100, qPrintable(QString::number(keys.size())));
        for (const QByteArray &key : std::as_const(keys))
            QTRY_VERIFY_WITH_TIMEOUT(!DocumentPortal::knows(key), patience);
        QTRY_COMPARE_WITH_TIMEOUT(openDescriptors(), before, patience);
    }
};

VELMORA_WIDGETS_TEST(FileTransferTest)
#include "FileTransferTest.moc"
