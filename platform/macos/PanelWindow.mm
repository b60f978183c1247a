// SPDX-License-Identifier: MIT
#include "platform/PanelWindow.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#import <AppKit/AppKit.h>

namespace
{

/// Nothing of a title bar and no edges to drag. A panel with the second bit takes the keyboard when
/// the user clicks into a name while the application that they work in stays the active one.
constexpr NSWindowStyleMask panelStyle =
    NSWindowStyleMaskFullSizeContentView | NSWindowStyleMaskNonactivatingPanel;

constexpr NSWindowCollectionBehavior onAllSpaces =
    NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary;

/// Qt makes a window of the type Tool an NSPanel, lets it become the key window and never the main
/// window, and shows a window that is not to be activated without making it the key window.
///
/// Qt gives the panel its own style, level and behaviour when it makes the native window and when
/// the window's flags change, and not when it shows the window. The panel's flags never change, so
/// what prepare() sets after createWinId() stays. Qt would also take the panel down to the ordinary
/// level whenever the program stops being the active one, but only where a window has
/// WA_MacAlwaysShowToolWindow; ours has not, and stays in view by `hidesOnDeactivate`.
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
        // The system draws it after what the window shows.
        panel.hasShadow = YES;
        panel.hidesOnDeactivate = NO;
        // A click on a button leaves the keyboard where it is; takeFocus() asks for it.
        panel.becomesKeyOnlyIfNeeded = YES;
    }

    /// The screen with the window that has the keyboard.
    QScreen *screen() const override
    {
        const NSRect frame = NSScreen.mainScreen.frame;
        // AppKit counts from the lower edge of the first screen, Qt from its upper one.
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

    /// Qt's raise() would make the whole program the active one. A panel that has been put away
    /// comes back with it.
    bool bringToFront(QWindow &window) override
    {
        [panelOf(window) orderFrontRegardless];
        return true;
    }

    /// Qt's requestActivate() makes the panel the key window and leaves the active application as
    /// it is.
    void takeFocus(QWindow &window) override { window.requestActivate(); }

    /// The system does so when the panel goes.
    void giveFocusBack(QWindow &) override {}

    bool showsTransparency() const override { return true; }

private:
    /// Messages to nil do nothing, should a window be no panel.
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
