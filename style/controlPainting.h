// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QRect;
class QStyleOption;
class QStyleOptionMenuItem;
class QStyleOptionSlider;

/// How the program's controls are painted. Each function fills the option's rectangle and follows
/// the option's state; the painter must be antialiasing. Main thread.
namespace ControlPainting
{

/// The width of the arrows' area at a pop-up's trailing edge, in points.
constexpr int popUpArrowWidth = 26;

enum class Bezel { plain, accent };

/// The body of a push button or a pop-up; `accent` is for the button that Return presses.
void drawBezel(const QStyleOption &option, Bezel bezel, QPainter &painter);

/// A check box of 16 by 16 points.
void drawCheckBox(const QStyleOption &option, QPainter &painter);

/// A chevron up and one down: the control opens a list.
void drawPopUpArrows(const QStyleOption &option, QPainter &painter);

/// A line of a pop-up's list: a check mark when it is the current one, then its text.
void drawPopUpItem(const QStyleOptionMenuItem &option, QPainter &painter);

/// A scroll bar's handle; nothing when there is nothing to scroll.
void drawScrollBar(const QStyleOptionSlider &option, const QRect &handle, QPainter &painter);

} // namespace ControlPainting
