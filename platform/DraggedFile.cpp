// SPDX-License-Identifier: MIT
#include "platform/DraggedFile.h"

#include "filesystem/FileUrls.h"

using namespace Qt::StringLiterals;

void DraggedFile::setFile(const QUrl &file)
{
    m_file = file;
    setUrls({file});
    setText(file.toLocalFile());
    setData(u"application/x-kde-suggestedfilename"_s, FileUrls::lastPathComponent(file).toUtf8());
}
