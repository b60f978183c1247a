// SPDX-License-Identifier: MIT
// A program with a brightly coloured status item. Prints which action was triggered; "Third"
// changes the title and state of "Second".

#include "platform/StatusItem.h"

#include <QAction>
#include <QApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

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

    QAction first(u"First"_s);
    first.setShortcut(QKeySequence(u"Ctrl+R"_s));
    QAction second(u"Second"_s);
    second.setEnabled(false);
    QAction separator;
    separator.setSeparator(true);
    QAction third(u"Third"_s);
    for (QAction *action : {&first, &second, &third}) {
        QObject::connect(action, &QAction::triggered, action,
                         [action] { say(u"triggered "_s + action->text()); });
    }
    QObject::connect(&third, &QAction::triggered, &second, [&second] {
        second.setEnabled(true);
        second.setText(u"Second again"_s);
    });

    QPixmap picture(64, 64);
    picture.fill(QColor(255, 0, 255));
    const auto item = makeStatusItem();
    item->show(QIcon(picture), u"Velmora"_s, {&first, &second, &separator, &third});
    item->setTitle(u" Velmora"_s);
    say(u"runs"_s);
    return application.exec();
}
