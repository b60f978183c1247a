// SPDX-License-Identifier: MIT
#include "app/welcome/dialogs/explainOnce.h"

#include "app/welcome/dialogs/Alert.h"
#include "core/VelmoraSettings.h"

void explainOnce(QWidget &window, const Explanation &explanation, const std::function<void()> &goOn)
{
    if (VelmoraSettings::open().value(explanation.key).toBool()) {
        goOn();
        return;
    }
    auto *alert = new Alert(explanation.title, explanation.message, &window);
    QObject::connect(alert, &QDialog::finished, &window, [key = explanation.key, goOn] {
        VelmoraSettings::open().setValue(key, true);
        goOn();
    });
    alert->open();
}
