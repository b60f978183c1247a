// SPDX-License-Identifier: MIT
#pragma once

#include <QFileDialog>

/// The panel in which the user chooses the screenshot folder among the existing folders of this
/// computer. It only chooses: the code that opened it decides whether the choice is a good one.
/// Modal for its window, and deleted when it is done. Main thread.
class FolderPanel : public QFileDialog
{
    Q_OBJECT
public:
    /// Show it with `open()`.
    FolderPanel(const QUrl &start, QWidget *window);

    void accept() override;

private:
    void leaveFilesAlone();
};
