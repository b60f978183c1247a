// SPDX-License-Identifier: MIT
// A settings file with any text: what is written into it is read again, and nothing else changes.
// The input is the new value, a zero byte and the file's text.

#include "core/IniText.h"

#include <QStringList>

#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype end = input.indexOf('\0');
    const QString value = QString::fromUtf8(input.left(end));
    const QByteArray text = end < 0 ? QByteArray() : input.mid(end + 1);
    const QString key = u"a-key_1"_s;

    auto others = IniText::values(text);
    others.remove(key);
    const QVariant list = value.split(u'\n');
    for (const QVariant &written : {QVariant(value), list}) {
        auto read = IniText::values(IniText::changed(text, {{key, written}}));
        require(read.value(key).toStringList() == written.toStringList());
        read.remove(key);
        require(read == others);
    }
    require(IniText::values(IniText::changed(text, {{key, QVariant()}})) == others);
    return 0;
}
