#pragma once

#include <QString>

class QWidget;

/// Shows an explanation the first time that it is due, and never again for this user: a modal
/// alert with one button, "OK". `key` is the preference that remembers it. Main thread; blocks
/// until the alert is dismissed.
void explainOnce(const QString &key, const QString &title, const QString &message, QWidget *parent);
