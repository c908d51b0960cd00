#include "canvas/ImageCanvas.h"
#include "mainwindow/Modes.h"
#include "mainwindow/bars/ThumbnailButton.h"
#include "mainwindow/bars/ThumbnailWidget.h"
#include "sources/PhotographSource.h"
#include "widgets/Slider.h"

#include "tests/TestProgram.h"
#include "tests/mainwindow/WindowKeysTest.h"

#include <QComboBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>

using namespace WindowProbe;

/// The keys of a presenter remote in the main window and its pop-ups.
class PresenterKeysTest : public WindowKeysTest
{
    Q_OBJECT

private slots:
    void noButtonHasTheFocusAtTheStart();
    void aKeyWithoutAnActionDoesNothing_data();
    void aKeyWithoutAnActionDoesNothing();
    void theTabKeyGivesAButtonItsKeys();
    void aUsedSliderThatIsHiddenLeavesNothingBehind_data();
    void aUsedSliderThatIsHiddenLeavesNothingBehind();
    void aThumbnailTakesNoFocusFromAClick();
    void pageDownTurnsThePageWhateverWasUsedLast();
    void repeatsDuringAStepAreDropped();
    void everyPressOfItsOwnIsAStep();
    void escapeClosesAPopUpBeforeFullScreen();
    void aPopUpKeepsItsKeysFromAnOpenText();

private:
    void openFolder();
    QTextEdit *openText();

    QTemporaryDir m_folder;
};

void PresenterKeysTest::openFolder()
{
    for (int i = 0; i < 5; ++i) {
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(m_folder.filePath(QString("%1.png").arg(i))));
    }
    enter(*m_window, 2);
    auto *source = m_window->findChild<PhotographSource *>();
    QVERIFY(source->setDirectory(QDir(m_folder.path()), "0.png"));
}

QTextEdit *PresenterKeysTest::openText()
{
    enter(*m_window, 3);
    m_window->button(Command::Text)->click();
    QTest::mouseClick(m_window->currentCanvas(), Qt::LeftButton, {}, QPoint(200, 350));
    return m_window->currentCanvas()->findChild<QTextEdit *>();
}

void PresenterKeysTest::noButtonHasTheFocusAtTheStart()
{
    QVERIFY(!qobject_cast<QAbstractButton *>(QApplication::focusWidget()));
    m_window->About();
    ToolWindow *popup = m_window->currentToolWindow();
    QVERIFY(becomesActive(popup));
    QVERIFY(!qobject_cast<QAbstractButton *>(QApplication::focusWidget()));
    popup->close();
    m_window->activateWindow();
    QVERIFY(becomesActive(m_window.get()));
    QVERIFY(!qobject_cast<QAbstractButton *>(QApplication::focusWidget()));
}

void PresenterKeysTest::aKeyWithoutAnActionDoesNothing_data()
{
    QTest::addColumn<int>("mode");
    for (int mode = 0; mode < 4; ++mode)
        QTest::newRow(qPrintable(modes()[mode])) << mode;
}

void PresenterKeysTest::aKeyWithoutAnActionDoesNothing()
{
    QFETCH(int, mode);
    if (mode != 0)
        enter(*m_window, mode);
    QSignalSpy changed(m_window.get(), SIGNAL(modeChanged()));
    const auto pressAll = [this, mode] {
        QList<int> keys{Qt::Key_Left, Qt::Key_Right,  Qt::Key_Up,      Qt::Key_Down,
                        Qt::Key_B,    Qt::Key_PageUp, Qt::Key_PageDown};
        // There they freeze and play.
        if (mode > 1)
            keys << Qt::Key_Space;
        for (const int key : qAsConst(keys))
            press(key);
    };
    pressAll();
    QCOMPARE(changed.count(), 0);
    const auto tool = Commands::ofTool(m_window->currentCanvas()->mouseMode());
    QVERIFY(m_window->button(*tool)->isChecked());
    // Nor do arrows press a button that the tabulator key has given the focus.
    press(Qt::Key_Tab);
    QVERIFY(qobject_cast<ImageButton *>(QApplication::focusWidget()));
    for (const int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
        press(key);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_window->currentMode(), mode);
}

void PresenterKeysTest::theTabKeyGivesAButtonItsKeys()
{
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), button(*m_window, "Film"));
    // Also when the window comes back from behind another one.
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(becomesActive(&other));
    m_window->activateWindow();
    QVERIFY(becomesActive(m_window.get()));
    press(Qt::Key_Space);
    QCOMPARE(m_window->currentMode(), 1);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    QCOMPARE(m_window->currentMode(), 2);
}

void PresenterKeysTest::aUsedSliderThatIsHiddenLeavesNothingBehind_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("slider");
    QTest::newRow("volume") << 1 << "Volume" << 0;
    QTest::newRow("interval") << 2 << "Slideshow interval" << 1;
}

void PresenterKeysTest::aUsedSliderThatIsHiddenLeavesNothingBehind()
{
    QFETCH(int, mode);
    QFETCH(QString, name);
    QFETCH(int, slider);
    enter(*m_window, mode);
    ImageButton *shows = button(*m_window, name);
    Slider *used = m_window->findChildren<Slider *>()[slider];
    for (const bool byTheTabKey : {false, true}) {
        QTest::mouseClick(shows, Qt::LeftButton);
        QVERIFY(used->isVisible());
        QTest::mouseClick(used, Qt::LeftButton);
        QVERIFY(!used->hasFocus());
        if (byTheTabKey)
            used->setFocus(Qt::TabFocusReason);
        QTest::mouseClick(shows, Qt::LeftButton);
        QVERIFY(!used->isVisible());
        QVERIFY(!qobject_cast<QAbstractButton *>(QApplication::focusWidget()));
        press(Qt::Key_Space);
        QCOMPARE(m_window->currentMode(), mode);
    }
}

