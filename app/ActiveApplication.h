// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <optional>

class FrontmostApplication;
struct Application;

/// The ordinary application that the user last worked in. System components and this program itself
/// never count, so that the name is suitable for a file name. Main thread.
class ActiveApplication : public QObject
{
    Q_OBJECT
public:
    /// Starts with the application that is in front at that time.
    explicit ActiveApplication(FrontmostApplication &frontmost, QObject *parent = nullptr);

    /// The application's localised name; "screenshot" while there has been none.
    QString lastActiveAppName() const { return m_lastActiveAppName; }

    /// Whether the system has reported that name.
    bool isKnown() const { return m_isKnown; }

    /// Asks what is in front, for a screenshot that has just been taken.
    void refresh();

    /// From now on, follows each application that the user activates.
    void observe();

    /// Whether an application counts as one that the user works in.
    static bool isCustomerApp(const QString &name, const std::optional<QString> &bundleIdentifier);

private:
    void consider(const Application &application);

    FrontmostApplication &m_frontmost;
    QString m_lastActiveAppName = QStringLiteral("screenshot");
    bool m_isKnown = false;
};
