#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasMessage.h"
#include "sources/FilmSource.h"
#include "sources/PhotographSource.h"
#include "widgets/Slider.h"
#include "widgets/TickLabel.h"

#include "tests/TestProgram.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

using namespace WindowProbe;

namespace
{

QString pictureFile(const QString &folder, const QString &name, QRgb color)
{
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(color);
    QString path = QDir(folder).filePath(name);
    if (!image.save(path))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

} // namespace

/// The bars of films and photographs.
class WindowMediaTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init() { usualSettings(); }
    void photographsAreChosenByOneOfThem();
    void cancelledDialogsChangeNothing();
    void aVanishedFileIsIgnored();
    void slideshowButtonFollowsTheShow();
    void theButtonStaysOnWhileAShowRunsWithoutItsFolder();
    void aPhotographThatCannotBeShownIsToldOf();
    void aFilmThatCannotBeShownIsToldOf();
    void photographsRestWhileAnotherModeIsShown();
    void intervalPlacesReachTheSource();
    void longIndexesFitTheirLabel();
};

void WindowMediaTest::photographsAreChosenByOneOfThem()
{
    const QTemporaryDir folder;
    pictureFile(folder.path(), "a.png", 0xFFFF0000);
    const QString second = pictureFile(folder.path(), "b.png", 0xFF00FF00);
    pictureFile(folder.path(), "c.png", 0xFF0000FF);
    MainWindow window;
    enter(window, 2);
    chooseFile(&window, second);
    button(window, "Open folder of photographs")->click();
    QLabel *index = nullptr;
    for (QLabel *label : window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->text().contains('/'))
            index = label;
    }
    QVERIFY(index);
    QCOMPARE(index->text(), QString("2/3"));
    QCOMPARE(window.currentCanvas()->currentImage().pixel(10, 10), 0xFF00FF00);
    button(window, "Next photograph")->click();
    QCOMPARE(index->text(), QString("3/3"));
    button(window, "Next photograph")->click();
    QCOMPARE(index->text(), QString("3/3"));
    for (int i = 0; i < 3; ++i)
        button(window, "Previous photograph")->click();
    QCOMPARE(index->text(), QString("1/3"));
    // Leaving and coming back returns to the one that was opened.
    enter(window, 0);
    enter(window, 2);
    QCOMPARE(index->text(), QString("2/3"));
}

void WindowMediaTest::cancelledDialogsChangeNothing()
{
    MainWindow window;
    enter(window, 2);
    const QImage before = window.currentCanvas()->currentImage();
    whenAsked<QFileDialog>(&window, [](QFileDialog *dialog) { dialog->reject(); });
    button(window, "Open folder of photographs")->click();
    QCOMPARE(window.currentCanvas()->currentImage(), before);
    enter(window, 1);
    whenAsked<QFileDialog>(&window, [](QFileDialog *dialog) { dialog->reject(); });
    button(window, "Open film")->click();
    QCOMPARE(window.currentCanvas()->currentImage(), before);
}

