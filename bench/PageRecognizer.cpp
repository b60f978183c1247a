// SPDX-License-Identifier: MIT
#include "bench/PageRecognizer.h"

#include "recognition/engine/libraryThreads.h"

#include <leptonica/allheaders.h>
#include <tesseract/baseapi.h>

#include <mutex>

namespace
{

class PageRecognizer : public TextRecognizer
{
public:
    PageRecognizer()
    {
        m_ready = m_engine.Init(nullptr, "eng", tesseract::OEM_LSTM_ONLY) == 0;
        m_engine.SetVariable("debug_file", "/dev/null");
        setMsgSeverity(L_SEVERITY_NONE);
        m_engine.SetPageSegMode(tesseract::PSM_AUTO);
    }

    void recognize(const Page &page, const LineHandler &onLine, const Cancelled &) override
    {
        const std::lock_guard lock(m_mutex);
        if (!m_ready || page.image.isNull())
            return;
        keepLibraryOnThisThread();
        const QImage picture = page.image.convertToFormat(QImage::Format_RGB888);
        m_engine.SetImage(picture.constBits(), picture.width(), picture.height(), 3,
                          int(picture.bytesPerLine()));
        const std::unique_ptr<char[]> text(m_engine.GetUTF8Text());
        m_engine.Clear();
        for (const QString &line : QString::fromUtf8(text.get()).split(QLatin1Char('\n'))) {
            if (!line.isEmpty() && !onLine(line))
                return;
        }
    }

    void warmUp() override {}

private:
    std::mutex m_mutex;
    tesseract::TessBaseAPI m_engine;
    bool m_ready = false;
};

} // namespace

std::unique_ptr<TextRecognizer> makePageRecognizer()
{
    return std::make_unique<PageRecognizer>();
}
