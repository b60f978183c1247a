// SPDX-License-Identifier: MIT
#pragma once

#include "app/welcome/WelcomeController.h"
#include "core/VelmoraSettings.h"
#include "detection/ScreenshotFolder.h"
#include "platform/Platform.h"
#include "tests/app/welcome/WelcomeWindowParts.h"
#include "tests/fakes/FakeLoginItem.h"

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

/// The system's screenshot settings, kept in memory; records every write.
class RecordingScreenshotPreferences : public ScreenshotPreferences
{
public:
    std::optional<QString> location() const override { return stored; }
    std::optional<QString> desktopToolFolder() const override { return std::nullopt; }
    std::optional<bool> showsThumbnail() const override { return shows; }
    bool keyHasFixedFolder() const override { return isFixed; }
    QList<SystemCommand> storeLocation(const QString &path) override
    {
        stored = path;
        ++locationWrites;
        return {};
    }
    QList<SystemCommand> storeShowsThumbnail(bool now) override
    {
        shows = now;
        ++thumbnailWrites;
        return {};
    }

    std::optional<QString> stored;
    std::optional<bool> shows;
    bool isFixed = false;
    int locationWrites = 0;
    int thumbnailWrites = 0;
};

/// The welcome window's controller on services that only record requests, and what a user does to
/// its windows.
class WelcomeRig
{
public:
    explicit WelcomeRig(const QString &stored)
    {
        preferences = new RecordingScreenshotPreferences;
        preferences->stored = stored;
        platform.screenshotPreferences.reset(preferences);
        login = new FakeLoginItem;
        platform.loginItem.reset(login);
        platform.desktopLimits = std::make_unique<WelcomeWindowParts::SteeredDesktopLimits>();
        folder = std::make_unique<ScreenshotFolder>(*preferences);
        controller = std::make_unique<WelcomeController>(
            WelcomeController::Services{*platform.screenshotPreferences, *platform.loginItem,
                                        *platform.desktopLimits},
            *folder);
    }

    void show() const
    {
        controller->showWelcome(QUrl::fromLocalFile(*preferences->stored));
        QVERIFY(QTest::qWaitForWindowActive(window()));
    }

    /// The visible one; null when there is none.
    static WelcomeWindow *window()
    {
        for (QWidget *each : QApplication::topLevelWidgets()) {
            auto *found = qobject_cast<WelcomeWindow *>(each);
            if (found && found->isVisible())
                return found;
        }
        return nullptr;
    }

    /// The visible dialogs.
    static QList<QDialog *> dialogs()
    {
        QList<QDialog *> found;
        for (QWidget *each : QApplication::topLevelWidgets()) {
            auto *dialog = qobject_cast<QDialog *>(each);
            if (dialog && dialog->isVisible())
                found << dialog;
        }
        return found;
    }

    /// The texts of the visible alert; empty when there is none.
    static QStringList alert()
    {
        QStringList texts;
        for (QDialog *dialog : dialogs()) {
            if (qobject_cast<QFileDialog *>(dialog))
                continue;
            for (const QLabel *label : dialog->findChildren<QLabel *>()) {
                if (!label->text().isEmpty())
                    texts << QString(label->text()).remove(QChar(0x200b));
            }
        }
        return texts;
    }

    static QFileDialog *panel()
    {
        for (QDialog *dialog : dialogs()) {
            if (auto *found = qobject_cast<QFileDialog *>(dialog))
                return found;
        }
        return nullptr;
    }

    static void press(const QString &title)
    {
        QAbstractButton *found = WelcomeWindowParts::button(*window(), title);
        QVERIFY2(found, qUtf8Printable(title));
        found->click();
    }

    static void pressOk()
    {
        for (QDialog *dialog : dialogs()) {
            for (QPushButton *button : dialog->findChildren<QPushButton *>()) {
                if (button->text() == u"OK") {
                    button->click();
                    return;
                }
            }
        }
        QFAIL("no alert");
    }

    /// Types a path into the panel and confirms it.
    static void use(const QString &path)
    {
        QTRY_VERIFY(panel());
        auto *field = panel()->findChild<QLineEdit *>();
        field->setText(path);
        QTest::keyClick(field, Qt::Key_Return);
    }

    Platform platform;
    RecordingScreenshotPreferences *preferences;
    FakeLoginItem *login;
    std::unique_ptr<ScreenshotFolder> folder;
    std::unique_ptr<WelcomeController> controller;
};
