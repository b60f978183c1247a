#include "tray/TrayController.h"

#include "core/FileUrls.h"
#include "core/VelmoraSettings.h"
#include "style/BezelButton.h"
#include "style/VelmoraPalette.h"
#include "tests/tray/TrayRig.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QScreen>
#include <QTest>
#include <QTimer>

using TrayOnScreen::badge;
using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;
using TrayOnScreen::status;

namespace
{

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

void click(QWidget *row, const char *accessibleName)
{
    BezelButton *found = button(row, text(accessibleName));
    QVERIFY(found);
    QTest::mouseClick(found, Qt::LeftButton);
}

} // namespace

class TrayControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        VelmoraSettings::open().clear();
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        m_told.clear();
        m_rig = std::make_unique<TrayRig>();
        m_tray = std::make_unique<TrayController>(m_rig->platform, m_rig->images);
        m_tray->onRenamed = [this](const QUrl &url) { tell("renamed", {url}); };
        m_tray->onRenameUndoable = [this](const QUrl &from, const QUrl &to) {
            tell("rename undoable", {from, to});
        };
        m_tray->onTrashUndoable = [this](const QUrl &from, const QUrl &) {
            tell("trash undoable", {from});
        };
        m_tray->onUndoPerformed = [this](const UndoableAction &, const QUrl &url) {
            tell("undo performed", {url});
        };
    }

    void cleanup() { m_tray.reset(); }

    void thereIsNoPanelBeforeTheFirstScreenshot()
    {
        QVERIFY(!panel());
        m_tray->layoutPanel();
        QVERIFY(!panel());
        add("one.png");
        QVERIFY(panel()->isVisible());
    }

    void aNewRowIsOnTopAndTheOnlyNewOne()
    {
        add("one.png");
        add("two.png");
        add("three.png");
        QCOMPARE(names(), (QStringList{text("three.png"), text("two.png"), text("one.png")}));
        QCOMPARE(badges(), (QStringList{text("NEW"), text("EARLIER"), text("EARLIER")}));
    }

    void aFourthScreenshotPushesTheFirstOut()
    {
        const QUuid first = add("one.png");
        add("two.png");
        add("three.png");
        add("four.png");
        QCOMPARE(names(), (QStringList{text("four.png"), text("three.png"), text("two.png")}));
        QCOMPARE(badges(), (QStringList{text("NEW"), text("EARLIER"), text("EARLIER")}));
        QVERIFY(!m_tray->fileURL(first));
        m_tray->updateSuggestion(first, text("late.png"), true);
        m_tray->markNaming(first);
        QVERIFY(m_rig->filesInFolder().contains(text("one.png")));
        QVERIFY(m_told.isEmpty());
    }

    void whenTheNewestGoesTheNextBecomesNew()
    {
        add("one.png");
        add("two.png");
        click(rows().first(), "Dismiss");
        QCOMPARE(names(), QStringList{text("one.png")});
        QCOMPARE(badges(), QStringList{text("NEW")});
    }

    void thePanelStandsInTheChosenCorner_data()
    {
        QTest::addColumn<TrayPosition>("position");
        QTest::addColumn<bool>("right");
        QTest::addColumn<bool>("bottom");
        QTest::newRow("bottomRight") << TrayPosition::bottomRight << true << true;
        QTest::newRow("topRight") << TrayPosition::topRight << true << false;
        QTest::newRow("bottomLeft") << TrayPosition::bottomLeft << false << true;
        QTest::newRow("topLeft") << TrayPosition::topLeft << false << false;
    }

    void thePanelStandsInTheChosenCorner()
    {
        QFETCH(const TrayPosition, position);
        QFETCH(const bool, right);
        QFETCH(const bool, bottom);
        VelmoraSettings::setTrayPosition(position);
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        for (int count = 1; count <= 3; ++count) {
            add("shot.png");
            const int height = 72 * count + 6 * (count - 1) + 16;
            const int x = right ? screen.right() + 1 - 620 - 44 : screen.left() + 44;
            const int y = bottom ? screen.bottom() + 1 - height - 44 : screen.top() + 44;
            QTRY_COMPARE(panel()->geometry(), QRect(x, y, 620, height));
        }
    }

    void aNewPositionMovesTheVisiblePanelAtOnce()
    {
        add("one.png");
        const QPoint before = panel()->pos();
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        m_tray->layoutPanel();
        QCOMPARE(panel()->pos(), QPoint(44, 44));
        QVERIFY(before != panel()->pos());
    }

    void theRowsStandBelowEachOther()
    {
        add("one.png");
        add("two.png");
        add("three.png");
        const auto placed = [](int index, int y) {
            const QWidget *row = rows()[index];
            return QRect(row->mapTo(panel(), QPoint()), row->size()) == QRect(8, y, 604, 72);
        };
        QTRY_VERIFY(placed(0, 8));
        QTRY_VERIFY(placed(1, 86));
        QTRY_VERIFY(placed(2, 164));
    }

    void aRowArrivesFromTheRightAndFadesIn()
    {
        add("one.png");
        QWidget *row = rows().first();
        QCOMPARE(row->x(), 8 + 18);
        QCOMPARE(TrayOnScreen::picture(row).pixel(100, 4), VelmoraPalette::tray().rgb());
        QElapsedTimer watch;
        watch.start();
        int last = row->x();
        while (row->x() > 8) {
            QVERIFY(watch.elapsed() < 2000);
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QVERIFY(row->x() <= last);
            last = row->x();
        }
        QVERIFY(watch.elapsed() >= 100);
        QTRY_COMPARE(TrayOnScreen::picture(row).pixel(100, 4), VelmoraPalette::card().rgb());
        QCOMPARE(panel()->size(), QSize(620, 88));
    }

    void closingTheOnlyRowHidesThePanelUntilTheNext()
    {
        add("one.png");
        QWidget *first = panel();
        click(rows().first(), "Dismiss");
        QVERIFY(!first->isVisible());
        QVERIFY(m_rig->filesInFolder().contains(text("one.png")));

        VelmoraSettings::setTrayPosition(TrayPosition::topRight);
        add("two.png");
        QCOMPARE(panel(), first);
        QVERIFY(panel()->isVisible());
        QTRY_COMPARE(panel()->y(), 44);
        QCOMPARE(panel()->size(), QSize(620, 88));
        QCOMPARE(names(), QStringList{text("two.png")});
    }

    void fileUrlsFollowRenamesAndEndWithTheRow()
    {
        const QUuid id = add("one.png");
        QCOMPARE(m_tray->fileURL(id), std::optional(m_rig->place(text("one.png"))));
        m_tray->updateSuggestion(id, text("better.png"), true);
        QCOMPARE(m_tray->fileURL(id), std::optional(m_rig->place(text("better.png"))));
        click(rows().first(), "Dismiss");
        QVERIFY(!m_tray->fileURL(id));
        QVERIFY(!m_tray->fileURL(QUuid::createUuid()));
    }

    void aShownFileIsKnownHoweverItsAddressIsWritten()
    {
        add("one.png");
        const QString path = m_rig->place(text("one.png")).toLocalFile();
        const QString folder = path.section(u'/', 0, -2);
        QVERIFY(m_tray->containsScreenshot(QUrl::fromLocalFile(path)));
        QVERIFY(m_tray->containsScreenshot(QUrl::fromLocalFile(folder + text("/./one.png"))));
        QVERIFY(m_tray->containsScreenshot(QUrl::fromLocalFile(folder + text("//x/../one.png"))));
        QVERIFY(!m_tray->containsScreenshot(QUrl::fromLocalFile(folder + text("/One.png"))));

        const QUrl odd = QUrl::fromLocalFile(folder + text("/./two.png"));
        m_rig->screenshot(text("two.png"));
        m_tray->addScreenshot(odd, text("two.png"));
        QVERIFY(m_tray->containsScreenshot(m_rig->place(text("two.png"))));
    }

    void namingIsShownOnTheRow()
    {
        const QUuid id = add("one.png");
        m_tray->markNaming(id);
        QCOMPARE(status(rows().first()), text("Reading screen text..."));
        m_tray->markNaming(QUuid::createUuid());
        m_tray->updateSuggestion(QUuid::createUuid(), text("x.png"), true);
        QVERIFY(m_told.isEmpty());
    }

    void anAutomaticRenameIsTold()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, text("better.png"), true);
        QCOMPARE(m_told, (QStringList{text("renamed better.png"),
                                      text("rename undoable one.png better.png")}));
        QCOMPARE(status(rows().first()), text("Renamed automatically"));
    }

    void aTypedNameIsToldOnce()
    {
        add("one.png");
        type(rows().first(), "typed");
        QTest::keyClick(name(rows().first()), Qt::Key_Return);
        QCOMPARE(m_told, (QStringList{text("renamed typed.png"),
                                      text("rename undoable one.png typed.png")}));
    }

    void aRenameThatFailsIsNotTold()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(text("one.png")).toLocalFile()));
        type(rows().first(), "typed");
        QTest::keyClick(name(rows().first()), Qt::Key_Return);
        QCOMPARE(status(rows().first()), text("Rename failed"));
        QVERIFY(m_told.isEmpty());
    }

    void copyPutsPictureAndFileOnTheClipboardWhateverTheSetting()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::none);
        add("one.png");
        click(rows().first(), "Copy");
        QCOMPARE(status(rows().first()), text("Copied"));
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        QVERIFY(data->formats().contains(text("image/png")));
        QCOMPARE(data->urls(), QList<QUrl>{m_rig->place(text("one.png"))});
    }

    void aCopyThatFailsSaysSo()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(text("one.png")).toLocalFile()));
        click(rows().first(), "Copy");
        QCOMPARE(status(rows().first()), text("Could not copy"));
    }

    void revealShowsTheFileWhereItIsNow()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, text("better.png"), true);
        click(rows().first(), "Reveal in Finder");
        QCOMPARE(m_rig->fileBrowser->revealed, QList<QUrl>{m_rig->place(text("better.png"))});
    }

    void trashTellsAndClosesTheRow()
    {
        add("one.png");
        add("two.png");
        click(rows().last(), "Move to Trash");
        QCOMPARE(m_told, QStringList{text("trash undoable one.png")});
        QCOMPARE(names(), QStringList{text("two.png")});
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("two.png")});
    }

    void aTrashThatFailsLeavesTheRow()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(text("one.png")).toLocalFile()));
        click(rows().first(), "Move to Trash");
        QCOMPARE(status(rows().first()), text("Trash failed"));
        QVERIFY(m_told.isEmpty());
        QCOMPARE(rows().size(), 1);
    }

    void undoTellsAndKeepsTheRow()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, text("better.png"), true);
        m_told.clear();
        click(rows().first(), "Undo");
        QCOMPARE(m_told, QStringList{text("undo performed one.png")});
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("one.png")});
        QCOMPARE(names(), QStringList{text("one.png")});
        QCOMPARE(m_tray->fileURL(id), std::optional(m_rig->place(text("one.png"))));
    }

    void anUndoThatFailsIsNotTold()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, text("better.png"), true);
        m_rig->screenshot(text("one.png"), Qt::blue);
        m_told.clear();
        click(rows().first(), "Undo");
        QCOMPARE(status(rows().first()), text("Could not undo"));
        QVERIFY(m_told.isEmpty());
        QVERIFY(button(rows().first(), text("Undo"))->isVisible());
    }

    void withoutCallbacksEverythingStillWorks()
    {
        m_tray->onRenamed = nullptr;
        m_tray->onRenameUndoable = nullptr;
        m_tray->onTrashUndoable = nullptr;
        m_tray->onUndoPerformed = nullptr;
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, text("better.png"), true);
        click(rows().first(), "Undo");
        click(rows().first(), "Move to Trash");
        QVERIFY(m_rig->filesInFolder().isEmpty());
    }

    void closingARowInWhichTheUserTypesRenamesNothing_data()
    {
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("Escape") << true;
        QTest::newRow("the close button") << false;
    }

    void closingARowInWhichTheUserTypesRenamesNothing()
    {
        QFETCH(const bool, byEscape);
        add("one.png");
        add("two.png");
        QWidget *row = rows().first();
        type(row, "half a na");
        if (byEscape)
            QTest::keyClick(name(row), Qt::Key_Escape);
        else
            click(row, "Dismiss");
        QCoreApplication::processEvents();
        QCOMPARE(names(), QStringList{text("one.png")});
        QCOMPARE(m_rig->filesInFolder(), (QStringList{text("one.png"), text("two.png")}));
        QVERIFY(m_told.isEmpty());
        // What is typed on lands in no other row.
        QVERIFY(!name(rows().first())->hasFocus());
    }

    void aRowIsPushedOutWhileTheUserTypesInIt()
    {
        add("one.png");
        type(rows().first(), "half a na");
        add("two.png");
        add("three.png");
        add("four.png");
        QCoreApplication::processEvents();
        QCOMPARE(rows().size(), 3);
        QVERIFY(m_rig->filesInFolder().contains(text("one.png")));
        QVERIFY(m_told.isEmpty());
        for (const QWidget *row : rows())
            QVERIFY(!name(row)->hasFocus());
    }

    void theTrashLeavesATypedNameAlone()
    {
        add("one.png");
        add("two.png");
        type(rows().first(), "half a na");
        click(rows().first(), "Move to Trash");
        QCoreApplication::processEvents();
        QCOMPARE(m_told, QStringList{text("trash undoable two.png")});
    }

    void endingWhileTheUserTypesRenamesNothing()
    {
        add("one.png");
        type(rows().first(), "half a na");
        m_tray.reset();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("one.png")});
        QVERIFY(m_told.isEmpty());
    }

    void tabGoesFromTheNewestRowDown()
    {
        add("one.png");
        add("two.png");
        activate();
        QStringList visited;
        for (int i = 0; i < 10; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QWidget *focused = QApplication::focusWidget();
            const bool inTop = rows().first()->isAncestorOf(focused);
            visited.append(text(inTop ? "top " : "below ") + focused->accessibleName());
        }
        QStringList wanted;
        for (const char *place : {"top ", "below "}) {
            for (const char *control : {"Edit filename and press Return", "Copy",
                                        "Reveal in Finder", "Move to Trash", "Dismiss"})
                wanted.append(text(place) + text(control));
        }
        QCOMPARE(visited, wanted);
    }

    void aRowLeavesAfterFifteenSecondsEvenWhenTheUserTypes()
    {
        VelmoraSettings::setTrayDuration(TrayDuration::fifteenSeconds);
        QElapsedTimer watch;
        watch.start();
        add("one.png");
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        add("two.png");
        VelmoraSettings::setTrayDuration(TrayDuration::sixtySeconds);
        add("three.png");

        QWidget *oldest = rows().last();
        QTimer typing;
        connect(&typing, &QTimer::timeout, oldest, [oldest] {
            name(oldest)->setFocus();
            QTest::keyClicks(name(oldest), text("x"));
        });
        typing.start(1000);
        QTRY_COMPARE_WITH_TIMEOUT(rows().size(), 2, 20000);
        QVERIFY2(watch.elapsed() >= 14990 && watch.elapsed() < 17000,
                 qPrintable(QString::number(watch.elapsed())));
        QCOMPARE(names(), (QStringList{text("three.png"), text("two.png")}));
        QVERIFY(m_rig->filesInFolder().contains(text("one.png")));
        QVERIFY(m_told.isEmpty());
    }

private:
    QUuid add(const char *file)
    {
        return m_tray->addScreenshot(m_rig->screenshot(text(file)), text(file));
    }

    void tell(const char *what, const QList<QUrl> &urls)
    {
        QString line = text(what);
        for (const QUrl &url : urls)
            line += u' ' + FileUrls::lastPathComponent(url);
        m_told.append(line);
    }

    static QStringList names()
    {
        QStringList shown;
        for (const QWidget *row : rows())
            shown.append(name(row)->text());
        return shown;
    }

    static QStringList badges()
    {
        QStringList shown;
        for (const QWidget *row : rows())
            shown.append(badge(row));
        return shown;
    }

    static void activate()
    {
        panel()->takeFocus();
        QVERIFY(QTest::qWaitForWindowActive(panel()));
    }

    static void type(QWidget *row, const char *typed)
    {
        activate();
        name(row)->setFocus();
        name(row)->selectAll();
        QTest::keyClicks(name(row), text(typed));
    }

    std::unique_ptr<TrayRig> m_rig;
    std::unique_ptr<TrayController> m_tray;
    QStringList m_told;
};

QTEST_MAIN(TrayControllerTest)
#include "TrayControllerTest.moc"
