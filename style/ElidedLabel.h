#pragma once

#include <QLabel>

/// A label of plain text on one line that is cut with an ellipsis where it does not fit, and never
/// asks for more room than its text needs. `text()` is always the whole text.
class ElidedLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::TextElideMode m_mode;
};
