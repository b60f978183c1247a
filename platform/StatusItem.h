// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QList>
#include <QString>

#include <memory>

class QAction;

/// The program's item in the desktop's status bar, with its menu. Main thread.
///
/// If the status bar starts later, the item appears then. Without a status bar it never appears,
/// and nothing else changes.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// Shows the item. The actions, which include separators, belong to the caller and must outlive
    /// this object; the menu follows their titles and states.
    virtual void show(const QIcon &icon, const QString &toolTip,
                      const QList<QAction *> &actions) = 0;

    /// The text beside the icon, on desktops that show one.
    virtual void setTitle(const QString &title) = 0;
};

std::unique_ptr<StatusItem> makeStatusItem();
