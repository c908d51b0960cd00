#include "mainwindow/bars/CardLayout.h"
#include "mainwindow/bars/CommandCard.h"
#include "mainwindow/pages/MoreToolWindow.h"

#include "mainwindow/PenPressure.h"
#include "mainwindow/WindowLayout.h"
#include "settings/Preferences.h"

#include "settings/StoredSettings.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasPointers.h"
#include "tests/mainwindow/HelperScene.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

/// The card at the lower left and the pop-up that its last button opens.
class CardTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { StoredSettings::nameFiles(); }
    void asManyStandOnItAsFit_data();
    void asManyStandOnItAsFit();
    void whatIsCheckedStandsOnIt_data();
    void whatIsCheckedStandsOnIt();
    void itFitsBesideTheBarsInEveryWindow();
    void itsButtonsStandInARowAndJoinTheOthers();
    void theButtonOfACommandAtTimesComesAndGoes();
    void aHiddenButtonIsOfferedInThePopUp();
    void thePagesTellOfKeysAndFailures();
    void thePressureOfAPenIsChosenOnItsPage();
    void theMarkIsOfTheCameraOrOfAFailure();
    void aCameraHasTimeToBeOpened();
};

void CardTest::asManyStandOnItAsFit_data()
{
    QTest::addColumn<int>("commands");
    QTest::addColumn<int>("room");
    QTest::addColumn<int>("shown");
    QTest::newRow("three of three") << 3 << 108 << 3;
    QTest::newRow("room for more") << 3 << 253 << 3;
    QTest::newRow("nine, seven fit") << 9 << 253 << 7;
    QTest::newRow("a pixel too little") << 9 << 251 << 6;
    QTest::newRow("never fewer than three") << 9 << 20 << 3;
}

void CardTest::asManyStandOnItAsFit()
{
    QFETCH(int, commands);
    QFETCH(int, room);
    QFETCH(int, shown);
    QCOMPARE(CardLayout::shown(commands, room), shown);
}

void CardTest::whatIsCheckedStandsOnIt_data()
{
    // Each letter is a command, a capital one when its button is checked; "More" is m.
    QTest::addColumn<QByteArray>("commands");
    QTest::addColumn<int>("places");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("the first ones") << QByteArray("abcdem") << 3 << QByteArray("abm");
    QTest::newRow("a checked one") << QByteArray("abcDem") << 3 << QByteArray("aDm");
    QTest::newRow("two checked ones") << QByteArray("abCDem") << 3 << QByteArray("CDm");
    QTest::newRow("more than fit") << QByteArray("abCDEm") << 3 << QByteArray("CDm");
    QTest::newRow("all fit") << QByteArray("abCDEm") << 6 << QByteArray("abCDEm");
}

void CardTest::whatIsCheckedStandsOnIt()
{
    QFETCH(QByteArray, commands);
    QFETCH(int, places);
    QFETCH(QByteArray, shown);
    std::vector<bool> checked;
    for (const char command : commands)
        checked.push_back(command < 'a');
    const std::vector<bool> fits = CardLayout::chosen(checked, places * CardLayout::PITCH);
    QByteArray found;
    for (int i = 0; i < commands.size(); ++i) {
        if (fits[std::size_t(i)])
            found += commands[i];
    }
    QCOMPARE(found, shown);
}

void CardTest::itFitsBesideTheBarsInEveryWindow()
{
    for (int width = 800; width < 2000; ++width) {
        for (const bool open : {false, true}) {
            const WindowLayout at = WindowLayout::of(
                {{width, 768}, open, {60, 37}, {0, 0}, {310, 37}, {30, 120}, {270, 37}});
            // The About button ends at 124.
            QVERIFY(at.card.x() > 124);
            const int end = at.card.x() + CardLayout::widthOf(CardLayout::shown(100, at.cardRoom));
            QVERIFY2(end <= at.filmBar.x(), qPrintable(QString::number(width)));
            QVERIFY(end <= at.photographBar.x());
            QVERIFY(end <= at.liveBox.x());
        }
    }
}

