// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QList>

class QLabel;
class QPushButton;

/// A message from the program with the button "OK", or with a choice of two. Modal for its window,
/// and deleted once dismissed; `finished` is emitted however the user dismisses it, but not when it
/// ends with its window. Main thread.
class Alert : public QDialog
{
    Q_OBJECT
public:
    /// Both texts are plain. Show it with `open()`.
    Alert(const QString &title, const QString &message, QWidget *window);

    /// The titles of the two buttons. Neither has the keyboard focus at first, so a user who is
    /// still typing chooses nothing.
    struct Choice {
        QString accept;
        QString reject;
    };
    Alert(const QString &title, const QString &message, const Choice &choice, QWidget *window);

private:
    QLabel *build(const QString &title, const QString &message,
                  const QList<QPushButton *> &buttons);
};
