// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

/// A text that would be false on the other system: it names a Mac, macOS or the Finder, or
/// describes what only one of the systems does.
struct SystemText {
    QStringView onMac;
    QStringView onLinux;

    /// The wording for the system that the program was built for.
    QString here() const;
};

/// All texts of the program that differ between systems. The lines of the diagnostic log are the
/// same everywhere.
namespace SystemWords
{

inline constexpr SystemText welcome = {
    u"Velmora catches each new screenshot, gives it a useful name, and keeps copy, drag, Finder, "
    u"and delete one click away.",
    u"Velmora catches each new screenshot, gives it a useful name, and keeps copy, drag, file "
    u"manager, and delete one click away."};

inline constexpr SystemText instantIsOn = {u"Mac delay is off", u"Saved at once"};

inline constexpr SystemText instantIsOff = {u"Turn off Mac delay", u"Save them at once"};

inline constexpr SystemText privacy = {
    u"Privacy: screenshots stay on this Mac. Velmora uses local OCR for naming and does not upload "
    u"your images.",
    u"Privacy: screenshots stay on this computer. Velmora uses local OCR for naming and does not "
    u"upload your images."};

inline constexpr SystemText screenshotsStay = {u"Screenshots stay on this Mac",
                                               u"Screenshots stay on this computer"};

inline constexpr SystemText permissionsTitle = {u"Mac permissions, in plain English",
                                                u"Permissions, in plain English"};

inline constexpr SystemText permissions = {
    u"Velmora does not need Screen Recording permission. If you change folders, macOS may ask for "
    u"access to that folder. Start at login is only enabled if you turn it on.",
    u"Velmora never records your screen. It only looks into the folder you choose. Start at login "
    u"is only enabled if you turn it on."};

inline constexpr SystemText startAtLogin = {
    u"Velmora will ask macOS to open it when you sign in. You can turn this off here anytime.",
    u"Velmora will ask your desktop to open it when you sign in. You can turn this off here "
    u"anytime."};

inline constexpr SystemText folderAccess = {
    u"Choose the folder where macOS saves screenshots. Velmora watches only that folder so it can "
    u"rename new screenshots.",
    u"Choose the folder where your desktop saves screenshots. Velmora watches only that folder so "
    u"it can rename new screenshots."};

/// What the program can't do on a desktop that lacks something (`DesktopLimit`). A Mac lacks
/// nothing.
inline constexpr SystemText noStatusItem = {
    {}, u"has no icon in the status bar (start it again to open this window)"};
inline constexpr SystemText noTrayPlace = {{}, u"can't choose where its tray stands"};
inline constexpr SystemText noApplicationInFront = {
    {}, u"can't always tell which application is in front"};

/// The desktop takes screenshots itself and has no setting for their folder; macOS has one.
inline constexpr SystemText keyHasFixedFolder = {
    {}, u"The screenshot key of this desktop goes on saving where it does now."};

inline constexpr SystemText systemQuestion = {u"My Mac version:", u"My Linux version and desktop:"};

inline constexpr SystemText reveal = {u"Reveal in Finder", u"Show in File Manager"};

} // namespace SystemWords