void CardTest::itsButtonsStandInARowAndJoinTheOthers()
{
    HelperScene scene;
    CommandCard card(&scene.buttons, &scene.parent);
    WindowLayout at;
    at.card = QPoint(130, 708);
    const ImageButton *atTimes = scene.buttons.of(Command::PauseRecording);
    const int commands = int(Commands::rowsOf(Commands::Group::Card).size()) - 1;
    at.cardRoom = 36 * commands + 7;
    card.place(at);
    QCOMPARE(card.geometry(), QRect(130, 708, 36 * commands, 37));
    int x = 3;
    for (const Commands::Row &row : Commands::rowsOf(Commands::Group::Card)) {
        const ImageButton *button = scene.buttons.of(row.command);
        QVERIFY(button);
        if (button == atTimes) {
            QVERIFY(button->isHidden());
            continue;
        }
        QCOMPARE(button->geometry(), QRect(x, 5, 30, 27));
        QCOMPARE(button->toolTip(), QString(row.text));
        x += 36;
    }
    QVERIFY(card.hidden().empty());
    at.cardRoom = 115;
    card.place(at);
    QCOMPARE(card.geometry(), QRect(130, 708, 108, 37));
    QCOMPARE(int(card.hidden().size()), commands - 3);
    QCOMPARE(scene.buttons.of(Command::More)->geometry(), QRect(75, 5, 30, 27));
}

void CardTest::theButtonOfACommandAtTimesComesAndGoes()
{
    HelperScene scene;
    CommandCard card(&scene.buttons, &scene.parent);
    ImageButton *pause = scene.buttons.of(Command::PauseRecording);
    ImageButton *redo = scene.buttons.of(Command::Redo);
    WindowLayout at;
    at.card = QPoint(130, 708);
    at.cardRoom = 115;
    card.place(at);
    QVERIFY(pause->isHidden() && !redo->isHidden());
    const std::size_t before = card.hidden().size();
    QVERIFY(std::count(card.hidden().begin(), card.hidden().end(), pause) == 0);
    // There is always a place for it.
    pause->setEnabled(true);
    QVERIFY(!pause->isHidden() && redo->isHidden());
    QCOMPARE(pause->geometry(), QRect(39, 5, 30, 27));
    QCOMPARE(card.hidden().size(), before + 1);
    QCOMPARE(card.width(), 108);
    pause->setEnabled(false);
    QVERIFY(pause->isHidden() && !redo->isHidden());
    QCOMPARE(card.hidden().size(), before);
}

void CardTest::aHiddenButtonIsOfferedInThePopUp()
{
    HelperScene scene;
    CommandCard card(&scene.buttons, &scene.parent);
    ImageButton *undo = scene.buttons.of(Command::Undo);
    MoreToolWindow popup(undo, nullptr, {&scene.deck, nullptr, nullptr}, {undo});
    QSignalSpy clicks(undo, SIGNAL(clicked()));
    for (ImageButton *each : popup.findChildren<ImageButton *>()) {
        if (each->accessibleName() == "Undo")
            each->click();
    }
    QCOMPARE(clicks.count(), 1);
}

