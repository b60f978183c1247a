#pragma once

#include "files/RecentScreenshotRow.h"

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

    /// @param urls newest first
    /// @param onAction called for each button that is pressed; the view may be deleted later, but
    /// not within the call
    RecentScreenshotsView(const QList<QUrl> &urls, const QUrl &folder, OnAction onAction,
                          QWidget *parent = nullptr);

    /// Top to bottom.
    const QList<RecentScreenshotRow *> &rows() const { return m_rows; }

    /// How far the list is scrolled, in points.
    int scrollPosition() const;
    void setScrollPosition(int position);

private:
    QWidget *header(const QUrl &folder) const;
    QWidget *list() const;

    OnAction m_onAction;
    QList<RecentScreenshotRow *> m_rows;
    QScrollArea *m_scrollArea;
};
