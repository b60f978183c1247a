#pragma once

#include <QList>
#include <QSettings>
#include <QString>

/// What the pipeline puts on the clipboard for a new screenshot.
enum class CopyBehavior { none, image, file, imageAndFile };

/// How long a tray row stays before it is dismissed by itself.
enum class TrayDuration { fifteenSeconds, sixtySeconds, untilDismissed };

/// The screen corner of the tray.
enum class TrayPosition { bottomRight, topRight, bottomLeft, topLeft };

/// One case of an option: its value, the string under which it is stored, and its title in the
/// pop-up menu. A case's index in `optionCases()` is the index of its menu item.
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

/// The user's choices. Nothing is cached: each read sees the latest write, also that of another
/// process. A missing or unknown stored value reads as the fallback and is not repaired. Main
/// thread.
namespace VelmoraSettings
{

/// The preference store itself, for the keys that other rooms own. A value written through it is
/// on disk, whole, when the object is gone. Writers that were killed hold nobody up. Any thread,
/// each with an object of its own.
QSettings open();

/// Fallback `none`.
CopyBehavior copyBehavior();
void setCopyBehavior(CopyBehavior behavior);

/// Fallback `sixtySeconds`.
TrayDuration trayDuration();
void setTrayDuration(TrayDuration duration);

/// Fallback `bottomRight`.
TrayPosition trayPosition();
void setTrayPosition(TrayPosition position);

/// The option at a pop-up menu's index; an index out of range (no selection) gives the fallback.
CopyBehavior copyBehaviorAt(int index);
TrayDuration trayDurationAt(int index);
TrayPosition trayPositionAt(int index);

} // namespace VelmoraSettings