void CardTest::thePagesTellOfKeysAndFailures()
{
    HelperScene scene;
    CommandCard card(&scene.buttons, &scene.parent);
    scene.popups.setMore({&scene.deck, nullptr, nullptr}, &card);
    auto *popup = qobject_cast<MoreToolWindow *>(scene.open(Command::More));
    QVERIFY(popup);
    const auto text = [popup] {
        QString all;
        for (const QLabel *label : popup->findChildren<QLabel *>())
            all += label->text();
        return all;
    };
    QSignalSpy shown(popup, &MoreToolWindow::pageShown);
    popup->showPage(Pages::Id::Keys);
    QCOMPARE(shown.count(), 1);
    for (const Commands::Row &row : Commands::rows()) {
        if (!row.keys.empty())
            QVERIFY2(text().contains(QString(row.text)), row.text);
    }
    QVERIFY(text().contains("Ctrl+Shift+Z"));
    popup->showPage(Pages::Id::Recording);
    QVERIFY(popup->page() == Pages::Id::Recording);
    QVERIFY(!text().contains("Not saved"));
    // A folder that takes no files, not even from root.
    ImageCanvas *canvas = scene.deck.current();
    QSignalSpy failed(canvas, SIGNAL(snapshotFailed(QString, QString)));
    canvas->snapshotFolder = "/proc";
    canvas->snapshot();
    QImage picture(8, 6, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QTRY_VERIFY([&] {
        canvas->imageCaptured(picture);
        return failed.count() > 0;
    }());
    popup->showPage(Pages::Id::Recording);
    QVERIFY2(text().contains("Not saved"), qPrintable(text()));
}

void CardTest::thePressureOfAPenIsChosenOnItsPage()
{
    HelperScene scene;
    CommandCard card(&scene.buttons, &scene.parent);
    scene.popups.setMore({&scene.deck, nullptr, nullptr}, &card);
    const auto rowsDrawn = [&scene](double pressure) {
        ImageCanvas *canvas = scene.deck.canvas(Modes::DrawingBoard);
        canvas->resize(160, 120);
        QImage paper(160, 120, QImage::Format_RGB888);
        paper.fill(Qt::white);
        canvas->imageCaptured(paper);
        canvas->clearPainting();
        canvas->setMouseMode(CanvasModes::Freehand);
        canvas->penColor = Qt::red;
        canvas->penWidth = 40;
        CanvasPointers::penDrag(*canvas, {{20, 60}, {140, 60}}, {pressure, QTabletEvent::Pen, {}});
        canvas->autoRefresh();
        const QImage picture = canvas->currentImage();
        int rows = 0;
        for (int y = 0; y < picture.height(); ++y)
            rows += picture.pixelColor(80, y) == QColor(Qt::red) ? 1 : 0;
        return rows;
    };
    PenPressure::apply(scene.deck);
    QCOMPARE(rowsDrawn(0.5), 40);
    QVERIFY(!QFile::exists(Preferences::fileName()));

    auto *popup = qobject_cast<MoreToolWindow *>(scene.open(Command::More));
    QVERIFY(popup);
    popup->showPage(Pages::Id::Pen);
    auto *pressure = popup->findChild<QCheckBox *>();
    QVERIFY(pressure && !pressure->isChecked());
    pressure->click();
    QVERIFY(PenPressure::isOn());
    // 40 (0.35 + 0.65 / 2) = 27, of which the outer two rows are mixed with the paper.
    QCOMPARE(rowsDrawn(0.5), 26);
    // The next program reads it.
    HelperScene next;
    PenPressure::apply(next.deck);
    popup->showPage(Pages::Id::Pen);
    QVERIFY(popup->findChild<QCheckBox *>()->isChecked());
    popup->findChild<QCheckBox *>()->click();
    QCOMPARE(rowsDrawn(0.5), 40);
    QVERIFY(!PenPressure::isOn());
}

void CardTest::theMarkIsOfTheCameraOrOfAFailure()
{
    HelperScene scene;
    CommandCard card(&scene.buttons, &scene.parent);
    const ImageButton *more = scene.buttons.of(Command::More);
    QVERIFY(!more->isMarked());
    const auto status = [](CameraStatus::State state) {
        CameraStatus made;
        made.state = state;
        return made;
    };
    card.setCameraStatus(status(CameraStatus::State::Unplugged));
    card.setFailureUnread(true);
    card.setFailureUnread(false);
    QVERIFY(more->isMarked());
    card.setCameraStatus(status(CameraStatus::State::Showing));
    QVERIFY(!more->isMarked());
    card.setFailureUnread(true);
    QVERIFY(more->isMarked());
}

void CardTest::aCameraHasTimeToBeOpened()
{
    HelperScene scene;
    CommandCard card(&scene.buttons, &scene.parent);
    const ImageButton *more = scene.buttons.of(Command::More);
    const QSignalSpy marks(&card, &CommandCard::marksChanged);
    CameraStatus status;
    card.allowForOpening(std::chrono::hours(1));
    card.setCameraStatus(status);
    QVERIFY(!card.cameraWrong());
    QVERIFY(!more->isMarked());
    // What was found out counts at once.
    status.state = CameraStatus::State::Busy;
    card.setCameraStatus(status);
    QVERIFY(more->isMarked());
    status.state = CameraStatus::State::Waiting;
    card.setCameraStatus(status);
    QVERIFY(!more->isMarked());
    const int before = marks.count();
    card.allowForOpening(std::chrono::milliseconds(20));
    QTRY_VERIFY(more->isMarked());
    QVERIFY(card.cameraWrong());
    QVERIFY(marks.count() > before);
}

REGISTER_TEST(CardTest)
#include "tst_card.moc"
