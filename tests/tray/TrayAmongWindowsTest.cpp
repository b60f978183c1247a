#include "core/VelmoraSettings.h"
#include "tests/tray/TrayRig.h"
#include "tests/world/XDesktop.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"
#include "tray/TrayController.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

namespace
{

constexpr int patience = 20000;
constexpr int aWhile = 500;

/// Whether it holds now and all the time until a while later.
template <typename Condition>
bool stays(Condition condition)
{
    return !QTest::qWaitFor([&condition] { return !condition(); }, aWhile);
}

} // namespace

/// The tray among the windows of other programs. What holds here has to hold under every window
/// manager; this program is run under several.
class TrayAmongWindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        VelmoraSettings::open().clear();
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        XDesktop::movePointer({300, 700});
        m_rig = std::make_unique<TrayRig>();
        m_tray = std::make_unique<TrayController>(m_rig->platform, m_rig->images, m_rig->actions);
        m_terminal = std::make_unique<Terminal>(typedFile());
    }

    void cleanup()
    {
        m_tray.reset();
        m_terminal.reset();
    }

    void everyScreenshotLeavesTheKeyboardToTheOtherProgram()
    {
        XDesktop::type(u"before "_s);
        for (const QString &file : {u"one.png"_s, u"two.png"_s, u"three.png"_s, u"four.png"_s}) {
            add(file);
            XDesktop::type(file + u' ');
            QVERIFY(stays([this] { return m_terminal->isActive(); }));
            XDesktop::type(u"later "_s);
        }
        XDesktop::type(u"\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(
            typedIntoTerminal(),
            u"before one.png later two.png later three.png later four.png later \n"_s, patience);
        QVERIFY(!panel()->isActiveWindow());
    }

private:
    QString typedFile() const { return m_rig->place(u"typed"_s).toLocalFile(); }

    QString typedIntoTerminal() const
    {
        QFile file(typedFile());
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    void add(const QString &file)
    {
        m_tray->addScreenshot(m_rig->open(m_rig->screenshot(file)), file);
        QTRY_COMPARE(rows().first()->x(), 8);
    }

    std::unique_ptr<TrayRig> m_rig;
    std::unique_ptr<TrayController> m_tray;
    std::unique_ptr<Terminal> m_terminal;
};

QTEST_MAIN(TrayAmongWindowsTest)
#include "TrayAmongWindowsTest.moc"
