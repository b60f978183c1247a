// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshotsView.h"

#include "style/BezelButton.h"
#include "style/ElidedLabel.h"
#include "style/ImageView.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"
#include "style/VelmoraStyle.h"
#include "tests/files/TestFiles.h"
#include "tests/style/AccessibleLeaves.h"
#include "tests/world/TestProgram.h"

#include <QAccessible>
#include <QApplication>
#include <QScrollArea>
#include <QTest>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

using Kind = RecentScreenshotAction::Kind;

QColor textColor(const QWidget &label)
{
    return label.palette().color(label.foregroundRole());
}

/// A widget's geometry within the view.
QRect placeIn(const QWidget &view, const QWidget &widget)
{
    return {widget.mapTo(&view, QPoint()), widget.size()};
}

} // namespace

class RecentScreenshotsViewTest : public QObject
{
    Q_OBJECT

    const TestFiles m_files{};
    QList<RecentScreenshotAction> m_actions;
    std::unique_ptr<RecentScreenshotsView> m_view;

    void show(const QList<QUrl> &urls, const QUrl &folder)
    {
        m_view = std::make_unique<RecentScreenshotsView>(
            urls, folder, [this](const RecentScreenshotAction &action) { m_actions << action; });
        m_view->resize(620, 460);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }
    void show(const QList<QUrl> &urls) { show(urls, m_files.folder()); }
    QList<QUrl> someFiles(int count) const
    {
        QList<QUrl> urls;
        for (int i = 1; i <= count; ++i)
            urls << m_files.make(u"shot %1.png"_s.arg(i));
        return urls;
    }
    /// The label with this text; fails the test if there is none.
    QLabel *label(const QString &text) const
    {
        const auto labels = m_view->findChildren<QLabel *>();
        for (QLabel *label : labels) {
            if (label->text() == text)
                return label;
        }
        qFatal("no label %s", qUtf8Printable(text));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(new VelmoraStyle);
        QApplication::setPalette(VelmoraPalette::lightPalette());
    }
    void init() { m_actions.clear(); }
    void cleanup() { m_view.reset(); }

    void theHeaderTellsTitleCountAndFolder()
    {
        show(someFiles(3));
        const QLabel *title = label(u"Recent Screenshots"_s);
        QCOMPARE(title->font(), systemFont(22, QFont::DemiBold));
        QCOMPARE(textColor(*title), VelmoraPalette::primaryText());
        const QLabel *count = label(u"3 items"_s);
        QCOMPARE(count->font(), systemFont(12, QFont::Medium));
        QCOMPARE(textColor(*count), VelmoraPalette::secondaryText());
        QVERIFY(count->alignment() & Qt::AlignRight);
        const QString path = m_files.folder().toLocalFile();
        const QLabel *folder = label(u"Folder: "_s + path);
        QCOMPARE(folder->font(), monospacedSystemFont(12));
        QCOMPARE(textColor(*folder), VelmoraPalette::tertiaryText());
        QCOMPARE(folder->toolTip(), path);
        QCOMPARE(m_view->fillColor(), VelmoraPalette::window());
    }

    void oneFileIsCountedInThePluralToo()
    {
        show(someFiles(1));
        label(u"1 items"_s);
        QCOMPARE(m_view->rows().size(), 1);
    }

    void anEmptyListSaysSo()
    {
        show({});
        label(u"0 items"_s);
        const QLabel *empty = label(u"No recent screenshots"_s);
        QCOMPARE(empty->font(), systemFont(15, QFont::Medium));
        QCOMPARE(textColor(*empty), VelmoraPalette::secondaryText());
        const QRect place = placeIn(*m_view, *empty);
        QVERIFY(std::abs(place.center().x() - m_view->rect().center().x()) <= 1);
        QVERIFY(empty->alignment().testFlag(Qt::AlignHCenter));
    }

    void aListOfMissingFilesIsEmpty()
    {
        show({m_files.url(u"gone.png"_s), m_files.url(u"gone too.png"_s)});
        label(u"0 items"_s);
        label(u"No recent screenshots"_s);
        QVERIFY(m_view->rows().isEmpty());
    }

    void onlyFilesThatExistAreShownInTheirOrder()
    {
        const QList<QUrl> files = someFiles(2);
        show({files.at(1), m_files.url(u"gone.png"_s), files.at(0)});
        label(u"2 items"_s);
        QCOMPARE(m_view->rows().size(), 2);
        QCOMPARE(m_view->rows().at(0)->url(), files.at(1));
        QCOMPARE(m_view->rows().at(1)->url(), files.at(0));
    }

