// SPDX-License-Identifier: MIT
#include "platform/PanelWindow.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#import <AppKit/AppKit.h>

namespace
{

/// No title bar and no edges to drag. With the second bit, a panel takes the keyboard when the user
/// clicks into a name, while the application that they work in stays active.
constexpr NSWindowStyleMask panelStyle =
    NSWindowStyleMaskFullSizeContentView | NSWindowStyleMaskNonactivatingPanel;

constexpr NSWindowCollectionBehavior onAllSpaces =
    NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary;

/// Qt makes a window of the type Tool an NSPanel, lets it become the key window but never the main
/// window, and does not make it the key window when it shows one that is not to be activated.
///
/// Qt sets the panel's style, level and behaviour when it makes the native window and when the
/// window's flags change, not when it shows the window. The panel's flags never change, so what
/// prepare() sets after createWinId() stays. Qt would also lower the panel to the normal level
/// whenever the program becomes inactive, but only a window with WA_MacAlwaysShowToolWindow; ours
/// does not have it, and stays visible through `hidesOnDeactivate`.
class FloatingPanelWindow : public PanelWindow
{
public:
    Qt::WindowType windowType() const override { return Qt::Tool; }

    void prepare(QWindow &window, double) override
    {
        NSPanel *panel = panelOf(window);
        panel.styleMask = panelStyle;
        panel.floatingPanel = YES;
        panel.level = NSFloatingWindowLevel;
        panel.appearance = [NSAppearance appearanceNamed:NSAppearanceNameAqua];
        panel.collectionBehavior = onAllSpaces;
        panel.backgroundColor = NSColor.clearColor;
        panel.opaque = NO;
        // The system computes it from what the window shows.
        panel.hasShadow = YES;
        panel.hidesOnDeactivate = NO;
        // A click on a button does not take the keyboard; takeFocus() does.
        panel.becomesKeyOnlyIfNeeded = YES;
    }

    /// The screen with the window that has the keyboard.
    QScreen *screen() const override
    {
        const NSRect frame = NSScreen.mainScreen.frame;
        // AppKit counts from the bottom of the first screen, Qt from its top.
        const NSRect first = [NSScreen.screens.firstObject frame];
        const CGFloat top = first.origin.y + first.size.height - frame.origin.y - frame.size.height;
        const QRectF wanted(frame.origin.x, top, frame.size.width, frame.size.height);
        const QList<QScreen *> screens = QGuiApplication::screens();
        for (QScreen *screen : screens) {
            if (screen->geometry() == wanted.toRect())
                return screen;
        }
        return QGuiApplication::primaryScreen();
    }

    /// Qt's raise() would activate the whole program. A panel that was put away comes back with
    /// this.
    bool bringToFront(QWindow &window) override
    {
        [panelOf(window) orderFrontRegardless];
        return true;
    }

    /// Qt's requestActivate() makes the panel the key window and leaves the active application as
    /// it is.
    void takeFocus(QWindow &window) override { window.requestActivate(); }

    /// The system does this when the panel goes.
    void giveFocusBack(QWindow &) override {}

    bool showsTransparency() const override { return true; }

private:
    /// Messages to nil do nothing, should a window not be a panel.
    static NSPanel *panelOf(QWindow &window)
    {
        NSView *view = (__bridge NSView *)reinterpret_cast<void *>(window.winId());
        NSWindow *native = view.window;
        return [native isKindOfClass:NSPanel.class] ? static_cast<NSPanel *>(native) : nil;
    }
};

} // namespace

std::unique_ptr<PanelWindow> makePanelWindow()
{
    return std::make_unique<FloatingPanelWindow>();
}
