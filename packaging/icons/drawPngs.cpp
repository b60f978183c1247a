// SPDX-License-Identifier: MIT
#include "packaging/icons/drawPicture.h"

#include <QFile>

/// Draws a picture in SVG as PNG files in several sizes: FOLDER/48.png and so on.
///
/// usage: draw_pngs SVG FOLDER PIXELS...
int main(int argc, char *argv[])
{
    if (argc < 4)
        return 2;
    QSvgRenderer drawing(QFile::decodeName(argv[1]));
    if (!drawing.isValid())
        return 1;
    for (int i = 3; i < argc; ++i) {
        const QByteArray file = QByteArray(argv[2]) + '/' + argv[i] + ".png";
        if (!drawPicture(drawing, QByteArray(argv[i]).toInt()).save(QFile::decodeName(file)))
            return 1;
    }
    return 0;
}
