// SPDX-License-Identifier: MIT
#include "platform/TextRecognizer.h"

#include <QStringList>

#include <algorithm>
#include <mutex>

#import <Vision/Vision.h>

namespace
{

/// Whether the centre of a line is in one of the areas. The system's coordinates start at the lower
/// left corner, as fractions of the picture's width and height.
bool isLeftOut(VNObservation *line, const TextRecognizer::Page &page)
{
    const CGRect box = static_cast<VNRecognizedTextObservation *>(line).boundingBox;
    const QPoint middle(int(CGRectGetMidX(box) * page.image.width()),
                        int((1 - CGRectGetMidY(box)) * page.image.height()));
    return std::any_of(page.leftOut.cbegin(), page.leftOut.cend(),
                       [middle](const QRect &area) { return area.contains(middle); });
}

/// The best reading of each line, in the order of the request's results; empty when one of the
/// results is not text.
QStringList linesOf(VNRequest *request, const TextRecognizer::Page &page)
{
    QStringList lines;
    for (VNObservation *observation in request.results) {
        if (![observation isKindOfClass:VNRecognizedTextObservation.class])
            return {};
        if (isLeftOut(observation, page))
            continue;
        auto *text = static_cast<VNRecognizedTextObservation *>(observation);
        if (VNRecognizedText *best = [text topCandidates:1].firstObject)
            lines.append(QString::fromNSString(best.string));
    }
    return lines;
}

/// In a format that the system can make its own image of.
QImage convertible(const QImage &image)
{
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                         : QImage::Format_RGB32);
}

/// All lines at once, after the request was performed.
QStringList linesIn(const TextRecognizer::Page &page)
{
    const CGImageRef bitmap = convertible(page.image).toCGImage();
    if (!bitmap)
        return {};
    __block QStringList lines;
    VNRecognizeTextRequest *request = [[VNRecognizeTextRequest alloc]
        initWithCompletionHandler:^(VNRequest *performed, NSError *) {
          lines = linesOf(performed, page);
        }];
    request.recognitionLevel = VNRequestTextRecognitionLevelFast;
    request.usesLanguageCorrection = YES;
    VNImageRequestHandler *handler = [[VNImageRequestHandler alloc] initWithCGImage:bitmap
                                                                            options:@{}];
    NSError *error = nil;
    const BOOL performed = [handler performRequests:@[ request ] error:&error];
    CGImageRelease(bitmap);
    return performed ? lines : QStringList();
}

class VisionTextRecognizer : public TextRecognizer
{
public:
    void recognize(const Page &page, const LineHandler &onLine, const Cancelled &cancelled) override
    {
        if (cancelled())
            return;
        @autoreleasepool {
            const QStringList lines = linesIn(page);
            for (const QString &line : lines) {
                if (cancelled() || !onLine(line))
                    return;
            }
        }
    }

    /// A process's first request loads the model.
    void warmUp() override
    {
        std::call_once(m_isWarm, [] {
            @autoreleasepool {
                QImage blank(64, 64, QImage::Format_RGB32);
                blank.fill(Qt::white);
                linesIn(TextRecognizer::Page(blank));
            }
        });
    }

private:
    std::once_flag m_isWarm;
};

} // namespace

std::unique_ptr<TextRecognizer> makeTextRecognizer()
{
    return std::make_unique<VisionTextRecognizer>();
}
