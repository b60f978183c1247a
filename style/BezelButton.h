// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

/// A push button with a rounded bezel in the program's own light style, whatever the desktop's
/// theme. Icon and title are side by side in its middle. It takes the keyboard focus by Tab but not
/// by a click, so that pressing it does not end an edit elsewhere.
class BezelButton : public QPushButton
{
    Q_OBJECT
public:
    explicit BezelButton(const QString &title = {}, QWidget *parent = nullptr);

    /// A button of 32 by 28 points that shows only the symbol and has the tool tip as its
    /// accessible name. A symbol that does not exist leaves it empty.
    static BezelButton *withSymbol(const QString &symbol, const QString &toolTip,
                                   QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintContent(QPainter &painter) const;
    int contentWidth() const;
};
