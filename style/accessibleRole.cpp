// SPDX-License-Identifier: MIT
#include "style/accessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace
{

constexpr char roleProperty[] = "velmoraAccessibleRole";

QAccessibleInterface *withGivenRole(const QString &, QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    const QVariant role = object->property(roleProperty);
    if (!role.isValid())
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget *>(object),
                                 static_cast<QAccessible::Role>(role.toInt()));
}

} // namespace

void setAccessibleRole(QWidget &widget, QAccessible::Role role)
{
    widget.setProperty(roleProperty, static_cast<int>(role));
    // Qt does not install the same factory twice.
    QAccessible::installFactory(withGivenRole);
}
