#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/Modes.h"
#include "settings/Preferences.h"

#include "tests/Allocator.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasPointers.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QMap>
#include <QMouseEvent>
#include <QPointer>
#include <QSignalSpy>

using namespace WindowProbe;

/// The buttons of the side panel and their pop-up windows.
class WindowToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The preferences are named for the program.
        QCoreApplication::setOrganizationName("Window tools");
        beOnOneself();
    }
    void init() { usualSettings(); }
    void holdingOpensThePopUpAndItsTool_data();
    void holdingOpensThePopUpAndItsTool();
    void popUpsCloseByTheirRules();
    void onlyOnePopUpIsOpen();
    void erasingAllClearsTheDrawing();
    void everyControlOfAPopUpHasAName();
    void thousandPopUpsLeaveNothingBehind();
    void theEffectButtonAnswersToHoldingAlone();
    void maskButtonBringsTheMaskBack();
    void theMasksPopUpShowsWhatTheReleaseOfAHoldMakes();
    void aHeldToolIsChecked_data();
    void aHeldToolIsChecked();
    void zoomStepsOnOtherCanvases();
    void rotateFreezeAndMacroReachTheirTargets();
    void aWindowBeginsWithTheChosenPressure();
};

void WindowToolsTest::holdingOpensThePopUpAndItsTool_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("mouseMode");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QByteArray>("kind");
    // The choices of each row of the pop-up.
    QTest::addColumn<QList<int>>("rows");
    const auto add = [](Command panelButton, int mode, const char *title, const char *kind,
                        const QList<int> &rows) {
        QTest::newRow(title) << int(panelButton) << mode << QString(title) << QByteArray(kind)
                             << rows;
    };
    add(Command::Line, 2, "Line", "ColorToolWindow", {4, 4});
    add(Command::Rectangle, 4, "Rectangle", "ColorToolWindow", {4, 4, 5});
    add(Command::Freehand, 1, "Freehand", "ColorToolWindow", {4, 4});
    add(Command::Circle, 5, "Circle", "ColorToolWindow", {4, 4, 5});
    add(Command::Arrow, 3, "Arrow", "ColorToolWindow", {4, 4, 5});
    add(Command::Triangle, 6, "Triangle", "ColorToolWindow", {4, 4, 5});
    add(Command::Eraser, 7, "Eraser", "ColorToolWindow", {4});
    add(Command::Text, 9, "Text", "TextToolWindow", {4});
    add(Command::FillBackground, 8, "Background Color", "FillBackgroundToolWindow", {4});
    add(Command::Mask, 8, "Effect", "MaskToolWindow", {4});
    add(Command::Effect, 8, "Color Effect", "EffectToolWindow", {4});
}

void WindowToolsTest::holdingOpensThePopUpAndItsTool()
{
    QFETCH(int, button);
    QFETCH(int, mouseMode);
    QFETCH(QString, title);
    QFETCH(QByteArray, kind);
    QFETCH(QList<int>, rows);
    MainWindow window;
    enter(window, 3);
    window.currentCanvas()->setMouseMode(ImageCanvas::Clip);
    ImageButton *panelButton = window.button(Command(button));
    emit panelButton->hold();
    ToolWindow *popup = window.currentToolWindow();
    QVERIFY(popup);
    QCOMPARE(popup->metaObject()->className(), kind.constData());
    QCOMPARE(popup->findChild<QLabel *>()->text(), title);
    QCOMPARE(popup->toolButton(), panelButton);
    QVERIFY(popup->isVisible());
    QCOMPARE(int(window.currentCanvas()->mouseMode()), mouseMode);
    QMap<int, int> choices;
    for (const ImageButton *each : popup->findChildren<ImageButton *>()) {
        if (each->isCheckable())
            ++choices[each->y()];
    }
    QCOMPARE(choices.values(), rows);
}

