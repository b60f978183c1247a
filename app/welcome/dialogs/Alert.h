// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

/// A message of the program with the button "OK". Modal for the window that it belongs to, and
/// deleted when it has been dismissed; `finished` tells of that, however the user did it. It says
/// nothing when it ends with its window. Main thread.
class Alert : public QDialog
{
    Q_OBJECT
public:
    /// Both texts are plain. Shown by `open()`.
    Alert(const QString &title, const QString &message, QWidget *window);
};
