#pragma once

#include <QIcon>
#include <QLabel>

/// A symbol or picture in a square of its own, crisp on every screen. With a description it is
/// there for screen readers too.
class SymbolView : public QLabel
{
    Q_OBJECT
public:
    /// `side` in points.
    SymbolView(const QIcon &icon, int side, const QString &description = {},
               QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
};
