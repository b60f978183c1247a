// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QWidget;

/// Tells assistive technologies what a widget is when its class does not. Call it while the widget
/// is built, before its accessible interface is first requested; main thread.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);