void WindowToolsTest::popUpsCloseByTheirRules()
{
    MainWindow window;
    // Held again it is replaced, clicked it stays, and any other tool closes it.
    window.lineHold();
    QPointer<ToolWindow> first = window.currentToolWindow();
    window.lineHold();
    QVERIFY(!first);
    QPointer<ToolWindow> popup = window.currentToolWindow();
    window.button(Command::Line)->click();
    QCOMPARE(window.currentToolWindow(), popup.data());
    // A window that its own button has closed still belongs to its tool.
    popup->close();
    window.button(Command::Line)->click();
    QCOMPARE(window.currentToolWindow(), popup.data());

    for (const Commands::Row &row : Commands::rows()) {
        if (!Commands::inPanel(row.group) || !row.clickSlot || row.command == Command::Print ||
            row.command == Command::Record || row.command == Command::Settings)
            continue;
        enter(window, row.command == Command::FillBackground ? 3 : 0);
        // The effect's pop-up is no clicked button's own.
        window.effectHold();
        popup = window.currentToolWindow();
        QVERIFY(popup);
        window.button(row.command)->setEnabled(true);
        window.button(row.command)->click();
        QVERIFY2(!popup, row.skin);
        QVERIFY(!window.currentToolWindow());
    }
    for (const char *slot :
         {"zoomInStart", "zoomInStop", "zoomOutStart", "zoomOutStop", "rotateRev", "macro",
          "filmPlay", "filmPause", "filmStop", "filmBackward", "filmForward", "filmVolume",
          "photographPrevious", "photographPlay", "photographNext", "photographPreview",
          "photographPlayInterval"}) {
        window.effectHold();
        popup = window.currentToolWindow();
        QVERIFY(QMetaObject::invokeMethod(&window, slot));
        QVERIFY2(!popup, slot);
    }
    for (const char *slot : {"filmTick", "photographPlayDone"}) {
        window.effectHold();
        popup = window.currentToolWindow();
        QVERIFY(QMetaObject::invokeMethod(&window, slot));
        QVERIFY2(popup, slot);
    }
}

void WindowToolsTest::onlyOnePopUpIsOpen()
{
    MainWindow window;
    enter(window, 3);
    for (const Command each : poppingButtons()) {
        emit window.button(each)->hold();
        QCOMPARE(window.findChildren<ToolWindow *>().size(), 1);
    }
    window.About();
    QCOMPARE(window.findChildren<ToolWindow *>().size(), 1);
    enter(window, 0);
    QCOMPARE(window.findChildren<ToolWindow *>().size(), 0);
    window.settings();
    QCOMPARE(window.findChildren<ToolWindow *>().size(), 1);
}

