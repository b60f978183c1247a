// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

/// A message from the program with the button "OK". Modal for its window, and deleted once
/// dismissed; `finished` is emitted however the user dismisses it, but not when it ends with its
/// window. Main thread.
class Alert : public QDialog
{
    Q_OBJECT
public:
    /// Both texts are plain. Show it with `open()`.
    Alert(const QString &title, const QString &message, QWidget *window);
};
