#pragma once

#include <QIcon>
#include <QList>
#include <QString>

#include <memory>

class QAction;

/// The program's item in the desktop's status bar, with its menu. Main thread.
///
/// Where the status bar comes late the item appears then; where there is none it never does, and
/// nothing else changes.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// Shows the item. The actions, separators among them, stay the caller's and outlive this
    /// object; the menu follows their titles and states.
    virtual void show(const QIcon &icon, const QString &toolTip,
                      const QList<QAction *> &actions) = 0;

    /// The text beside the icon, on desktops that show one.
    virtual void setTitle(const QString &title) = 0;
};

std::unique_ptr<StatusItem> makeStatusItem();
