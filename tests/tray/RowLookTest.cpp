// SPDX-License-Identifier: MIT
#include "tests/tray/RowFixture.h"

#include "style/BezelButton.h"
#include "style/VelmoraPalette.h"
#include "tests/world/TestProgram.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

using TrayOnScreen::badge;
using TrayOnScreen::thumbnail;

namespace
{

bool matches(const QColor &color, const QColor &wanted)
{
    return std::abs(color.red() - wanted.red()) <= 2 &&
           std::abs(color.green() - wanted.green()) <= 2 &&
           std::abs(color.blue() - wanted.blue()) <= 2;
}

/// `front` with this opacity over `back`.
QColor over(const QColor &front, double alpha, const QColor &back)
{
    const auto mix = [alpha](int one, int other) {
        return qRound(alpha * one + (1 - alpha) * other);
    };
    return QColor(mix(front.red(), back.red()), mix(front.green(), back.green()),
                  mix(front.blue(), back.blue()));
}

} // namespace

class RowLookTest : public QObject, RowFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void itsPartsHaveTheirPlacesAndSizes()
    {
        const auto place = [this](const QWidget *part) {
            return QRect(part->mapTo(m_row, QPoint()), part->size());
        };
        QCOMPARE(place(thumbnail(m_row)), QRect(22, 11, 64, 50));
        const QRect field = place(name());
        QCOMPARE(field.left(), 96);
        QVERIFY(field.width() >= 250);

        const QRect close = place(button("Dismiss"));
        QCOMPARE(close, QRect(604 - 8 - 32, 22, 32, 28));
        int right = close.left();
        for (const char *tip : {"Move to Trash", "Show in File Manager", "Copy"}) {
            const QRect rect = place(button(tip));
            QCOMPARE(rect.size(), QSize(32, 28));
            QCOMPARE(right - rect.left(), 32 + 5);
            right = rect.left();
        }
        QVERIFY(button("Undo")->isHidden());
    }

    void theNameFieldIsAsWideWithoutUndoAsTheColumnsAllow()
    {
        // 604 less the insets, the accent bar, the picture, three gaps and the buttons' 208.
        QCOMPARE(name()->width(), 604 - 16 - 4 - 64 - 3 * 10 - 208);
        name()->setText(u"new-name"_s);
        QVERIFY(rename());
        QTRY_COMPARE(button("Undo")->size(), QSize(70, 28));
        QVERIFY(name()->width() >= 250);
        const QRect field(name()->mapTo(m_row, QPoint()), name()->size());
        const int undo = button("Undo")->mapTo(m_row, QPoint()).x();
        QTRY_COMPARE(undo - (field.left() + name()->width()), 10);
    }

    void everyControlSaysWhatItDoes()
    {
        QCOMPARE(name()->toolTip(), u"Edit filename and press Return"_s);
        QCOMPARE(thumbnail(m_row)->toolTip(), u"Drag screenshot"_s);
        for (const char *tip : {"Copy", "Show in File Manager", "Move to Trash", "Dismiss"}) {
            QVERIFY(button(tip));
            QCOMPARE(button(tip)->toolTip(), QString::fromUtf8(tip));
        }
        QCOMPARE(button("Undo")->text(), u"Undo"_s);
        QCOMPARE(button("Undo")->toolTip(), u"Undo last change"_s);
        QVERIFY(!name()->accessibleName().isEmpty());
        QVERIFY(!thumbnail(m_row)->accessibleName().isEmpty());
    }

    void itStartsAsTheNewestWithTheGivenNameAndNoStatus()
    {
        QCOMPARE(name()->text(), u"app-screen.png"_s);
        QCOMPARE(badge(m_row), u"NEW"_s);
        QCOMPARE(status(), QString());
        QCOMPARE(m_row->fileURL(), m_url);
        QVERIFY(m_actions.isEmpty());
    }

    void theNewestIsOpaqueWithABorder()
    {
        m_row->setNewest(true);
        const QImage image = TrayOnScreen::picture(m_row);
        QCOMPARE(image.pixelColor(300, 3), VelmoraPalette::card());
        QVERIFY(matches(image.pixelColor(300, 0),
                        over(VelmoraPalette::coral(), 0.34, VelmoraPalette::card())));
        QVERIFY(matches(image.pixelColor(10, 36),
                        over(VelmoraPalette::coral(), 0.95, VelmoraPalette::card())));
    }

    void anEarlierRowIsDimmedWithoutBorder()
    {
        m_row->setNewest(false);
        QCOMPARE(badge(m_row), u"EARLIER"_s);
        const QImage image = TrayOnScreen::picture(m_row);
        const QColor tray = VelmoraPalette::tray();
        const QColor muted = VelmoraPalette::cardMuted();
        QVERIFY(matches(image.pixelColor(300, 3), over(muted, 0.72, tray)));
        QVERIFY(matches(image.pixelColor(300, 0), over(muted, 0.72, tray)));
        QVERIFY(matches(image.pixelColor(10, 36),
                        over(over(VelmoraPalette::blue(), 0.28, muted), 0.72, tray)));

        m_row->setNewest(true);
        QCOMPARE(TrayOnScreen::picture(m_row).pixelColor(300, 3), VelmoraPalette::card());
    }

    void thePictureReplacesThePlaceHolderWhenItIsRead()
    {
        QVERIFY(!thumbnail(m_row)->image().isNull());
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::red));
        QCOMPARE(thumbnail(m_row)->image().size(), QSize(64, 40));
    }

    void aFileThatIsNoPictureLeavesNoImage()
    {
        QFile broken(m_rig->place(u"broken.png"_s).toLocalFile());
        QVERIFY(broken.open(QFile::WriteOnly));
        broken.write("no picture");
        broken.close();
        ScreenshotRowView row(m_id, m_rig->open(m_rig->place(u"broken.png"_s)), u"x.png"_s,
                              {m_rig->actions, m_rig->images}, [](const ScreenshotRowAction &) {});
        QVERIFY(!thumbnail(&row)->image().isNull());
        QTRY_VERIFY_WITH_TIMEOUT(thumbnail(&row)->image().isNull(), 20000);
    }

    void aRowThatIsGoneIsNotTouchedByItsPictureOrStatus()
    {
        auto *row = new ScreenshotRowView(m_id, m_rig->open(m_url), u"x.png"_s,
                                          {m_rig->actions, m_rig->images},
                                          [](const ScreenshotRowAction &) {});
        row->setStatus(u"Copied"_s);
        delete row;
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::red));
    }

    void aStatusGoesAfterTwoSeconds()
    {
        QElapsedTimer watch;
        watch.start();
        m_row->setStatus(u"Reading screen text..."_s);
        QCOMPARE(status(), u"Reading screen text..."_s);
        QTRY_COMPARE(status(), QString());
        QVERIFY(watch.elapsed() >= 1999 && watch.elapsed() < 3000);
    }

    void aNewerStatusKeepsItsWholeTwoSeconds()
    {
        m_row->setStatus(u"Reading screen text..."_s);
        QElapsedTimer watch;
        QTimer::singleShot(1000, this, [this, &watch] {
            watch.start();
            m_row->setStatus(u"Copied"_s);
        });
        QTRY_COMPARE(status(), u"Copied"_s);
        QTRY_COMPARE(status(), QString());
        QVERIFY(watch.elapsed() >= 1999);
    }

    void aLongStatusMovesNothing()
    {
        const int width = name()->width();
        m_row->setStatus(QString(300, u'w'));
        QCoreApplication::processEvents();
        QCOMPARE(name()->width(), width);
        QCOMPARE(button("Dismiss")->mapTo(m_row, QPoint()).x(), 604 - 8 - 32);
    }
};

VELMORA_WIDGETS_TEST(RowLookTest)
#include "RowLookTest.moc"
