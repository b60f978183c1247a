// SPDX-License-Identifier: MIT
#include "platform/StatusItem.h"

#include <QMenu>

#import <AppKit/AppKit.h>

namespace
{

/// An item in the menu bar. Qt makes its menu, which follows the actions' titles and states.
class MenuBarStatusItem : public StatusItem
{
public:
    ~MenuBarStatusItem() override
    {
        if (m_item)
            [NSStatusBar.systemStatusBar removeStatusItem:m_item];
    }

    /// The system provides the symbol, in the colour of its menu bar.
    void show(const QIcon &, const QString &toolTip, const QList<QAction *> &actions) override
    {
        m_menu = std::make_unique<QMenu>();
        m_menu->addActions(actions);
        m_item = [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
        m_item.button.image = [NSImage imageWithSystemSymbolName:@"camera.viewfinder"
                                        accessibilityDescription:@"Velmora"];
        m_item.button.imagePosition = NSImageLeading;
        m_item.button.toolTip = toolTip.toNSString();
        m_item.menu = m_menu->toNSMenu();
    }

    void setTitle(const QString &title) override { m_item.button.title = title.toNSString(); }

private:
    std::unique_ptr<QMenu> m_menu;
    NSStatusItem *m_item = nil;
};

} // namespace

std::unique_ptr<StatusItem> makeStatusItem()
{
    return std::make_unique<MenuBarStatusItem>();
}
