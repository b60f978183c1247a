// SPDX-License-Identifier: MIT
// Draws the picture of docs/reading.md: a small window, with the lines that were found in it and
// the order in which they are read.
//
// usage: annotated_page PICTURE

#include "recognition/lines/LineFinder.h"
#include "recognition/lines/PictureLevels.h"
#include "recognition/order/ReadingOrder.h"

#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QTextStream>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr QSize pageSize(960, 300);
const QColor lineColour(0x12, 0x85, 0xf2);
const QColor wordColour(0x12, 0x85, 0xf2, 40);

QLabel *text(const QString &words, int pixels, QFont::Weight weight = QFont::Normal)
{
    auto *label = new QLabel(words);
    QFont font = label->font();
    font.setPixelSize(pixels);
    font.setWeight(weight);
    label->setFont(font);
    label->setWordWrap(true);
    return label;
}

QWidget *menuBar()
{
    auto *bar = new QFrame;
    bar->setStyleSheet(u"background: #ececf0"_s);
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(28, 12, 24, 6);
    row->setSpacing(14);
    for (const QString &menu : {u"File"_s, u"Edit"_s, u"View"_s, u"Insert"_s, u"Help"_s})
        row->addWidget(text(menu, 15));
    row->addStretch();
    return bar;
}

QWidget *card(const QString &title, const QString &body)
{
    auto *frame = new QFrame;
    frame->setStyleSheet(u"background: #f4f7fb"_s);
    auto *column = new QVBoxLayout(frame);
    column->setContentsMargins(20, 16, 20, 16);
    column->setSpacing(10);
    column->addWidget(text(title, 20, QFont::DemiBold));
    column->addWidget(text(body, 15));
    column->addStretch();
    return frame;
}

QWidget *page()
{
    auto *window = new QWidget;
    window->setFixedSize(pageSize);
    window->setStyleSheet(u"background: white; color: #1d1d1f"_s);
    auto *column = new QVBoxLayout(window);
    column->setContentsMargins(0, 0, 0, 16);
    column->setSpacing(20);
    column->addWidget(menuBar());

    auto *content = new QVBoxLayout;
    content->setContentsMargins(40, 8, 40, 0);
    content->setSpacing(22);
    content->addWidget(text(u"Quarterly harbour report"_s, 40, QFont::Bold));
    auto *cards = new QHBoxLayout;
    cards->setSpacing(24);
    cards->addWidget(card(u"Arrivals"_s, u"Forty ferries came in time this week, three were "
                                         "delayed by fog and one was turned away."_s));
    cards->addWidget(card(u"Repairs"_s, u"The northern crane is idle until its new cable has "
                                        "been tested under full load."_s));
    content->addLayout(cards);
    auto *box = new QCheckBox(u"Send a copy to the harbour master"_s);
    QFont font = box->font();
    font.setPixelSize(16);
    box->setFont(font);
    content->addWidget(box);
    column->addLayout(content);
    column->addStretch();
    return window;
}

void drawLine(QPainter &painter, const TextLine &line, int number)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(wordColour);
    for (const QRect &word : line.words)
        painter.drawRect(word);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(lineColour, 1.5));
    painter.drawRect(line.box.adjusted(-3, -3, 3, 3));

    const QPoint corner = line.box.topLeft() - QPoint(7, 5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(lineColour);
    painter.drawEllipse(corner, 10, 10);
    painter.setPen(Qt::white);
    painter.drawText(QRect(corner - QPoint(10, 10), QSize(20, 20)), Qt::AlignCenter,
                     QString::number(number));
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        QTextStream(stderr) << "usage: annotated_page PICTURE\n";
        return 2;
    }
    const std::unique_ptr<QWidget> window(page());
    QImage picture = opaquePicture(window->grab().toImage());
    const std::vector<TextLine> lines = inReadingOrder(findLines(picture, [] { return false; }));

    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(12);
    font.setBold(true);
    painter.setFont(font);
    int number = 0;
    for (const TextLine &line : lines)
        drawLine(painter, line, ++number);
    painter.end();
    return picture.save(arguments.at(1)) ? 0 : 1;
}
