// SPDX-License-Identifier: MIT
#include "app/welcome/dialogs/chooseFolder.h"

#include "app/welcome/dialogs/Alert.h"
#include "app/welcome/dialogs/FolderPanel.h"
#include "app/welcome/dialogs/folderRefusal.h"

using namespace Qt::StringLiterals;

namespace
{

using OnChosen = std::function<void(const QUrl &)>;

void openPanel(QWidget &window, const QUrl &current, const QUrl &start, const OnChosen &onChosen);

void refuse(QWidget &window, const QUrl &current, const QUrl &start, const QString &reason,
            const OnChosen &onChosen)
{
    auto *alert =
        new Alert(u"This folder can't be used"_s,
                  reason + u" Velmora goes on watching %1."_s.arg(current.toLocalFile()), &window);
    QObject::connect(alert, &QDialog::finished, &window, [&window, current, start, onChosen] {
        openPanel(window, current, start, onChosen);
    });
    alert->open();
}

void openPanel(QWidget &window, const QUrl &current, const QUrl &start, const OnChosen &onChosen)
{
    auto *panel = new FolderPanel(start, &window);
    QObject::connect(panel, &QDialog::accepted, &window, [&window, panel, current, onChosen] {
        const QUrl chosen = panel->selectedUrls().value(0);
        if (chosen.isEmpty())
            return;
        if (const std::optional<QString> reason = folderRefusal(chosen))
            refuse(window, current, panel->directoryUrl(), *reason, onChosen);
        else
            onChosen(chosen);
    });
    panel->open();
}

} // namespace

void chooseFolder(QWidget &window, const QUrl &current, const OnChosen &onChosen)
{
    openPanel(window, current, current, onChosen);
}
