// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"
#include "imaging/decodeImage.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <condition_variable>
#include <memory>
#include <mutex>

class FileWriters;
class TextRecognizer;

/// What was found in a picture file.
struct PictureReading {
    QByteArray path;
    QByteArray failure; ///< why it could not be read; empty when it could
    FileIdentity identity;
    QStringList words; ///< of the name
    QStringList lines; ///< all of the text, where that is wanted
};

/// Reads pictures from path to words. Any thread, several at once: together they hold no more
/// pixels than the budget says, so that some may have to wait for others.
class PictureReader
{
public:
    enum class Wanted { Words, Lines };

    /// @param appName what the pictures show; where it is empty, they may tell it themselves
    PictureReader(Wanted wanted, const QString &appName);
    ~PictureReader();
    Q_DISABLE_COPY_MOVE(PictureReader)

    PictureReading read(const QByteArray &path);

private:
    QImage picture(int descriptor);
    void recognize(const QImage &picture, const QString &appName, PictureReading &reading);

    const Wanted m_wanted;
    const QString m_appName;
    std::unique_ptr<TextRecognizer> m_recognizer;
    std::unique_ptr<FileWriters> m_writers;
    std::shared_ptr<PictureBudget> m_budget;
    std::mutex m_mutex;
    std::condition_variable m_roomReturned;
};

/// The identity of the regular file at the path, which need not be readable; nothing when there is
/// none. Links are followed.
std::optional<FileIdentity> identityOf(const QByteArray &path);
