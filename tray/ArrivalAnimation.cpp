// SPDX-License-Identifier: MIT
#include "tray/ArrivalAnimation.h"

#include "tray/RowStack.h"
#include "tray/ScreenshotRowView.h"

#include <QEasingCurve>

using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::milliseconds arrivalDuration = 180ms;
constexpr double startOffset = 18;

QEasingCurve easeOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0, 0}, {0.58, 1}, {1, 1});
    return curve;
}

} // namespace

ArrivalAnimation::ArrivalAnimation(RowStack &stack, ScreenshotRowView *row)
    : QVariantAnimation(row), m_stack(stack), m_row(row)
{
    setDuration(int(arrivalDuration.count()));
    setEasingCurve(easeOut());
    setStartValue(0.0);
    setEndValue(1.0);
    start(DeleteWhenStopped);
}

void ArrivalAnimation::updateCurrentValue(const QVariant &value)
{
    const double arrival = value.toDouble();
    m_row->setArrival(arrival);
    m_stack.setOffset(m_row, startOffset * (1 - arrival));
}
