// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"

#include "core/VelmoraSettings.h"
#include "style/VelmoraPalette.h"
#include "tests/world/TestProgram.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScreen>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

class TrayRowsTest : public QObject, ControllerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

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
        QCOMPARE(names(), (QStringList{u"three.png"_s, u"two.png"_s, u"one.png"_s}));
        QCOMPARE(badges(), (QStringList{u"NEW"_s, u"EARLIER"_s, u"EARLIER"_s}));
    }

    void aFourthScreenshotPushesTheFirstOut()
    {
        const QUuid first = add("one.png");
        add("two.png");
        add("three.png");
        add("four.png");
        QCOMPARE(names(), (QStringList{u"four.png"_s, u"three.png"_s, u"two.png"_s}));
        QCOMPARE(badges(), (QStringList{u"NEW"_s, u"EARLIER"_s, u"EARLIER"_s}));
        QVERIFY(!m_tray->fileURL(first));
        suggest(first, "late.png");
        m_tray->markNaming(first);
        QVERIFY(m_rig->filesInFolder().contains(u"one.png"_s));
        QVERIFY(m_calls.isEmpty());
    }

    void whenTheNewestGoesTheNextBecomesNew()
    {
        add("one.png");
        add("two.png");
        click(rows().first(), "Dismiss");
        QCOMPARE(names(), QStringList{u"one.png"_s});
        QCOMPARE(badges(), QStringList{u"NEW"_s});
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
        QVERIFY(m_rig->filesInFolder().contains(u"one.png"_s));

        VelmoraSettings::setTrayPosition(TrayPosition::topRight);
        add("two.png");
        QCOMPARE(panel(), first);
        QVERIFY(panel()->isVisible());
        QTRY_COMPARE(panel()->y(), 44);
        QCOMPARE(panel()->size(), QSize(620, 88));
        QCOMPARE(names(), QStringList{u"two.png"_s});
    }

    void fileUrlsFollowRenamesAndEndWithTheRow()
    {
        const QUuid id = add("one.png");
        QCOMPARE(m_tray->fileURL(id), std::optional(m_rig->place(u"one.png"_s)));
        suggest(id, "better.png");
        QTRY_COMPARE(m_tray->fileURL(id), std::optional(m_rig->place(u"better.png"_s)));
        click(rows().first(), "Dismiss");
        QVERIFY(!m_tray->fileURL(id));
        QVERIFY(!m_tray->fileURL(QUuid::createUuid()));
    }

    void aShownFileIsKnownHoweverItsAddressIsWritten()
    {
        add("one.png");
        const QString path = m_rig->place(u"one.png"_s).toLocalFile();
        const QString folder = path.section(u'/', 0, -2);
        QVERIFY(m_tray->containsScreenshot(QUrl::fromLocalFile(path)));
        QVERIFY(m_tray->containsScreenshot(QUrl::fromLocalFile(folder + u"/./one.png"_s)));
        QVERIFY(m_tray->containsScreenshot(QUrl::fromLocalFile(folder + u"//x/../one.png"_s)));
        QVERIFY(!m_tray->containsScreenshot(QUrl::fromLocalFile(folder + u"/One.png"_s)));

        const QUrl odd = QUrl::fromLocalFile(folder + u"/./two.png"_s);
        m_rig->screenshot(u"two.png"_s);
        m_tray->addScreenshot(m_rig->open(odd), u"two.png"_s);
        QVERIFY(m_tray->containsScreenshot(m_rig->place(u"two.png"_s)));
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
            visited.append(QString::fromUtf8(inTop ? "top " : "below ") +
                           focused->accessibleName());
        }
        QStringList wanted;
        for (const char *place : {"top ", "below "}) {
            for (const char *control : {"Edit filename and press Return", "Copy",
                                        "Show in File Manager", "Move to Trash", "Dismiss"})
                wanted.append(QString::fromUtf8(place) + QString::fromUtf8(control));
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
            QTest::keyClicks(name(oldest), u"x"_s);
        });
        typing.start(1000);
        QTRY_COMPARE_WITH_TIMEOUT(rows().size(), 2, 20000);
        QVERIFY2(watch.elapsed() >= 14990 && watch.elapsed() < 17000,
                 qPrintable(QString::number(watch.elapsed())));
        QCOMPARE(names(), (QStringList{u"three.png"_s, u"two.png"_s}));
        // The typed text is not lost.
        m_rig->settle();
        const QString typed = m_calls.value(0).section(u' ', 1);
        QVERIFY2(typed.contains(u'x'), qPrintable(m_calls.join(u'\n')));
        QVERIFY(m_rig->filesInFolder().contains(typed));
        QCOMPARE(m_calls.size(), 2);
    }
};

VELMORA_WIDGETS_TEST(TrayRowsTest)
#include "TrayRowsTest.moc"
