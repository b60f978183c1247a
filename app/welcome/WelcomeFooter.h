// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

/// The bar at the bottom of the welcome window, which stays in place while the rest scrolls.
class WelcomeFooter : public QWidget
{
    Q_OBJECT
public:
    explicit WelcomeFooter(const QString &folderPath, QWidget *parent = nullptr);

Q_SIGNALS:
    void recentScreenshotsRequested();
    /// Emitted for Return too, wherever the focus is.
    void doneRequested();
    void feedbackRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
};
