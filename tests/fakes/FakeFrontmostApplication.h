// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FrontmostApplication.h"

#include <QMetaMethod>

#include <utility>

/// An application in front that the test chooses.
class FakeFrontmostApplication : public FrontmostApplication
{
public:
    std::optional<Application> current() override { return inFront; }

    /// As when the user turns to it.
    void bringToFront(const Application &application)
    {
        if (inFront == application)
            return;
        inFront = application;
        m_hasNews = true;
        announce();
    }

    std::optional<Application> inFront;

protected:
    void connectNotify(const QMetaMethod &) override
    {
        QMetaObject::invokeMethod(this, &FakeFrontmostApplication::announce, Qt::QueuedConnection);
    }

private:
    void announce()
    {
        const auto signal = QMetaMethod::fromSignal(&FrontmostApplication::activated);
        if (isSignalConnected(signal) && std::exchange(m_hasNews, false))
            Q_EMIT activated(*inFront);
    }

    bool m_hasNews = false;
};
