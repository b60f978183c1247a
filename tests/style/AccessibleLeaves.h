// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QList>
#include <QRect>
#include <QWidget>

/// What assistive technologies find in a widget that has no children: texts, pictures, controls.
namespace AccessibleLeaves
{

/// The visible elements with a text, in the order in which they are read out.
inline void collect(QAccessibleInterface *element, QList<QRect> &places)
{
    const QAccessible::Role role = element->role();
    const bool isWhole = role == QAccessible::ComboBox || role == QAccessible::ScrollBar;
    if (element->state().invisible || role == QAccessible::ScrollBar)
        return;
    if (element->childCount() > 0 && !isWhole) {
        for (int index = 0; index < element->childCount(); ++index)
            collect(element->child(index), places);
        return;
    }
    if (!element->text(QAccessible::Name).isEmpty() || isWhole)
        places << element->rect();
}

inline QList<QRect> places(QWidget &widget)
{
    QList<QRect> found;
    collect(QAccessible::queryAccessibleInterface(&widget), found);
    return found;
}

/// Whether each is to the right of the previous one or below it. One below may be in a column that
/// is read to its end first.
inline bool areInReadingOrder(const QList<QRect> &places)
{
    for (qsizetype index = 1; index < places.size(); ++index) {
        const QRect &before = places[index - 1];
        const QRect &here = places[index];
        if (here.left() < before.right() && here.top() < before.bottom())
            return false;
    }
    return true;
}

} // namespace AccessibleLeaves
