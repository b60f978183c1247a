// SPDX-License-Identifier: MIT
#pragma once

class DesktopLimits;
class QWidget;

/// The two cards of the welcome window that only tell.

/// What happens to the user's pictures: nothing.
QWidget *privacyCard();

/// What the program asks of the system, and what it misses here, if anything.
QWidget *permissionsCard(const DesktopLimits &limits);
