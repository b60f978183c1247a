// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FolderEvents.h"

/// Events of a system that reports none, or only some.
class PoorFolderEvents : public FolderEvents
{
public:
    explicit PoorFolderEvents(Coverage coverage) : m_coverage(coverage) {}

    Coverage arm(const QString &) override { return m_coverage; }
    void disarm() override {}

private:
    Coverage m_coverage;
};
