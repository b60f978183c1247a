// SPDX-License-Identifier: MIT
#pragma once

class DesktopLimits;
class QWidget;

/// The two cards of the welcome window that only inform.

/// What happens to the user's pictures: nothing.
QWidget *privacyCard();

/// What the program asks of the system, and what it lacks on this desktop, if anything.
QWidget *permissionsCard(const DesktopLimits &limits);
