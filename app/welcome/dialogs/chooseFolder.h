// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <functional>

class QWidget;

/// Lets the user choose the screenshot folder in a panel of the window, which begins at `current`.
/// A folder that can't be watched is refused in an alert that says why and which folder stays in
/// use; then the panel comes back. `onChosen` is called with a folder that can be watched, and not
/// at all when the user cancels or the window goes away. Main thread.
void chooseFolder(QWidget &window, const QUrl &current,
                  const std::function<void(const QUrl &)> &onChosen);
