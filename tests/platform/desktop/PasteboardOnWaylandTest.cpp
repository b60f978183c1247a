// SPDX-License-Identifier: MIT
#include "platform/Pasteboard.h"

#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"
#include "tests/world/Sway.h"
#include "tests/world/TestProgram.h"

#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

PasteboardContents contentsOf(const QUrl &file)
{
    PasteboardContents contents;
    contents.file = file;
    return contents;
}

QByteArray manyBytes()
{
    QByteArray bytes(5'000'000, '\0');
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = char(i * 31 + i / 251);
    return bytes;
}

} // namespace

/// What programs on a Wayland desktop paste, while this one runs there without any window.
class PasteboardOnWaylandTest : public QObject
{
    Q_OBJECT

    const TestFiles m_files{};
    const QUrl m_shot = m_files.make(u"a b é%25.png"_s);
    const QUrl m_other = m_files.make(u"other.png"_s);
    std::unique_ptr<Sway> m_sway;
    std::unique_ptr<Pasteboard> m_pasteboard;

    QByteArray pasted(const QString &type) const
    {
        return m_sway->run(u"wl-paste"_s, {u"--no-newline"_s, u"--type"_s, type});
    }

    QStringList types() const
    {
        return QString::fromUtf8(m_sway->run(u"wl-paste"_s, {u"--list-types"_s}))
            .split(u'\n', Qt::SkipEmptyParts);
    }

    /// Whether the desktop's clipboard holds it from now on.
    bool write(const PasteboardContents &contents) const
    {
        return QTest::qWaitFor([&] { return m_pasteboard->write(contents) && !types().isEmpty(); });
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!Sway::isInstalled() || QStandardPaths::findExecutable(u"wl-paste"_s).isEmpty())
            QSKIP("sway, setpriv or wl-paste is not installed");
        m_sway = std::make_unique<Sway>();
        qputenv("WAYLAND_DISPLAY", m_sway->display().toUtf8());
        m_pasteboard = makePasteboard();
    }

    void aFileArrivesInEveryForm()
    {
        QVERIFY(write(contentsOf(m_shot)));
        const QByteArray uri = m_shot.toEncoded();
        QCOMPARE(pasted(u"text/uri-list"_s), QByteArray(uri + "\r\n"));
        QCOMPARE(pasted(u"x-special/gnome-copied-files"_s), QByteArray("copy\n" + uri));
        QCOMPARE(pasted(u"x-special/mate-copied-files"_s), QByteArray("copy\n" + uri));
        QCOMPARE(pasted(u"application/x-kde-cutselection"_s), "0"_ba);
        for (const QString &type : {u"text/plain"_s, u"text/plain;charset=utf-8"_s})
            QCOMPARE(pasted(type), m_shot.toLocalFile().toUtf8());
        QVERIFY(types().filter(u"image/"_s).isEmpty());
    }

    void aLargePictureArrivesWhole()
    {
        PasteboardContents contents;
        contents.picture = {manyBytes(), PasteboardContents::ImageType::Png, {}};
        QVERIFY(write(contents));
        QVERIFY(pasted(u"image/png"_s) == manyBytes());
        QCOMPARE(types().first(), u"image/png"_s);
    }

    void aReaderThatLeavesInTheMiddleHarmsNobody()
    {
        PasteboardContents contents;
        contents.picture = {manyBytes(), PasteboardContents::ImageType::Png, {}};
        QVERIFY(write(contents));
        for (int round = 0; round < 3; ++round)
            m_sway->run(u"sh"_s, {u"-c"_s, u"wl-paste --type image/png | head -c 100000"_s});
        QVERIFY(pasted(u"image/png"_s) == manyBytes());
    }

    void aFileThatMovesIsNamedAtItsNewPlace()
    {
        QVERIFY(write(contentsOf(m_shot)));
        m_pasteboard->fileMoved(m_shot, m_other);
        QCOMPARE(pasted(u"text/plain"_s), m_other.toLocalFile().toUtf8());
    }

    void whatIsWrittenReplacesWhatIsThere()
    {
        QVERIFY(write(contentsOf(m_shot)));
        QVERIFY(m_pasteboard->write(contentsOf(m_other)));
        QCOMPARE(pasted(u"text/plain"_s), m_other.toLocalFile().toUtf8());
    }

    void whatAnotherProgramPutThereIsLeftAlone()
    {
        QVERIFY(write(contentsOf(m_shot)));
        m_sway->run(u"wl-copy"_s, {u"somebody else's"_s});
        QTRY_COMPARE(pasted(u"text/plain"_s), "somebody else's"_ba);
        m_pasteboard->fileMoved(m_shot, m_other);
        QCOMPARE(pasted(u"text/plain"_s), "somebody else's"_ba);
    }

    void clearingLeavesNothing()
    {
        QVERIFY(write(contentsOf(m_shot)));
        m_pasteboard->clear();
        QTRY_COMPARE(types(), QStringList());
    }
};

VELMORA_WIDGETS_TEST(PasteboardOnWaylandTest)
#include "PasteboardOnWaylandTest.moc"
