// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

/// Real programs with status bars, and what is visible of them on the screen.
namespace StatusBars
{

/// A process that ends when this object is destroyed.
class Program
{
public:
    Program(const QString &program, const QStringList &arguments);
    ~Program();

    /// The next line of its output; empty when none comes in ten seconds.
    QString nextLine();
    bool isRunning() const;
    void kill();

private:
    QProcess m_process;
};

/// A panel whose status tray hosts status notifier items and also embeds windows.
std::unique_ptr<Program> startPanel();

/// A tray that only embeds windows.
std::unique_ptr<Program> startOlderTray();

/// The centre of the bright colour on the screen, where the item is; absent while it is not shown.
std::optional<QPoint> itemOnScreen();

void click(QPoint place, int button);

/// The menu that opens when the item is clicked; an empty rectangle when none does.
QRect openMenu(int button);

/// Clicks into the menu at this share of its height, and waits until it has closed.
void clickMenu(const QRect &menu, double howFarDown);

bool isMenuOpen();

} // namespace StatusBars
