// SPDX-License-Identifier: MIT
#pragma once

#include "style/VelmoraPalette.h"
#include "tests/tray/TrayBesideTerminal.h"
#include "tests/world/Waiting.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

/// A tray and other programs' windows, and what the user sees of them.
class TrayAmongWindowsFixture : protected TrayBesideTerminal
{
protected:
    /// Whether the condition holds now and keeps holding for a while.
    template <typename Condition>
    static bool stays(const Condition &condition)
    {
        return Waiting::staysTrue(condition, std::chrono::milliseconds(500));
    }

    void add(const QString &file)
    {
        m_tray->addScreenshot(m_rig->open(m_rig->screenshot(file)), file);
        QTRY_COMPARE_WITH_TIMEOUT(TrayOnScreen::rows().first()->x(), 8, patience);
    }

    static void typeIntoName(const QString &text)
    {
        const auto *field = TrayOnScreen::name(TrayOnScreen::rows().first());
        XDesktop::click(centerOf(field));
        QTRY_VERIFY_WITH_TIMEOUT(field->hasFocus(), patience);
        XDesktop::pressKey(u"ctrl+a"_s);
        XDesktop::type(text);
        QTRY_COMPARE_WITH_TIMEOUT(field->text(), text, patience);
    }

    /// A column of pixels that ends at `bottom`.
    QImage screenPicture(QPoint bottom, int height) const
    {
        const QString file = m_rig->place(u"screen.png"_s).toLocalFile();
        const QString area =
            u"1x%1+%2+%3"_s.arg(height).arg(bottom.x()).arg(bottom.y() - height + 1);
        XDesktop::run(u"maim"_s, {u"--geometry"_s, area, file});
        return QImage(file);
    }

    QColor screenColor(QPoint place) const { return screenPicture(place, 1).pixelColor(0, 0); }

    /// Whether the newest row is visible on the screen, in front of everything.
    bool isSeen() const
    {
        const QImage picture =
            screenPicture(TrayOnScreen::rows().first()->mapToGlobal(QPoint(300, 4)), 9);
        return picture.pixelColor(0, 8).rgb() == VelmoraPalette::card().rgb() &&
               picture.pixelColor(0, 0).rgb() == VelmoraPalette::tray().rgb();
    }
};
