// SPDX-License-Identifier: MIT
#include "recognition/engine/Engine.h"

#include "recognition/engine/libraryThreads.h"

#include <QFile>

#include <leptonica/allheaders.h>
#include <tesseract/baseapi.h>

#include <mutex>

using namespace Qt::StringLiterals;

namespace tesseract
{

class UNICHARSET;

class UnicharAmbigs
{
public:
    void LoadUniversal(const UNICHARSET &, UNICHARSET *);
};

/// Replaces a function of the library, because the loader prefers the program's definition. At
/// every start the library builds a table of similar letters that only its older engine reads. That
/// takes two thirds of the start, and no setting prevents it. A library that does not call the
/// function in this way starts as before.
void UnicharAmbigs::LoadUniversal(const UNICHARSET &, UNICHARSET *) {}

} // namespace tesseract

namespace
{

const char *const english = "eng";

/// Silences the engine, because the program writes nothing to the console. Both settings are
/// globals of the libraries.
void silence(tesseract::TessBaseAPI &api)
{
    static std::once_flag once;
    std::call_once(once, [&api] {
        api.SetVariable("debug_file", "/dev/null");
        setMsgSeverity(L_SEVERITY_NONE);
    });
}

bool start(tesseract::TessBaseAPI &api, const QByteArray &models)
{
    return api.Init(nullptr, models.constData(), tesseract::OEM_LSTM_ONLY) == 0;
}

/// "eng" and those of `languages` that are installed, joined in the engine's format.
QByteArray installedModels(tesseract::TessBaseAPI &api, const QStringList &languages)
{
    const QString folder = QString::fromUtf8(api.GetDatapath());
    QByteArray models = english;
    for (const QString &language : languages) {
        const QString model = folder % u'/' % language % ".traineddata"_L1;
        if (language != QLatin1String(english) && QFile::exists(model))
            models += '+' + language.toLatin1();
    }
    return models;
}

ReadWord wordAt(const tesseract::ResultIterator &place)
{
    const std::unique_ptr<char[]> text(place.GetUTF8Text(tesseract::RIL_WORD));
    return {QString::fromUtf8(text.get()), double(place.Confidence(tesseract::RIL_WORD)) / 100};
}

} // namespace

class Engine::Private
{
public:
    tesseract::TessBaseAPI api;
    bool ready = false;
};

Engine::Engine(const QStringList &languages) : d(std::make_unique<Private>())
{
    silence(d->api);
    d->ready = start(d->api, english);
    if (!d->ready)
        return;
    const QByteArray models = installedModels(d->api, languages);
    if (models != english)
        d->ready = start(d->api, models) || start(d->api, english);
    // Each picture is one line, dark on white: the engine need not look for lines or for light
    // text.
    d->api.SetPageSegMode(tesseract::PSM_RAW_LINE);
    d->api.SetVariable("tessedit_do_invert", "0");
}

Engine::~Engine() = default;

std::vector<ReadWord> Engine::read(const QImage &line)
{
    if (!d->ready || line.isNull())
        return {};
    keepLibraryOnThisThread();
    d->api.SetImage(line.constBits(), line.width(), line.height(), 1, int(line.bytesPerLine()));
    d->api.SetSourceResolution(300);
    std::vector<ReadWord> words;
    if (d->api.Recognize(nullptr) == 0) {
        const std::unique_ptr<tesseract::ResultIterator> place(d->api.GetIterator());
        if (place && !place->Empty(tesseract::RIL_WORD)) {
            do
                words.push_back(wordAt(*place));
            while (place->Next(tesseract::RIL_WORD));
        }
    }
    d->api.Clear();
    return words;
}
