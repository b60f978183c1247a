// SPDX-License-Identifier: MIT
#pragma once

#include <QVariantAnimation>

class RowStack;
class ScreenshotRowView;

/// A new row's arrival: it fades in and slides to its place from the right, in 0.18 seconds. Ends
/// with the row, and deletes itself.
class ArrivalAnimation : public QVariantAnimation
{
    Q_OBJECT
public:
    ArrivalAnimation(RowStack &stack, ScreenshotRowView *row);

protected:
    void updateCurrentValue(const QVariant &value) override;

private:
    RowStack &m_stack;
    ScreenshotRowView *m_row;
};
