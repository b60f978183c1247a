// SPDX-License-Identifier: MIT
#include "platform/TextRecognizer.h"

#include "recognition/PageReader.h"

namespace
{

class LineByLineRecognizer : public TextRecognizer
{
public:
    void recognize(const Page &page, const LineHandler &onLine, const Cancelled &cancelled) override
    {
        m_reader.read(page.image, page.leftOut, onLine, cancelled);
    }

    void warmUp() override { m_reader.warmUp(); }

private:
    PageReader m_reader;
};

} // namespace

std::unique_ptr<TextRecognizer> makeTextRecognizer()
{
    return std::make_unique<LineByLineRecognizer>();
}
