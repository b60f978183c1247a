// SPDX-License-Identifier: MIT
#include "tray/RowStatus.h"

#include "tray/StatusLabel.h"

void RowStatus::showBriefly(const QString &text)
{
    ++m_number;
    m_label.showBriefly(text);
}

void RowStatus::show(const QString &text)
{
    ++m_number;
    m_label.setText(text);
}

void RowStatus::announce(const QString &work)
{
    m_announcement = work;
    m_label.setText(work);
}

void RowStatus::endAnnouncement()
{
    if (!m_announcement.isEmpty() && m_label.text() == m_announcement)
        m_label.clear();
    m_announcement.clear();
}
