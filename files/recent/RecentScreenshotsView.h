// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentScreenshotRow.h"

#include <QList>

class QLabel;
class QScrollArea;

/// The content of the recent screenshots' window: a header with the count and the folder, and a row
/// for each file that exists. It is built once of what it is given and does not watch the files.
/// Main thread.
class RecentScreenshotsView : public PaletteView
{
    Q_OBJECT
public:
    using OnAction = RecentScreenshotRow::OnAction;
    enum class Files { MayBeMissing, AreThere };

    /// @param urls newest first
    /// @param files AreThere when somebody has looked already: then the disk is not asked
    /// @param onAction called for each button that is pressed; the view may be deleted later, but
    /// not within the call
    RecentScreenshotsView(const QList<QUrl> &urls, const QUrl &folder, const OnAction &onAction,
                          Files files = Files::MayBeMissing, QWidget *parent = nullptr);

    /// As given.
    const QList<QUrl> &urls() const { return m_urls; }
    QUrl folder() const { return m_folder; }

    /// Top to bottom.
    const QList<RecentScreenshotRow *> &rows() const { return m_rows; }

    /// How far the list is scrolled, in points.
    int scrollPosition() const;
    void setScrollPosition(int position);

    /// Which of all buttons has the keyboard, in reading order; -1 when none has it.
    int focusedButton() const;
    /// The last button where there are not so many. False for -1 and where there are none.
    bool setFocusedButton(int index);

private:
    QWidget *header() const;
    QWidget *list() const;

    QList<QUrl> m_urls;
    QUrl m_folder;
    QList<RecentScreenshotRow *> m_rows;
    QScrollArea *m_scrollArea;
};
