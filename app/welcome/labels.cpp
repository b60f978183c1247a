// SPDX-License-Identifier: MIT
#include "app/welcome/labels.h"

#include "style/ElidedLabel.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

namespace
{

QLabel *styled(QLabel *made, const QString &text, const QFont &font, const QColor &color)
{
    made->setTextFormat(Qt::PlainText);
    made->setText(text);
    made->setFont(font);
    setTextColor(*made, color);
    return made;
}

} // namespace

QLabel *sectionLabel(const QString &text)
{
    return lineLabel(text, systemFont(13, QFont::DemiBold), VelmoraPalette::primaryText());
}

QLabel *label(const QString &text)
{
    return lineLabel(text, systemFont(12, QFont::Medium), VelmoraPalette::secondaryText());
}

QLabel *lineLabel(const QString &text, const QFont &font, const QColor &color)
{
    return styled(new QLabel, text, font, color);
}

QLabel *wrappingLabel(const QString &text, const QFont &font, const QColor &color)
{
    QLabel *made = lineLabel(text, font, color);
    made->setWordWrap(true);
    return made;
}

QLabel *truncatedLabel(const QString &text, const QFont &font, const QColor &color)
{
    return styled(new ElidedLabel(Qt::ElideMiddle), text, font, color);
}

QLabel *pathLabel(const QString &path)
{
    QLabel *made = truncatedLabel(path, monospacedSystemFont(11), VelmoraPalette::secondaryText());
    made->setToolTip(path);
    return made;
}

void setTextColor(QWidget &widget, const QColor &color)
{
    QPalette palette = widget.palette();
    palette.setColor(widget.foregroundRole(), color);
    widget.setPalette(palette);
}
