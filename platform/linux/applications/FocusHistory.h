// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FrontmostApplication.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/applications/FocusSource.h"

#include <memory>

/// The application that the user works in: the one whose window has the focus, or had it before a
/// panel, a screenshot tool or this program took it. The installed applications are read in the
/// background, so that the program's start does not wait for them.
class FocusHistory : public FrontmostApplication
{
public:
    explicit FocusHistory(std::unique_ptr<FocusSource> source);
    ~FocusHistory() override;

    std::optional<Application> current() override;

protected:
    void connectNotify(const QMetaMethod &signal) override;

private:
    void note(const std::optional<FocusedWindow> &window);
    void identify();
    void setApplication(const Application &application);
    void announceSoon();
    void announce();
    void readEntriesWhenOutdated();
    void readEntries();

    std::unique_ptr<FocusSource> m_source;
    /// Absent until they have been read once.
    std::optional<DesktopEntries> m_entries;
    bool m_isReading = false;
    /// The window that the user works in, or last worked in.
    std::optional<FocusedWindow> m_working;
    std::optional<Application> m_application;
    /// A change that has not been announced yet.
    bool m_hasNews = false;
};
