#include "tray/ScreenshotRowView.h"

#include "core/FileUrls.h"
#include "style/BezelButton.h"
#include "style/VelmoraPalette.h"
#include "tests/tray/TrayRig.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/StatusLabel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QTimer>

using TrayOnScreen::badge;
using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::status;
using TrayOnScreen::thumbnail;

namespace
{

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

template <typename What>
QList<What> only(const QList<ScreenshotRowAction> &actions)
{
    QList<What> found;
    for (const ScreenshotRowAction &action : actions) {
        if (const auto *what = std::get_if<What>(&action.what))
            found.append(*what);
    }
    return found;
}

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

class ScreenshotRowViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_rig = std::make_unique<TrayRig>();
        m_actions.clear();
        m_url = m_rig->screenshot(text("Shot.png"));
        m_id = QUuid::createUuid();
        m_window = std::make_unique<PaletteView>();
        m_window->setFillColor(VelmoraPalette::tray());
        m_row = new ScreenshotRowView(
            m_id, m_url, text("app-screen.png"), {*m_rig->platform.systemTrash, m_rig->images},
            [this](const ScreenshotRowAction &action) { m_actions.append(action); });
        m_row->setParent(m_window.get());
        m_row->setGeometry(8, 8, 604, 72);
        m_window->resize(620, 88);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        name(m_row)->clearFocus();
    }

    void cleanup() { m_window.reset(); }

    void itsPartsHaveTheirPlacesAndSizes()
    {
        const auto place = [this](const QWidget *part) {
            return QRect(part->mapTo(m_row, QPoint()), part->size());
        };
        QCOMPARE(place(thumbnail(m_row)), QRect(22, 11, 64, 50));
        const QRect field = place(name(m_row));
        QCOMPARE(field.left(), 96);
        QVERIFY(field.width() >= 250);

        const QRect close = place(button(m_row, text("Dismiss")));
        QCOMPARE(close, QRect(604 - 8 - 32, 22, 32, 28));
        int right = close.left();
        for (const char *tip : {"Move to Trash", "Reveal in Finder", "Copy"}) {
            const QRect rect = place(button(m_row, text(tip)));
            QCOMPARE(rect.size(), QSize(32, 28));
            QCOMPARE(right - rect.left(), 32 + 5);
            right = rect.left();
        }
        QVERIFY(button(m_row, text("Undo"))->isHidden());
    }

    void theNameFieldIsAsWideWithoutUndoAsTheColumnsAllow()
    {
        // 604 less the insets, the bar, the picture, three gaps and the buttons' 208.
        QCOMPARE(name(m_row)->width(), 604 - 16 - 4 - 64 - 3 * 10 - 208);
        name(m_row)->setText(text("new-name"));
        QVERIFY(m_row->renameFile(std::nullopt));
        QTRY_COMPARE(button(m_row, text("Undo"))->size(), QSize(70, 28));
        QVERIFY(name(m_row)->width() >= 250);
        const QRect field(name(m_row)->mapTo(m_row, QPoint()), name(m_row)->size());
        const int undo = button(m_row, text("Undo"))->mapTo(m_row, QPoint()).x();
        QTRY_COMPARE(undo - (field.left() + name(m_row)->width()), 10);
    }

    void everyControlSaysWhatItDoes()
    {
        QCOMPARE(name(m_row)->toolTip(), text("Edit filename and press Return"));
        QCOMPARE(thumbnail(m_row)->toolTip(), text("Drag screenshot"));
        for (const char *tip : {"Copy", "Reveal in Finder", "Move to Trash", "Dismiss"}) {
            QVERIFY(button(m_row, text(tip)));
            QCOMPARE(button(m_row, text(tip))->toolTip(), text(tip));
        }
        QCOMPARE(button(m_row, text("Undo"))->text(), text("Undo"));
        QCOMPARE(button(m_row, text("Undo"))->toolTip(), text("Undo last change"));
        QVERIFY(!name(m_row)->accessibleName().isEmpty());
        QVERIFY(!thumbnail(m_row)->accessibleName().isEmpty());
    }

    void itStartsAsTheNewestWithTheGivenNameAndNoStatus()
    {
        QCOMPARE(name(m_row)->text(), text("app-screen.png"));
        QCOMPARE(badge(m_row), text("NEW"));
        QCOMPARE(status(m_row), QString());
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
        QCOMPARE(badge(m_row), text("EARLIER"));
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
        QFile broken(m_rig->place(text("broken.png")).toLocalFile());
        QVERIFY(broken.open(QFile::WriteOnly));
        broken.write("no picture");
        broken.close();
        ScreenshotRowView row(m_id, m_rig->place(text("broken.png")), text("x.png"),
                              {*m_rig->platform.systemTrash, m_rig->images},
                              [](const ScreenshotRowAction &) {});
        QVERIFY(!thumbnail(&row)->image().isNull());
        QTRY_VERIFY_WITH_TIMEOUT(thumbnail(&row)->image().isNull(), 20000);
    }

    void aRowThatIsGoneIsNotTouchedByItsPictureOrStatus()
    {
        auto *row = new ScreenshotRowView(m_id, m_url, text("x.png"),
                                          {*m_rig->platform.systemTrash, m_rig->images},
                                          [](const ScreenshotRowAction &) {});
        row->setStatus(text("Copied"));
        delete row;
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::red));
    }

    void aSuggestionRenamesTheFileByItself()
    {
        m_row->updateSuggestedFilename(text("chrome-pull-request.png"), true);
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("chrome-pull-request.png")});
        QCOMPARE(name(m_row)->text(), text("chrome-pull-request.png"));
        QCOMPARE(status(m_row), text("Renamed automatically"));
        QCOMPARE(m_row->fileURL(), m_rig->place(text("chrome-pull-request.png")));
        QCOMPARE(thumbnail(m_row)->fileURL(), m_row->fileURL());

        const auto renames = only<ScreenshotRowAction::Renamed>(m_actions);
        QCOMPARE(renames.size(), 1);
        QCOMPARE(renames[0].result, (RenameResult{m_url, m_row->fileURL()}));
        QCOMPARE(m_actions[0].id, m_id);
        QTRY_COMPARE_WITH_TIMEOUT(status(m_row), QString(), 4000);
    }

    void aSuggestionWithoutRenameOnlyFillsTheField()
    {
        m_row->updateSuggestedFilename(text("later.png"), false);
        QCOMPARE(name(m_row)->text(), text("later.png"));
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
        QVERIFY(m_actions.isEmpty());
    }

    void oneTypedCharacterKeepsSuggestionsAway()
    {
        name(m_row)->setFocus();
        QTest::keyClicks(name(m_row), text("z"));
        const QString typed = name(m_row)->text();
        m_row->updateSuggestedFilename(text("chrome-pull-request.png"), true);
        QCOMPARE(name(m_row)->text(), typed);
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
        QVERIFY(m_actions.isEmpty());
    }

    void pastingKeepsSuggestionsAwayToo()
    {
        name(m_row)->setFocus();
        QTest::keyClick(name(m_row), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(name(m_row), Qt::Key_X, Qt::ControlModifier);
        m_row->updateSuggestedFilename(text("chrome-pull-request.png"), true);
        QCOMPARE(name(m_row)->text(), QString());
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
    }

    void returnCommitsTheNameOnce()
    {
        name(m_row)->setFocus();
        name(m_row)->selectAll();
        QTest::keyClicks(name(m_row), text("Foo"));
        QTest::keyClick(name(m_row), Qt::Key_Return);
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("foo.png")});
        QCOMPARE(name(m_row)->text(), text("foo.png"));
        QCOMPARE(status(m_row), text("Saved as foo.png"));
        QCOMPARE(only<ScreenshotRowAction::Renamed>(m_actions).size(), 1);
        QCOMPARE(m_actions.size(), 1);
    }

    void leavingTheFieldCommitsTheName()
    {
        name(m_row)->setFocus();
        name(m_row)->selectAll();
        QTest::keyClicks(name(m_row), text("left"));
        QTest::keyClick(name(m_row), Qt::Key_Tab);
        QVERIFY(button(m_row, text("Copy"))->hasFocus());
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("left.png")});
        QCOMPARE(m_actions.size(), 1);
    }

    void aTakenNameGetsANumber()
    {
        m_rig->screenshot(text("foo.png"));
        m_rig->screenshot(text("foo-2.png"));
        name(m_row)->setText(text("foo"));
        const auto result = m_row->renameFile(std::nullopt);
        QVERIFY(result);
        QCOMPARE(result->newURL, m_rig->place(text("foo-3.png")));
        QCOMPARE(name(m_row)->text(), text("foo-3.png"));
        QCOMPARE(status(m_row), text("Saved as foo-3.png"));
        QCOMPARE(m_rig->filesInFolder().size(), 3);
    }

    void theFilesOwnNameChangesNothing()
    {
        name(m_row)->setText(text("first"));
        QVERIFY(m_row->renameFile(std::nullopt));
        const QString shown = status(m_row);
        name(m_row)->setText(text("  First  "));
        QVERIFY(!m_row->renameFile(std::nullopt));
        QCOMPARE(name(m_row)->text(), text("first.png"));
        QCOMPARE(status(m_row), shown);
        QVERIFY(m_actions.isEmpty());
    }

    void anEmptyNameIsTheFilesOwn()
    {
        name(m_row)->setText(text("first"));
        QVERIFY(m_row->renameFile(std::nullopt));
        name(m_row)->clear();
        QVERIFY(!m_row->renameFile(std::nullopt));
        QCOMPARE(name(m_row)->text(), text("first.png"));
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("first.png")});
    }

    void aFailedRenameKeepsThePlaceAndTheUndo()
    {
        QVERIFY(QFile::remove(m_url.toLocalFile()));
        name(m_row)->setFocus();
        name(m_row)->selectAll();
        QTest::keyClicks(name(m_row), text("foo"));
        QTest::keyClick(name(m_row), Qt::Key_Return);
        QCOMPARE(m_row->fileURL(), m_url);
        QCOMPARE(name(m_row)->text(), text("Shot.png"));
        QCOMPARE(status(m_row), text("Rename failed"));
        QVERIFY(button(m_row, text("Undo"))->isHidden());
        QVERIFY(m_actions.isEmpty());
    }

    void trashingPointsTheRowIntoTheTrash()
    {
        const auto result = m_row->moveToTrash();
        QVERIFY(result);
        QCOMPARE(result->originalURL, m_url);
        QVERIFY(!QFile::exists(m_url.toLocalFile()));
        QVERIFY(QFile::exists(result->trashedURL.toLocalFile()));
        QCOMPARE(m_row->fileURL(), result->trashedURL);
        QCOMPARE(thumbnail(m_row)->fileURL(), result->trashedURL);
        QCOMPARE(status(m_row), text("Moved to Trash"));
        QVERIFY(!button(m_row, text("Undo"))->isHidden());
    }

    void aFileThatIsGoneCantBeTrashedAndTheLogSaysSo()
    {
        QVERIFY(QFile::remove(m_url.toLocalFile()));
        const QString line = text("trash failed %1: ").arg(m_url.toLocalFile());
        QVERIFY(!m_row->moveToTrash());
        QCOMPARE(status(m_row), text("Trash failed"));
        QCOMPARE(m_row->fileURL(), m_url);
        QVERIFY(button(m_row, text("Undo"))->isHidden());
        const QStringList lines = logLinesWith(line);
        QCOMPARE(lines.size(), 1);
        QVERIFY2(!lines[0].endsWith(text(": ")), qPrintable(lines[0]));
    }

    void theUndoButtonAsksForTheLastChange()
    {
        name(m_row)->setText(text("foo"));
        const auto result = m_row->renameFile(std::nullopt);
        QVERIFY(result);
        QTest::mouseClick(button(m_row, text("Undo")), Qt::LeftButton);
        const auto undos = only<ScreenshotRowAction::Undo>(m_actions);
        QCOMPARE(undos.size(), 1);
        QCOMPARE(undos[0].action, UndoableAction::rename(result->oldURL, result->newURL));
    }

    void theUndoButtonDoesNothingWithoutAChange()
    {
        button(m_row, text("Undo"))->show();
        QTest::mouseClick(button(m_row, text("Undo")), Qt::LeftButton);
        QVERIFY(m_actions.isEmpty());
    }

    void anUndoneRenameRestoresTheRow()
    {
        name(m_row)->setText(text("foo"));
        const auto result = m_row->renameFile(std::nullopt);
        const auto restored =
            m_row->performUndo(UndoableAction::rename(result->oldURL, result->newURL));
        QCOMPARE(restored, std::optional(m_url));
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
        QCOMPARE(m_row->fileURL(), m_url);
        QCOMPARE(thumbnail(m_row)->fileURL(), m_url);
        QCOMPARE(name(m_row)->text(), text("Shot.png"));
        QCOMPARE(status(m_row), text("Restored"));
        QVERIFY(button(m_row, text("Undo"))->isHidden());
        QTest::mouseClick(button(m_row, text("Undo")), Qt::LeftButton);
        QVERIFY(m_actions.isEmpty());
    }

    void anUndoneTrashShowsTheFileAsItIsNow()
    {
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::red));
        const auto result = m_row->moveToTrash();
        QVERIFY(result);
        QImage blue(640, 400, QImage::Format_RGB32);
        blue.fill(Qt::blue);
        QVERIFY(blue.save(result->trashedURL.toLocalFile(), "PNG"));

        QVERIFY(m_row->performUndo(UndoableAction::trash(result->originalURL, result->trashedURL)));
        QVERIFY(QFile::exists(m_url.toLocalFile()));
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::blue));
    }

    void aFileThatCantBeReadAfterAnUndoKeepsThePicture()
    {
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::red));
        const auto result = m_row->moveToTrash();
        QVERIFY(result);
        QFile broken(result->trashedURL.toLocalFile());
        QVERIFY(broken.open(QFile::WriteOnly | QFile::Truncate));
        broken.write("no picture");
        broken.close();
        QVERIFY(m_row->performUndo(UndoableAction::trash(result->originalURL, result->trashedURL)));

        // The same request, made after the row's, is answered after it.
        QFuture<QImage> answer = m_rig->images.thumbnail(m_url, {64, 50});
        QTRY_VERIFY_WITH_TIMEOUT(answer.isFinished(), 20000);
        QVERIFY(answer.result().isNull());
        QCoreApplication::processEvents();
        QCOMPARE(thumbnail(m_row)->image().pixelColor(0, 0), QColor(Qt::red));
    }

    void anUndoThatIsNotPossibleStaysPending()
    {
        name(m_row)->setText(text("foo"));
        const auto result = m_row->renameFile(std::nullopt);
        m_rig->screenshot(text("Shot.png"), Qt::green);
        QVERIFY(!m_row->performUndo(UndoableAction::rename(result->oldURL, result->newURL)));
        QCOMPARE(status(m_row), text("Could not undo"));
        QCOMPARE(m_row->fileURL(), m_rig->place(text("foo.png")));
        QCOMPARE(m_rig->filesInFolder().size(), 2);
        QVERIFY(!button(m_row, text("Undo"))->isHidden());

        QVERIFY(QFile::remove(m_url.toLocalFile()));
        QVERIFY(QFile::remove(result->newURL.toLocalFile()));
        QVERIFY(!m_row->performUndo(UndoableAction::rename(result->oldURL, result->newURL)));
        QCOMPARE(status(m_row), text("Could not undo"));
    }

    void aStatusGoesAfterTwoSeconds()
    {
        QElapsedTimer watch;
        watch.start();
        m_row->setStatus(text("Reading screen text..."));
        QCOMPARE(status(m_row), text("Reading screen text..."));
        QTRY_COMPARE(status(m_row), QString());
        QVERIFY(watch.elapsed() >= 1999 && watch.elapsed() < 3000);
    }

    void aNewerStatusKeepsItsWholeTwoSeconds()
    {
        m_row->setStatus(text("Reading screen text..."));
        QElapsedTimer watch;
        QTimer::singleShot(1000, this, [this, &watch] {
            watch.start();
            m_row->setStatus(text("Copied"));
        });
        QTRY_COMPARE(status(m_row), text("Copied"));
        QTRY_COMPARE(status(m_row), QString());
        QVERIFY(watch.elapsed() >= 1999);
    }

    void aUsersRenameKeepsItsStatus()
    {
        m_row->setStatus(text("Copied"));
        name(m_row)->setText(text("foo"));
        QVERIFY(m_row->renameFile(std::nullopt));
        bool older = false;
        QTimer::singleShot(2500, this, [&older] { older = true; });
        QTRY_VERIFY(older);
        QCOMPARE(status(m_row), text("Saved as foo.png"));
    }

    void aLongStatusMovesNothing()
    {
        const int width = name(m_row)->width();
        m_row->setStatus(QString(300, u'w'));
        QCoreApplication::processEvents();
        QCOMPARE(name(m_row)->width(), width);
        QCOMPARE(button(m_row, text("Dismiss"))->mapTo(m_row, QPoint()).x(), 604 - 8 - 32);
    }

    void theButtonsSendTheirActions()
    {
        for (const char *tip : {"Copy", "Reveal in Finder", "Move to Trash", "Dismiss"})
            QTest::mouseClick(button(m_row, text(tip)), Qt::LeftButton);
        QCOMPARE(m_actions.size(), 4);
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Copy>(m_actions[0].what));
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Reveal>(m_actions[1].what));
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Trash>(m_actions[2].what));
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Close>(m_actions[3].what));
    }

    void escapeAnywhereInTheRowClosesItAndOtherKeysDoNot()
    {
        name(m_row)->setFocus();
        QTest::keyClicks(name(m_row), text("half a na"));
        QTest::keyClick(name(m_row), Qt::Key_Left);
        QVERIFY(m_actions.isEmpty());
        QTest::keyClick(name(m_row), Qt::Key_Escape);
        QCOMPARE(only<ScreenshotRowAction::Close>(m_actions).size(), 1);
        m_row->retire();
        button(m_row, text("Copy"))->setFocus();
        QTest::keyClick(button(m_row, text("Copy")), Qt::Key_Escape);
        QCOMPARE(only<ScreenshotRowAction::Close>(m_actions).size(), 2);
        QCOMPARE(m_actions.size(), 2);
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
    }

    void tabVisitsTheNameAndThenTheButtons()
    {
        name(m_row)->setText(text("foo"));
        QVERIFY(m_row->renameFile(std::nullopt));
        name(m_row)->setFocus();
        for (const char *next : {"Undo", "Copy", "Reveal in Finder", "Move to Trash", "Dismiss"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->accessibleName(), text(next));
        }
    }

private:
    std::unique_ptr<TrayRig> m_rig;
    std::unique_ptr<PaletteView> m_window;
    ScreenshotRowView *m_row = nullptr;
    QUuid m_id;
    QUrl m_url;
    QList<ScreenshotRowAction> m_actions;
};

QTEST_MAIN(ScreenshotRowViewTest)
#include "ScreenshotRowViewTest.moc"
