// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class StatusLabel;

/// The status text of a row. Main thread; the label must outlive it.
class RowStatus
{
public:
    explicit RowStatus(StatusLabel &label) : m_label(label) {}

    /// Shows a text for two seconds, or until there is another one.
    void showBriefly(const QString &text);
    void show(const QString &text);

    /// Increases with each text that has been shown, but not with announcements.
    int number() const { return m_number; }

    /// Shows what takes long, until that ends.
    void announce(const QString &work);
    void endAnnouncement();

private:
    StatusLabel &m_label;
    int m_number = 0;
    QString m_announcement;
};
