// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

/// Shows a picture in the middle, scaled up or down in its proportions to fill the view, and
/// clipped to the view's rounded corners. An opaque picture has a faint outline. Assistive
/// technologies see an image; the creator sets its description.
class ImageView : public QWidget
{
    Q_OBJECT
public:
    explicit ImageView(QWidget *parent = nullptr);

    /// A null image empties the view.
    void setImage(const QImage &image);
    QImage image() const { return m_image; }

    /// Radius in points.
    void setCornerRadius(double radius);

protected:
    void paintEvent(QPaintEvent *event) override;

    /// What the view shows, at the scale factor of its screen; null without an image.
    QPixmap picture();

private:
    QImage m_image;
    QPixmap m_picture;
    double m_cornerRadius = 0;
};
