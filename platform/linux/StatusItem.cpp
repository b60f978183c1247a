// SPDX-License-Identifier: MIT
#include "platform/StatusItem.h"

#include "platform/linux/status-item/StatusNotifierSearch.h"
#include "platform/linux/status-item/edgedIcon.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QSystemTrayIcon>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// Whether the desktop's status bar draws a symbol in the colour of its texts. Others, such as
/// LXQt's, draw it as it is: dark, which can't be seen on a dark bar.
bool drawsSymbolsInItsColour()
{
    const QStringList drawing = {u"budgie"_s,   u"cinnamon"_s, u"gnome"_s,      u"kde"_s,
                                 u"pantheon"_s, u"unity"_s,    u"x-cinnamon"_s, u"xfce"_s};
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower();
    const QStringList names = desktops.split(u':');
    return std::any_of(names.begin(), names.end(),
                       [&](const QString &name) { return drawing.contains(name); });
}

/// The item as Qt's tray icon, which talks to status notifier hosts over the session bus, or embeds
/// itself in an XEmbed tray.
class TrayStatusItem : public StatusItem
{
public:
    TrayStatusItem() : m_search(StatusNotifierSearch::Patience())
    {
        QObject::connect(&m_search, &StatusNotifierSearch::found, &m_search,
                         [this](StatusNotifierSearch::StatusBar bar) { appear(bar); });
    }

    void show(const QIcon &icon, const QString &toolTip, const QList<QAction *> &actions) override
    {
        m_icon = icon;
        m_toolTip = toolTip;
        m_menu = std::make_unique<QMenu>();
        m_menu->addActions(actions);
        m_search.start();
    }

    /// Status notifier hosts have no place for this text.
    void setTitle(const QString &) override {}

private:
    void appear(StatusNotifierSearch::StatusBar bar)
    {
        m_item = std::make_unique<QSystemTrayIcon>(iconFor(bar));
        m_item->setToolTip(m_toolTip);
        m_item->setContextMenu(m_menu.get());
        QObject::connect(m_item.get(), &QSystemTrayIcon::activated, m_menu.get(),
                         [this] { popUp(); });
        m_item->show();
        if (bar == StatusNotifierSearch::StatusBar::Older)
            nameEmbeddedWindow();
    }

    /// Status notifier hosts read out the title, which is the application's name. An XEmbed tray
    /// has only the window, which Qt leaves without a name.
    void nameEmbeddedWindow() const
    {
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (window->objectName() != u"QSystemTrayIconSys")
                continue;
            window->setWindowTitle(m_toolTip);
            window->setAccessibleName(m_toolTip);
            window->setAccessibleDescription(m_toolTip);
        }
    }

    /// Many hosts find the installed symbol by its name and draw it in the colour of their bar. An
    /// icon with an edge can be seen on every bar.
    QIcon iconFor(StatusNotifierSearch::StatusBar bar) const
    {
        const QString name = u"app.velmora.Velmora-symbolic"_s;
        if (bar == StatusNotifierSearch::StatusBar::Host && drawsSymbolsInItsColour() &&
            QIcon::hasThemeIcon(name))
            return QIcon::fromTheme(name);
        return edgedIcon(m_icon);
    }

    /// Any kind of click opens the menu; some hosts open it themselves.
    void popUp()
    {
        if (!m_menu->isVisible())
            m_menu->popup(QCursor::pos());
    }

    QIcon m_icon;
    QString m_toolTip;
    std::unique_ptr<QMenu> m_menu;
    StatusNotifierSearch m_search;
    std::unique_ptr<QSystemTrayIcon> m_item;
};

} // namespace

std::unique_ptr<StatusItem> makeStatusItem()
{
    return std::make_unique<TrayStatusItem>();
}
