// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// What a window says of the application that it belongs to.
struct FocusedWindow {
    /// The names by which desktop entries claim windows; on Wayland both are the application's id.
    QString instance;
    QString windowClass;
    /// Ids of desktop entries that some toolkits note on their windows.
    QStringList notedIds;
    /// 0 when it runs on another machine or nobody can tell.
    qint64 processId = 0;
    /// False for panels, desktops, notifications and the like.
    bool isOrdinary = true;
};
