// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

class LayerShell;
class LayerSurface;
class PopUpSurface;
class QWindow;

/// Makes the tool tips and menus of a panel pop-ups of it. Qt would show them as ordinary windows,
/// because it knows only parents that it has made itself. Main thread; destroy it before the panel.
class PanelPopUps : public QObject
{
    Q_OBJECT
public:
    PanelPopUps(const LayerShell &shell, LayerSurface &panel, const QWindow &window);

    /// Closes those that are open.
    ~PanelPopUps() override;

    /// Whether a menu is open.
    bool hasMenu() const;

    bool eventFilter(QObject *receiver, QEvent *event) override;

Q_SIGNALS:
    /// The compositor closes one, because the user has clicked elsewhere.
    void dismissed();

private:
    struct PopUp {
        QWindow *window;
        std::unique_ptr<PopUpSurface> surface;
    };

    bool isOfPanel(const QWindow &window) const;
    PopUpSurface *surfaceOf(const QWindow *window) const;
    void show(QWindow &window);
    void forget(const QWindow &window);
    void closeToolTip();

    const LayerShell &m_shell;
    LayerSurface &m_panel;
    const QWindow &m_window;
    /// In the order in which they were opened.
    std::vector<PopUp> m_popUps;
    QPointer<QObject> m_explained;
};
