// SPDX-License-Identifier: MIT
#include "tests/tray/TrayRig.h"

#include "core/VelmoraLog.h"
#include "filesystem/FileUrls.h"
#include "style/BezelButton.h"
#include "tray/BadgeLabel.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"
#include "tray/StatusLabel.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

Platform trayPlatform()
{
    Platform platform;
    platform.desktopRecords = makeDesktopRecords();
    platform.fileBrowser = std::make_unique<FakeFileBrowser>();
    platform.fileWriters = makeFileWriters();
    platform.panelWindow = makePanelWindow();
    platform.pasteboard = makePasteboard();
    platform.systemTrash = makeSystemTrash();
    return platform;
}

} // namespace

TrayRig::TrayRig()
    : platform(trayPlatform())
    , fileBrowser(static_cast<FakeFileBrowser *>(platform.fileBrowser.get()))
    , m_images(std::make_unique<ScreenshotImages>(*platform.fileWriters))
    , images(*m_images)
    , actions({*platform.systemTrash, *platform.pasteboard, *platform.fileBrowser, images,
               *platform.desktopRecords},
              history)
{
}

TrayRig::~TrayRig() = default;

QUrl TrayRig::place(const QString &name) const
{
    return FileUrls::fromPath(m_folder.filePath(name));
}

QUrl TrayRig::screenshot(const QString &name, QColor color, QSize size) const
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    const QUrl url = place(name);
    if (!image.save(url.toLocalFile(), "PNG"))
        qFatal("no screenshot could be written");
    return url;
}

QStringList TrayRig::filesInFolder() const
{
    return QDir(m_folder.path()).entryList(QDir::Files, QDir::Name);
}

ScreenshotPointer TrayRig::open(const QUrl &url)
{
    const ScreenshotPointer screenshot = actions.open(url);
    m_opened.push_back(screenshot);
    return screenshot;
}

void TrayRig::settle()
{
    QObject context;
    for (const std::weak_ptr<Screenshot> &opened : m_opened) {
        const ScreenshotPointer screenshot = opened.lock();
        if (!screenshot)
            continue;
        bool isComplete = false;
        screenshot->whenComplete(&context, [&isComplete] { isComplete = true; });
        QTRY_VERIFY_WITH_TIMEOUT(isComplete, 20000);
    }
    // A rename that waits for the same may be told a moment later.
    QCoreApplication::processEvents();
    QVERIFY(actions.finish(std::chrono::seconds(20)));
}

FloatingTrayPanel *TrayOnScreen::panel()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (auto *panel = qobject_cast<FloatingTrayPanel *>(window))
            return panel;
    }
    return nullptr;
}

QList<ScreenshotRowView *> TrayOnScreen::rows()
{
    QList<ScreenshotRowView *> rows;
    if (const QWidget *window = panel())
        rows = window->findChildren<ScreenshotRowView *>();
    rows.removeIf([](const ScreenshotRowView *row) { return row->isHidden(); });
    std::sort(rows.begin(), rows.end(),
              [](const auto *one, const auto *other) { return one->y() < other->y(); });
    return rows;
}

FilenameTextField *TrayOnScreen::name(const QWidget *row)
{
    return row->findChild<FilenameTextField *>();
}

DraggableImageView *TrayOnScreen::thumbnail(const QWidget *row)
{
    return row->findChild<DraggableImageView *>();
}

QString TrayOnScreen::status(const QWidget *row)
{
    return row->findChild<StatusLabel *>()->text();
}

QString TrayOnScreen::badge(const QWidget *row)
{
    return row->findChild<BadgeLabel *>()->text();
}

BezelButton *TrayOnScreen::button(const QWidget *row, const QString &accessibleName)
{
    const auto buttons = row->findChildren<BezelButton *>();
    const auto found = std::find_if(buttons.begin(), buttons.end(), [&](const BezelButton *button) {
        return button->accessibleName() == accessibleName;
    });
    return found == buttons.end() ? nullptr : *found;
}

QImage TrayOnScreen::picture(QWidget *row)
{
    QWidget *window = row->window();
    const QRect area(row->mapTo(window, QPoint()), row->size());
    return window->grab(area).toImage().convertToFormat(QImage::Format_RGB32);
}

QStringList logLinesWith(const QString &text)
{
    VelmoraLog::waitUntilWritten(std::chrono::seconds(10));
    QFile log(u"/tmp/Velmora.log"_s);
    if (!log.open(QFile::ReadOnly))
        return {};
    return QString::fromUtf8(log.readAll()).split(u'\n').filter(text);
}
