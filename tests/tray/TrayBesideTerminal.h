// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraSettings.h"
#include "tests/tray/TrayRig.h"
#include "tests/world/XDesktop.h"
#include "tray/TrayController.h"

#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;

/// A tray that keeps its rows until they are dismissed, and another program that has the keyboard.
class TrayBesideTerminal
{
protected:
    void begin()
    {
        VelmoraSettings::open().clear();
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        XDesktop::movePointer({300, 700});
        m_rig = std::make_unique<TrayRig>();
        m_tray = std::make_unique<TrayController>(*m_rig->platform.panelWindow, m_rig->images,
                                                  m_rig->actions);
        m_terminal = std::make_unique<Terminal>(typedFile());
    }
    void end()
    {
        m_tray.reset();
        m_terminal.reset();
    }

    QString typedFile() const { return m_rig->place(u"typed"_s).toLocalFile(); }

    QString typedIntoTerminal() const
    {
        QFile file(typedFile());
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    static QPoint centerOf(const QWidget *widget)
    {
        return widget->mapToGlobal(widget->rect().center());
    }

    static constexpr int patience = 20'000;

    std::unique_ptr<TrayRig> m_rig;
    std::unique_ptr<TrayController> m_tray;
    std::unique_ptr<Terminal> m_terminal;
};
