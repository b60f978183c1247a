// SPDX-License-Identifier: MIT
#include "style/BezelButton.h"
#include "style/ElidedLabel.h"
#include "style/FileIcon.h"
#include "style/ImageView.h"
#include "style/SystemFont.h"
#include "style/breakableText.h"
#include "tests/world/TestProgram.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

QImage drawn(QWidget &view)
{
    QImage image(view.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// The tool tip that appears when the pointer rests on the widget; null when none does.
const QLabel *toolTipOf(QWidget &widget)
{
    const QPoint middle = widget.rect().center();
    QHelpEvent rest(QEvent::ToolTip, middle, widget.mapToGlobal(middle));
    QApplication::sendEvent(&widget, &rest);
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::ToolTip)
            return qobject_cast<const QLabel *>(window);
    }
    return nullptr;
}

QImage solid(QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSymbolButtonHasItsSizeToolTipAndAccessibleName()
    {
        const std::unique_ptr<BezelButton> button(
            BezelButton::withSymbol(u"trash"_s, u"Move to Trash"_s));
        QCOMPARE(button->size(), QSize(32, 28));
        QCOMPARE(button->toolTip(), u"Move to Trash"_s);
        QCOMPARE(button->accessibleName(), u"Move to Trash"_s);
        QVERIFY(!button->icon().isNull());
    }

    void aMissingSymbolLeavesTheButtonEmpty()
    {
        const std::unique_ptr<BezelButton> button(
            BezelButton::withSymbol(u"nothing"_s, u"Nothing"_s));
        QVERIFY(button->icon().isNull());
        QVERIFY(qAlpha(drawn(*button).pixel(16, 14)) == 255);
    }

    void aClickOnAButtonLeavesTheKeyboardWhereItIs()
    {
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        auto *field = new QLineEdit;
        auto *button = new BezelButton(u"Press"_s);
        layout->addWidget(field);
        layout->addWidget(button);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        field->setFocus();

        int clicks = 0;
        connect(button, &QPushButton::clicked, this, [&clicks] { ++clicks; });
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(clicks, 1);
        QVERIFY(field->hasFocus());

        QTest::keyClick(field, Qt::Key_Tab);
        QVERIFY(button->hasFocus());
        QTest::keyClick(button, Qt::Key_Space);
        QCOMPARE(clicks, 2);
    }

    void hoverPressAndFocusCanBeSeen()
    {
        QWidget window;
        auto *button = new BezelButton(u"Press"_s, &window);
        button->resize(70, 28);
        window.setGeometry(40, 40, 200, 100); // away from the pointer
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        button->clearFocus();
        const QImage idle = drawn(*button);
        button->setFocus(Qt::TabFocusReason);
        QVERIFY(drawn(*button) != idle);
        button->clearFocus();
        QCOMPARE(drawn(*button), idle);
        button->setAttribute(Qt::WA_UnderMouse);
        const QImage hovered = drawn(*button);
        QVERIFY(hovered != idle);
        button->setDown(true);
        QVERIFY(drawn(*button) != hovered);
    }

    void aLabelIsCutWhereItDoesNotFitAndKeepsItsText()
    {
        ElidedLabel label(Qt::ElideMiddle);
        label.setFont(systemFont(12));
        const QString text = QString(200, u'w');
        label.setText(text);
        QCOMPARE(label.minimumSizeHint().width(), 0);
        QVERIFY(label.sizeHint().width() > 1000);
        label.resize(100, 20);
        QCOMPARE(label.text(), text);
        const QImage cut = drawn(label);
        label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, 100));
        QCOMPARE(drawn(label), cut);
    }

    void aCutTextIsWholeInAToolTipThatCanBeRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("toolTip");
        const QString path = u"/home/anna/"_s + u"one-long-folder/"_s.repeated(20);
        const QString name = QString(250, u'w') + u".png"_s;
        QTest::newRow("path") << path << path;
        QTest::newRow("name") << name << QString();
        QTest::newRow("markup") << u"<b>a & b</b> "_s.repeated(20) << QString();
    }

    void aCutTextIsWholeInAToolTipThatCanBeRead()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, toolTip);
        ElidedLabel label(Qt::ElideMiddle);
        label.setText(text);
        label.setToolTip(toolTip);
        label.resize(200, 20);
        label.show();
        QVERIFY(QTest::qWaitForWindowExposed(&label));
        const QLabel *tip = toolTipOf(label);
        QVERIFY(tip);
        QTextDocument shown;
        shown.setHtml(tip->text());
        QCOMPARE(shown.toPlainText().remove(QChar(0x200b)), text);
        QVERIFY2(tip->width() <= 700, qPrintable(QString::number(tip->width())));
        QVERIFY(tip->height() > 2 * tip->fontMetrics().height());
        QVERIFY(tip->screen()->geometry().contains(tip->frameGeometry()));
        QToolTip::hideText();
    }

    void aTextThatIsNotCutNeedsNoToolTip()
    {
        ElidedLabel label(Qt::ElideMiddle);
        label.setText(u"short.png"_s);
        label.resize(200, 20);
        label.show();
        QVERIFY(QTest::qWaitForWindowExposed(&label));
        QVERIFY(!toolTipOf(label));
    }

    void aTextCanBeBrokenWithinItsPartsAndStaysTheSame()
    {
        const QString astral = QString::fromUcs4(U"\U0001F4F7").repeated(40);
        for (const QString &text : {u"/a/b-c_d.png"_s, QString(100, u'w'), astral, QString()}) {
            const QString broken = breakableText(text);
            QCOMPARE(QString(broken).remove(QChar(0x200b)), text);
            QCOMPARE(broken.toUcs4().count(0xFFFD), 0);
            const auto parts = broken.split(QChar(0x200b));
            for (const QString &part : parts)
                QVERIFY(part.size() <= 25 && part.isValidUtf16());
        }
        QCOMPARE(breakableText(u"/a/b"_s).count(QChar(0x200b)), 2);
    }

    void markupInALabelIsShownAsItStands()
    {
        ElidedLabel label(Qt::ElideRight);
        label.setFont(systemFont(12));
        label.setText(u"<b></b>"_s);
        QVERIFY(label.sizeHint().width() > 20);
    }

    void aPictureIsScaledUpAndDownInItsProportions_data()
    {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QRect>("covered");
        QTest::newRow("wide") << QSize(1280, 640) << QRect(0, 9, 64, 32);
        QTest::newRow("tall") << QSize(250, 500) << QRect(19, 0, 25, 50);
        QTest::newRow("small") << QSize(8, 4) << QRect(0, 9, 64, 32);
    }

    void aPictureIsScaledUpAndDownInItsProportions()
    {
        QFETCH(const QSize, pixels);
        QFETCH(const QRect, covered);
        ImageView view;
        view.resize(64, 50);
        view.setImage(solid(pixels, Qt::red));
        const QImage image = drawn(view);
        QRect ink;
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 64; ++x)
                if (qAlpha(image.pixel(x, y)) == 255)
                    ink |= QRect(x, y, 1, 1);
        QCOMPARE(ink, covered);
    }

    void thePictureIsClippedToTheViewsRoundCorners()
    {
        ImageView view;
        view.setCornerRadius(8);
        view.resize(64, 50);
        view.setImage(solid({640, 500}, Qt::red));
        const QImage image = drawn(view);
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(image.pixel(63, 49)), 0);
        QCOMPARE(image.pixelColor(32, 25), QColor(Qt::red));
        view.setImage({});
        QCOMPARE(qAlpha(drawn(view).pixel(32, 25)), 0);
    }

    void onlyAnOpaquePictureHasAnOutline()
    {
        ImageView view;
        view.resize(64, 50);
        view.setImage(solid({640, 500}, Qt::white));
        QImage image = drawn(view);
        QVERIFY(image.pixelColor(32, 0).lightness() < 240);
        QCOMPARE(image.pixelColor(32, 2), QColor(Qt::white));

        QImage window(640, 500, QImage::Format_ARGB32);
        window.fill(Qt::transparent);
        view.setImage(window);
        image = drawn(view);
        QCOMPARE(qAlpha(image.pixel(32, 0)), 0);
    }

    void everyFileHasAnIcon()
    {
        QVERIFY(!fileIcon(QUrl::fromLocalFile(u"/nowhere/shot.png"_s)).isNull());
        QVERIFY(!fileIcon(QUrl::fromLocalFile(u"/nowhere/strange"_s)).isNull());
        QVERIFY(!fileIcon(QUrl()).isNull());
    }
};

VELMORA_WIDGETS_TEST(ControlsTest)
#include "ControlsTest.moc"
