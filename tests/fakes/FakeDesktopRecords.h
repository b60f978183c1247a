// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopRecords.h"

#include <QList>

/// Records what the desktop is informed of.
class FakeDesktopRecords : public DesktopRecords
{
public:
    void fileMoved(const QUrl &from, const QUrl &to) override { moves.append({from, to}); }
    void fileTrashed(const QUrl &from) override { trashed.append(from); }

    QList<std::pair<QUrl, QUrl>> moves;
    QList<QUrl> trashed;
};
