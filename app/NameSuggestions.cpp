// SPDX-License-Identifier: MIT
#include "app/NameSuggestions.h"

#include "core/whenFinished.h"
#include "tray/TrayController.h"

#include <chrono>

NameSuggestions::NameSuggestions(TextRecognizer &recognizer, ScreenshotImages &images,
                                 TrayController &tray)
    : m_namer(recognizer, images), m_tray(tray)
{
}

BlindAreas NameSuggestions::trayAreasUntilNow() const
{
    constexpr std::chrono::seconds longestMoment{2};
    const FileTime now = FileTimes::now();
    const QList<PanelPlace> places = m_tray.placesBetween(now - longestMoment, now);
    return [places](QSize picture) {
        QList<QRect> areas;
        for (const PanelPlace &place : places) {
            const QRect area = place.inPicture(picture);
            if (!area.isEmpty())
                areas.append(area);
        }
        return areas;
    };
}

void NameSuggestions::suggest(const QUuid &itemID, const ScreenshotPointer &screenshot,
                              const Circumstances &circumstances)
{
    screenshot->whenOpened(this, [this, itemID, circumstances, screenshot = screenshot.get()] {
        if (m_tray.fileURL(itemID))
            read(itemID, *screenshot, circumstances);
    });
}

void NameSuggestions::read(const QUuid &itemID, const Screenshot &screenshot,
                           const Circumstances &circumstances)
{
    const QFuture<QString> suggestion =
        m_namer.suggestFilename(screenshot.held(), screenshot.url(), screenshot.applicationName(),
                                circumstances.trayAreas, circumstances.application);
    m_expected.insert(itemID, suggestion);
    whenFinished(suggestion, this, [this, itemID](const QString &filename) {
        m_expected.remove(itemID);
        m_tray.updateSuggestion(itemID, filename, true);
    });
}

void NameSuggestions::cancel(const QUuid &itemID)
{
    m_expected.take(itemID).cancel();
}
