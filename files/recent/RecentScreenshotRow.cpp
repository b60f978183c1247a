// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshotRow.h"

#include "files/recent/recentLabels.h"
#include "filesystem/FileUrls.h"
#include "platform/SystemWords.h"
#include "style/BezelButton.h"
#include "style/ElidedLabel.h"
#include "style/ImageView.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"
#include "style/accessibleRole.h"

#include <QHBoxLayout>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace
{

constexpr int rowHeight = 74;
constexpr double cornerRadius = 10;
constexpr double borderAlpha = 0.18;
constexpr double thumbnailRadius = 8;
constexpr QMargins insets(10, 8, 10, 8);
constexpr int spacing = 12;
constexpr int textSpacing = 3;
constexpr int buttonSpacing = 6;
constexpr int buttonsWidth = 110;

} // namespace

RecentScreenshotRow::RecentScreenshotRow(const QUrl &url, OnAction onAction, const QString &line,
                                         QWidget *parent)
    : PaletteView(parent)
    , m_url(url)
    , m_line(line)
    , m_onAction(std::move(onAction))
    , m_thumbnail(new ImageView(this))
{
    setFixedHeight(rowHeight);
    setFillColor(VelmoraPalette::card());
    setCornerRadius(cornerRadius);
    setBorder(1, VelmoraPalette::withAlpha(VelmoraPalette::amber(), borderAlpha));
    // The name distinguishes the buttons of this row from those of others.
    const QString name = FileUrls::lastPathComponent(url);
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(name);
    m_thumbnail->setAccessibleName(u"Thumbnail"_s);
    m_thumbnail->setAccessibleDescription(u"Thumbnail of "_s + name);
    m_thumbnail->setFixedSize(thumbnailSize);
    m_thumbnail->setCornerRadius(thumbnailRadius);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(insets);
    row->setSpacing(spacing);
    row->addWidget(m_thumbnail);
    if (line.isEmpty()) {
        row->addWidget(nameLabel(), 1);
    } else {
        auto *texts = new QVBoxLayout;
        texts->setSpacing(textSpacing);
        texts->addStretch();
        texts->addWidget(nameLabel());
        texts->addWidget(lineLabel());
        texts->addStretch();
        row->addLayout(texts, 1);
    }
    row->addWidget(buttons());
}

QWidget *RecentScreenshotRow::nameLabel()
{
    auto *label = new ElidedLabel(Qt::ElideMiddle);
    label->setText(FileUrls::lastPathComponent(m_url));
    label->setFont(systemFont(13, QFont::DemiBold));
    QPalette palette;
    palette.setColor(QPalette::WindowText, VelmoraPalette::primaryText());
    label->setPalette(palette);
    return label;
}

QWidget *RecentScreenshotRow::lineLabel()
{
    auto *label = new ElidedLabel(Qt::ElideRight);
    label->setText(m_line);
    setRecentStyle(label, systemFont(12), VelmoraPalette::secondaryText());
    return label;
}

QWidget *RecentScreenshotRow::buttons()
{
    auto *stack = new QWidget;
    stack->setFixedWidth(buttonsWidth);
    auto *row = new QHBoxLayout(stack);
    row->setContentsMargins({});
    row->setSpacing(buttonSpacing);
    using Kind = RecentScreenshotAction::Kind;
    row->addWidget(button(u"doc.on.doc"_s, u"Copy"_s, Kind::Copy));
    row->addWidget(button(u"folder"_s, SystemWords::reveal.here(), Kind::Reveal));
    row->addWidget(button(u"trash"_s, u"Move to Trash"_s, Kind::Trash));
    row->addStretch();
    return stack;
}

BezelButton *RecentScreenshotRow::button(const QString &symbol, const QString &toolTip,
                                         RecentScreenshotAction::Kind kind)
{
    BezelButton *button = BezelButton::withSymbol(symbol, toolTip);
    connect(button, &BezelButton::clicked, this, [this, kind] { m_onAction({kind, m_url}); });
    return button;
}
