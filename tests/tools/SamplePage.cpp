// SPDX-License-Identifier: MIT
// A page of text, as an ordinary application would show it.
//
// usage: sample_page TITLE PARAGRAPH [--save PICTURE]
//
// Shows the page in a window until it is closed, or saves a picture of it and exits.

#include <QApplication>
#include <QLabel>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace
{

constexpr QSize pageSize(960, 620);
constexpr int titlePixels = 34;
constexpr int textPixels = 18;

QLabel *paragraph(const QString &text, int pixels, bool bold)
{
    auto *label = new QLabel(text);
    QFont font = label->font();
    font.setPixelSize(pixels);
    font.setBold(bold);
    label->setFont(font);
    label->setWordWrap(true);
    return label;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const bool saves = arguments.size() == 5 && arguments.at(3) == u"--save"_s;
    if (arguments.size() != 3 && !saves) {
        QTextStream(stderr) << "usage: sample_page TITLE PARAGRAPH [--save PICTURE]\n";
        return 2;
    }
    QWidget page;
    page.setWindowTitle(arguments.at(1));
    page.setFixedSize(pageSize);
    page.setStyleSheet(u"background: white; color: #1d1d1f"_s);
    auto *column = new QVBoxLayout(&page);
    column->setContentsMargins(56, 48, 56, 48);
    column->setSpacing(24);
    column->addWidget(paragraph(arguments.at(1), titlePixels, true));
    column->addWidget(paragraph(arguments.at(2), textPixels, false));
    column->addStretch();
    if (saves)
        return page.grab().save(arguments.at(4)) ? 0 : 1;
    page.show();
    return QApplication::exec();
}
