#include "platform/linux/text/JunkFilter.h"

namespace
{

/// The trial's measure: below it, words on real screenshots were wrong more often than right.
constexpr double leastConfidence = 0.83;

} // namespace

bool isRealWord(const ReadWord &word)
{
    return word.confidence >= leastConfidence;
}
