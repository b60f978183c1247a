// SPDX-License-Identifier: MIT
#pragma once

#include "tray/PanelHistory.h"

#include <QWidget>

class PaletteView;
class PanelWindow;

/// The frameless window that holds the tray's rows. It floats above other windows, is shown without
/// taking keyboard focus, and takes the focus when the user clicks into a name. Always drawn light.
/// Main thread; `panelWindow` must outlive it.
class FloatingTrayPanel : public QWidget
{
    Q_OBJECT
public:
    explicit FloatingTrayPanel(PanelWindow &panelWindow);

    /// Fills the panel. The panel takes ownership.
    void setContent(QWidget *content);

    /// Moves the panel there, as far as the desktop lets it.
    void place(const QRect &frame);

    /// Shows the panel in front of other windows, whatever has happened to it, without changing
    /// keyboard focus.
    void present();

    /// Hides the panel. If it has keyboard focus, another program gets it.
    void dismiss();

    /// Takes keyboard focus from the program that has it.
    void takeFocus();

    /// If the panel has keyboard focus, returns it to the program that had it before. The panel
    /// stays visible.
    void giveFocusBack();

    /// Where the panel was visible during the last minute.
    const PanelHistory &history() const { return m_history; }

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor borderColor() const;
    void updateEdge();
    void notePlace();
    void replaceRemoved();

    PanelWindow &m_panelWindow;
    PaletteView *m_background;
    QWidget *m_content = nullptr;
    /// Whether transparent parts show what is behind the panel.
    bool m_isBlended = false;
    PanelHistory m_history;
};
