// SPDX-License-Identifier: MIT
#pragma once

#include "files/Screenshot.h"

class DraggableImageView;
class ScreenshotImages;

/// Loads a row's thumbnail; the icon of the file's kind is there until then. Main thread; the view
/// and the images must outlive it.
class RowThumbnail
{
public:
    RowThumbnail(DraggableImageView &view, const ScreenshotPointer &screenshot,
                 ScreenshotImages &images);
    Q_DISABLE_COPY_MOVE(RowThumbnail)

    /// Loads it again, from where the file is now. What is shown stays if that can't be read.
    void reload();

private:
    enum class Unreadable { LeavesNoImage, KeepsTheImage };

    void load(Unreadable unreadable);

    DraggableImageView &m_view;
    const ScreenshotPointer m_screenshot;
    ScreenshotImages &m_images;
    int m_request = 0;
};
