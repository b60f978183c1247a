#include "platform/TextRecognizer.h"

#include <QStringList>

#include <mutex>

#import <Vision/Vision.h>

namespace
{

/// The best reading of each line in the order of the request's results; nothing when one of them is
/// no text.
QStringList linesOf(VNRequest *request)
{
    QStringList lines;
    for (VNObservation *observation in request.results) {
        if (![observation isKindOfClass:VNRecognizedTextObservation.class])
            return {};
        auto *text = static_cast<VNRecognizedTextObservation *>(observation);
        if (VNRecognizedText *best = [text topCandidates:1].firstObject)
            lines.append(QString::fromNSString(best.string));
    }
    return lines;
}

/// One of the formats that the system can make its own image of.
QImage convertible(const QImage &image)
{
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                         : QImage::Format_RGB32);
}

/// All lines at once, when the request has been performed.
QStringList linesIn(const QImage &image)
{
    const CGImageRef bitmap = convertible(image).toCGImage();
    if (!bitmap)
        return {};
    __block QStringList lines;
    VNRecognizeTextRequest *request = [[VNRecognizeTextRequest alloc]
        initWithCompletionHandler:^(VNRequest *performed, NSError *) {
          lines = linesOf(performed);
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
    void recognize(const QImage &image, const LineHandler &onLine,
                   const Cancelled &cancelled) override
    {
        if (cancelled())
            return;
        @autoreleasepool {
            const QStringList lines = linesIn(image);
            for (const QString &line : lines) {
                if (cancelled() || !onLine(line))
                    return;
            }
        }
    }

    /// The first request of a process loads the model.
    void warmUp() override
    {
        std::call_once(m_isWarm, [] {
            @autoreleasepool {
                QImage blank(64, 64, QImage::Format_RGB32);
                blank.fill(Qt::white);
                linesIn(blank);
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
