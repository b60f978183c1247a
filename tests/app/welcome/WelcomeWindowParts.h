// SPDX-License-Identifier: MIT
#pragma once

#include "app/welcome/OptionPopUp.h"
#include "app/welcome/WelcomeWindow.h"
#include "platform/DesktopLimits.h"
#include "tests/world/XDesktop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QTest>

#include <cstdlib>

using namespace Qt::StringLiterals;

/// What the tests look for in the welcome window.
namespace WelcomeWindowParts
{

/// A desktop that lacks what the test chooses.
class SteeredDesktopLimits : public DesktopLimits
{
public:
    QList<DesktopLimit> missing() const override { return m_missing; }
    void setMissing(const QList<DesktopLimit> &missing)
    {
        m_missing = missing;
        Q_EMIT changed();
    }

private:
    QList<DesktopLimit> m_missing;
};

inline SteeredDesktopLimits &limits()
{
    static SteeredDesktopLimits here;
    return here;
}

inline WelcomeState state(bool instantModeOn = false, bool startsAtLogin = false,
                          const QString &folder = u"/home/anna/Pictures/Screenshots"_s)
{
    return {QUrl::fromLocalFile(folder), instantModeOn, startsAtLogin, false, limits()};
}

/// All labels with this text, in no order.
inline QList<QLabel *> labels(const WelcomeWindow &window, const QString &text)
{
    QList<QLabel *> found = window.findChildren<QLabel *>();
    found.removeIf([&text](const QLabel *label) { return label->text() != text; });
    return found;
}

/// The only label with this text; null when there is none or more than one.
inline QLabel *label(const WelcomeWindow &window, const QString &text)
{
    const QList<QLabel *> found = labels(window, text);
    return found.size() == 1 ? found.first() : nullptr;
}

inline QAbstractButton *button(const WelcomeWindow &window, const QString &text)
{
    for (QAbstractButton *candidate : window.findChildren<QAbstractButton *>())
        if (candidate->text() == text)
            return candidate;
    return nullptr;
}

inline OptionPopUp *popUp(const WelcomeWindow &window, const QString &name)
{
    for (OptionPopUp *candidate : window.findChildren<OptionPopUp *>())
        if (candidate->accessibleName() == name)
            return candidate;
    return nullptr;
}

/// The titles that a pop-up offers, in order.
inline QStringList titles(const OptionPopUp &popUp)
{
    QStringList all;
    for (int index = 0; index < popUp.count(); ++index)
        all.append(popUp.itemText(index));
    return all;
}

/// The controls, in the order in which Tab reaches them.
inline QList<QWidget *> controls(const WelcomeWindow &window)
{
    return {button(window, u"Make Instant"_s),
            button(window, u"Start at login"_s),
            button(window, u"Change Folder"_s),
            popUp(window, u"Auto-copy"_s),
            popUp(window, u"Tray duration"_s),
            popUp(window, u"Tray position"_s),
            button(window, u"Recent Screenshots"_s),
            button(window, u"Done"_s),
            button(window, u"Feedback"_s)};
}

/// Shows the window and waits until it has the keyboard.
inline bool showActive(WelcomeWindow &window)
{
    window.show();
    window.raise();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

/// Shows the window, and waits until key presses on the desktop reach it.
inline bool hasKeyboard(WelcomeWindow &window)
{
    return showActive(window) &&
           QTest::qWaitFor([&window] { return XDesktop::activeWindow() == window.winId(); });
}

/// The position of a part within the window.
inline QRect place(const QWidget &part)
{
    return {part.mapTo(part.window(), QPoint(0, 0)), part.size()};
}

/// How many pixels of the part have this colour, or nearly so.
inline int pixelsOf(QWidget &part, const QColor &color, int tolerance = 2)
{
    const QImage image = part.grab().toImage();
    const auto isNear = [tolerance](int one, int other) {
        return std::abs(one - other) <= tolerance;
    };
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += isNear(pixel.red(), color.red()) && isNear(pixel.green(), color.green()) &&
                     isNear(pixel.blue(), color.blue());
        }
    }
    return count;
}

} // namespace WelcomeWindowParts
