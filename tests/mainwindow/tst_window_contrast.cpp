#include "canvas/ImageCanvas.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "resources/SkinStyle.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/TypedText.h"
#include "tests/mainwindow/WindowProbe.h"
#include "tests/widgets/Contrast.h"
#include "widgets/CameraPage.h"
#include "widgets/StatusSign.h"

#include "tests/TestProgram.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHash>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyleOptionButton>

using namespace WindowProbe;

namespace
{

/// The least contrast of letters and small signs.
constexpr double LEAST = 4.5;
/// The least contrast of larger signs and of the edges of controls.
constexpr double LEAST_OF_SIGNS = 3.0;
/// Fewer pixels of a colour are no letter.
constexpr int LEAST_PIXELS = 3;

/// How far the most different colour stands apart from the most frequent one.
double contrastIn(const QImage &image)
{
    QHash<QRgb, int> count;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++count[image.pixel(x, y)];
    }
    const auto fewer = [](int one, int other) { return one < other; };
    const auto face = std::max_element(count.cbegin(), count.cend(), fewer);
    double best = 1.0;
    for (auto it = count.cbegin(); it != count.cend(); ++it) {
        if (it.value() >= LEAST_PIXELS)
            best = std::max(best, Contrast::of(QColor(face.key()), QColor(it.key())));
    }
    return best;
}

/// That part of the widget as it is seen, on the ground of its window.
QImage seen(const QWidget &widget, const QRect &part)
{
    QWidget *window = widget.window();
    return window->grab(QRect(widget.mapTo(window, part.topLeft()), part.size()))
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

/// All of it, less an edge.
QImage seen(const QWidget &widget)
{
    return seen(widget, widget.rect().adjusted(3, 3, -3, -3));
}

/// Where its text is; signs beside it would be taken for letters.
QRect textOf(const QAbstractButton &button)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    if (qobject_cast<const QCheckBox *>(&button))
        return button.style()->subElementRect(QStyle::SE_CheckBoxContents, &option, &button);
    if (qobject_cast<const QRadioButton *>(&button))
        return button.style()->subElementRect(QStyle::SE_RadioButtonContents, &option, &button);
    return button.rect().adjusted(3, 3, -3, -3);
}

QRect textOf(const QComboBox &box)
{
    QStyleOptionComboBox option;
    option.initFrom(&box);
    return box.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField,
                                       &box);
}

/// How far the box itself stands apart from its ground.
double indicatorContrast(const QCheckBox &box)
{
    QStyleOptionButton option;
    option.initFrom(&box);
    const QImage image = seen(box, box.style()
                                       ->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box)
                                       .adjusted(-3, -3, 3, 3));
    // The ground is in the corner.
    double best = 1.0;
    for (int x = 0; x < image.width(); ++x)
        best = std::max(
            best, Contrast::of(image.pixelColor(0, 0), image.pixelColor(x, image.height() / 2)));
    return best;
}

/// The texts of a window that cannot be read, with their contrast.
QStringList unreadable(const QWidget &window)
{
    QStringList found;
    const auto look = [&found](const QImage &image, const QString &text) {
        const double contrast = contrastIn(image);
        if (contrast < LEAST)
            found << QString("%1: %2").arg(text).arg(contrast);
    };
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && !label->text().isEmpty())
            look(seen(*label), label->text());
    }
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->isVisible() && !button->text().isEmpty())
            look(seen(*button, textOf(*button)), button->text());
    }
    for (const QComboBox *box : window.findChildren<QComboBox *>()) {
        if (box->isVisible())
            look(seen(*box, textOf(*box)), box->currentText());
    }
    for (const QLineEdit *field : window.findChildren<QLineEdit *>()) {
        if (field->isVisible() && !field->text().isEmpty())
            look(seen(*field), field->text());
    }
    return found;
}

/// The least contrast between the ink of a text that is being typed onto the picture and what lies
/// around its letters; 0 when nothing can be typed.
double leastContrastOfTypedText(const MainWindow &window, const QColor &ink)
{
    ImageCanvas *canvas = window.currentCanvas();
    window.button(Command::Text)->click();
    canvas->setTextColor(ink);
    CanvasMouse::click(*canvas, {100, 100});
    auto *editor = canvas->findChild<QTextEdit *>();
    if (!editor || !editor->isVisible())
        return 0.0;
    QTest::keyClicks(editor, "Math");
    // The caret would lie over what is looked at.
    editor->clearFocus();
    const QImage shown = canvas->grab(editor->geometry()).toImage();
    const QVector<QPoint> around = TypedText::pixelsAround(TypedText::letters(*editor));
    double least = around.size() > 100 ? 21.0 : 0.0;
    for (const QPoint &pixel : around)
        least = std::min(least, Contrast::of(shown.pixelColor(pixel), ink));
    CanvasMouse::click(*canvas, {10, 10});
    return least;
}

} // namespace

/// Whether every text of the window, its pop-ups and its boxes can be read, measured on the
/// pictures of them, whatever colours the desktop has.
class WindowContrastTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { usualSettings(); }
    void everyTextCanBeRead_data();
    void everyTextCanBeRead();
    void everyTextOfABoxCanBeRead();
    void everyPageOfMoreCanBeRead_data() { everyTextCanBeRead_data(); }
    void everyPageOfMoreCanBeRead();
    void thePresentationsSignsStandOutInEveryState();
    void captionsCanBeReadInEveryState();
    void cleanup() { QApplication::setPalette(QPalette()); }
};

