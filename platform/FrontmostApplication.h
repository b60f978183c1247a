// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

/// An ordinary application that the user works with.
struct Application {
    /// Empty where the system says that an application is in front, but not which.
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
    /// The application in front, or the one before it where panels, desktops, this program or a
    /// screenshot tool are in front; absent where the system does not tell, or has not told yet:
    /// activated() follows as soon as it does.
    virtual std::optional<Application> current() = 0;

Q_SIGNALS:
    /// The user has brought another application to the front. What was found out while nobody
    /// listened is told to the first who does.
    void activated(const Application &application);
};

std::unique_ptr<FrontmostApplication> makeFrontmostApplication();