void WindowMediaTest::aVanishedFileIsIgnored()
{
    const QTemporaryDir folder;
    MainWindow window;
    window.show();
    const struct {
        int mode;
        const char *opener;
        QString path;
    } files[] = {
        {1, "Open film", folder.filePath("film.mov")},
        {2, "Open folder of photographs", pictureFile(folder.path(), "a.png", 0xFFFF0000)},
    };
    QSignalSpy ticks(window.findChild<FilmSource *>(), SIGNAL(tick()));
    QSignalSpy changes(window.findChild<PhotographSource *>(), SIGNAL(photographChanged(int)));
    for (const auto &each : files) {
        QFile file(each.path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.close();
        enter(window, each.mode);
        const QImage before = window.currentCanvas()->currentImage();
        QString chosen;
        whenAsked<QFileDialog>(&window, [&](QFileDialog *dialog) {
            // Typed, as the list of files fills up by itself and loses the removed one.
            dialog->findChild<QLineEdit *>()->setText(each.path);
            // The dialog itself would refuse a file that has gone; it has gone a moment later.
            QFile::remove(each.path);
            chosen = dialog->selectedFiles().value(0);
            static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
        });
        button(window, each.opener)->click();
        QCOMPARE(chosen, each.path);
        // An opened film ticks ten times a second.
        QTest::qWait(350);
        QCOMPARE(window.currentCanvas()->currentImage(), before);
        QVERIFY(!QApplication::activeModalWidget());
    }
    QCOMPARE(ticks.count(), 0);
    QCOMPARE(changes.count(), 0);
}

void WindowMediaTest::slideshowButtonFollowsTheShow()
{
    const QTemporaryDir folder;
    const QString first = pictureFile(folder.path(), "a.png", 0xFFFF0000);
    pictureFile(folder.path(), "b.png", 0xFF00FF00);
    MainWindow window;
    enter(window, 2);
    ImageButton *show = button(window, "Slideshow");
    const auto open = [&] {
        chooseFile(&window, first);
        button(window, "Open folder of photographs")->click();
    };
    open();
    for (const char *name : {"Next photograph", "Previous photograph"}) {
        show->click();
        QVERIFY(show->isChecked());
        button(window, name)->click();
        QVERIFY2(!show->isChecked(), name);
    }
    show->click();
    open();
    QVERIFY(!show->isChecked());
    show->click();
    show->click();
    QVERIFY(!show->isChecked());
    show->click();
    window.findChild<PhotographSource *>()->stop();
    QVERIFY(!show->isChecked());
    show->click();
    enter(window, 0);
    enter(window, 2);
    QVERIFY(!show->isChecked());
    // A running show steps on.
    show->click();
    QTRY_COMPARE_WITH_TIMEOUT(window.currentCanvas()->currentImage().pixel(10, 10), 0xFF00FF00,
                              10000);
}

void WindowMediaTest::theButtonStaysOnWhileAShowRunsWithoutItsFolder()
{
    auto folder = std::make_unique<QTemporaryDir>();
    const QString first = pictureFile(folder->path(), "a.png", 0xFFFF0000);
    pictureFile(folder->path(), "b.png", 0xFF00FF00);
    MainWindow window;
    enter(window, 2);
    chooseFile(&window, first);
    button(window, "Open folder of photographs")->click();
    ImageButton *show = button(window, "Slideshow");
    const auto *source = window.findChild<PhotographSource *>();
    show->click();
    enter(window, 0);
    folder.reset();
    enter(window, 2);
    QVERIFY(source->playing());
    QVERIFY(show->isChecked());
    show->click();
    QVERIFY(!source->playing());
    QVERIFY(!show->isChecked());
}

void WindowMediaTest::aPhotographThatCannotBeShownIsToldOf()
{
    const QTemporaryDir folder;
    const QString good = pictureFile(folder.path(), "a.png", 0xFFFF0000);
    const QString bad = folder.filePath("b.png");
    QFile file(bad);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no picture") > 0);
    file.close();
    MainWindow window;
    window.show();
    enter(window, 2);
    const auto open = [&window](const QString &path) {
        chooseFile(&window, path);
        button(window, "Open folder of photographs")->click();
        QVERIFY(!QApplication::activeModalWidget());
    };
    const auto *message = window.currentCanvas()->findChild<CanvasMessage *>();
    for (const QString name : {"IMG_0001.JPG", "scan.tif", "web.webp"}) {
        QVERIFY(QFile::exists(folder.filePath(name)) || QFile::copy(good, folder.filePath(name)));
        open(folder.filePath(name));
        QVERIFY(message->isVisible());
        QVERIFY(message->text().contains(name));
    }
    open(good);
    QVERIFY(!message->isVisible());
    open(bad);
    QVERIFY(message->isVisible());
    QVERIFY(message->text().contains("damaged"));
    button(window, "Previous photograph")->click();
    QVERIFY(!message->isVisible());
    button(window, "Next photograph")->click();
    QVERIFY(message->isVisible());
    button(window, "Previous photograph")->click();
    QVERIFY(QFile::remove(bad));
    button(window, "Next photograph")->click();
    QVERIFY(message->text().contains("no longer"));
}

void WindowMediaTest::aFilmThatCannotBeShownIsToldOf()
{
    const QTemporaryDir folder;
    const QString bad = folder.filePath("film.mp4");
    QFile file(bad);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(5000, 'x')) > 0);
    file.close();
    MainWindow window;
    window.show();
    enter(window, 1);
    const auto *message = window.currentCanvas()->findChild<CanvasMessage *>();
    chooseFile(&window, bad);
    button(window, "Open film")->click();
    QTRY_VERIFY_WITH_TIMEOUT(message->isVisible(), 30000);
    QVERIFY(message->text().contains("damaged"));
    QVERIFY(!window.findChild<FilmSource *>()->moving());
    QVERIFY(!QApplication::activeModalWidget());
}