void WindowToolsTest::erasingAllClearsTheDrawing()
{
    MainWindow window;
    window.show();
    enter(window, 3);
    ImageCanvas *board = window.currentCanvas();
    const QImage blank = board->currentImage().copy();
    window.button(Command::Line)->click();
    QTest::mousePress(board, Qt::LeftButton, {}, QPoint(200, 300));
    QTest::mouseMove(board, QPoint(400, 350));
    QMouseEvent drag(QEvent::MouseMove, QPointF(400, 350), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(board, &drag);
    QTest::mouseRelease(board, Qt::LeftButton, {}, QPoint(400, 350));
    QTRY_VERIFY(board->currentImage() != blank);
    window.button(Command::EraseAll)->click();
    QTRY_COMPARE(board->currentImage(), blank);
}

void WindowToolsTest::everyControlOfAPopUpHasAName()
{
    MainWindow window;
    enter(window, 3);
    const auto check = [&window] {
        const ToolWindow *popup = window.currentToolWindow();
        QVERIFY(!popup->accessibleName().isEmpty());
        QVERIFY(!popup->findChildren<QAbstractButton *>().isEmpty());
        QSet<QString> names;
        for (const QAbstractButton *each : popup->findChildren<QAbstractButton *>()) {
            const QString name =
                each->accessibleName().isEmpty() ? each->text() : each->accessibleName();
            QVERIFY2(!name.isEmpty(), qPrintable(popup->accessibleName()));
            QVERIFY2(!names.contains(name), qPrintable(popup->accessibleName() + ": " + name));
            names.insert(name);
            QVERIFY2(!each->toolTip().isEmpty() || !each->text().isEmpty(), qPrintable(name));
        }
        for (const QComboBox *each : popup->findChildren<QComboBox *>())
            QVERIFY2(!each->accessibleName().isEmpty(), qPrintable(popup->accessibleName()));
    };
    for (const Command each : poppingButtons()) {
        emit window.button(each)->hold();
        check();
    }
    window.settings();
    check();
    window.About();
    check();
}

void WindowToolsTest::theEffectButtonAnswersToHoldingAlone()
{
    MainWindow window;
    window.lineHold();
    const ToolWindow *popup = window.currentToolWindow();
    window.button(Command::Effect)->click();
    QCOMPARE(window.currentToolWindow(), popup);
    QCOMPARE(window.currentCanvas()->effectMode.load(), ImageCanvas::EffectColor);
}

void WindowToolsTest::thousandPopUpsLeaveNothingBehind()
{
    MainWindow window;
    window.show();
    enter(window, 3);
    const auto round = [&window] {
        for (const Command each : poppingButtons())
            emit window.button(each)->hold();
        window.settings();
        window.About();
        window.currentToolWindow()->close();
        QCoreApplication::processEvents();
    };
    const auto residentKilobytes = [] {
        QFile status("/proc/self/status");
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                return line.simplified().split(' ')[1].toInt();
        }
        return 0;
    };
    for (int i = 0; i < 10; ++i)
        round();
    const int objects = window.findChildren<QObject *>().size();
    const int before = residentKilobytes();
    QVERIFY(before > 0);
    for (int i = 0; i < 1000 / 13 + 1; ++i)
        round();
    QCOMPARE(window.findChildren<QObject *>().size(), objects);
    if (!SYSTEM_ALLOCATOR)
        return;
    const int growth = residentKilobytes() - before;
    QVERIFY2(growth < 4096, qPrintable(QString("%1 kB").arg(growth)));
}

void WindowToolsTest::maskButtonBringsTheMaskBack()
{
    MainWindow window;
    ImageButton *mask = window.button(Command::Mask);
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskCircle);
    window.currentCanvas()->maskMode = ImageCanvas::MaskLeft;
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskNone);
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskLeft);
    // The absence of a mask is not remembered, and all canvases share the last one.
    window.currentCanvas()->maskMode = ImageCanvas::MaskNone;
    mask->click();
    enter(window, 3);
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskLeft);
}

void WindowToolsTest::theMasksPopUpShowsWhatTheReleaseOfAHoldMakes()
{
    MainWindow window;
    ImageButton *mask = window.button(Command::Mask);
    const auto chosen = [&window] {
        QString names;
        for (const ImageButton *each : window.currentToolWindow()->findChildren<ImageButton *>()) {
            if (each->isChecked())
                names += each->accessibleName();
        }
        return names;
    };
    emit mask->hold();
    QCOMPARE(chosen(), QString());
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskCircle);
    QCOMPARE(chosen(), QString("Circle"));
    mask->click();
    QCOMPARE(window.currentCanvas()->maskMode.load(), ImageCanvas::MaskNone);
    QCOMPARE(chosen(), QString());
}

void WindowToolsTest::aHeldToolIsChecked_data()
{
    QTest::addColumn<int>("button");
    for (const Command each : {Command::Line, Command::Rectangle, Command::Circle, Command::Arrow,
                               Command::Triangle, Command::Eraser, Command::Text})
        QTest::newRow(Commands::row(each).text) << int(each);
}

