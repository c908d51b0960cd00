#include "tests/mainwindow/DrivenWindow.h"

#include "canvas/ImageCanvas.h"

#include "tests/TestProgram.h"

#include <QComboBox>
#include <QTextEdit>

using namespace DrivenWindow;

/// Chooses in every tool's pop-up and draws on the board, with the mouse and the keyboard of a real
/// display server, and looks at the screen.
class ToolsDrivenTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { WindowProbe::beOnOneself(); }
    void init();
    void cleanup() { m_window.reset(); }
    void everyLineChoiceShowsInThePicture();
    void everyShapeIsFilledAsChosen_data();
    void everyShapeIsFilledAsChosen();
    void everyEraserWidthErases();
    void textIsWrittenAsChosen();
    void everyMaskCoversItsPart();
    void everyEffectShowsInThePicture();
    void everyBoardColorFillsTheBoard();
    void everyKeyGoesToTheTextBeingTyped();

private:
    std::unique_ptr<MainWindow> m_window;
};

void ToolsDrivenTest::init()
{
    m_window = open();
    QVERIFY(m_window);
    QVERIFY(enterMode(*m_window, 3));
}

void ToolsDrivenTest::everyLineChoiceShowsInThePicture()
{
    QVERIFY(clicked(m_window->button(Command::Line)));
    const QRgb colors[] = {0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFF0000FF};
    for (int i = 0; i < 4; ++i) {
        ToolWindow *popup = hold(*m_window, Command::Line);
        QVERIFY(popup);
        QVERIFY(clicked(row(popup, 20)[i]));
        QVERIFY(clicked(row(popup, 43)[i]));
        const int y = 350 + 40 * i;
        Pointer::drag(onCanvas(*m_window, 200, y), onCanvas(*m_window, 500, y));
        QVERIFY2(shows(*m_window, 350, y, colors[i]), qPrintable(QString::number(i)));
        // As wide as chosen, on a picture that is shown smaller than it is.
        const double shrink = 745.0 / 1280.0;
        int thickness = 0;
        const QImage picture = screen();
        for (int dy = -15; dy <= 15; ++dy)
            thickness += near(picture.pixel(onCanvas(*m_window, 350, y + dy)), colors[i]) ? 1 : 0;
        QVERIFY2(qAbs(thickness - 3 * (i + 1) * shrink) <= 2.0,
                 qPrintable(QString("%1: %2").arg(i).arg(thickness)));
        // The first press on the board has closed the pop-up.
        QVERIFY(m_window->currentToolWindow() == nullptr);
    }
}

void ToolsDrivenTest::everyShapeIsFilledAsChosen_data()
{
    QTest::addColumn<int>("tool");
    QTest::newRow("rectangle") << int(Command::Rectangle);
    QTest::newRow("circle") << int(Command::Circle);
    QTest::newRow("arrow") << int(Command::Arrow);
    QTest::newRow("triangle") << int(Command::Triangle);
}

void ToolsDrivenTest::everyShapeIsFilledAsChosen()
{
    QFETCH(int, tool);
    const QRgb colors[] = {0xFFFFFFFF, 0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFF0000FF};
    for (const int i : {4, 3, 2, 1, 0}) {
        ToolWindow *popup = hold(*m_window, Command(tool));
        QVERIFY(popup);
        QVERIFY(popup->height() > 80);
        QVERIFY(clicked(row(popup, 67)[i]));
        // Its own place for each, below the pop-up; the middle of the way lies inside every shape.
        const int x = 100 + 120 * i;
        Pointer::drag(onCanvas(*m_window, x, 420), onCanvas(*m_window, x + 80, 480));
        QVERIFY2(shows(*m_window, x + 40, 450, colors[i]), qPrintable(QString::number(i)));
        if (i != 0)
            QVERIFY(m_window->currentCanvas()->fillEnabled);
    }
    QVERIFY(!m_window->currentCanvas()->fillEnabled);
}

void ToolsDrivenTest::everyEraserWidthErases()
{
    m_window->currentCanvas()->penWidth = 12;
    for (int i = 0; i < 4; ++i) {
        QVERIFY(clicked(m_window->button(Command::Line)));
        m_window->currentCanvas()->penWidth = 12;
        const int y = 400 + 40 * i;
        Pointer::drag(onCanvas(*m_window, 200, y), onCanvas(*m_window, 500, y));
        QVERIFY(shows(*m_window, 350, y, 0xFF000000));
        ToolWindow *popup = hold(*m_window, Command::Eraser);
        QVERIFY(popup);
        QVERIFY(clicked(row(popup, 20)[i]));
        Pointer::drag(onCanvas(*m_window, 350, y), onCanvas(*m_window, 352, y));
        QVERIFY2(shows(*m_window, 351, y, 0xFFFFFFFF), qPrintable(QString::number(i)));
        QVERIFY(shows(*m_window, 300, y, 0xFF000000));
    }
    QVERIFY(clicked(m_window->button(Command::EraseAll)));
    QVERIFY(shows(*m_window, 300, 400, 0xFFFFFFFF));
}

