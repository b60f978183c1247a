// SPDX-License-Identifier: MIT
#include "tests/tray/RowFixture.h"

#include "style/BezelButton.h"
#include "style/VelmoraPalette.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QTest>

using namespace Qt::StringLiterals;

RowFixture::RowFixture() = default;
RowFixture::~RowFixture() = default;

void RowFixture::begin()
{
    m_rig = std::make_unique<TrayRig>();
    m_url = m_rig->screenshot(u"Shot.png"_s);
    show(m_url);
}

void RowFixture::show(const QUrl &url)
{
    m_actions.clear();
    m_id = QUuid::createUuid();
    m_window = std::make_unique<PaletteView>();
    m_window->setFillColor(VelmoraPalette::tray());
    m_row = new ScreenshotRowView(
        m_id, m_rig->open(url), u"app-screen.png"_s, {m_rig->actions, m_rig->images},
        [this](const ScreenshotRowAction &action) { m_actions.append(action); });
    m_row->setParent(m_window.get());
    m_row->setGeometry(8, 8, 604, 72);
    m_window->resize(620, 88);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    name()->clearFocus();
}

void RowFixture::end()
{
    m_window.reset();
}

FilenameTextField *RowFixture::name() const
{
    return TrayOnScreen::name(m_row);
}

BezelButton *RowFixture::button(const char *accessibleName) const
{
    return TrayOnScreen::button(m_row, QString::fromUtf8(accessibleName));
}

QString RowFixture::status() const
{
    return TrayOnScreen::status(m_row);
}

std::optional<RenameResult> RowFixture::rename()
{
    std::optional<RenameResult> renamed;
    m_row->renameFile(std::nullopt, [&renamed](const RenameResult &result) { renamed = result; });
    m_rig->settle();
    return renamed;
}

std::optional<TrashResult> RowFixture::trash()
{
    std::optional<TrashResult> trashed;
    m_row->moveToTrash([&trashed](const TrashResult &result) { trashed = result; });
    m_rig->settle();
    return trashed;
}

std::optional<QUrl> RowFixture::undo(const UndoableAction &action)
{
    std::optional<QUrl> restored;
    m_row->performUndo(action, [&restored](const QUrl &url) { restored = url; });
    m_rig->settle();
    return restored;
}

void RowFixture::suggest(const char *name)
{
    m_row->updateSuggestedFilename(QString::fromUtf8(name), true);
    m_rig->settle();
}

void RowFixture::type(const char *typed)
{
    name()->setFocus();
    name()->selectAll();
    QTest::keyClicks(name(), QString::fromUtf8(typed));
}
