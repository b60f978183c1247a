// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QRgb>

#include <cstdint>
#include <vector>

/// Finds blobs: groups of pixels joined by the edges of upright strokes. A blob is a letter, or
/// several letters that nearly touch, light on dark or dark on light. Horizontal rules leave no
/// blobs; vertical ones leave very high blobs.
class StrokeBlobs
{
public:
    /// The smallest change of any colour channel (of 255), from one pixel to its right neighbour,
    /// that counts as the edge of a stroke. Smoothed pale grey text on white changes by 40, the
    /// noise of an ordinary JPEG file by 20.
    static constexpr int minimumEdgeStep = 24;

    /// A picture with more blobs than this is not text: the remaining rows are skipped. A full page
    /// of the smallest letters on the largest screens has a tenth of it.
    static constexpr std::size_t maximumBlobs = 200'000;

    explicit StrokeBlobs(int width);

    /// The next row of the picture, `width` opaque pixels.
    void addRow(const QRgb *row);

    std::vector<QRect> boxes() const;

private:
    /// A run of edge pixels in one row, and the blob that it belongs to.
    struct Run {
        int left;
        int right;
        int blob;
    };

    /// The blobs while they grow: a forest in which joined blobs point to the one they became.
    class Forest
    {
    public:
        int add(const QRect &box);
        int root(int blob);
        int join(int first, int second);
        void extend(int blob, const QRect &box);
        std::size_t size() const { return m_boxes.size(); }
        std::vector<QRect> boxes() const;

    private:
        std::vector<QRect> m_boxes;
        std::vector<int> m_parents;
    };

    void collectRuns();
    void joinRuns();

    int m_width;
    int m_row = 0;
    std::vector<std::uint32_t> m_steps;
    std::vector<std::uint8_t> m_edges;
    std::vector<Run> m_above;
    std::vector<Run> m_runs;
    Forest m_forest;
};
