// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// What a window says about the application that it belongs to.
struct FocusedWindow {
    /// The names by which desktop entries claim windows; on Wayland both are the application id.
    QString instance;
    QString windowClass;
    /// Ids of desktop entries that some toolkits set on their windows.
    QStringList notedIds;
    /// 0 when the process runs on another machine or is unknown.
    qint64 processId = 0;
    /// False for panels, desktops, notifications and the like.
    bool isOrdinary = true;
};
