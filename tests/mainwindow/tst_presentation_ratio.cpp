#include "canvas/ImageCanvas.h"
#include "canvas/picture/FramePool.h"
#include "canvas/picture/ScaledPicture.h"
#include "canvas/picture/ViewGeometry.h"
#include "tests/TestProgram.h"
#include "tests/canvas/ReferencePipeline.h"
#include "tests/mainwindow/Outputs.h"
#include "tests/mainwindow/PresentationProbe.h"
#include "tests/mainwindow/ScreenWatch.h"

#include <QPainter>
#include <QScreen>

#include <cstring>

namespace
{

/// In pixels of the screens.
constexpr QRect RATIO_SCREEN(2560, 0, 1024, 768);

QImage onRatioScreen()
{
    return ScreenWatch(RATIO_SCREEN).end().last();
}

} // namespace

/// The window for the class where a unit of the layout is several pixels. CTest sets the ratio.
class PresentationRatioTest : public PresentationProbe
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        nameTheProgram();
        // The main window is large here, too.
        QProcess::execute("xrandr", {"--newmode", "2560x2048", "80", "2560", "2600", "2700", "2800",
                                     "2048", "2050", "2060", "2080"});
        Outputs::plug("DUMMY0", "2560x2048", {"--pos", "0x0"});
        Outputs::plug("DUMMY1", "1024x768", {"--right-of", "DUMMY0"});
        QTRY_COMPARE(QGuiApplication::screens().size(), 2);
        showWindow();
        m_window->button(Command::Present)->click();
        QTRY_VERIFY(view() && view()->isFullScreen());
        QTRY_COMPARE(view()->geometry(), view()->screen()->geometry());
    }
    void cleanupTestCase() { m_window.reset(); }

    void thePictureIsScaledOnceToThePixelsOfTheScreen_data()
    {
        QTest::addColumn<QSize>("pictureSize");
        QTest::newRow("as many pixels as the screen") << RATIO_SCREEN.size();
        QTest::newRow("more") << QSize(1920, 1080);
        QTest::newRow("fewer, upright") << QSize(300, 500);
    }

    void thePictureIsScaledOnceToThePixelsOfTheScreen()
    {
        QFETCH(QSize, pictureSize);
        const double ratio = view()->devicePixelRatioF();
        QVERIFY(ratio > 1.0);
        const QImage picture = ReferencePipeline::noise(pictureSize, QImage::Format_RGB888, 5);
        m_window->currentCanvas()->imageCaptured(picture);

        const ViewGeometry::Fit fit = ViewGeometry::fit(picture.size(), view()->size());
        const auto edge = [ratio](int logical) { return qRound(logical * ratio); };
        const QRect place(QPoint(edge(fit.margin.x()), edge(fit.margin.y())),
                          QPoint(edge(fit.margin.x() + fit.size.width()) - 1,
                                 edge(fit.margin.y() + fit.size.height()) - 1));
        FramePool pool;
        const std::shared_ptr<Frame> frame = pool.acquire(picture.size(), picture.format());
        std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
        ScaledPicture scaled;
        QImage expected(RATIO_SCREEN.size(), QImage::Format_RGB32);
        expected.fill(Qt::black);
        QPainter(&expected).drawImage(place.topLeft(), scaled.image(frame, 1, place.size()));
        QTRY_COMPARE(onRatioScreen(), expected);
    }
};

REGISTER_TEST(PresentationRatioTest)

#include "tst_presentation_ratio.moc"
