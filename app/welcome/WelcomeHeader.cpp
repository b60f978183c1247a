// SPDX-License-Identifier: MIT
#include "app/welcome/WelcomeHeader.h"

#include "app/welcome/Pill.h"
#include "app/welcome/SymbolView.h"
#include "app/welcome/labels.h"
#include "platform/SystemWords.h"
#include "style/SystemFont.h"
#include "style/VelmoraAssets.h"
#include "style/VelmoraPalette.h"

#include <QFontMetrics>
#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// In points.
constexpr int logoSide = 72;
constexpr int logoMargin = 4; // transparent, inside the picture
constexpr int logoSpacing = 18;
constexpr int headingWidth = 474;
constexpr int largestHeading = 26;
constexpr int smallestHeading = 18;

/// The heading is as large as fits on one line: fonts differ a lot in width.
QFont headingFont(const QString &heading)
{
    for (int size = largestHeading; size > smallestHeading; --size) {
        const QFont font = systemFont(size, QFont::Bold);
        if (QFontMetrics(font).horizontalAdvance(heading) <= headingWidth)
            return font;
    }
    return systemFont(smallestHeading, QFont::Bold);
}

QHBoxLayout *pills(bool instantModeOn)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(instantModeOn ? new Pill(u"Instant mode on"_s, VelmoraPalette::teal())
                                 : new Pill(u"Instant mode off"_s, VelmoraPalette::amber()));
    row->addWidget(new Pill(u"Ready for screenshots"_s, VelmoraPalette::blue()));
    row->addStretch();
    return row;
}

} // namespace

WelcomeHeader::WelcomeHeader(bool instantModeOn, QWidget *parent) : QWidget(parent)
{
    const QString heading = u"Your screenshots, already handled."_s;
    auto *texts = new QVBoxLayout;
    texts->setSpacing(6);
    texts->addWidget(lineLabel(heading, headingFont(heading), VelmoraPalette::primaryText()));
    texts->addWidget(wrappingLabel(SystemWords::welcome.here(), systemFont(14),
                                   VelmoraPalette::secondaryText()));
    texts->addSpacing(6);
    texts->addLayout(pills(instantModeOn));

    auto *logo = new SymbolView(VelmoraAssets::logoImage(), logoSide, u"Velmora"_s);
    logo->setOutset(logoMargin);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(logoSpacing);
    row->addWidget(logo, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
}