void WindowToolsTest::aHeldToolIsChecked()
{
    QFETCH(int, button);
    MainWindow window;
    window.show();
    ImageButton *held = window.button(Command(button));
    QSignalSpy clicks(held, SIGNAL(clicked()));
    QSignalSpy holds(held, SIGNAL(hold()));
    QTest::mousePress(held, Qt::LeftButton);
    QTRY_COMPARE(holds.count(), 1);
    // The pointer has left the button, so the release clicks nothing.
    QTest::mouseRelease(held, Qt::LeftButton, {}, QPoint(-50, -50));
    QCOMPARE(clicks.count(), 0);
    QVERIFY(held->isChecked());
    QVERIFY(!window.button(Command::Freehand)->isChecked());
    QCOMPARE(*Commands::ofTool(window.currentCanvas()->mouseMode()), Command(button));
}

void WindowToolsTest::zoomStepsOnOtherCanvases()
{
    MainWindow window;
    window.show();
    enter(window, 3);
    ImageButton *in = window.button(Command::ZoomIn);
    ImageButton *out = window.button(Command::ZoomOut);
    QCOMPARE(window.currentCanvas()->zoomScale(), 1.0);
    QTest::mousePress(in, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 2.0);
    QTest::mouseRelease(in, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 2.0);
    QTest::mouseClick(in, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 3.0);
    QTest::mouseClick(out, Qt::LeftButton);
    QCOMPARE(window.currentCanvas()->zoomScale(), 2.0);
    window.button(Command::ZoomReset)->click();
    QCOMPARE(window.currentCanvas()->zoomScale(), 1.0);
}

void WindowToolsTest::rotateFreezeAndMacroReachTheirTargets()
{
    MainWindow window;
    window.button(Command::Rotate)->click();
    QCOMPARE(window.currentCanvas()->rotation(), 1);
    QVERIFY(QMetaObject::invokeMethod(&window, "rotateRev"));
    QVERIFY(QMetaObject::invokeMethod(&window, "rotateRev"));
    QCOMPARE(window.currentCanvas()->rotation(), 3);
    QVERIFY(QMetaObject::invokeMethod(&window, "macro"));
    window.button(Command::Freeze)->click();
    QVERIFY(window.currentCanvas()->frozen);
    window.button(Command::Freeze)->click();
    QVERIFY(!window.currentCanvas()->frozen);
    // Without a camera the buttons that drive it do no harm.
    for (const Command each :
         {Command::AutoFocus, Command::BrightnessDown, Command::BrightnessUp, Command::ZoomReset})
        window.button(each)->click();
    window.zoomInStart();
    window.zoomOutStart();
    window.zoomOutStop();
    window.zoomInStop();
}

void WindowToolsTest::aWindowBeginsWithTheChosenPressure()
{
    const auto drawn = [](int chosen) {
        Preferences::setNumber("penPressure", chosen);
        MainWindow window;
        enter(window, 3);
        ImageCanvas *canvas = window.currentCanvas();
        canvas->setMouseMode(ImageCanvas::Freehand);
        canvas->penColor = Qt::red;
        canvas->penWidth = 40;
        const QPoint middle = canvas->rect().center();
        CanvasPointers::penDrag(*canvas, {middle - QPoint(100, 0), middle + QPoint(100, 0)},
                                {0.1, QTabletEvent::Pen, {}});
        canvas->autoRefresh();
        const QImage picture = canvas->currentImage();
        int rows = 0;
        for (int y = 0; y < picture.height(); ++y)
            rows += picture.pixelColor(picture.width() / 2, y) == QColor(Qt::red) ? 1 : 0;
        return rows;
    };
    const int pressed = drawn(1);
    const int even = drawn(0);
    QFile::remove(Preferences::fileName());
    QVERIFY(pressed > 0);
    QVERIFY2(pressed < even / 2, qPrintable(QString("%1 %2").arg(pressed).arg(even)));
}

REGISTER_TEST(WindowToolsTest)
#include "tst_window_tools.moc"
