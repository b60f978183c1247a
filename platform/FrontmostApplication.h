// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

/// An ordinary application that the user works with.
struct Application {
    /// Empty when the system reports that an application is in front, but not which one.
    QString localizedName;
    /// The application's identifier (on Linux the id of its desktop entry), if it has one.
    std::optional<QString> bundleIdentifier;

    bool operator==(const Application &) const = default;
};

/// Which application the user is working in. Main thread.
class FrontmostApplication : public QObject
{
    Q_OBJECT
public:
    /// The application in front; while a panel, the desktop, this program or a screenshot tool is
    /// in front, the one before it. Absent when the system does not report it, or has not yet:
    /// activated() follows as soon as it does.
    virtual std::optional<Application> current() = 0;

Q_SIGNALS:
    /// The user has brought another application to the front. If nothing was connected at the time,
    /// the first receiver to connect gets the signal.
    void activated(const Application &application);
};

std::unique_ptr<FrontmostApplication> makeFrontmostApplication();
