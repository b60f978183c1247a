#include "platform/TextRecognizer.h"

#include "core/releaseFreeMemory.h"
#include "platform/linux/text/EnginePool.h"
#include "platform/linux/text/LineFinder.h"
#include "platform/linux/text/LineReader.h"
#include "platform/linux/text/LocaleModels.h"
#include "platform/linux/text/PictureLevels.h"
#include "platform/linux/text/ReadingOrder.h"

namespace
{

/// After so many lines without a word, the rest is taken for a texture; most of them cost a tenth
/// of a millisecond.
constexpr int maximumBarrenLines = 400;

/// Lines are found over the whole picture first, which takes some milliseconds, and then read one
/// by one, which takes nearly all the time.
class LineByLineRecognizer : public TextRecognizer
{
public:
    LineByLineRecognizer() { keepLittleFreeMemory(); }

    void recognize(const QImage &image, const LineHandler &onLine,
                   const Cancelled &cancelled) override
    {
        const QImage picture = opaquePicture(image);
        if (picture.isNull())
            return;
        const std::vector<TextLine> lines = inReadingOrder(findLines(picture, cancelled));
        const EnginePool::Lease engine = m_engines.take();
        LineReader reader(*engine, picture);
        int barren = 0;
        for (const TextLine &line : lines) {
            const bool wanted = reader.read(
                line,
                [&](const QString &text) {
                    barren = 0;
                    return onLine(text);
                },
                cancelled);
            if (!wanted || ++barren > maximumBarrenLines)
                return;
        }
    }

    void warmUp() override { m_engines.take(); }

private:
    EnginePool m_engines{localeModels(QLocale::system())};
};

} // namespace

std::unique_ptr<TextRecognizer> makeTextRecognizer()
{
    return std::make_unique<LineByLineRecognizer>();
}