void WindowContrastTest::everyTextCanBeRead_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("no theme") << SkinStyle::darkPalette();
    QTest::newRow("light") << QPalette(QColor(0xEFEFEF));
    QTest::newRow("dark") << QPalette(QColor(0x202326));
    QPalette yellow(Qt::black);
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        yellow.setColor(role, Qt::yellow);
    QTest::newRow("yellow on black") << yellow;
}

void WindowContrastTest::everyTextCanBeRead()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    MainWindow window;
    window.show();
    for (int mode = 0; mode < modes().size(); ++mode) {
        enter(window, mode);
        QCOMPARE(unreadable(window), QStringList());
    }
    for (const Command tool : poppingButtons()) {
        enter(window, tool == Command::FillBackground ? 3 : 0);
        emit window.button(tool)->hold();
        QVERIFY(window.currentToolWindow());
        QCOMPARE(unreadable(*window.currentToolWindow()), QStringList());
    }
    enter(window, 0);
    window.settings();
    QCOMPARE(unreadable(*window.currentToolWindow()), QStringList());
    window.About();
    QCOMPARE(unreadable(*window.currentToolWindow()), QStringList());
    window.currentToolWindow()->close();
    // The live picture is black until a camera comes, the drawing board is white.
    for (const int mode : {0, 3}) {
        enter(window, mode);
        for (const QColor &ink : {QColor(Qt::black), QColor(Qt::white)})
            QVERIFY(leastContrastOfTypedText(window, ink) >= LEAST);
    }
}

void WindowContrastTest::everyTextOfABoxCanBeRead()
{
    QApplication::setPalette(SkinStyle::darkPalette());
    QMessageBox box(QMessageBox::Question, "Question", "Continue?",
                    QMessageBox::Yes | QMessageBox::No);
    box.show();
    QCOMPARE(unreadable(box), QStringList());
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.show();
    QCOMPARE(unreadable(dialog), QStringList());
}

void WindowContrastTest::everyPageOfMoreCanBeRead()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    MainWindow window;
    window.show();
    window.more();
    auto *more = static_cast<MoreToolWindow *>(window.currentToolWindow());
    for (const Pages::Page &page : Pages::all()) {
        more->showPage(page.id);
        QVERIFY(QTest::qWaitForWindowExposed(more));
        QCOMPARE(unreadable(*more), QStringList());
        for (QCheckBox *box : more->findChildren<QCheckBox *>()) {
            // Those of a camera's controls are hidden without one.
            if (!box->isVisible())
                continue;
            box->setChecked(false);
            QVERIFY2(indicatorContrast(*box) >= LEAST_OF_SIGNS, qPrintable(box->text()));
            box->setChecked(true);
            QVERIFY2(indicatorContrast(*box) >= LEAST_OF_SIGNS, qPrintable(box->text()));
        }
    }
    auto *page = new CameraPage;
    more->findChild<QScrollArea *>()->setWidget(page);
    for (int state = 0; state <= int(CameraStatus::State::Silent); ++state) {
        CameraStatus status;
        status.state = CameraStatus::State(state);
        page->setStatus(status);
        QCOMPARE(unreadable(*more), QStringList());
        QVERIFY(contrastIn(seen(*page->findChild<StatusSign *>())) >= LEAST_OF_SIGNS);
    }
}

void WindowContrastTest::thePresentationsSignsStandOutInEveryState()
{
    MainWindow window;
    window.resize(1400, 768); // all of them then stand on the card
    window.show();
    for (const Command command :
         {Command::Present, Command::HoldPresentation, Command::BlankPresentation, Command::More}) {
        ImageButton *each = window.button(command);
        QTRY_VERIFY(each->isVisible());
        for (const bool checked : {false, true}) {
            each->setGray(false);
            each->setCheckable(true);
            each->setChecked(checked);
            QVERIFY2(contrastIn(seen(*each)) >= LEAST, qPrintable(each->accessibleName()));
            QEvent over(QEvent::Enter);
            QCoreApplication::sendEvent(each, &over);
            QVERIFY2(contrastIn(seen(*each)) >= LEAST, qPrintable(each->accessibleName()));
            QEvent left(QEvent::Leave);
            QCoreApplication::sendEvent(each, &left);
        }
    }
}

void WindowContrastTest::captionsCanBeReadInEveryState()
{
    MainWindow window;
    window.show();
    window.About();
    for (ImageButton *each : window.findChildren<ImageButton *>() +
                                 window.currentToolWindow()->findChildren<ImageButton *>()) {
        if (!each->isVisible() || each->text().isEmpty())
            continue;
        QEvent enterEvent(QEvent::Enter);
        QCoreApplication::sendEvent(each, &enterEvent);
        QVERIFY2(contrastIn(seen(*each)) >= LEAST, qPrintable(each->text()));
        each->setDown(true);
        QVERIFY2(contrastIn(seen(*each)) >= LEAST, qPrintable(each->text()));
        each->setDown(false);
    }
}

REGISTER_TEST(WindowContrastTest)
#include "tst_window_contrast.moc"
