// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

/// The top of the welcome window: the logo, what the program does, and its state.
class WelcomeHeader : public QWidget
{
    Q_OBJECT
public:
    explicit WelcomeHeader(bool instantModeOn, QWidget *parent = nullptr);
};
