// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QWidget;

/// What is explained to the user before the program does something for the first time.
struct Explanation {
    QString key; ///< the preference that records that it was read
    QString title;
    QString message;
};

/// Shows the explanation in an alert of the window the first time that it is needed, and never
/// again for this user. Calls `goOn` when the alert is dismissed, or at once when it was read
/// before. If the alert ends with its window, nothing is recorded and `goOn` is not called. Main
/// thread.
void explainOnce(QWidget &window, const Explanation &explanation,
                 const std::function<void()> &goOn);
