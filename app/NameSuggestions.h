// SPDX-License-Identifier: MIT
#pragma once

#include "files/Screenshot.h"
#include "naming/ScreenshotNamer.h"

#include <QFuture>
#include <QHash>
#include <QObject>
#include <QUuid>

class TrayController;

/// Has each new screenshot read, and gives its row in the tray the name that comes of it. Main
/// thread.
class NameSuggestions : public QObject
{
    Q_OBJECT
public:
    /// All must outlive this object.
    NameSuggestions(TextRecognizer &recognizer, ScreenshotImages &images, TrayController &tray);

    /// Where a picture that was taken a moment ago may show the tray, whose words are not part of
    /// the screenshot's text. Ask before the screenshot has its own row.
    BlindAreas trayAreasUntilNow() const;

    struct Circumstances {
        BlindAreas trayAreas;
        ScreenshotNamer::AppName application;
    };

    /// Starts as soon as the file is open. The row shows the name and renames the file.
    void suggest(const QUuid &itemID, const ScreenshotPointer &screenshot,
                 const Circumstances &circumstances);

    /// The row is gone, and its name no longer needed.
    void cancel(const QUuid &itemID);

    /// Whether a row is waiting for its name.
    bool isAnyExpected() const { return !m_expected.isEmpty(); }

private:
    void read(const QUuid &itemID, const Screenshot &screenshot,
              const Circumstances &circumstances);

    ScreenshotNamer m_namer;
    TrayController &m_tray;
    QHash<QUuid, QFuture<QString>> m_expected;
};
