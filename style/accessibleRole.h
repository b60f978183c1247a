// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QWidget;

/// Tells assistive technologies what a widget is where its class does not say it. Called while the
/// widget is built, before anybody has asked for it; main thread.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);
