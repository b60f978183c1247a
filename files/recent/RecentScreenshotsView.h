// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentScreenshotRow.h"

#include <QList>

class QLabel;
class QScrollArea;

/// The content of the recent screenshots' window: a header with the count and the folder, and a row
/// for each file that exists. It does not change once built, and does not watch the files. Main
/// thread.
class RecentScreenshotsView : public PaletteView
{
    Q_OBJECT
public:
    using OnAction = RecentScreenshotRow::OnAction;
    enum class Files { MayBeMissing, AreThere };

    /// @param urls newest first
    /// @param files AreThere if the caller has already checked that they exist: then the disk is
    ///        not accessed
    /// @param onAction called whenever a button is pressed; must not delete the view during the
    ///        call
    RecentScreenshotsView(const QList<QUrl> &urls, const QUrl &folder, const OnAction &onAction,
                          Files files = Files::MayBeMissing, QWidget *parent = nullptr);

    /// As passed to the constructor.
    const QList<QUrl> &urls() const { return m_urls; }
    QUrl folder() const { return m_folder; }

    /// Top to bottom.
    const QList<RecentScreenshotRow *> &rows() const { return m_rows; }

    /// How far the list is scrolled, in points.
    int scrollPosition() const;
    void setScrollPosition(int position);

    /// The index of the button with keyboard focus among all buttons, in reading order; -1 if none
    /// has it.
    int focusedButton() const;
    /// Takes the last button if there are fewer. False for -1 and if there are no buttons.
    bool setFocusedButton(int index);

private:
    QWidget *header() const;
    QWidget *list() const;

    QList<QUrl> m_urls;
    QUrl m_folder;
    QList<RecentScreenshotRow *> m_rows;
    QScrollArea *m_scrollArea;
};
