// SPDX-License-Identifier: MIT
#include "recognition/engine/WordFilter.h"
#include "tests/world/TestProgram.h"

#include <QTest>

class WordFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void realWordsStayAndJunkGoes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("confidence");
        QTest::addColumn<bool>("real");
        const auto row = [](const char *text, double confidence, bool real) {
            QTest::addRow("%s at %.2f", text, confidence)
                << QString::fromUtf8(text) << confidence << real;
        };
        row("Settings", 0.96, true);
        row("settings", 0.84, true);
        row("settings", 0.82, false);
        row("mainwindow.vala", 0.86, true);
        row("jolly_torvalds", 0.85, true);
        row("x86_64", 0.85, true);
        row("Müller", 0.9, true);
        row("bin", 0.95, true);
        row("bin", 0.86, false);
        row("Bec", 0.86, false);
        row("www", 0.95, true);
        row("WWW", 0.95, true);
        row("eee", 0.95, false);
        row("OOO", 0.97, false);
        row("||||", 0.97, false);
        row("—", 0.97, false);
        row("2000", 0.95, true);
        row("1111", 0.95, true);
        row("", 1, false);
    }
    void realWordsStayAndJunkGoes()
    {
        QFETCH(QString, text);
        QFETCH(double, confidence);
        QFETCH(bool, real);
        QCOMPARE(isRealWord({text, confidence}), real);
    }
};

VELMORA_PLAIN_TEST(WordFilterTest)

#include "WordFilterTest.moc"
