#include "style/BezelButton.h"
#include "style/ElidedLabel.h"
#include "style/FileIcon.h"
#include "style/ImageView.h"
#include "style/SystemFont.h"

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

namespace
{

QImage drawn(QWidget &view)
{
    QImage image(view.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
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
            BezelButton::withSymbol(QStringLiteral("trash"), QStringLiteral("Move to Trash")));
        QCOMPARE(button->size(), QSize(32, 28));
        QCOMPARE(button->toolTip(), QStringLiteral("Move to Trash"));
        QCOMPARE(button->accessibleName(), QStringLiteral("Move to Trash"));
        QVERIFY(!button->icon().isNull());
    }

    void aMissingSymbolLeavesTheButtonEmpty()
    {
        const std::unique_ptr<BezelButton> button(
            BezelButton::withSymbol(QStringLiteral("nothing"), QStringLiteral("Nothing")));
        QVERIFY(button->icon().isNull());
        QVERIFY(qAlpha(drawn(*button).pixel(16, 14)) == 255);
    }

    void aClickOnAButtonLeavesTheKeyboardWhereItIs()
    {
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        auto *field = new QLineEdit;
        auto *button = new BezelButton(QStringLiteral("Press"));
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
        auto *button = new BezelButton(QStringLiteral("Press"), &window);
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
        const QString text = QString(200, QLatin1Char('w'));
        label.setText(text);
        QCOMPARE(label.minimumSizeHint().width(), 0);
        QVERIFY(label.sizeHint().width() > 1000);
        label.resize(100, 20);
        QCOMPARE(label.text(), text);
        const QImage cut = drawn(label);
        label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, 100));
        QCOMPARE(drawn(label), cut);
    }

    void markupInALabelIsShownAsItStands()
    {
        ElidedLabel label(Qt::ElideRight);
        label.setFont(systemFont(12));
        label.setText(QStringLiteral("<b></b>"));
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
        QVERIFY(!fileIcon(QUrl::fromLocalFile(QStringLiteral("/nowhere/shot.png"))).isNull());
        QVERIFY(!fileIcon(QUrl::fromLocalFile(QStringLiteral("/nowhere/strange"))).isNull());
        QVERIFY(!fileIcon(QUrl()).isNull());
    }
};

QTEST_MAIN(ControlsTest)
#include "ControlsTest.moc"
