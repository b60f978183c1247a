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

/// The result of reading a picture file.
struct PictureReading {
    QByteArray path;
    QByteArray failure; ///< why it could not be read; empty on success
    FileIdentity identity;
    QStringList words; ///< the words of its name
    QStringList lines; ///< all of its text, if requested
};

/// Reads the words in picture files. Any thread, also several at once: together they stay within
/// one pixel budget, so some may have to wait for others.
class PictureReader
{
public:
    enum class Wanted { Words, Lines };

    /// @param appName the application that the pictures show; if empty, the pictures' own texts may
    ///        name it
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

/// The identity of the regular file at the path, which need not be readable; nothing if there is
/// none. Follows links.
std::optional<FileIdentity> identityOf(const QByteArray &path);
