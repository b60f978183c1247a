// SPDX-License-Identifier: MIT
#pragma once

#include <QMimeData>
#include <QUrl>

/// What a drag of a file carries for other programs: its URL, its plain path for those that want
/// text, and its name for those that create a file of their own from the data. Main thread.
class DraggedFile : public QMimeData
{
    Q_OBJECT
public:
    explicit DraggedFile(const QUrl &file) { DraggedFile::setFile(file); }

    QUrl file() const { return m_file; }

    /// The file has moved. A drag in progress carries the new location from now on.
    virtual void setFile(const QUrl &file);

private:
    QUrl m_file;
};
