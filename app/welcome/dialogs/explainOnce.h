// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QWidget;

/// What is explained to the user before the program does something for the first time.
struct Explanation {
    QString key; ///< the preference that remembers that it has been read
    QString title;
    QString message;
};

/// Shows the explanation in an alert of the window, the first time that it is due and never again
/// for this user, and calls `goOn` when it has been dismissed; at once where it is known already.
/// Where the alert ends with the window, nothing is remembered and nothing goes on. Main thread.
void explainOnce(QWidget &window, const Explanation &explanation,
                 const std::function<void()> &goOn);
