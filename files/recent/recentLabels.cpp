// SPDX-License-Identifier: MIT
#include "files/recent/recentLabels.h"

#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QLabel>
#include <QPalette>

using namespace Qt::StringLiterals;

void setRecentStyle(QLabel *label, const QFont &font, const QColor &color)
{
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    QPalette palette;
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

QLabel *recentTitleLabel()
{
    auto *label = new QLabel(u"Recent Screenshots"_s);
    setRecentStyle(label, systemFont(22, QFont::DemiBold), VelmoraPalette::primaryText());
    return label;
}

QLabel *recentCountLabel(const QString &count)
{
    auto *label = new QLabel(count);
    setRecentStyle(label, systemFont(12, QFont::Medium), VelmoraPalette::secondaryText());
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

QLabel *recentEmptyLabel(const QString &text)
{
    auto *label = new QLabel(text);
    setRecentStyle(label, systemFont(15, QFont::Medium), VelmoraPalette::secondaryText());
    label->setAlignment(Qt::AlignCenter);
    return label;
}
