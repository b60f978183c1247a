// SPDX-License-Identifier: MIT
#include "command/ToolNames.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ToolNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNameOfAToolIsKnown_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {
                 // GNOME, with translations and counters
                 "Screenshot from 2023-01-31 09-05-59.png",
                 "Screenshot From 2024-11-02 23-59-01.png",
                 "Screenshot From 2024-11-02 23-59-01-1.png",
                 "Screenshot from 2023-01-31 09-05-59 - 2.png",
                 "Bildschirmfoto vom 2023-01-31 09-05-59.png",
                 "Capture d’écran du 2023-01-31 09-05-59.png",
                 "Captura desde 2023-01-31 09-05-59.png",
                 "Captura de pantalla de 2023-01-31 09-05-59.png",
                 "Schermata del 2023-01-31 09-05-59.png",
                 "Captura de ecrã de 2023-01-31 09-05-59.png",
                 "Captura de tela de 2023-01-31 09-05-59.png",
                 "Schermafdruk van 2023-01-31 09-05-59.png",
                 "Zrzut ekranu z 2023-01-31 09-05-59.png",
                 "Snímek obrazovky z 2023-01-31 09-05-59.png",
                 "Skärmbild från 2023-01-31 09-05-59.png",
                 "Skærmbillede fra 2023-01-31 09-05-59.png",
                 "Skjermbilde fra 2023-01-31 09-05-59.png",
                 "Kuvakaappaus - 2023-01-31 09-05-59.png",
                 "Képernyőkép ekkor: 2023-01-31 09-05-59.png",
                 "Instantaneu de ecran din 2023-01-31 09-05-59.png",
                 "Ekran Görüntüsü - 2023-01-31 09-05-59.png",
                 "Снимок экрана от 2023-01-31 09-05-59.png",
                 "Знімок екрана з 2023-01-31 09-05-59.png",
                 "Στιγμιότυπο οθόνης από 2023-01-31 09-05-59.png",
                 "צילום מסך מ־2023-01-31 09-05-59.png",
                 "스크린샷 2023-01-31 09-05-59.png",
                 "截图 2023-01-31 09-05-59.png",
                 "螢幕快照 2023-01-31 09-05-59.png",
                 "Cuplikan layar dari 2023-01-31 09-05-59.png",
                 // KDE
                 "Screenshot_20230131_090559.png",
                 "Bildschirmfoto_20230131_090559.png",
                 "Capture d'écran_20230131_090559.png",
                 "スクリーンショット_20230131_090559.png",
                 "屏幕截图_20230131_090559.png",
                 // Xfce, MATE, COSMIC, elementary
                 "Screenshot_2023-01-31_09-05-59.png",
                 "Screenshot_2023-01-31_09-05-59-1.png",
                 "Screenshot at 2023-01-31 09-05-59.png",
                 "Screenshot from 2023-01-31 09.05.59.png",
                 // other tools
                 "2026-11-21_07-00.png",
                 "2026-11-21_07-00_1.png",
                 "2026-11-21_07-00-12.jpg",
                 "ksnip_20230131-090559.png",
                 "screen-2023-01-31-09-05-59.png",
                 "20261121_07h00m12s_grim.png",
                 "2026-11-21-070012_hyprshot.png",
                 "2026-11-21T07:00:12,123456789+01:00.png",
                 // macOS
                 "Screenshot 2023-01-31 at 09.05.59.png",
                 "Screenshot 2023-01-31 at 9.05.59 PM.png",
                 "Screenshot 2023-01-31 at 9.05.59\u202FAM (2).png",
                 "Screen Shot 2019-01-31 at 09.05.59.png",
                 "Bildschirmfoto 2023-01-31 um 09.05.59.png",
             })
            QTest::addRow("%s", name) << QString::fromUtf8(name);
    }

    void theNameOfAToolIsKnown()
    {
        QFETCH(QString, name);
        QVERIFY(ToolNames::isToolName(name));
    }

    void theCaseTheExtensionAndTheFormOfAccentsDoNotMatter()
    {
        QVERIFY(ToolNames::isToolName(u"SCREENSHOT FROM 2023-01-31 09-05-59.JPEG"_s));
        QVERIFY(ToolNames::isToolName(
            u"Skärmbild från 2023-01-31 09-05-59.png"_s.normalized(QString::NormalizationForm_D)));
    }

    void aNameThatSomebodyChoseIsNotATools_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {
                 "chrome-pull-request-review-comments.png",
                 "screenshot.png",
                 "Screenshot of the invoice.png",
                 "Screenshot from Anna 2023-01-31 09-05-59.png",
                 "Screenshot from 2023-01-31 09-05-59 invoice.png",
                 "Invoice 2023-01-31 09-05-59.png",
                 "Screenshot 2023-01-31.png",
                 "Screenshot from 2023-01-31 09-05-59-login-error.png",
                 "2023-01-31.png",
                 "20230131.png",
                 "Screenshot 1234.png",
                 "screens-2023-01-31-09-05-59.png",
                 "my Screenshot_20230131_090559.png",
                 "screenshot-screen-20230131-090559.png",
                 "grim.png",
                 ".png",
                 "",
             })
            QTest::addRow("%s", name) << QString::fromUtf8(name);
    }

    void aNameThatSomebodyChoseIsNotATools()
    {
        QFETCH(QString, name);
        QVERIFY(!ToolNames::isToolName(name));
    }
};

VELMORA_PLAIN_TEST(ToolNamesTest)
#include "ToolNamesTest.moc"
