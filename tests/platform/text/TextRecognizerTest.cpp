#include "platform/TextRecognizer.h"

#include <QPainter>
#include <QtTest>

namespace
{

/// A picture of lines of text, one below the other.
QImage pictureOf(const QStringList &lines, QColor ink = Qt::black, QColor ground = Qt::white,
                 int pixels = 16)
{
    QImage picture(640, 40 + 3 * pixels * int(lines.size()), QImage::Format_RGB32);
    picture.fill(ground);
    QPainter painter(&picture);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(pixels);
    painter.setFont(font);
    painter.setPen(ink);
    for (int index = 0; index < lines.size(); ++index)
        painter.drawText(20, 20 + pixels + 3 * pixels * index, lines[index]);
    return picture;
}

QString textOf(TextRecognizer &recognizer, const QImage &picture)
{
    QStringList pieces;
    recognizer.recognize(
        picture,
        [&](const QString &text) {
            pieces.append(text);
            return true;
        },
        [] { return false; });
    return pieces.join(QLatin1Char(' '));
}

} // namespace

class TextRecognizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_recognizer = makeTextRecognizer(); }

    void twoLinesAreReadInOrder()
    {
        QCOMPARE(textOf(*m_recognizer, pictureOf({QStringLiteral("Quarterly report"),
                                                  QStringLiteral("Numbers for the board")})),
                 QStringLiteral("Quarterly report Numbers for the board"));
    }

    void lightTextOnADarkGroundIsRead()
    {
        QCOMPARE(textOf(*m_recognizer,
                        pictureOf({QStringLiteral("Quarterly report")}, Qt::white, Qt::darkBlue)),
                 QStringLiteral("Quarterly report"));
    }

    void aNullPictureAndAnEmptyOneGiveNothing()
    {
        QCOMPARE(textOf(*m_recognizer, QImage()), QString());
        QCOMPARE(textOf(*m_recognizer, pictureOf({})), QString());
    }

    void readingStopsWhenTheHandlerHasEnough()
    {
        int pieces = 0;
        m_recognizer->recognize(
            pictureOf({QStringLiteral("First line"), QStringLiteral("Second line")}),
            [&](const QString &) {
                ++pieces;
                return false;
            },
            [] { return false; });
        QCOMPARE(pieces, 1);
    }

    void aCancelledPictureGivesNothing()
    {
        int pieces = 0;
        m_recognizer->recognize(
            pictureOf({QStringLiteral("First line")}),
            [&](const QString &) {
                ++pieces;
                return true;
            },
            [] { return true; });
        QCOMPARE(pieces, 0);
    }

private:
    std::unique_ptr<TextRecognizer> m_recognizer;
};

QTEST_MAIN(TextRecognizerTest)

#include "TextRecognizerTest.moc"
