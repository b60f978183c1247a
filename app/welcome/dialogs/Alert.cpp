// SPDX-License-Identifier: MIT
#include "app/welcome/dialogs/Alert.h"

#include "app/welcome/SymbolView.h"
#include "app/welcome/labels.h"
#include "style/BezelButton.h"
#include "style/SystemFont.h"
#include "style/VelmoraAssets.h"
#include "style/VelmoraPalette.h"
#include "style/accessibleRole.h"
#include "style/breakableText.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace
{

// In points.
constexpr int logoSide = 56;
constexpr int textWidth = 330;
constexpr int buttonWidth = 72;
constexpr int buttonSpacing = 8;

constexpr Qt::WindowFlags windowKind = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                       Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint;

} // namespace

Alert::Alert(const QString &title, const QString &message, QWidget *window)
    : QDialog(window, windowKind)
{
    auto *ok = new BezelButton(u"OK"_s);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    build(title, message, {ok});
    ok->setFocus();
}

Alert::Alert(const QString &title, const QString &message, const Choice &choice, QWidget *window)
    : QDialog(window, windowKind)
{
    auto *accept = new BezelButton(choice.accept);
    auto *reject = new BezelButton(choice.reject);
    connect(accept, &QPushButton::clicked, this, &QDialog::accept);
    connect(reject, &QPushButton::clicked, this, &QDialog::reject);
    QLabel *text = build(title, message, {reject, accept});
    text->setFocusPolicy(Qt::StrongFocus);
    text->setFocus();
}

QLabel *Alert::build(const QString &title, const QString &message,
                     const QList<QPushButton *> &buttons)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(u"Velmora"_s);
    setAccessibleRole(*this, QAccessible::AlertMessage);
    setAccessibleDescription(title + u' ' + message);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);

    QLabel *titleLabel = wrappingLabel(breakableText(title), systemFont(14, QFont::DemiBold),
                                       VelmoraPalette::primaryText());
    titleLabel->setAccessibleName(title);
    QLabel *messageLabel =
        wrappingLabel(breakableText(message), systemFont(12), VelmoraPalette::secondaryText());
    messageLabel->setAccessibleName(message);
    for (QLabel *label : {titleLabel, messageLabel})
        label->setFixedWidth(textWidth);

    auto *line = new QHBoxLayout;
    line->setSpacing(buttonSpacing);
    line->addStretch();
    for (QPushButton *button : buttons) {
        button->setMinimumWidth(buttonWidth);
        line->addWidget(button);
    }
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(22, 20, 22, 18);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(6);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->addWidget(new SymbolView(VelmoraAssets::logoImage(), logoSide, u"Velmora"_s), 0, 0, 2, 1,
                    Qt::AlignTop);
    grid->addWidget(titleLabel, 0, 1);
    grid->addWidget(messageLabel, 1, 1);
    grid->setRowMinimumHeight(2, 8);
    grid->addLayout(line, 3, 1);
    return messageLabel;
}
