// SPDX-License-Identifier: MIT
// A program with a brightly coloured status item. Prints which action was triggered; "Third"
// changes the title and state of "Second".

#include "platform/StatusItem.h"

#include <QAction>
#include <QApplication>

#include <cstdio>

namespace
{

void say(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QAction first(QStringLiteral("First"));
    first.setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    QAction second(QStringLiteral("Second"));
    second.setEnabled(false);
    QAction separator;
    separator.setSeparator(true);
    QAction third(QStringLiteral("Third"));
    for (QAction *action : {&first, &second, &third}) {
        QObject::connect(action, &QAction::triggered, action,
                         [action] { say(QStringLiteral("triggered ") + action->text()); });
    }
    QObject::connect(&third, &QAction::triggered, &second, [&second] {
        second.setEnabled(true);
        second.setText(QStringLiteral("Second again"));
    });

    QPixmap picture(64, 64);
    picture.fill(QColor(255, 0, 255));
    const auto item = makeStatusItem();
    item->show(QIcon(picture), QStringLiteral("Velmora"), {&first, &second, &separator, &third});
    item->setTitle(QStringLiteral(" Velmora"));
    say(QStringLiteral("runs"));
    return application.exec();
}