    void aLongFolderIsCutInTheMiddleAndWholeAsToolTip()
    {
        const QString path = u"/"_s + u"some/long/way/"_s.repeated(20) + u"end"_s;
        show(someFiles(1), QUrl::fromLocalFile(path));
        auto *folder = qobject_cast<ElidedLabel *>(label(u"Folder: "_s + path));
        QVERIFY(folder);
        QVERIFY(folder->width() < folder->fontMetrics().horizontalAdvance(folder->text()));
        QCOMPARE(folder->toolTip(), path);
        const QString cut = folder->fontMetrics().elidedText(folder->text(), Qt::ElideMiddle,
                                                             folder->contentsRect().width());
        QVERIFY(cut.startsWith(u"Folder: /some"_s) && cut.endsWith(u"way/end"_s));
        const QImage shown = folder->grab().toImage();
        folder->setText(cut);
        QCOMPARE(shown, folder->grab().toImage());
        QCOMPARE(m_view->width(), 620);
        QVERIFY(placeIn(*m_view, *folder).right() < 620 - 24);
    }

    void thePartsStandInTheirPlaces()
    {
        show(someFiles(2));
        const QRect title = placeIn(*m_view, *label(u"Recent Screenshots"_s));
        QCOMPARE(title.topLeft(), QPoint(24, 22));
        const QRect count = placeIn(*m_view, *label(u"2 items"_s));
        QCOMPARE(count.right() + 1, 620 - 24);
        QVERIFY(std::abs(count.center().y() - title.center().y()) <= 1);
        QVERIFY(count.left() - title.right() > 16);
        const QRect folder =
            placeIn(*m_view, *label(u"Folder: "_s + m_files.folder().toLocalFile()));
        QCOMPARE(folder.top(), title.bottom() + 1 + 6);
        QCOMPARE(folder.left(), 24);
        QCOMPARE(folder.right() + 1, 620 - 24);
        const QRect list = placeIn(*m_view, *m_view->findChild<QScrollArea *>());
        QCOMPARE(list.top(), folder.bottom() + 1 + 18);
        QCOMPARE(list.left(), 24);
        QCOMPARE(list.right() + 1, 620 - 24);
        QCOMPARE(list.bottom() + 1, 460 - 24);
    }

    void theRowsStandInTheList()
    {
        show(someFiles(2));
        const QWidget *list = m_view->findChild<QScrollArea *>()->widget();
        const QRect first = placeIn(*list, *m_view->rows().at(0));
        const QRect second = placeIn(*list, *m_view->rows().at(1));
        QCOMPARE(first, QRect(0, 2, list->width(), 74));
        QCOMPARE(second, QRect(0, 2 + 74 + 8, list->width(), 74));
    }

    void manyRowsScroll()
    {
        show(someFiles(10));
        const auto *area = m_view->findChild<QScrollArea *>();
        QCOMPARE(area->widget()->height(), 2 + 10 * 74 + 9 * 8 + 2);
        QCOMPARE(area->widget()->width(), area->viewport()->width());
        m_view->setScrollPosition(150);
        QCOMPARE(m_view->scrollPosition(), 150);
        QVERIFY(m_view->rows().at(0)->visibleRegion().isEmpty());
    }

