// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentScreenshotAction.h"
#include "style/PaletteView.h"

#include <functional>

class BezelButton;
class ImageView;

/// One screenshot in the recent screenshots' window: thumbnail, file name, the matching line if it
/// is a search result, and three buttons. Main thread.
class RecentScreenshotRow : public PaletteView
{
    Q_OBJECT
public:
    using OnAction = std::function<void(const RecentScreenshotAction &)>;

    /// In points.
    static constexpr QSize thumbnailSize = {64, 48};

    explicit RecentScreenshotRow(const QUrl &url, OnAction onAction, const QString &line = {},
                                 QWidget *parent = nullptr);

    QUrl url() const { return m_url; }
    QString line() const { return m_line; }

    /// Empty until its picture is set.
    ImageView *thumbnail() const { return m_thumbnail; }

private:
    QWidget *nameLabel();
    QWidget *lineLabel();
    QWidget *buttons();
    BezelButton *button(const QString &symbol, const QString &toolTip,
                        RecentScreenshotAction::Kind kind);

    QUrl m_url;
    QString m_line;
    OnAction m_onAction;
    ImageView *m_thumbnail;
};
