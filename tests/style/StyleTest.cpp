// SPDX-License-Identifier: MIT
#include "style/VelmoraAssets.h"
#include "style/VelmoraPalette.h"
#include "style/VelmoraStyle.h"
#include "style/lightAppearance.h"
#include "tests/world/TestProgram.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOption>
#include <QTest>
#include <QToolTip>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{

QColor middle(const QImage &image)
{
    return image.pixelColor(image.rect().center());
}

bool isNear(const QColor &one, const QColor &other)
{
    constexpr int tolerance = 20;
    return std::abs(one.red() - other.red()) <= tolerance &&
           std::abs(one.green() - other.green()) <= tolerance &&
           std::abs(one.blue() - other.blue()) <= tolerance;
}

/// The style's own drawing of a check box's square.
QImage checkBox(QStyle::State state)
{
    QStyleOptionButton option;
    option.rect = QRect(0, 0, 16, 16);
    option.state = state;
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &option, &painter);
    return image;
}

QRect part(const QScrollBar &bar, QStyle::SubControl control)
{
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = bar.orientation();
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.pageStep = bar.pageStep();
    option.sliderPosition = bar.value();
    return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, control, &bar);
}

} // namespace

class StyleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { applyLightAppearance(); }

    void theWholeApplicationIsLight()
    {
        QVERIFY(qobject_cast<VelmoraStyle *>(QApplication::style()));
        QCOMPARE(QApplication::palette().color(QPalette::Window), VelmoraPalette::window());
        QCOMPARE(QToolTip::palette().color(QPalette::ToolTipBase), VelmoraPalette::card());
        QCOMPARE(QApplication::font().pixelSize(), 13);
    }

    void theWindowsReadFromLeftToRightLikeTheirTexts()
    {
        QApplication::setLayoutDirection(Qt::RightToLeft);
        applyLightAppearance();
        QCOMPARE(QApplication::layoutDirection(), Qt::LeftToRight);
    }

    void anAlertThatInformsBearsTheLogo()
    {
        QMessageBox alert;
        alert.setIcon(QMessageBox::Information);
        const QImage shown = alert.iconPixmap().toImage();
        QVERIFY(!shown.isNull());
        const QImage logo = VelmoraAssets::logoImage().pixmap(shown.size()).toImage();
        QCOMPARE(shown, logo);
    }

    void theDefaultButtonIsFilledAndOthersAreNot()
    {
        QPushButton plain;
        QPushButton preferred;
        preferred.setDefault(true);
        for (QPushButton *button : {&plain, &preferred})
            button->resize(80, 28);
        QVERIFY(isNear(middle(plain.grab().toImage()), VelmoraPalette::card()));
        QVERIFY(isNear(middle(preferred.grab().toImage()), VelmoraPalette::coral()));
    }

    void buttonsAndPopUpsAreOfOneHeight()
    {
        const QPushButton button(u"Use Folder"_s);
        QComboBox popUp;
        popUp.addItem(u"Bottom-right"_s);
        QCOMPARE(button.sizeHint().height(), 28);
        QCOMPARE(popUp.sizeHint().height(), 28);
    }

    void aPopUpIsWideEnoughForItsLongestItem()
    {
        QComboBox popUp;
        popUp.addItems({u"A"_s, u"Copy picture + file"_s});
        const int text = popUp.fontMetrics().horizontalAdvance(popUp.itemText(1));
        QStyleOptionComboBox option;
        option.initFrom(&popUp);
        option.rect = QRect({}, popUp.sizeHint());
        const QRect field = popUp.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                          QStyle::SC_ComboBoxEditField, &popUp);
        QVERIFY(field.width() >= text);
    }

    void aCheckBoxShowsItsStateAndItsFocus()
    {
        const QStyle::State enabled = QStyle::State_Enabled;
        const QImage off = checkBox(enabled | QStyle::State_Off);
        const QImage on = checkBox(enabled | QStyle::State_On);
        QVERIFY(isNear(middle(off), VelmoraPalette::card()));
        QVERIFY(isNear(on.pixelColor(3, 3), VelmoraPalette::coral()));
        QVERIFY(checkBox(enabled | QStyle::State_Off | QStyle::State_HasFocus) != off);
        QVERIFY(checkBox(enabled | QStyle::State_On | QStyle::State_HasFocus) != on);
    }

    void theScrollBarsHandleIsItsShareAndMovesFromEndToEnd()
    {
        QScrollBar bar(Qt::Vertical);
        bar.resize(12, 400);
        bar.setRange(0, 300);
        bar.setPageStep(100);
        QCOMPARE(part(bar, QStyle::SC_ScrollBarGroove), QRect(0, 0, 12, 400));
        QCOMPARE(part(bar, QStyle::SC_ScrollBarSlider), QRect(0, 0, 12, 100));
        bar.setValue(300);
        QCOMPARE(part(bar, QStyle::SC_ScrollBarSlider), QRect(0, 300, 12, 100));
        QCOMPARE(part(bar, QStyle::SC_ScrollBarSubPage), QRect(0, 0, 12, 300));
        QVERIFY(part(bar, QStyle::SC_ScrollBarAddPage).isEmpty());
        QVERIFY(part(bar, QStyle::SC_ScrollBarAddLine).isEmpty());
    }

    void aHugeRangeLeavesAHandleToGrasp()
    {
        QScrollBar bar(Qt::Horizontal);
        bar.resize(400, 12);
        bar.setRange(0, 1000000);
        bar.setPageStep(1);
        QCOMPARE(part(bar, QStyle::SC_ScrollBarSlider), QRect(0, 0, 28, 12));
    }

    void aScrollBarWithNothingToScrollIsEmpty()
    {
        QScrollBar bar(Qt::Vertical);
        bar.resize(12, 400);
        bar.setRange(0, 0);
        const QImage empty = bar.grab().toImage();
        QVERIFY(isNear(middle(empty), VelmoraPalette::window()));
        bar.setRange(0, 10);
        bar.setPageStep(400);
        QVERIFY(!isNear(middle(bar.grab().toImage()), VelmoraPalette::window()));
    }

    void theHandleCanBeDragged()
    {
        QScrollBar bar(Qt::Vertical);
        bar.resize(12, 400);
        bar.setRange(0, 300);
        bar.setPageStep(100);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QTest::mousePress(&bar, Qt::LeftButton, {}, {6, 50});
        QTest::mouseMove(&bar, {6, 200});
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, {6, 200});
        QCOMPARE(bar.value(), 150);
    }
};

VELMORA_WIDGETS_TEST(StyleTest)
#include "StyleTest.moc"
