// SPDX-License-Identifier: MIT
#include "tray/DraggableImageView.h"

#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20000;
constexpr QRect targetPlace(900, 500, 300, 200);

/// A window of another process that accepts drops.
class OtherProgram
{
public:
    OtherProgram()
    {
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, [this] { read(); });
        m_process.start(QString::fromUtf8(DROP_TARGET),
                        {QString::number(targetPlace.x()), QString::number(targetPlace.y()),
                         QString::number(targetPlace.width()),
                         QString::number(targetPlace.height())});
    }

    ~OtherProgram()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// The rest of the line that begins with this word; nothing while there is no such line.
    std::optional<QString> output(const QString &word) const
    {
        return m_calls.contains(word) ? std::optional(m_calls[word]) : std::nullopt;
    }

    /// Called when a drag enters the window, which happens during QDrag::exec().
    std::function<void()> onOver;

private:
    void read()
    {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            const QString word = line.section(u' ', 0, 0);
            m_calls.insert(word, line.section(u' ', 1));
            if (word == u"over"_s && onOver)
                onOver();
        }
    }

    QProcess m_process;
    QHash<QString, QString> m_calls;
};

/// Operates the mouse without waiting for the result: this process may be in the middle of a drag.
void xdotool(const QStringList &arguments)
{
    QVERIFY(QProcess::startDetached(u"xdotool"_s, arguments));
}

QStringList moveTo(QPoint place)
{
    return {u"mousemove"_s, QString::number(place.x()), QString::number(place.y())};
}

const QStringList press = {u"mousedown"_s, u"1"_s};
const QStringList release = {u"mouseup"_s, u"1"_s};

} // namespace

class DraggableImageViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_window->setWindowFlag(Qt::FramelessWindowHint);
        m_view = new DraggableImageView(m_url, m_window.get());
        m_view->setGeometry(20, 20, 64, 50);
        m_window->setGeometry(100, 100, 200, 120);
        QImage image(640, 400, QImage::Format_RGB32);
        image.fill(Qt::red);
        m_view->setImage(image);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get(), patience));
        m_program = std::make_unique<OtherProgram>();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"ready"_s), patience);
    }

    void cleanup()
    {
        XDesktop::run(u"xdotool"_s, release);
        m_program.reset();
        m_window.reset();
    }

    void anotherProgramGetsTheFileAsACopy()
    {
        m_program->onOver = [] { xdotool(release); };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);

        QCOMPARE(m_program->output(u"over"_s)->toInt(), int(Qt::CopyAction));
        const QJsonObject got = whatWasDropped();
        QCOMPARE(got[u"action"_s].toInt(), int(Qt::CopyAction));
        QCOMPARE(got[u"urls"_s].toArray(), QJsonArray{m_url.toString()});
        const QJsonObject formats = got[u"formats"_s].toObject();
        QCOMPARE(formats[u"text/uri-list"_s].toString().trimmed(),
                 QString::fromLatin1(m_url.toEncoded()));
        QCOMPARE(formats[u"text/plain"_s].toString(), m_url.toLocalFile());
        QCOMPARE(formats[u"application/x-kde-suggestedfilename"_s].toString(),
                 u"a shot é 50%.png"_s);
    }

    void aFileThatIsRenamedDuringTheDragArrivesUnderItsNewName()
    {
        const QUrl renamed = QUrl::fromLocalFile(u"/tmp/renamed.png"_s);
        m_program->onOver = [this, renamed] {
            m_view->setFileURL(renamed);
            xdotool(release);
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QCOMPARE(whatWasDropped()[u"urls"_s].toArray(), QJsonArray{renamed.toString()});
    }

    void aRowThatGoesDuringTheDragLeavesTheDragAlive()
    {
        m_program->onOver = [this] {
            m_view->deleteLater();
            xdotool(release);
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QCOMPARE(whatWasDropped()[u"urls"_s].toArray(), QJsonArray{m_url.toString()});
    }

    void withoutAnImageThereIsNoDrag()
    {
        m_view->setImage({});
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        XDesktop::movePointer(start + QPoint(40, 30));
        XDesktop::movePointer(targetPlace.center());
        closeFile();
        expectNoDrag();
    }

    void aSmallMovementIsNoDrag()
    {
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        XDesktop::movePointer(start + QPoint(QApplication::startDragDistance() - 1, 0));
        closeFile();
        XDesktop::movePointer(targetPlace.center());
        expectNoDrag();
    }

    void aRowThatMovesUnderThePointerIsNoDrag()
    {
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        m_view->move(m_view->pos() + QPoint(0, 30));
        XDesktop::movePointer(start + QPoint(2, 0));
        closeFile();
        XDesktop::movePointer(targetPlace.center());
        expectNoDrag();
    }

private:
    void dragToTheProgram()
    {
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        xdotool(moveTo(start) + press + moveTo(start + QPoint(4, 0)) +
                moveTo(start + QPoint(40, 30)) + moveTo(targetPlace.center()) +
                moveTo(targetPlace.center() + QPoint(5, 5)));
    }

    static void pressAt(QPoint place)
    {
        XDesktop::run(u"xdotool"_s, moveTo(place) + press);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::LeftButton);
    }

    static void closeFile()
    {
        XDesktop::run(u"xdotool"_s, release);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::NoButton);
    }

    /// The pointer is over the other program, and no drag came with it.
    void expectNoDrag()
    {
        QVERIFY(targetPlace.contains(QCursor::pos()));
        QVERIFY(!m_program->output(u"over"_s));
        QVERIFY(!m_program->output(u"dropped"_s));
    }

    QJsonObject whatWasDropped()
    {
        return QJsonDocument::fromJson(m_program->output(u"dropped"_s)->toUtf8()).object();
    }

    const QUrl m_url = QUrl::fromLocalFile(u"/tmp/a shot é 50%.png"_s);
    std::unique_ptr<QWidget> m_window;
    DraggableImageView *m_view = nullptr;
    std::unique_ptr<OtherProgram> m_program;
};

VELMORA_WIDGETS_TEST(DraggableImageViewTest)
#include "DraggableImageViewTest.moc"