    void aRowIsBuiltOfThumbnailNameAndButtons()
    {
        show(someFiles(1));
        const RecentScreenshotRow *row = m_view->rows().first();
        QCOMPARE(row->fillColor(), VelmoraPalette::card());
        const QRect thumbnail = placeIn(*row, *row->thumbnail());
        QCOMPARE(thumbnail, QRect(10, (74 - 48) / 2, 64, 48));
        const auto *name = row->findChild<ElidedLabel *>();
        QCOMPARE(name->text(), u"shot 1.png"_s);
        QCOMPARE(name->font(), systemFont(13, QFont::DemiBold));
        QCOMPARE(textColor(*name), VelmoraPalette::primaryText());
        QCOMPARE(placeIn(*row, *name).left(), 10 + 64 + 12);
        const auto buttons = row->findChildren<BezelButton *>();
        QCOMPARE(buttons.size(), 3);
        const QStringList toolTips = {u"Copy"_s, u"Show in File Manager"_s, u"Move to Trash"_s};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(buttons.at(i)->toolTip(), toolTips.at(i));
            QCOMPARE(buttons.at(i)->accessibleName(), toolTips.at(i));
            QVERIFY(!buttons.at(i)->icon().isNull());
            QCOMPARE(placeIn(*row, *buttons.at(i)),
                     QRect(row->width() - 10 - 110 + i * (32 + 6), (74 - 28) / 2, 32, 28));
        }
    }

    void theRowsEdgeIsFaintAmberAndItsCornersAreRound()
    {
        show(someFiles(1));
        const QImage row = m_view->rows().first()->grab().toImage();
        const QColor edge = row.pixelColor(row.width() / 2, 0);
        const QColor amber = VelmoraPalette::amber();
        const auto mixed = [](int over) { return int(std::lround(0.18 * over + 0.82 * 255)); };
        QVERIFY(std::abs(edge.red() - mixed(amber.red())) <= 1);
        QVERIFY(std::abs(edge.green() - mixed(amber.green())) <= 1);
        QVERIFY(std::abs(edge.blue() - mixed(amber.blue())) <= 1);
        QCOMPARE(row.pixel(row.width() / 2, 2), VelmoraPalette::card().rgb());
        const QImage whole = m_view->grab().toImage();
        const QPoint corner = m_view->rows().first()->mapTo(m_view.get(), QPoint());
        QCOMPARE(whole.pixel(corner), VelmoraPalette::window().rgb());
        QCOMPARE(whole.pixel(corner + QPoint(2, 1)), VelmoraPalette::window().rgb());
    }

    void aLongNameIsCutAndTheButtonsStayInTheRow()
    {
        show({m_files.make(QString(200, u'w') + u".png"_s)});
        const RecentScreenshotRow *row = m_view->rows().first();
        const auto buttons = row->findChildren<BezelButton *>();
        QVERIFY(placeIn(*row, *buttons.last()).right() < row->width() - 10);
        QVERIFY(placeIn(*m_view, *row).right() <= 620 - 24);
        const auto *name = row->findChild<ElidedLabel *>();
        QVERIFY(placeIn(*row, *name).right() < placeIn(*row, *buttons.first()).left());
    }

    void aRowIsNamedAfterItsFileAndItsThumbnailIsAnImage()
    {
        show(someFiles(2));
        for (RecentScreenshotRow *row : m_view->rows()) {
            const QString name = FileUrls::lastPathComponent(row->url());
            QAccessibleInterface *group = QAccessible::queryAccessibleInterface(row);
            QCOMPARE(group->role(), QAccessible::Grouping);
            QCOMPARE(group->text(QAccessible::Name), name);
            QAccessibleInterface *image = QAccessible::queryAccessibleInterface(row->thumbnail());
            QCOMPARE(image->role(), QAccessible::Graphic);
            QCOMPARE(image->text(QAccessible::Name), u"Thumbnail"_s);
            QCOMPARE(image->text(QAccessible::Description), u"Thumbnail of "_s + name);
        }
    }

    void whatIsReadOutComesInTheOrderInWhichItStands()
    {
        show(someFiles(3));
        const QList<QRect> places = AccessibleLeaves::places(*m_view);
        QCOMPARE(places.size(), 3 + 3 * 5);
        QVERIFY(AccessibleLeaves::areInReadingOrder(places));
    }

    void aNameOfMarkupIsShownAsItIs()
    {
        const QUrl file = m_files.make(u"<b>bold<b> &amp;.png"_s);
        show({file}, QUrl::fromLocalFile(u"/<b>bold<b>"_s));
        const auto *name = m_view->rows().first()->findChild<ElidedLabel *>();
        QCOMPARE(name->text(), u"<b>bold<b> &amp;.png"_s);
        QCOMPARE(name->textFormat(), Qt::PlainText);
        QCOMPARE(label(u"Folder: /<b>bold<b>"_s)->textFormat(), Qt::PlainText);
    }

    void theButtonsSendTheirActions()
    {
        const QList<QUrl> files = someFiles(2);
        show(files);
        for (const RecentScreenshotRow *row : m_view->rows()) {
            for (BezelButton *button : row->findChildren<BezelButton *>())
                QTest::mouseClick(button, Qt::LeftButton);
        }
        QList<RecentScreenshotAction> expected;
        for (const QUrl &file : files)
            expected << RecentScreenshotAction{Kind::Copy, file}
                     << RecentScreenshotAction{Kind::Reveal, file}
                     << RecentScreenshotAction{Kind::Trash, file};
        QVERIFY(m_actions == expected);
    }

    void theKeyboardReachesEveryButton()
    {
        const QList<QUrl> files = someFiles(2);
        show(files);
        m_view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
        m_view->setFocus();
        for (int i = 0; i < 6; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(m_view->focusedButton(), i);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        }
        QCOMPARE(m_actions.size(), 6);
        QVERIFY(m_actions.first() == (RecentScreenshotAction{Kind::Copy, files.first()}));
        QVERIFY(m_actions.last() == (RecentScreenshotAction{Kind::Trash, files.last()}));
    }

    void theFocusCanBeSetByNumber()
    {
        show(someFiles(2));
        m_view->setFocus();
        QCOMPARE(m_view->focusedButton(), -1);
        QVERIFY(!m_view->setFocusedButton(-1));
        QVERIFY(m_view->setFocusedButton(4));
        QCOMPARE(m_view->focusedButton(), 4);
        QVERIFY(m_view->setFocusedButton(99));
        QCOMPARE(m_view->focusedButton(), 5);
        show({});
        QVERIFY(!m_view->setFocusedButton(0));
    }
};

VELMORA_WIDGETS_TEST(RecentScreenshotsViewTest)
#include "RecentScreenshotsViewTest.moc"
