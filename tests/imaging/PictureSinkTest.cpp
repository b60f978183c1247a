// SPDX-License-Identifier: MIT
#include "imaging/PictureSink.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <atomic>
#include <memory>
#include <thread>

class PictureSinkTest : public QObject
{
    Q_OBJECT

    static constexpr qint64 room = 1'000'000;

    std::shared_ptr<PictureBudget> m_budget;

    /// A picture whose rows have these colours.
    DecodedPicture filled(QSize size, const PictureLimits &limits, PictureSink::Alpha alpha,
                          QRgb (*colour)(int y)) const
    {
        PictureSink sink(limits, m_budget);
        if (!sink.begin({size, alpha}, 0))
            return {};
        for (int y = 0; y < size.height(); ++y) {
            std::fill_n(sink.row(y), size.width(), colour(y));
            sink.finishRow(y);
        }
        return sink.takePicture();
    }

private Q_SLOTS:
    void init() { m_budget = std::make_shared<PictureBudget>(room); }

    void ofAHugePictureTheUpperRowsAndAnOverviewAreHeld()
    {
        const auto colour = [](int y) { return y < 50 ? qRgb(200, 0, 0) : qRgb(0, 100, 0); };
        const DecodedPicture picture =
            filled({10, 103}, {300, 60}, PictureSink::Alpha::None, colour);
        QCOMPARE(picture.top.size(), QSize(10, 30));
        QCOMPARE(picture.top.pixel(9, 29), qRgb(200, 0, 0));
        // Squares of five by five.
        QCOMPARE(picture.overview.size(), QSize(2, 21));
        QCOMPARE(picture.overview.pixel(0, 0), qRgb(200, 0, 0));
        QCOMPARE(picture.overview.pixel(1, 20), qRgb(0, 100, 0));
    }

    void anOverviewIsTheMeanOfItsSquares()
    {
        const auto colour = [](int y) { return y % 2 == 0 ? qRgb(10, 20, 30) : qRgb(30, 40, 50); };
        const DecodedPicture picture = filled({20, 20}, {0, 100}, PictureSink::Alpha::None, colour);
        QVERIFY(picture.top.isNull());
        QCOMPARE(picture.overview.size(), QSize(10, 10));
        QCOMPARE(picture.overview.pixel(4, 4), qRgb(20, 30, 40));
    }

    void transparentPixelsArePremultiplied()
    {
        const auto colour = [](int) { return qRgba(200, 100, 0, 128); };
        const PictureLimits limits{1000, 1000};
        const DecodedPicture straight =
            filled({4, 4}, limits, PictureSink::Alpha::Straight, colour);
        QCOMPARE(straight.top.format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(straight.top.pixelColor(1, 1).alpha(), 128);
        QVERIFY(qAbs(straight.top.pixelColor(1, 1).red() - 200) <= 1);
        const DecodedPicture ignored = filled({4, 4}, limits, PictureSink::Alpha::None, colour);
        QCOMPARE(ignored.top.format(), QImage::Format_RGB32);
    }

    void whatIsTooLargeIsRefusedForGood()
    {
        const PictureLimits limits{1000, 1000};
        for (const QSize size : {QSize(0, 5), QSize(2'000'000, 1), QSize(30'000, 30'000)}) {
            PictureSink sink(limits, m_budget);
            QVERIFY(!sink.begin({size}, 0));
            QCOMPARE(sink.lackingBytes(), 0);
        }
        PictureSink costly(limits, m_budget);
        QVERIFY(!costly.begin({{10, 10}}, room));
        QCOMPARE(costly.lackingBytes(), 0);
        PictureSink disorderly(limits, m_budget);
        QVERIFY(
            !disorderly.begin({{100, 100}, PictureSink::Alpha::None, PictureSink::Order::Any}, 0));
    }

    void aPictureHoldsItsPartOfTheBudgetAsLongAsItsPixelsLive()
    {
        PictureSink sink({1000, 1000}, m_budget);
        QVERIFY(sink.begin({{10, 10}}, room - 400));
        QVERIFY(!m_budget->hasRoom(1));
        PictureSink second({1000, 1000}, m_budget);
        QVERIFY(!second.begin({{10, 10}}, 0));
        QCOMPARE(second.lackingBytes(), 400);
        std::atomic_int returns = 0;
        m_budget->setOnReturn([&] { ++returns; });
        QImage top = sink.takePicture().top;
        QCOMPARE(returns, 1);
        QVERIFY(m_budget->hasRoom(room - 400));
        QVERIFY(!m_budget->hasRoom(room));
        QImage part = top.copy(0, 0, 5, 5);
        std::thread([other = std::move(top)]() mutable { other = {}; }).join();
        QCOMPARE(returns, 2);
        QVERIFY(m_budget->hasRoom(room));
    }
};

VELMORA_PLAIN_TEST(PictureSinkTest)
#include "PictureSinkTest.moc"