void WindowMediaTest::photographsRestWhileAnotherModeIsShown()
{
    MainWindow window;
    enter(window, 2);
    ImageCanvas *photographs = window.currentCanvas();
    photographs->fillCanvas(QColor(200, 40, 90));
    photographs->effectMode = CanvasModes::EffectBW;
    QTRY_VERIFY(qIsGray(photographs->currentImage().pixel(10, 10)));
    enter(window, 0);
    photographs->effectMode = CanvasModes::EffectColor;
    // Three intervals of the refresh, which must not run.
    QTest::qWait(150);
    QVERIFY(qIsGray(photographs->currentImage().pixel(10, 10)));
}

void WindowMediaTest::intervalPlacesReachTheSource()
{
    MainWindow window;
    Slider *interval = window.findChildren<Slider *>()[1];
    QCOMPARE(interval->minimum(), 0);
    QCOMPARE(interval->maximum(), 5);
    QCOMPARE(interval->value(), 0);
    QCOMPARE(interval->pageStep(), 1);
    QCOMPARE(interval->tickPosition(), QSlider::TicksBelow);
    const int seconds[] = {1, 2, 5, 10, 15, 30};
    for (int i = 0; i < 6; ++i)
        QCOMPARE(PHOTOGRAPH_PLAY_INTERVALS[std::size_t(i)], seconds[i]);
    const auto *source = window.findChild<PhotographSource *>();
    QSignalSpy changed(interval, SIGNAL(valueChanged(int)));
    for (const int place : {5, 3, 0}) {
        interval->setValue(place);
        QCOMPARE(source->playInterval(), seconds[place] * 1000);
    }
    QCOMPARE(changed.count(), 3);
    for (const int outside : {-1, 6}) {
        window.photographPlayIntervalChanged(outside);
        QCOMPARE(source->playInterval(), 1000);
    }
    for (const QLabel *label :
         window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!label->text().contains("sec"))
            continue;
        QCOMPARE(label->text(), QString("1     2     5    10    15    30  sec."));
        QCOMPARE(label->size(), QSize(200, 10));
        QCOMPARE(label->font().pixelSize(), 9);
        QVERIFY(qobject_cast<const TickLabel *>(label));
        QVERIFY(label->testAttribute(Qt::WA_TransparentForMouseEvents));
    }
}

void WindowMediaTest::longIndexesFitTheirLabel()
{
    const QTemporaryDir folder;
    const QString first = pictureFile(folder.path(), "0000.png", 0xFFFF0000);
    for (int i = 1; i < 1234; ++i)
        QVERIFY(QFile::link(first, folder.filePath(QString("%1.png").arg(i, 4, 10, QChar('0')))));
    MainWindow window;
    enter(window, 2);
    chooseFile(&window, folder.filePath("1199.png"));
    button(window, "Open folder of photographs")->click();
    for (const QLabel *label :
         window.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!label->text().contains('/'))
            continue;
        QCOMPARE(label->text(), QString("1200/1234"));
        QCOMPARE(label->size(), QSize(70, 30));
        QVERIFY(QFontMetrics(label->font()).horizontalAdvance(label->text()) <= 70);
        QVERIFY(label->font().pointSize() < 15);
        window.photographIdChange(0);
        QCOMPARE(label->text(), QString("1/1234"));
    }
}

REGISTER_TEST(WindowMediaTest)
#include "tst_window_media.moc"
