// SPDX-License-Identifier: MIT
#include "recognition/lines/StrokeBlobs.h"

#include <algorithm>
#include <cstring>

namespace
{

/// Edges at most this far apart, in pixels, belong to one stroke or to letters that nearly touch.
constexpr int strokeGap = 2;

std::size_t nextEdge(const std::vector<std::uint8_t> &edges, std::size_t from)
{
    const void *found = std::memchr(edges.data() + from, 1, edges.size() - from);
    return found ? std::size_t(static_cast<const std::uint8_t *>(found) - edges.data())
                 : edges.size();
}

/// Marks the pixels that differ from their right neighbours. This is the only code that visits
/// every pixel, so its loops are plain enough for the compiler to vectorise. `steps` is scratch
/// space for one row.
void markEdges(const std::uint8_t *row, int width, std::uint32_t *steps, std::uint8_t *edges)
{
    auto *step = reinterpret_cast<std::uint8_t *>(steps);
    for (int i = 0; i < 4 * (width - 1); ++i) {
        const std::uint8_t here = row[i];
        const std::uint8_t next = row[i + 4];
        const auto difference = std::uint8_t(std::max(here, next) - std::min(here, next));
        step[i] = difference >= StrokeBlobs::minimumEdgeStep ? 0xff : 0;
    }
    for (int x = 0; x < width - 1; ++x)
        edges[x] = std::uint8_t(steps[x] != 0);
}

} // namespace

int StrokeBlobs::Forest::add(const QRect &box)
{
    m_boxes.push_back(box);
    m_parents.push_back(int(m_parents.size()));
    return m_parents.back();
}

int StrokeBlobs::Forest::root(int blob)
{
    auto place = std::size_t(blob);
    while (m_parents[place] != int(place)) {
        m_parents[place] = m_parents[std::size_t(m_parents[place])];
        place = std::size_t(m_parents[place]);
    }
    return int(place);
}

int StrokeBlobs::Forest::join(int first, int second)
{
    const int kept = std::min(root(first), root(second));
    const int gone = std::max(root(first), root(second));
    if (kept != gone) {
        m_parents[std::size_t(gone)] = kept;
        extend(kept, m_boxes[std::size_t(gone)]);
    }
    return kept;
}

void StrokeBlobs::Forest::extend(int blob, const QRect &box)
{
    m_boxes[std::size_t(blob)] |= box;
}

std::vector<QRect> StrokeBlobs::Forest::boxes() const
{
    std::vector<QRect> roots;
    for (std::size_t blob = 0; blob < m_boxes.size(); ++blob) {
        if (m_parents[blob] == int(blob))
            roots.push_back(m_boxes[blob]);
    }
    return roots;
}

StrokeBlobs::StrokeBlobs(int width)
    : m_width(width), m_steps(std::size_t(width), 0), m_edges(std::size_t(width), 0)
{
}

void StrokeBlobs::addRow(const QRgb *row)
{
    if (m_forest.size() >= maximumBlobs || m_width < 2)
        return;
    markEdges(reinterpret_cast<const std::uint8_t *>(row), m_width, m_steps.data(), m_edges.data());
    collectRuns();
    joinRuns();
    m_above.swap(m_runs);
    ++m_row;
}

std::vector<QRect> StrokeBlobs::boxes() const
{
    return m_forest.boxes();
}

void StrokeBlobs::collectRuns()
{
    m_runs.clear();
    for (std::size_t x = nextEdge(m_edges, 0); x < m_edges.size(); x = nextEdge(m_edges, x)) {
        std::size_t last = x;
        std::size_t next = x + 1;
        for (; next < m_edges.size() && next - last <= strokeGap; ++next) {
            if (m_edges[next])
                last = next;
        }
        m_runs.push_back({int(x), int(last), -1});
        x = next;
    }
}

/// Assigns each run to a blob: one that it touches in the row above, or a new one.
void StrokeBlobs::joinRuns()
{
    auto first = m_above.cbegin();
    for (Run &run : m_runs) {
        while (first != m_above.cend() && first->right + 1 < run.left)
            ++first;
        for (auto above = first; above != m_above.cend() && above->left <= run.right + 1; ++above) {
            run.blob =
                run.blob < 0 ? m_forest.root(above->blob) : m_forest.join(run.blob, above->blob);
        }
        // An edge lies between its pixel and the next one, so the box ends one pixel further right.
        const QRect box(QPoint(run.left, m_row), QPoint(run.right + 1, m_row));
        if (run.blob < 0)
            run.blob = m_forest.add(box);
        else
            m_forest.extend(run.blob, box);
    }
}
