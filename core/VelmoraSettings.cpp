// SPDX-License-Identifier: MIT
#include "core/VelmoraSettings.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// Longer than a slow disk takes to store the last changes.
constexpr auto longestWaitAtExit = 2s;

template <typename Option>
Option read(const SettingKey<Option> &key)
{
    const QString stored = VelmoraSettings::open().value(key.name.toString()).toString();
    const auto &cases = optionCases<Option>();
    const auto match = std::find_if(cases.begin(), cases.end(), [&stored](const auto &entry) {
        return entry.rawValue == stored;
    });
    return match == cases.end() ? key.fallback : match->option;
}

template <typename Option>
void write(const SettingKey<Option> &key, Option option)
{
    const auto &cases = optionCases<Option>();
    const auto match = std::find_if(cases.begin(), cases.end(),
                                    [option](const auto &entry) { return entry.option == option; });
    VelmoraSettings::open().setValue(key.name.toString(), match->rawValue);
}

template <typename Option>
Option optionAt(int index, const SettingKey<Option> &key)
{
    const auto &cases = optionCases<Option>();
    return index >= 0 && index < cases.size() ? cases[index].option : key.fallback;
}

} // namespace

template <>
const QList<OptionCase<CopyBehavior>> &optionCases<CopyBehavior>()
{
    static const QList<OptionCase<CopyBehavior>> cases = {
        {CopyBehavior::none, u"none"_s, u"Do nothing"_s},
        {CopyBehavior::image, u"image"_s, u"Copy picture"_s},
        {CopyBehavior::file, u"file"_s, u"Copy file"_s},
        {CopyBehavior::imageAndFile, u"imageAndFile"_s, u"Copy picture + file"_s},
    };
    return cases;
}

template <>
const QList<OptionCase<TrayDuration>> &optionCases<TrayDuration>()
{
    static const QList<OptionCase<TrayDuration>> cases = {
        {TrayDuration::fifteenSeconds, u"fifteenSeconds"_s, u"15 seconds"_s},
        {TrayDuration::sixtySeconds, u"sixtySeconds"_s, u"60 seconds"_s},
        {TrayDuration::untilDismissed, u"untilDismissed"_s, u"Until dismissed"_s},
    };
    return cases;
}

template <>
const QList<OptionCase<TrayPosition>> &optionCases<TrayPosition>()
{
    static const QList<OptionCase<TrayPosition>> cases = {
        {TrayPosition::bottomRight, u"bottomRight"_s, u"Bottom-right"_s},
        {TrayPosition::topRight, u"topRight"_s, u"Top-right"_s},
        {TrayPosition::bottomLeft, u"bottomLeft"_s, u"Bottom-left"_s},
        {TrayPosition::topLeft, u"topLeft"_s, u"Top-left"_s},
    };
    return cases;
}

/// Without a pop-up menu, so without titles.
template <>
const QList<OptionCase<SearchConsent>> &optionCases<SearchConsent>()
{
    static const QList<OptionCase<SearchConsent>> cases = {
        {SearchConsent::notAsked, u"notAsked"_s, {}},
        {SearchConsent::given, u"given"_s, {}},
        {SearchConsent::refused, u"refused"_s, {}},
    };
    return cases;
}

namespace VelmoraSettings
{

SettingsStore &open()
{
    // Never destroyed: an abandoned thread may still read from it.
    static SettingsStore &store = *new SettingsStore(u"velmora"_s);
    struct StoreAtExit {
        ~StoreAtExit() { store.waitUntilStored(longestWaitAtExit); }
    };
    static const StoreAtExit storeAtExit;
    return store;
}

CopyBehavior copyBehavior()
{
    return read(SettingKeys::copyBehavior);
}

void setCopyBehavior(CopyBehavior behavior)
{
    write(SettingKeys::copyBehavior, behavior);
}

TrayDuration trayDuration()
{
    return read(SettingKeys::trayDuration);
}

void setTrayDuration(TrayDuration duration)
{
    write(SettingKeys::trayDuration, duration);
}

TrayPosition trayPosition()
{
    return read(SettingKeys::trayPosition);
}

void setTrayPosition(TrayPosition position)
{
    write(SettingKeys::trayPosition, position);
}

SearchConsent searchConsent()
{
    return read(SettingKeys::searchConsent);
}

void setSearchConsent(SearchConsent consent)
{
    write(SettingKeys::searchConsent, consent);
}

bool isSet(const SettingKey<bool> &flag)
{
    const QVariant stored = open().value(flag.name.toString());
    return stored.isValid() ? stored.toBool() : flag.fallback;
}

void set(const SettingKey<bool> &flag)
{
    open().setValue(flag.name.toString(), true);
}

QStringList recentScreenshots()
{
    return open().value(SettingKeys::recentScreenshots.name.toString()).toStringList();
}

void setRecentScreenshots(const QStringList &paths)
{
    open().setValue(SettingKeys::recentScreenshots.name.toString(), paths);
}

CopyBehavior copyBehaviorAt(int index)
{
    return optionAt(index, SettingKeys::copyBehavior);
}

TrayDuration trayDurationAt(int index)
{
    return optionAt(index, SettingKeys::trayDuration);
}

TrayPosition trayPositionAt(int index)
{
    return optionAt(index, SettingKeys::trayPosition);
}

} // namespace VelmoraSettings
