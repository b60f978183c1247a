// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FrontmostApplication.h"

/// An application in front that the test chooses.
class FakeFrontmostApplication : public FrontmostApplication
{
public:
    std::optional<Application> current() override { return inFront; }

    /// As when the user turns to it.
    void bringToFront(const Application &application)
    {
        inFront = application;
        Q_EMIT activated(application);
    }

    std::optional<Application> inFront;
};
