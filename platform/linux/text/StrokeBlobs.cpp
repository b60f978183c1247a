#include "platform/linux/text/StrokeBlobs.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace
{

/// Edges at most this far apart, in pixels, are of one stroke or of letters that nearly touch.
constexpr int strokeGap = 2;

/// A run of edge pixels in one row, with the blob that it belongs to.
struct Run {
    int left;
    int right;
    int blob;
};

/// The blobs while they grow: a forest in which joined blobs point to the one they became.
class Forest
{
public:
    int add(const QRect &box)
    {
        m_boxes.push_back(box);
        m_parents.push_back(int(m_parents.size()));
        return m_parents.back();
    }

    int root(int blob)
    {
        while (parent(blob) != blob)
            blob = parent(blob) = parent(parent(blob));
        return blob;
    }

    int join(int first, int second)
    {
        const int kept = std::min(root(first), root(second));
        const int gone = std::max(root(first), root(second));
        if (kept != gone) {
            parent(gone) = kept;
            box(kept) |= box(gone);
        }
        return kept;
    }

    QRect &box(int blob) { return m_boxes[std::size_t(blob)]; }
    std::size_t size() const { return m_boxes.size(); }

    std::vector<QRect> boxes()
    {
        std::vector<QRect> roots;
        for (int blob = 0; blob < int(size()); ++blob) {
            if (parent(blob) == blob)
                roots.push_back(box(blob));
        }
        return roots;
    }

private:
    int &parent(int blob) { return m_parents[std::size_t(blob)]; }

    std::vector<QRect> m_boxes;
    std::vector<int> m_parents;
};

/// Sets flags[x] where pixel x differs from pixel x + 1. The loops are plain so that the compiler
/// turns them into vector instructions: this is the only code that sees every pixel.
void markEdges(const std::uint8_t *row, int width, std::uint8_t *steps, std::uint8_t *flags)
{
    for (int i = 0; i < 4 * (width - 1); ++i) {
        const std::uint8_t here = row[i];
        const std::uint8_t next = row[i + 4];
        const auto step = std::uint8_t(std::max(here, next) - std::min(here, next));
        steps[i] = step >= minimumEdgeStep ? 0xff : 0;
    }
    const auto *pixels = reinterpret_cast<const std::uint32_t *>(steps);
    for (int x = 0; x < width - 1; ++x)
        flags[x] = std::uint8_t(pixels[x] != 0);
}

int nextEdge(const std::uint8_t *flags, int from, int width)
{
    const void *found = std::memchr(flags + from, 1, std::size_t(width - from));
    return found ? int(static_cast<const std::uint8_t *>(found) - flags) : width;
}

void collectRuns(const std::uint8_t *flags, int width, std::vector<Run> &runs)
{
    runs.clear();
    for (int x = nextEdge(flags, 0, width); x < width;) {
        int last = x;
        int next = x + 1;
        while (next < width && next - last <= strokeGap) {
            if (flags[next])
                last = next;
            ++next;
        }
        runs.push_back({x, last, -1});
        x = next < width ? nextEdge(flags, next, width) : width;
    }
}

/// Gives each run of a row its blob: that of the runs it touches in the row above, or a new one.
void joinRuns(const std::vector<Run> &above, std::vector<Run> &runs, int y, Forest &forest)
{
    auto candidate = above.begin();
    for (Run &run : runs) {
        while (candidate != above.end() && candidate->right + 1 < run.left)
            ++candidate;
        for (auto touching = candidate; touching != above.end() && touching->left <= run.right + 1;
             ++touching) {
            run.blob =
                run.blob < 0 ? forest.root(touching->blob) : forest.join(run.blob, touching->blob);
        }
        // An edge lies between its pixel and the next, so that the box ends one further.
        const QRect box(QPoint(run.left, y), QPoint(run.right + 1, y));
        if (run.blob < 0)
            run.blob = forest.add(box);
        else
            forest.box(run.blob) |= box;
    }
}

} // namespace

std::vector<QRect> findStrokeBlobs(const QImage &picture)
{
    const int width = picture.width();
    if (width < 2)
        return {};
    std::vector<std::uint32_t> steps(std::size_t(width), 0);
    std::vector<std::uint8_t> flags(std::size_t(width), 0);
    std::vector<Run> above;
    std::vector<Run> runs;
    Forest forest;
    for (int y = 0; y < picture.height() && forest.size() < maximumBlobs; ++y) {
        markEdges(picture.constScanLine(y), width, reinterpret_cast<std::uint8_t *>(steps.data()),
                  flags.data());
        collectRuns(flags.data(), width, runs);
        joinRuns(above, runs, y, forest);
        above.swap(runs);
    }
    return forest.boxes();
}
