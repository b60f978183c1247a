// SPDX-License-Identifier: MIT
#pragma once

#include "tray/PanelHistory.h"

#include <QWidget>

class PaletteView;
class PanelWindow;

/// The frameless window that holds the tray's rows. It floats above other windows, is shown
/// without taking the keyboard, and takes it when the user clicks into a name. Always drawn light.
/// Main thread; the service outlives it.
class FloatingTrayPanel : public QWidget
{
    Q_OBJECT
public:
    explicit FloatingTrayPanel(PanelWindow &panelWindow);

    /// Fills the panel; the panel takes ownership.
    void setContent(QWidget *content);

    /// Shows the panel in front of the others, whatever was done to it meanwhile, and leaves the
    /// keyboard where it is.
    void present();

    /// Hides the panel. Another program gets the keyboard if the panel has it.
    void dismiss();

    /// Takes the keyboard from whatever program has it.
    void takeFocus();

    /// Returns the keyboard, if the panel has it, to the program that had it before.
    void giveFocusBack();

    /// Where it was visible during the last minute.
    const PanelHistory &history() const { return m_history; }

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showAnew();
    QColor borderColor() const;
    void updateEdge();
    void notePlace();

    PanelWindow &m_panelWindow;
    PaletteView *m_background;
    QWidget *m_content = nullptr;
    /// What is behind the panel shows through where it is transparent.
    bool m_isBlended = false;
    PanelHistory m_history;
};
