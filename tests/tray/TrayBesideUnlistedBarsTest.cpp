// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"
#include "tests/world/Screens.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include "tray/ScreenshotRowView.h"

#include <QGuiApplication>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20'000;

QList<QRect> placesOf(const QString &windowClass)
{
    const QString windows = XDesktop::run(
        u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u'^' + windowClass + u'$'});
    QList<QRect> places;
    const QStringList ids = windows.split(u'\n', Qt::SkipEmptyParts);
    for (const QString &id : ids)
        places.append(XDesktop::placeOf(id.toULongLong()));
    return places;
}

/// i3's own bar, along the lower edge of every screen.
class WindowManagersBar
{
public:
    ~WindowManagersBar() { hide(); }

    /// Where it is on this screen, once it is there.
    static QRect show(const QRect &screen)
    {
        run(u"dock"_s);
        QRect place;
        const auto isThere = [&] {
            const QList<QRect> places = placesOf(u"i3bar"_s);
            for (const QRect &each : places) {
                if (each.width() == screen.width() && each.left() == screen.left() &&
                    each.bottom() == screen.bottom())
                    place = each;
            }
            return !place.isEmpty();
        };
        if (!QTest::qWaitFor(isThere, patience))
            qWarning() << "no bar on" << screen << "but" << placesOf(u"i3bar"_s);
        return place;
    }

    static void hide() { run(u"invisible"_s); }

private:
    static void run(const QString &mode)
    {
        XDesktop::run(u"i3-msg"_s, {u"bar"_s, u"mode"_s, mode, u"large"_s});
    }
};

/// A status tray of another maker.
class OtherBar
{
public:
    OtherBar()
    {
        m_process.start(u"trayer"_s,
                        {u"--edge"_s, u"bottom"_s, u"--widthtype"_s, u"percent"_s, u"--width"_s,
                         u"100"_s, u"--height"_s, u"90"_s, u"--SetDockType"_s, u"true"_s,
                         u"--SetPartialStrut"_s, u"true"_s});
    }
    ~OtherBar()
    {
        m_process.terminate();
        m_process.waitForFinished(patience);
    }
    Q_DISABLE_COPY_MOVE(OtherBar)

private:
    QProcess m_process;
};

} // namespace

/// The tray under a window manager that reports neither a work area nor a list of the bars (i3).
class TrayBesideUnlistedBarsTest : public QObject, ControllerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        XDesktop::movePointer({300, 300});
        begin();
    }

    void cleanup()
    {
        end();
        m_bar.hide();
        QTRY_VERIFY_WITH_TIMEOUT(placesOf(u"i3bar"_s).isEmpty(), patience);
    }

    void itKeepsClearOfABarThatIsThere()
    {
        const QRect bar = m_bar.show(screen());
        QVERIFY(bar.height() > 44);
        add("one.png");
        QVERIFY(comesToRestAt(corner - QPoint(0, bar.height())));
    }

    void itMovesClearOfABarThatComesAndBackWhenTheBarGoes()
    {
        add("one.png");
        QVERIFY(comesToRestAt(corner));
        for (int time = 0; time < 2; ++time) {
            const QRect bar = m_bar.show(screen());
            QVERIFY(comesToRestAt(corner - QPoint(0, bar.height())));
            m_bar.hide();
            QVERIFY(comesToRestAt(corner));
        }
    }

    void itMovesClearOfAnotherProgramsBarToo()
    {
        add("one.png");
        QVERIFY(comesToRestAt(corner));
        {
            const OtherBar bar;
            QVERIFY(comesToRestAt(corner - QPoint(0, 90)));
        }
        QVERIFY(comesToRestAt(corner));
    }

    void aBarThatCameWhileNoRowWasShownIsNotCovered()
    {
        add("one.png");
        QVERIFY(comesToRestAt(corner));
        click(TrayOnScreen::rows().first(), "Dismiss");
        QTRY_VERIFY_WITH_TIMEOUT(TrayOnScreen::rows().isEmpty(), patience);
        const QRect bar = m_bar.show(screen());
        add("two.png");
        QVERIFY(comesToRestAt(corner - QPoint(0, bar.height())));
        m_bar.hide();
        QVERIFY(comesToRestAt(corner));
    }

    void onTwoScreensItKeepsClearOfTheBarsOfItsOwn()
    {
        const Screens screens;
        QVERIFY(screens.divide());
        const QRect left(0, 0, 800, 1000);
        const QRect bar = m_bar.show(left);
        QVERIFY(bar.height() > 44);
        add("one.png");
        QVERIFY(comesToRestAt({800 - 620 - 44, bar.top() - 88 - 44}));
        XDesktop::movePointer({1300, 300});
        add("two.png");
        QVERIFY(comesToRestAt({1600 - 620 - 44, bar.top() - 166 - 44}));
        m_bar.hide();
        QVERIFY(comesToRestAt({1600 - 620 - 44, 1000 - 166 - 44}));
    }

private:
    static QRect screen() { return QGuiApplication::primaryScreen()->geometry(); }

    static constexpr QPoint corner = {1600 - 620 - 44, 1000 - 88 - 44};

    WindowManagersBar m_bar;
};

VELMORA_WIDGETS_TEST(TrayBesideUnlistedBarsTest)
#include "TrayBesideUnlistedBarsTest.moc"
