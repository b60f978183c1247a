// SPDX-License-Identifier: MIT
#include "app/welcome/WelcomeFooter.h"

#include "app/welcome/labels.h"
#include "style/BezelButton.h"
#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace
{

constexpr int doneWidth = 72; // points

BezelButton *symbolButton(const QString &symbol, const QString &title)
{
    auto *button = new BezelButton(title);
    button->setIcon(symbolIcon(symbol, VelmoraPalette::primaryText()));
    return button;
}

BezelButton *doneButton()
{
    auto *button = new BezelButton(u"Done"_s);
    button->setFont(systemFont(12, QFont::DemiBold));
    button->setMinimumWidth(doneWidth);
    button->setDefault(true);
    button->setShortcut(Qt::Key_Return);
    // The key pad's Enter is a key of its own, and a button has only one shortcut.
    auto *enter = new QShortcut(Qt::Key_Enter, button);
    QObject::connect(enter, &QShortcut::activated, button, [button] { button->animateClick(); });
    return button;
}

} // namespace

WelcomeFooter::WelcomeFooter(const QString &folderPath, QWidget *parent) : QWidget(parent)
{
    BezelButton *recent = symbolButton(u"clock.arrow.circlepath"_s, u"Recent Screenshots"_s);
    BezelButton *done = doneButton();
    BezelButton *feedback = symbolButton(u"bubble.left.and.bubble.right"_s, u"Feedback"_s);
    feedback->setAccessibleDescription(u"Send Feedback"_s);
    connect(recent, &QPushButton::clicked, this, &WelcomeFooter::recentScreenshotsRequested);
    connect(done, &QPushButton::clicked, this, &WelcomeFooter::doneRequested);
    connect(feedback, &QPushButton::clicked, this, &WelcomeFooter::feedbackRequested);

    QLabel *path = pathLabel(folderPath);
    path->setAlignment(Qt::AlignCenter);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(28, 14, 28, 13);
    row->setSpacing(8);
    row->addWidget(recent);
    row->addWidget(path, 1);
    row->addWidget(done);
    row->addWidget(feedback);
}

void WelcomeFooter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), VelmoraPalette::card());
    painter.fillRect(QRect(0, 0, width(), 1),
                     VelmoraPalette::withAlpha(VelmoraPalette::secondaryText(), 0.16));
}
