// SPDX-License-Identifier: MIT
#include "style/lightAppearance.h"
#include "tests/app/welcome/WelcomeWindowParts.h"
#include "tests/style/AccessibleLeaves.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace WelcomeWindowParts;

namespace
{

QAccessibleInterface *accessible(QWidget *part)
{
    return QAccessible::queryAccessibleInterface(part);
}

QString accessibleName(QWidget *part)
{
    return accessible(part)->text(QAccessible::Name);
}

/// On Linux a pop-up's own name is its current item, and a label beside it says what it is for.
bool isNamedByLabel(QAccessibleInterface &control, const QString &name)
{
    for (const auto &[other, relation] : control.relations(QAccessible::Label))
        if (other->text(QAccessible::Name) == name)
            return true;
    return false;
}

} // namespace

class WelcomeWindowKeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { applyLightAppearance(); }
    void init() { VelmoraSettings::open().clear(); }

    void returnIsDone_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("return") << "Return";
        QTest::newRow("key pad") << "KP_Enter";
    }

    void returnIsDone()
    {
        QFETCH(const QString, key);
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QSignalSpy done(&window, &WelcomeWindow::doneRequested);
        XDesktop::pressKey(key);
        QVERIFY(done.count() > 0 || done.wait());
        QCOMPARE(done.count(), 1);
    }

    void returnIsDoneWhereverTheFocusIs()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        const QSignalSpy instant(&window, &WelcomeWindow::instantModeRequested);
        const QSignalSpy login(&window, &WelcomeWindow::startAtLoginChanged);
        const QSignalSpy folder(&window, &WelcomeWindow::changeFolderRequested);
        const QSignalSpy feedback(&window, &WelcomeWindow::feedbackRequested);
        for (QWidget *control : controls(window)) {
            control->setFocus(Qt::TabFocusReason);
            QSignalSpy done(&window, &WelcomeWindow::doneRequested);
            QTest::keyClick(control, Qt::Key_Return);
            QTRY_COMPARE(done.count(), 1);
        }
        QCOMPARE(instant.count() + login.count() + folder.count() + feedback.count(), 0);
    }

    void returnInAnOpenPopUpPicksAndIsNotDone_data() { returnIsDone_data(); }

    void returnInAnOpenPopUpPicksAndIsNotDone()
    {
        QFETCH(const QString, key);
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        const QSignalSpy done(&window, &WelcomeWindow::doneRequested);
        QSignalSpy picked(&window, &WelcomeWindow::trayPositionPicked);
        OptionPopUp *position = popUp(window, u"Tray position"_s);
        position->setFocus(Qt::TabFocusReason);
        XDesktop::pressKey(u"space"_s);
        QTRY_VERIFY(position->view()->isVisible());
        XDesktop::pressKey(u"Down"_s);
        XDesktop::pressKey(key);
        QTRY_COMPARE(picked.count(), 1);
        QCOMPARE(picked[0][0].toInt(), 1);
        QCOMPARE(position->currentIndex(), 1);
        // A key press on a button is only signalled once the button has been shown pressed.
        const auto somethingElse = [&] {
            return done.count() > 0 || picked.count() > 1 || position->view()->isVisible();
        };
        QTRY_VERIFY(!position->view()->isVisible());
        QVERIFY(!QTest::qWaitFor(somethingElse, 500));
        // The next one is meant for the window.
        XDesktop::pressKey(key);
        QTRY_COMPARE(done.count(), 1);
        QCOMPARE(picked.count(), 1);
    }

    void noControlIsInFocusUntilTheUserGoesThere()
    {
        WelcomeWindow window(state());
        const QSignalSpy instant(&window, &WelcomeWindow::instantModeRequested);
        QVERIFY(hasKeyboard(window));
        QVERIFY(!controls(window).contains(QApplication::focusWidget()));
        XDesktop::pressKey(u"space"_s);
        XDesktop::pressKey(u"Tab"_s);
        QTRY_VERIFY(controls(window).first()->hasFocus());
        QCOMPARE(instant.count(), 0);
        window.close();
        QVERIFY(hasKeyboard(window));
        QVERIFY(!controls(window).contains(QApplication::focusWidget()));
    }

    void tabReachesEveryControlInItsOrderAndBackTabBack()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        const QList<QWidget *> order = controls(window);
        QVERIFY(!order.contains(nullptr));
        for (QWidget *control : order) {
            XDesktop::pressKey(u"Tab"_s);
            QTRY_COMPARE(QApplication::focusWidget(), control);
        }
        for (qsizetype index = order.size() - 2; index >= 0; --index) {
            XDesktop::pressKey(u"shift+Tab"_s);
            QTRY_COMPARE(QApplication::focusWidget(), order[index]);
        }
    }

    void theFocusCanBeSeenOnEveryControl()
    {
        WelcomeWindow window(state(false, true));
        QVERIFY(hasKeyboard(window));
        for (QWidget *control : controls(window)) {
            window.setFocus();
            const QImage idle = control->grab().toImage();
            control->setFocus(Qt::TabFocusReason);
            QVERIFY2(control->grab().toImage() != idle, qUtf8Printable(accessibleName(control)));
        }
    }

    void spacePressesTheControlInFocus()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QSignalSpy login(&window, &WelcomeWindow::startAtLoginChanged);
        button(window, u"Start at login"_s)->setFocus(Qt::TabFocusReason);
        XDesktop::pressKey(u"space"_s);
        QTRY_COMPARE(login.count(), 1);
        QCOMPARE(login[0][0].toBool(), true);
    }

    void everyControlHasItsNameAndRole_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QAccessible::Role>("role");
        QTest::addColumn<QString>("description");
        const QString none;
        QTest::newRow("instant") << 0 << "Make Instant" << QAccessible::Button << none;
        QTest::newRow("login") << 1 << "Start at login" << QAccessible::CheckBox << none;
        QTest::newRow("folder") << 2 << "Change Folder" << QAccessible::Button
                                << "Change Screenshot Folder";
        QTest::newRow("copy") << 3 << "Auto-copy" << QAccessible::ComboBox
                              << "Picture is best for chats. File is best for uploads and "
                                 "attachments.";
        QTest::newRow("duration") << 4 << "Tray duration" << QAccessible::ComboBox << none;
        QTest::newRow("position") << 5 << "Tray position" << QAccessible::ComboBox << none;
        QTest::newRow("recent") << 6 << "Recent Screenshots" << QAccessible::Button << none;
        QTest::newRow("done") << 7 << "Done" << QAccessible::Button << none;
        QTest::newRow("feedback") << 8 << "Feedback" << QAccessible::Button << "Send Feedback";
    }

    void everyControlHasItsNameAndRole()
    {
        QFETCH(const int, index);
        QFETCH(const QString, name);
        QFETCH(const QAccessible::Role, role);
        QFETCH(const QString, description);
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QAccessibleInterface *control = accessible(controls(window)[index]);
        QVERIFY(control);
        QCOMPARE(control->role(), role);
        if (role == QAccessible::ComboBox)
            QVERIFY(isNamedByLabel(*control, name));
        else
            QCOMPARE(control->text(QAccessible::Name), name);
        QCOMPARE(control->text(QAccessible::Description), description);
        QVERIFY(control->state().focusable);
    }

    void everyTextCanBeReadOut()
    {
        const QString path = u"/home/anna/"_s + QString(300, u'w');
        WelcomeWindow window(state(false, false, path));
        QVERIFY(hasKeyboard(window));
        for (QLabel *each : window.findChildren<QLabel *>()) {
            if (each->text().isEmpty())
                continue;
            QCOMPARE(accessible(each)->role(), QAccessible::StaticText);
            QCOMPARE(accessibleName(each), each->text());
        }
        QCOMPARE(accessible(&window)->text(QAccessible::Name), u"Velmora"_s);
    }

    void whatIsReadOutComesInTheOrderInWhichItStands()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        const QList<QRect> places = AccessibleLeaves::places(window);
        QVERIFY2(places.size() > 35, qPrintable(QString::number(places.size())));
        QVERIFY(AccessibleLeaves::areInReadingOrder(places));
        QCOMPARE(accessible(&window)->role(), QAccessible::Window);
    }

    void cardsRowsAndPicturesTellWhatTheySay()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        const auto owner = [&window](const QString &text) {
            return label(window, text)->parentWidget();
        };
        QCOMPARE(accessibleName(owner(u"Instant"_s)), u"Instant, Save them at once"_s);
        QCOMPARE(accessibleName(owner(u"Turn on instant screenshots"_s)),
                 u"Turn on instant screenshots, To do"_s);
        QCOMPARE(accessibleName(owner(u"Smart naming is active"_s)),
                 u"Smart naming is active, Done"_s);

        QStringList pictures;
        for (QLabel *each : window.findChildren<QLabel *>())
            if (accessible(each)->role() == QAccessible::Graphic)
                pictures.append(accessibleName(each));
        QVERIFY(pictures.contains(u"Velmora"_s));
        QVERIFY(pictures.contains(u"Permissions"_s));
    }
};

VELMORA_WIDGETS_TEST(WelcomeWindowKeyboardTest)
#include "WelcomeWindowKeyboardTest.moc"
