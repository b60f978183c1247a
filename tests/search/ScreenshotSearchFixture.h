// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/PictureBudget.h"
#include "search/ScreenshotSearch.h"
#include "tests/fakes/FakePowerSource.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/files/TestFiles.h"

#include <QDir>
#include <QImage>
#include <QMutex>

#include <memory>

using namespace Qt::StringLiterals;

/// The search as the program uses it, on real files, with a recogniser that the test controls.
class ScreenshotSearchFixture
{
protected:
    using Place = SearchIndex::Place;
    static constexpr int patience = 20'000;

    void begin()
    {
        m_files = std::make_unique<TestFiles>();
        m_data = std::make_unique<QTemporaryDir>();
        m_recognizer = std::make_shared<FakeTextRecognizer>(textOf);
        m_power = std::make_shared<FakePowerSource>();
        m_isBusy = false;
        start();
    }
    void end() { m_search.reset(); }

    QUrl picture(const QString &name, int width) const
    {
        const QUrl url = m_files->url(name);
        QImage image(width, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        if (!image.save(url.toLocalFile(), "png"))
            qFatal("can't write a picture");
        return url;
    }
    QUrl move(const QUrl &from, const QString &name, Place place) const
    {
        const QUrl to = m_files->url(name);
        if (!QFile::rename(from.toLocalFile(), to.toLocalFile()))
            qFatal("can't rename");
        m_search->moved(from, to, place);
        return to;
    }
    void start()
    {
        m_search = std::make_unique<ScreenshotSearch>(
            ScreenshotSearch::Services{m_recognizer, m_power, m_budget,
                                       [listing = m_listing](const QUrl &folder) {
                                           const QMutexLocker waits(listing.get());
                                           return picturesIn(folder);
                                       },
                                       [this] { return m_isBusy; }},
            m_data->filePath(u"velmora"_s));
        m_search->setFolder(m_files->folder());
    }
    QStringList found(const QString &words) const
    {
        QStringList names;
        for (const SearchHit &hit : m_search->find(words, 50).result())
            names << FileUrls::lastPathComponent(hit.url);
        names.sort();
        return names;
    }
    int read() const { return m_search->progress().result().read; }
    QStringList stored() const
    {
        return QDir(m_data->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<QTemporaryDir> m_data;
    std::shared_ptr<FakeTextRecognizer> m_recognizer;
    std::shared_ptr<FakePowerSource> m_power;
    const std::shared_ptr<PictureBudget> m_budget =
        std::make_shared<PictureBudget>(PictureBudget::ofScreenshots);
    /// While it is locked, listing a folder does not end.
    const std::shared_ptr<QMutex> m_listing = std::make_shared<QMutex>();
    bool m_isBusy = false;
    std::unique_ptr<ScreenshotSearch> m_search;

private:
    static QStringList textOf(const QImage &picture)
    {
        return {u"page of width %1"_s.arg(picture.width())};
    }

    static std::optional<QList<QUrl>> picturesIn(const QUrl &folder)
    {
        QList<QUrl> urls;
        const QDir listed(folder.toLocalFile());
        for (const QString &name : listed.entryList({u"*.png"_s}, QDir::Files, QDir::Time))
            urls << FileUrls::child(folder, name);
        return urls;
    }
};
