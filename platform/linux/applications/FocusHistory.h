// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FrontmostApplication.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/applications/FocusSource.h"

#include <memory>

/// The application that the user works in: the one of the window with the focus, or of the window
/// before where a panel, a screenshot tool or this program has it. What is installed is read in the
/// background, so nobody waits for it at the start of the program.
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
    /// Absent until they have been read for the first time.
    std::optional<DesktopEntries> m_entries;
    bool m_isReading = false;
    /// The window that the user works in, or last worked in.
    std::optional<FocusedWindow> m_working;
    std::optional<Application> m_application;
    /// Not announced yet.
    bool m_hasNews = false;
};
