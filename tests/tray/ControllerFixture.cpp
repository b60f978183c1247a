// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"

#include "core/VelmoraSettings.h"
#include "filesystem/FileUrls.h"
#include "style/BezelButton.h"
#include "tests/world/Waiting.h"
#include "tests/world/XDesktop.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QTest>

using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

void ControllerFixture::begin()
{
    VelmoraSettings::open().clear();
    VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
    m_calls.clear();
    m_rig = std::make_unique<TrayRig>();
    m_tray = std::make_unique<TrayController>(*m_rig->platform.panelWindow, m_rig->images,
                                              m_rig->actions);
    m_tray->onRenamed = [this](const QUrl &url) { record("renamed", {url}); };
    m_tray->onRenameUndoable = [this](const QUrl &from, const QUrl &to) {
        record("rename undoable", {from, to});
    };
    m_tray->onTrashUndoable = [this](const QUrl &from, const QUrl &) {
        record("trash undoable", {from});
    };
    m_tray->onUndoPerformed = [this](const UndoableAction &, const QUrl &url) {
        record("undo performed", {url});
    };
}

void ControllerFixture::end()
{
    m_tray.reset();
}

QUuid ControllerFixture::add(const char *file)
{
    const QString shown = QString::fromUtf8(file);
    return m_tray->addScreenshot(m_rig->open(m_rig->screenshot(shown)), shown);
}

void ControllerFixture::suggest(const QUuid &id, const char *name)
{
    m_tray->updateSuggestion(id, QString::fromUtf8(name), true);
    m_rig->settle();
}

void ControllerFixture::record(const char *what, const QList<QUrl> &urls)
{
    QString line = QString::fromUtf8(what);
    for (const QUrl &url : urls)
        line += u' ' + FileUrls::lastPathComponent(url);
    m_calls.append(line);
}

void ControllerFixture::activate()
{
    QVERIFY(QTest::qWaitForWindowExposed(panel()));
    panel()->takeFocus();
    QVERIFY(QTest::qWaitForWindowActive(panel()));
}

void ControllerFixture::type(QWidget *row, const char *typed)
{
    activate();
    name(row)->setFocus();
    name(row)->selectAll();
    QTest::keyClicks(name(row), QString::fromUtf8(typed));
}

void ControllerFixture::click(QWidget *row, const char *accessibleName)
{
    BezelButton *found = TrayOnScreen::button(row, QString::fromUtf8(accessibleName));
    QVERIFY(found);
    QTest::mouseClick(found, Qt::LeftButton);
    m_rig->settle();
}

bool ControllerFixture::comesToRestAt(QPoint corner)
{
    using namespace std::chrono_literals;
    const auto isThere = [corner] {
        return XDesktop::placeOf(panel()->winId()).topLeft() == corner;
    };
    const bool stays = QTest::qWaitFor(isThere, 20'000) && Waiting::staysTrue(isThere, 500ms);
    if (!stays)
        qWarning() << "the panel is at" << panel()->pos();
    return stays;
}

QStringList ControllerFixture::names()
{
    QStringList shown;
    for (const QWidget *row : rows())
        shown.append(name(row)->text());
    return shown;
}

QStringList ControllerFixture::badges()
{
    QStringList shown;
    for (const QWidget *row : rows())
        shown.append(TrayOnScreen::badge(row));
    return shown;
}
