// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.h"

#include <QIcon>
#include <QList>

/// Keeps what it is to show.
class FakeStatusItem : public StatusItem
{
public:
    void show(const QIcon &icon, const QString &text, const QList<QAction *> &items) override
    {
        hasIcon = !icon.isNull();
        toolTip = text;
        actions = items;
    }
    void setTitle(const QString &text) override { title = text; }

    bool hasIcon = false;
    QString toolTip;
    QString title;
    QList<QAction *> actions;
};
