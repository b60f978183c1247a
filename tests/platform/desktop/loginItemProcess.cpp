// SPDX-License-Identifier: MIT
// A program that can be started at login. With the argument "on" or "off" it turns that on or off;
// with "state" it prints the state. Without arguments, as at login, it records in the folder
// STARTED_FOLDER which program was started and with how many arguments.

#include "platform/LoginItem.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString order = application.arguments().value(1);
    if (order.isEmpty()) {
        QFile note(qEnvironmentVariable("STARTED_FOLDER") + u"/started"_s);
        if (!note.open(QFile::WriteOnly))
            return 1;
        note.write(QByteArray::number(argc) + ' ' + application.applicationFilePath().toUtf8());
        return 0;
    }
    const auto item = makeLoginItem();
    if (order == u"state") {
        std::puts(item->isEnabled() ? "on" : "off");
        return 0;
    }
    const std::optional<QString> failure = item->setEnabled(order == u"on");
    std::puts(failure ? failure->toUtf8().constData() : "done");
    return 0;
}