void PresenterKeysTest::aThumbnailTakesNoFocusFromAClick()
{
    openFolder();
    QTest::mouseClick(button(*m_window, "Thumbnails"), Qt::LeftButton);
    QSignalSpy changed(m_window->findChild<PhotographSource *>(), SIGNAL(photographChanged(int)));
    auto *second = m_window->thumbnailWidget()->findChildren<ThumbnailButton *>()[1];
    QTest::mouseClick(second, Qt::LeftButton);
    QCOMPARE(changed.last()[0].toInt(), 1);
    QVERIFY(!second->hasFocus());
    press(Qt::Key_Space);
    QCOMPARE(changed.count(), 1);
    press(Qt::Key_Right);
    QCOMPARE(changed.last()[0].toInt(), 2);
}

void PresenterKeysTest::pageDownTurnsThePageWhateverWasUsedLast()
{
    openFolder();
    QSignalSpy changed(m_window->findChild<PhotographSource *>(), SIGNAL(photographChanged(int)));
    button(*m_window, "Slideshow interval")->click();
    Slider *interval = m_window->findChildren<Slider *>()[1];
    interval->setFocus(Qt::TabFocusReason);
    QVERIFY(interval->hasFocus());
    press(Qt::Key_PageDown);
    QCOMPARE(changed.last()[0].toInt(), 1);
    QCOMPARE(interval->value(), 0);
    press(Qt::Key_Right);
    QCOMPARE(interval->value(), 1);

    m_window->textHold();
    ToolWindow *popup = m_window->currentToolWindow();
    QVERIFY(becomesActive(popup));
    auto *face = popup->findChildren<QComboBox *>()[0];
    face->setFocus(Qt::MouseFocusReason);
    QVERIFY(face->hasFocus());
    press(Qt::Key_PageDown);
    QCOMPARE(changed.last()[0].toInt(), 2);
}

void PresenterKeysTest::repeatsDuringAStepAreDropped()
{
    openFolder();
    QSignalSpy changed(m_window->findChild<PhotographSource *>(), SIGNAL(photographChanged(int)));
    for (int round = 1; round <= 2; ++round) {
        // All of it waits when the first step is done.
        for (int i = 0; i < 10; ++i)
            send(QEvent::KeyPress, Qt::Key_PageDown, 117, round > 1 || i > 0);
        QCOMPARE(changed.count(), round);
        QCoreApplication::processEvents();
    }
}

void PresenterKeysTest::everyPressOfItsOwnIsAStep()
{
    openFolder();
    QSignalSpy changed(m_window->findChild<PhotographSource *>(), SIGNAL(photographChanged(int)));
    for (int i = 1; i <= 4; ++i) {
        send(QEvent::KeyPress, Qt::Key_PageDown, 117);
        send(QEvent::KeyRelease, Qt::Key_PageDown, 117);
        QCOMPARE(changed.count(), i);
    }
}

void PresenterKeysTest::escapeClosesAPopUpBeforeFullScreen()
{
    m_window->toggleFullScreen();
    QVERIFY(m_window->isFullScreen());
    for (const bool inThePopUp : {true, false}) {
        m_window->lineHold();
        ToolWindow *popup = m_window->currentToolWindow();
        QVERIFY(becomesActive(popup));
        if (!inThePopUp) {
            m_window->activateWindow();
            QVERIFY(becomesActive(m_window.get()));
        }
        press(Qt::Key_Escape);
        QVERIFY(!popup->isVisible());
        QVERIFY(m_window->isFullScreen());
        m_window->activateWindow();
        QVERIFY(becomesActive(m_window.get()));
    }
    press(Qt::Key_Escape);
    QVERIFY(!m_window->isFullScreen());
}

void PresenterKeysTest::aPopUpKeepsItsKeysFromAnOpenText()
{
    QTextEdit *text = openText();
    QVERIFY(text && text->isVisible());
    m_window->textHold();
    ToolWindow *popup = m_window->currentToolWindow();
    QVERIFY(becomesActive(popup));
    const auto focusedButton = [] {
        return qobject_cast<ImageButton *>(QApplication::focusWidget());
    };
    press(Qt::Key_Tab);
    QVERIFY(focusedButton() && focusedButton()->window() == popup);
    // On by way of the boxes to the first colour.
    for (int i = 0; i < 10 && !(focusedButton() && focusedButton()->isCheckable()); ++i)
        press(Qt::Key_Tab);
    ImageButton *first = focusedButton();
    QVERIFY(first && first->isCheckable());
    press(Qt::Key_Tab);
    ImageButton *second = focusedButton();
    QVERIFY(second && second != first && !second->isChecked());
    press(Qt::Key_Return);
    QVERIFY(second->isChecked());
    first->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    QVERIFY(first->isChecked());
    QVERIFY(text->isVisible());
    QVERIFY(text->toPlainText().isEmpty());

    press(Qt::Key_Escape);
    QVERIFY(!popup->isVisible());
    QVERIFY(text->isVisible());
}

REGISTER_TEST(PresenterKeysTest)
#include "tst_presenter_keys.moc"
