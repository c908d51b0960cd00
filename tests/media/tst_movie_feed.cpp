#include "tests/TestProgram.h"
#include "tests/Timeout.h"

#include "sources/recording/MovieFeedGst.h"

#include <gst/app/gstappsink.h>

#include <QtTest>

#include <cstdint>
#include <vector>

namespace
{

constexpr QSize TINY(32, 16);
/// What is kept whole before the encoders are there, and what may wait for them afterwards.
constexpr int KEPT = 16;
constexpr int WAITING = 4;

} // namespace

/// Which pictures wait for an encoder, and which are left out. In place of an encoder stands an end
/// that takes a picture when the test says so.
class MovieFeedTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        gst_init(nullptr, nullptr);
        m_pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_parse_launch(
            "appsrc name=pictures is-live=true format=time block=false max-bytes=0 max-buffers=0"
            " max-time=0 ! appsink name=encoder max-buffers=1 sync=false",
            nullptr))));
        GstBin *bin = GST_BIN(m_pipeline.get());
        m_pictures.reset(GST_APP_SRC(gst_bin_get_by_name(bin, "pictures")));
        m_encoder.reset(GST_APP_SINK(gst_bin_get_by_name(bin, "encoder")));
        gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
        m_number = 0;
    }

    void cleanup()
    {
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
        m_encoder.reset();
        m_pictures.reset();
        m_pipeline.reset();
    }

    /// The kept ones come to the encoder all at once, which would count as one that is too slow.
    void noneIsLeftOutBehindTheOnesThatWereKept()
    {
        MovieFeed feed(TINY);
        for (int n = 0; n < KEPT; ++n)
            QVERIFY(take(feed));
        QVERIFY(!take(feed));
        feed.connect(m_pictures.get(), nullptr);
        for (int n = 0; n < WAITING; ++n)
            QVERIFY2(take(feed), qPrintable(QString::number(n)));
        // The end holds one, and the thread between them another.
        const int more = takeUntilRefused(feed);
        QVERIFY2(more <= 2, qPrintable(QString::number(more)));
    }

    void whoHasCaughtUpMayNotFallThatFarBehindAgain()
    {
        MovieFeed feed(TINY);
        for (int n = 0; n < KEPT; ++n)
            QVERIFY(take(feed));
        feed.connect(m_pictures.get(), nullptr);
        for (int n = 0; n < KEPT; ++n) {
            GstSample *sample =
                gst_app_sink_try_pull_sample(m_encoder.get(), TIMEOUT_MS * GST_MSECOND);
            QVERIFY(sample);
            gst_sample_unref(sample);
        }
        QTRY_COMPARE_WITH_TIMEOUT(int(gst_app_src_get_current_level_buffers(m_pictures.get())), 0,
                                  TIMEOUT_MS);
        const int taken = takeUntilRefused(feed);
        QVERIFY2(taken >= WAITING && taken <= WAITING + 2, qPrintable(QString::number(taken)));
    }

private:
    bool take(MovieFeed &feed)
    {
        constexpr qint64 INTERVAL_US = 33333;
        const std::vector<std::uint8_t> rgb(std::size_t{32} * 16 * 3);
        return feed.takePicture(rgb.data(), INTERVAL_US * m_number++);
    }

    int takeUntilRefused(MovieFeed &feed)
    {
        int taken = 0;
        while (taken < 3 * KEPT && take(feed))
            ++taken;
        return taken;
    }

    GstPtr<GstElement> m_pipeline;
    GstPtr<GstAppSrc> m_pictures;
    GstPtr<GstAppSink> m_encoder;
    int m_number = 0;
};

REGISTER_CORE_TEST(MovieFeedTest)
#include "tst_movie_feed.moc"
