// SPDX-License-Identifier: MIT
#include "platform/linux/status-item/edgedIcon.h"
#include "tests/world/TestProgram.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace
{

/// A thin dark cross, drawn like a symbol.
QIcon darkSymbol()
{
    QPixmap picture(64, 64);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.fillRect(8, 29, 48, 6, Qt::black);
    painter.fillRect(29, 8, 6, 48, Qt::black);
    return picture;
}

/// The largest difference in lightness between the bar and what the icon paints on it.
int contrastOn(const QColor &bar, const QIcon &icon, int size)
{
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(bar);
    QPainter painter(&image);
    painter.drawPixmap(0, 0, icon.pixmap(QSize(size, size), 1.0));
    painter.end();
    int largest = 0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x)
            largest = std::max(largest, std::abs(qGray(image.pixel(x, y)) - qGray(bar.rgb())));
    }
    return largest;
}

} // namespace

class EdgedIconTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theIconIsToldFromEveryBar_data()
    {
        QTest::addColumn<QColor>("bar");
        QTest::addColumn<int>("size");
        for (const int size : {16, 22, 24, 32, 48}) {
            for (const char *color : {"black", "#2e3436", "#808080", "#f6f5f4", "white"})
                QTest::addRow("%s %d", color, size) << QColor(QLatin1String(color)) << size;
        }
    }

    void theIconIsToldFromEveryBar()
    {
        QFETCH(QColor, bar);
        QFETCH(int, size);
        QVERIFY(contrastOn(bar, edgedIcon(darkSymbol()), size) > 90);
    }

    void theIconKeepsItsSize()
    {
        for (const int size : {16, 22, 24, 32, 48}) {
            QCOMPARE(edgedIcon(darkSymbol()).actualSize(QSize(size, size)), QSize(size, size));
        }
    }

    void noIconStaysNoIcon() { QCOMPARE(contrastOn(Qt::black, edgedIcon(QIcon()), 22), 0); }
};

VELMORA_WIDGETS_TEST(EdgedIconTest)
#include "EdgedIconTest.moc"
