#include "tests/TestProgram.h"
#include "widgets/StyleWindow.h"

#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

class StyleWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void keepsThePlatformFrame();
    void laysOutOnlyOnceBuilt();
    void paintsNinePieces_data();
    void paintsNinePieces();
    void paintsNoTopLeftCornerBeforeItIsChosen();
    void changedCornerTakesEffectWithTheRescale();
    void narrowerThanItsCornersIsHarmless_data();
    void narrowerThanItsCornersIsHarmless();
    void showPostsALateUpdate();
    void minimizeToggles();
    void maximizeRemembersTheNormalSize();
};

namespace
{

class Window : public StyleWindow
{
public:
    using StyleWindow::rescaleEdges;
    using StyleWindow::setBuilt;
    void reposition() override { sizes << size(); }
    QList<QSize> sizes;

protected:
    bool event(QEvent *received) override
    {
        lateUpdates += received->type() == QEvent::UpdateRequest ? 1 : 0;
        return StyleWindow::event(received);
    }

public:
    int lateUpdates = 0;
};

QImage piece(const QString &name)
{
    return QImage(":/icons/Background_Sub/VIDEO_FRAME_" + name + ".png");
}

QImage overMagenta(QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

QImage scaled(const QString &name, int width, int height)
{
    return piece(name).scaled(width, height, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

// The frame put together by its positions alone.
QImage frame(int w, int h, const QString &corner)
{
    const QSize tl = piece(corner).size();
    const QSize tr = piece("TOP_RIGHT_MAC").size();
    const QSize bl = piece("BOT_LEFT").size();
    const QSize br = piece("BOT_RIGHT").size();
    const int topHeight = piece("TOP_MID").height();
    const int bottomHeight = piece("BOT_MID").height();
    const int leftWidth = piece("MID_LEFT").width();
    const int rightWidth = piece("MID_RIGHT").width();
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    painter.drawImage(0, 0, piece(corner));
    painter.drawImage(tl.width(), 0, scaled("TOP_MID", w - tl.width() - tr.width(), topHeight));
    painter.drawImage(w - tr.width(), 0, piece("TOP_RIGHT_MAC"));
    painter.drawImage(0, tl.height(), scaled("MID_LEFT", leftWidth, h - tl.height() - bl.height()));
    painter.drawImage(w - rightWidth, tr.height(),
                      scaled("MID_RIGHT", rightWidth, h - tr.height() - br.height()));
    painter.drawImage(0, h - bl.height(), piece("BOT_LEFT"));
    painter.drawImage(bl.width(), h - bl.height(),
                      scaled("BOT_MID", w - bl.width() - br.width(), bottomHeight));
    painter.drawImage(w - br.width(), h - br.height(), piece("BOT_RIGHT"));
    painter.fillRect(leftWidth, topHeight, w - leftWidth - rightWidth, h - topHeight - bottomHeight,
                     QColor(piece("MID_MID").pixel(0, 0)));
    return image;
}

} // namespace

void StyleWindowTest::keepsThePlatformFrame()
{
    const Window window;
    QVERIFY(!(window.windowFlags() & Qt::FramelessWindowHint));
    QCOMPARE(window.windowFlags() & Qt::WindowType_Mask, Qt::WindowFlags(Qt::Window));
    QCOMPARE(window.parentWidget(), nullptr);
}

void StyleWindowTest::laysOutOnlyOnceBuilt()
{
    Window window;
    window.resize(800, 768);
    window.grab();
    QVERIFY(window.sizes.isEmpty());
    window.setBuilt();
    window.resize(900, 768);
    window.grab();
    QVERIFY(!window.sizes.isEmpty());
    QCOMPARE(window.sizes.last(), QSize(900, 768));
    QCOMPARE(window.sizes.count(QSize(800, 768)), 0);
}

void StyleWindowTest::paintsNinePieces_data()
{
    QTest::addColumn<bool>("expanded");
    QTest::addColumn<QSize>("size");
    QTest::newRow("open") << true << QSize(938, 768);
    QTest::newRow("closed") << false << QSize(800, 768);
    QTest::newRow("large") << true << QSize(1921, 1081);
}

void StyleWindowTest::paintsNinePieces()
{
    if (qApp->devicePixelRatio() > 1.0)
        return; // compared pixel by pixel at the skin's own size
    QFETCH(bool, expanded);
    QFETCH(QSize, size);
    Window window;
    window.setExpanded(expanded);
    window.resize(size);
    window.rescaleEdges();
    QCOMPARE(overMagenta(window),
             frame(size.width(), size.height(), expanded ? "TOP_LEFT_EXPANDED" : "TOP_LEFT"));
}

void StyleWindowTest::paintsNoTopLeftCornerBeforeItIsChosen()
{
    Window window;
    window.resize(300, 200);
    window.rescaleEdges();
    const QImage image = overMagenta(window);
    // The top edge starts at the left, and the left edge at the top.
    QCOMPARE(image.pixel(0, 0), piece("MID_LEFT").pixel(0, 0));
    QCOMPARE(image.pixel(40, 0), piece("TOP_MID").pixel(0, 0));
}

void StyleWindowTest::changedCornerTakesEffectWithTheRescale()
{
    Window window;
    window.setExpanded(false);
    window.resize(938, 768);
    window.rescaleEdges();
    const QImage closed = overMagenta(window);
    window.setExpanded(true);
    window.rescaleEdges();
    QVERIFY(overMagenta(window) != closed);
    if (qApp->devicePixelRatio() == 1.0)
        QCOMPARE(overMagenta(window), frame(938, 768, "TOP_LEFT_EXPANDED"));
}

void StyleWindowTest::narrowerThanItsCornersIsHarmless_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("cornerShows");
    QTest::newRow("nothing") << QSize(0, 0) << true;
    QTest::newRow("narrow") << QSize(30, 300) << true;
    QTest::newRow("flat") << QSize(300, 40) << true;
    // Without edges the centre reaches to the sides.
    QTest::newRow("one pixel") << QSize(1, 1) << false;
    QTest::newRow("just the corners") << QSize(174 + 19, 30 + 75) << false;
}

void StyleWindowTest::narrowerThanItsCornersIsHarmless()
{
    QFETCH(QSize, size);
    QFETCH(bool, cornerShows);
    Window window;
    window.setBuilt();
    window.setExpanded(true);
    window.resize(size);
    window.rescaleEdges();
    if (size.isEmpty())
        return;
    const QImage image = overMagenta(window);
    const QRgb centre = piece("MID_MID").pixel(0, 0);
    const QRgb corner = piece("TOP_LEFT_EXPANDED").pixel(0, 0);
    QCOMPARE(image.pixel(0, 0), cornerShows ? corner : centre);
}

void StyleWindowTest::showPostsALateUpdate()
{
    Window window;
    window.resize(200, 200);
    // The event alone: a real show brings update requests of its own.
    QShowEvent event;
    QCoreApplication::sendEvent(&window, &event);
    QCOMPARE(window.lateUpdates, 0);
    QCoreApplication::sendPostedEvents(&window, QEvent::UpdateRequest);
    QCOMPARE(window.lateUpdates, 1);
}

void StyleWindowTest::minimizeToggles()
{
    Window window;
    window.minimize();
    QVERIFY(window.isMinimized());
    window.minimize();
    QVERIFY(!window.isMinimized());
}

void StyleWindowTest::maximizeRemembersTheNormalSize()
{
    Window window;
    window.resize(400, 300);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTest::ignoreMessage(QtDebugMsg, "maximize()");
    window.maximize();
    QVERIFY(window.isMaximized());
    QTRY_VERIFY(window.size() != QSize(400, 300));
    const QSize maximized = window.size();
    QTest::ignoreMessage(QtDebugMsg, "maximize()");
    window.maximize();
    QVERIFY(!window.isMaximized());
    QTRY_COMPARE(window.size(), QSize(400, 300));
    // A size chosen later does not replace the remembered one.
    window.resize(500, 350);
    QTest::ignoreMessage(QtDebugMsg, "maximize()");
    window.maximize();
    QVERIFY(window.isMaximized());
    QTRY_COMPARE(window.size(), maximized);
    QTest::ignoreMessage(QtDebugMsg, "maximize()");
    window.maximize();
    QVERIFY(!window.isMaximized());
    QTRY_COMPARE(window.size(), QSize(400, 300));
}

REGISTER_TEST(StyleWindowTest)
#include "tst_style_window.moc"
