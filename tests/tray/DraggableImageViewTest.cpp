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

namespace
{

constexpr int patience = 20000;
constexpr QRect targetPlace(900, 500, 300, 200);

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

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
    std::optional<QString> told(const QString &word) const
    {
        return m_told.contains(word) ? std::optional(m_told[word]) : std::nullopt;
    }

    /// Called when a drag enters the window, which happens during QDrag::exec().
    std::function<void()> onOver;

private:
    void read()
    {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            const QString word = line.section(u' ', 0, 0);
            m_told.insert(word, line.section(u' ', 1));
            if (word == text("over") && onOver)
                onOver();
        }
    }

    QProcess m_process;
    QHash<QString, QString> m_told;
};

/// Operates the mouse without waiting for the result: this process may be in the middle of a drag.
void xdotool(const QStringList &arguments)
{
    QVERIFY(QProcess::startDetached(text("xdotool"), arguments));
}

QStringList moveTo(QPoint place)
{
    return {text("mousemove"), QString::number(place.x()), QString::number(place.y())};
}

const QStringList press = {text("mousedown"), text("1")};
const QStringList release = {text("mouseup"), text("1")};

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
        QTRY_VERIFY_WITH_TIMEOUT(m_program->told(text("ready")), patience);
    }

    void cleanup()
    {
        XDesktop::run(text("xdotool"), release);
        m_program.reset();
        m_window.reset();
    }

    void anotherProgramGetsTheFileAsACopy()
    {
        m_program->onOver = [] { xdotool(release); };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->told(text("dropped")), patience);

        QCOMPARE(m_program->told(text("over"))->toInt(), int(Qt::CopyAction));
        const QJsonObject got = whatWasDropped();
        QCOMPARE(got[text("action")].toInt(), int(Qt::CopyAction));
        QCOMPARE(got[text("urls")].toArray(), QJsonArray{m_url.toString()});
        const QJsonObject formats = got[text("formats")].toObject();
        QCOMPARE(formats[text("text/uri-list")].toString().trimmed(),
                 QString::fromLatin1(m_url.toEncoded()));
        QCOMPARE(formats[text("text/plain")].toString(), m_url.toLocalFile());
        QCOMPARE(formats[text("application/x-kde-suggestedfilename")].toString(),
                 text("a shot é 50%.png"));
    }

    void aFileThatIsRenamedDuringTheDragArrivesUnderItsNewName()
    {
        const QUrl renamed = QUrl::fromLocalFile(text("/tmp/renamed.png"));
        m_program->onOver = [this, renamed] {
            m_view->setFileURL(renamed);
            xdotool(release);
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->told(text("dropped")), patience);
        QCOMPARE(whatWasDropped()[text("urls")].toArray(), QJsonArray{renamed.toString()});
    }

    void aRowThatGoesDuringTheDragLeavesTheDragAlive()
    {
        m_program->onOver = [this] {
            m_view->deleteLater();
            xdotool(release);
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->told(text("dropped")), patience);
        QCOMPARE(whatWasDropped()[text("urls")].toArray(), QJsonArray{m_url.toString()});
    }

    void withoutAnImageThereIsNoDrag()
    {
        m_view->setImage({});
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        XDesktop::movePointer(start + QPoint(40, 30));
        XDesktop::movePointer(targetPlace.center());
        letGo();
        expectNoDrag();
    }

    void aSmallMovementIsNoDrag()
    {
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        XDesktop::movePointer(start + QPoint(QApplication::startDragDistance() - 1, 0));
        letGo();
        XDesktop::movePointer(targetPlace.center());
        expectNoDrag();
    }

    void aRowThatMovesUnderThePointerIsNoDrag()
    {
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        m_view->move(m_view->pos() + QPoint(0, 30));
        XDesktop::movePointer(start + QPoint(2, 0));
        letGo();
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
        XDesktop::run(text("xdotool"), moveTo(place) + press);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::LeftButton);
    }

    static void letGo()
    {
        XDesktop::run(text("xdotool"), release);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::NoButton);
    }

    /// The pointer is over the other program, and no drag came with it.
    void expectNoDrag()
    {
        QVERIFY(targetPlace.contains(QCursor::pos()));
        QVERIFY(!m_program->told(text("over")));
        QVERIFY(!m_program->told(text("dropped")));
    }

    QJsonObject whatWasDropped()
    {
        return QJsonDocument::fromJson(m_program->told(text("dropped"))->toUtf8()).object();
    }

    const QUrl m_url = QUrl::fromLocalFile(text("/tmp/a shot é 50%.png"));
    std::unique_ptr<QWidget> m_window;
    DraggableImageView *m_view = nullptr;
    std::unique_ptr<OtherProgram> m_program;
};

VELMORA_WIDGETS_TEST(DraggableImageViewTest)
#include "DraggableImageViewTest.moc"
