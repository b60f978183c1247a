#include "app/welcome/explainOnce.h"

#include "core/VelmoraSettings.h"

#include <QMessageBox>

void explainOnce(const QString &key, const QString &title, const QString &message, QWidget *parent)
{
    if (VelmoraSettings::open().value(key).toBool())
        return;
    QMessageBox alert(parent);
    alert.setIcon(QMessageBox::Information);
    alert.setWindowTitle(QStringLiteral("Velmora"));
    alert.setText(title);
    alert.setInformativeText(message);
    alert.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    // The windows of the program stay above others, and so must what belongs to them.
    alert.setWindowFlag(Qt::WindowStaysOnTopHint);
    alert.exec();
    VelmoraSettings::open().setValue(key, true);
}
