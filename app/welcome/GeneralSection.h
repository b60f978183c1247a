// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

struct WelcomeState;

/// The controls for instant mode, start at login and the screenshot folder.
class GeneralSection : public QWidget
{
    Q_OBJECT
public:
    explicit GeneralSection(const WelcomeState &state, QWidget *parent = nullptr);

Q_SIGNALS:
    void instantModeRequested();
    void startAtLoginChanged(bool on);
    void changeFolderRequested();
};