void ToolsDrivenTest::textIsWrittenAsChosen()
{
    const QRgb colors[] = {0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFF0000FF};
    const auto inked = [this](QRect area, QRgb color) {
        const QImage picture = screen();
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                count += near(picture.pixel(onCanvas(*m_window, x, y)), color) ? 1 : 0;
        }
        return count;
    };
    QRect smaller;
    for (int i = 0; i < 4; ++i) {
        ToolWindow *popup = hold(*m_window, Command::Text);
        QVERIFY(popup);
        QVERIFY(clicked(row(popup, 43)[i]));
        auto *sizes = popup->findChildren<QComboBox *>()[1];
        QVERIFY(sizes->isEditable());
        sizes->setEditText(i < 2 ? "18" : "36");
        const QPoint at(60 + 150 * i, 420);
        Pointer::click(onCanvas(*m_window, at.x(), at.y()));
        auto *editor = m_window->currentCanvas()->findChild<QTextEdit *>();
        QVERIFY(editor);
        QTRY_VERIFY_WITH_TIMEOUT(editor->isVisible() && editor->hasFocus(), TIMEOUT_MS);
        Pointer::type("MM");
        QTRY_COMPARE_WITH_TIMEOUT(editor->toPlainText(), QString("MM"), TIMEOUT_MS);
        Pointer::click(onCanvas(*m_window, 700, 60));
        QTRY_VERIFY_WITH_TIMEOUT(!editor->isVisible(), TIMEOUT_MS);
        const QRect area(at, QSize(140, 90));
        QTRY_VERIFY_WITH_TIMEOUT(inked(area, colors[i]) > 20, TIMEOUT_MS);
        if (i == 1)
            smaller = area;
        // Both are counted now, as the letters of the editor may stay on the screen for a moment.
        if (i == 3)
            QTRY_VERIFY_WITH_TIMEOUT(inked(area, colors[i]) > 2 * inked(smaller, colors[1]),
                                     TIMEOUT_MS);
    }
}

void ToolsDrivenTest::everyMaskCoversItsPart()
{
    // The board is 745 wide and 419 high in the middle of the canvas.
    const struct {
        QPoint covered;
        QPoint open;
    } parts[] = {{{40, 150}, {372, 334}},
                 {{80, 334}, {372, 334}},
                 {{80, 334}, {600, 334}},
                 {{372, 200}, {372, 450}}};
    ToolWindow *popup = hold(*m_window, Command::Mask);
    QVERIFY(popup);
    for (int i = 0; i < 4; ++i) {
        QVERIFY(clicked(row(popup, 18)[i]));
        QVERIFY2(shows(*m_window, parts[i].covered.x(), parts[i].covered.y(), 0xFF000000),
                 qPrintable(QString::number(i)));
        QVERIFY2(shows(*m_window, parts[i].open.x(), parts[i].open.y(), 0xFFFFFFFF),
                 qPrintable(QString::number(i)));
        QVERIFY(m_window->button(Command::Mask)->isChecked());
    }
    QVERIFY(clicked(m_window->button(Command::Mask)));
    QVERIFY(shows(*m_window, 372, 200, 0xFFFFFFFF));
    QVERIFY(clicked(m_window->button(Command::Mask)));
    QVERIFY(shows(*m_window, 372, 200, 0xFF000000));
}

void ToolsDrivenTest::everyEffectShowsInThePicture()
{
    m_window->currentCanvas()->fillCanvas(QColor(200, 40, 90));
    QVERIFY(shows(*m_window, 372, 400, 0xFFC8285A));
    ToolWindow *popup = hold(*m_window, Command::Effect);
    QVERIFY(popup);
    const QRgb expected[] = {0xFFC8285A, qRgb(93, 93, 93), qRgb(55, 215, 165), 0xFFC8285A};
    for (const int i : {1, 2, 3, 0}) {
        QVERIFY(clicked(row(popup, 18)[i]));
        QVERIFY2(shows(*m_window, 372, 400, expected[i]), qPrintable(QString::number(i)));
        QCOMPARE(int(m_window->currentCanvas()->effectMode.load()), i);
    }
}

void ToolsDrivenTest::everyBoardColorFillsTheBoard()
{
    ToolWindow *popup = hold(*m_window, Command::FillBackground);
    QVERIFY(popup);
    const QRgb colors[] = {0xFFFFFFFF, 0xFF000000, 0xFFFFFF00, 0xFF0000FF};
    for (const int i : {3, 2, 1, 0}) {
        QVERIFY(clicked(row(popup, 20)[i]));
        QVERIFY2(shows(*m_window, 372, 450, colors[i]), qPrintable(QString::number(i)));
    }
}

void ToolsDrivenTest::everyKeyGoesToTheTextBeingTyped()
{
    QVERIFY(clicked(m_window->button(Command::Text)));
    Pointer::click(onCanvas(*m_window, 200, 350));
    auto *editor = m_window->currentCanvas()->findChild<QTextEdit *>();
    QTRY_VERIFY_WITH_TIMEOUT(editor->isVisible() && editor->hasFocus(), TIMEOUT_MS);
    for (const char *name : {"a", "space", "plus", "minus", "Next", "F11", "ctrl+s", "ctrl+p", "b"})
        Pointer::key(name);
    QTRY_COMPARE_WITH_TIMEOUT(editor->toPlainText(), QString("a +-b"), TIMEOUT_MS);
    QVERIFY(!m_window->isFullScreen());
    QCOMPARE(m_window->currentCanvas()->zoomScale(), 1.0);
    // Choosing a colour in the pop-up does not take the keys away.
    ToolWindow *popup = hold(*m_window, Command::Text);
    QVERIFY(popup);
    QVERIFY(clicked(row(popup, 43)[1]));
    Pointer::type("c +");
    QTRY_COMPARE_WITH_TIMEOUT(editor->toPlainText(), QString("a +-bc +"), TIMEOUT_MS);
    QCOMPARE(m_window->currentCanvas()->zoomScale(), 1.0);
    // Escape alone is not the text's: it ends it.
    Pointer::key("Escape");
    QTRY_VERIFY_WITH_TIMEOUT(editor->isHidden(), TIMEOUT_MS);
}

REGISTER_TEST(ToolsDrivenTest)
#include "tst_tools_driven.moc"
