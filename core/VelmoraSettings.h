// SPDX-License-Identifier: MIT
#pragma once

#include "core/SettingsStore.h"

#include <QList>
#include <QString>

/// What the pipeline puts on the clipboard for a new screenshot.
enum class CopyBehavior { none, image, file, imageAndFile };

/// How long a tray row stays before it is dismissed automatically.
enum class TrayDuration { fifteenSeconds, sixtySeconds, untilDismissed };

/// The screen corner of the tray.
enum class TrayPosition { bottomRight, topRight, bottomLeft, topLeft };

/// Whether the texts of screenshots may be kept, so that they can be searched.
enum class SearchConsent { notAsked, given, refused };

/// One case of an option: its value, the string it is stored as, and its title in the pop-up menu.
/// A case's index in `optionCases()` is the index of its menu item.
template <typename Option>
struct OptionCase {
    Option option;
    QString rawValue;
    QString title;
};

template <typename Option>
const QList<OptionCase<Option>> &optionCases();

template <>
const QList<OptionCase<CopyBehavior>> &optionCases<CopyBehavior>();
template <>
const QList<OptionCase<TrayDuration>> &optionCases<TrayDuration>();
template <>
const QList<OptionCase<TrayPosition>> &optionCases<TrayPosition>();

template <>
const QList<OptionCase<SearchConsent>> &optionCases<SearchConsent>();

/// A key of the program's preferences, and the value that a missing or unknown one reads as.
template <typename Value>
struct SettingKey {
    QStringView name;
    Value fallback;
};

/// Every stored key with its type and default.
namespace SettingKeys
{

constexpr SettingKey<CopyBehavior> copyBehavior = {u"copyBehavior", CopyBehavior::none};
constexpr SettingKey<TrayDuration> trayDuration = {u"trayDuration", TrayDuration::sixtySeconds};
constexpr SettingKey<TrayPosition> trayPosition = {u"trayPosition", TrayPosition::bottomRight};
constexpr SettingKey<SearchConsent> searchConsent = {u"searchConsent", SearchConsent::notAsked};
constexpr SettingKey<bool> didExplainFolderAccess = {u"didExplainFolderAccess", false};
constexpr SettingKey<bool> didExplainStartAtLogin = {u"didExplainStartAtLogin", false};
/// Paths, newest first.
inline const SettingKey<QStringList> recentScreenshots = {u"recentScreenshots", {}};

} // namespace SettingKeys

/// The user's choices. Each read sees the latest write, including those of another process. No read
/// or write waits for a slow disk (see SettingsStore). A missing or unknown stored value reads as
/// the key's fallback and is not repaired. Any thread.
namespace VelmoraSettings
{

/// The preference store itself. It lives as long as the process, and stores all changes before the
/// process ends.
SettingsStore &open();

CopyBehavior copyBehavior();
void setCopyBehavior(CopyBehavior behavior);

TrayDuration trayDuration();
void setTrayDuration(TrayDuration duration);

TrayPosition trayPosition();
void setTrayPosition(TrayPosition position);

SearchConsent searchConsent();
void setSearchConsent(SearchConsent consent);

bool isSet(const SettingKey<bool> &flag);
void set(const SettingKey<bool> &flag);

QStringList recentScreenshots();
void setRecentScreenshots(const QStringList &paths);

/// The option at a pop-up menu's index. An index out of range (no selection) gives the fallback.
CopyBehavior copyBehaviorAt(int index);
TrayDuration trayDurationAt(int index);
TrayPosition trayPositionAt(int index);

} // namespace VelmoraSettings
