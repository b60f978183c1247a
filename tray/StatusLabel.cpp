// SPDX-License-Identifier: MIT
#include "tray/StatusLabel.h"

#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QTimer>

using namespace std::chrono_literals;

namespace
{

constexpr auto statusDuration = 2s;
constexpr int fontSize = 11;

} // namespace

StatusLabel::StatusLabel(QWidget *parent) : ElidedLabel(Qt::ElideMiddle, parent)
{
    setFont(systemFont(fontSize));
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, VelmoraPalette::secondaryText());
    setPalette(colors);
}

void StatusLabel::showBriefly(const QString &shown)
{
    setText(shown);
    QTimer::singleShot(statusDuration, Qt::PreciseTimer, this, [this, shown] {
        if (text() == shown)
            clear();
    });
}
