#include "tests/TestProgram.h"
#include "tests/mainwindow/ThumbnailTest.h"

class ThumbnailStripTest : public ThumbnailTest
{
    Q_OBJECT

private slots:
    void threePicturesStandInTheMiddle()
    {
        open(3);
        QCOMPARE(shownX(), QVector<int>({151, 217, 283}));
        for (const ThumbnailButton *button : shown())
            QCOMPARE(button->size(), QSize(56, 50));
        QCOMPARE(shown().first()->y(), 5);
        QCOMPARE(m_slider->minimum(), 0);
        QCOMPARE(m_slider->maximum(), 0);
    }

    void everyThumbnailSaysTheNameOfItsFile()
    {
        open(3);
        const QStringList paths = m_source->fileNameList();
        const auto buttons = m_strip->findChildren<ThumbnailButton *>();
        QCOMPARE(buttons.size(), paths.size());
        for (int i = 0; i < paths.size(); ++i) {
            const QString name = QFileInfo(paths[i]).fileName();
            QCOMPARE(buttons[i]->accessibleName(), name);
            QCOMPARE(buttons[i]->toolTip(), name);
        }
    }

    void selectingAFarPictureScrollsItToTheRightEdge()
    {
        open(20);
        QCOMPARE(shown().size(), 6);
        QCOMPARE(m_slider->maximum(), 14);
        m_source->selectPhotograph(10);
        QCOMPARE(m_slider->value(), 5);
        QCOMPARE(shown(), buttons().mid(5, 6));
        QVERIFY(buttons().at(10)->isChecked());
        QVERIFY(!buttons().at(0)->isChecked());
    }

    void selectingAPictureOnTheLeftMakesItTheLeftmost()
    {
        open(20);
        m_source->selectPhotograph(15);
        m_source->selectPhotograph(3);
        QCOMPARE(m_slider->value(), 3);
        QCOMPARE(shown().first(), buttons().at(3));
    }

    void aStripTooNarrowShowsNoButtons()
    {
        resizeTo(155);
        open(20);
        QVERIFY(shown().isEmpty());
    }

    void aClickShowsThePictureAndMarksIt()
    {
        open(5);
        const int before = m_receiver.pictures;
        buttons().at(2)->click();
        QCOMPARE(m_receiver.pictures, before + 1);
        QVERIFY(buttons().at(2)->isChecked());
    }

    void theSliderScrollsTheStrip()
    {
        open(20);
        emit m_slider->valueChanged(7);
        QCOMPARE(shown().first(), buttons().at(7));
        // A range of an older, longer folder must not lead outside the list.
        emit m_slider->valueChanged(99);
        QCOMPARE(shown(), buttons().mid(14, 6));
        emit m_slider->valueChanged(-3);
        QCOMPARE(shown().first(), buttons().at(0));
    }

    void aShorterFolderAfterScrollingFarShowsItsOwnPictures()
    {
        open(20);
        m_source->selectPhotograph(19);
        open(3);
        QCOMPARE(shown(), buttons());
    }

    void wideningAfterScrollingToTheEndStaysInTheList()
    {
        open(20);
        m_source->selectPhotograph(19);
        resizeTo(1400);
        QCOMPARE(shown().last(), buttons().last());
        QCOMPARE(shown().size(), 19);
    }

    void shrinkingFromMaximisedStillShowsTheButtonsThatFit()
    {
        open(3);
        resizeTo(1800);
        resizeTo(607);
        QCOMPARE(shown().size(), 3);
    }

    void aPictureOutsideTheListIsIgnored()
    {
        open(3);
        m_strip->photographChanged(-1);
        m_strip->photographChanged(3);
        QCOMPARE(shown().size(), 3);
    }

    void aThumbnailIsPaintedInTheMiddleOfItsButton()
    {
        ThumbnailButton button(nullptr);
        button.setFixedSize(56, 50);
        QCOMPARE(QColor(button.grab().toImage().pixel(28, 25)), QColor(Qt::black));
        QImage image(56, 42, QImage::Format_RGB32);
        image.fill(Qt::green);
        button.setImage(image);
        const QImage grabbed = button.grab().toImage();
        QCOMPARE(QColor(grabbed.pixel(28, 25)), QColor(Qt::green));
        QCOMPARE(QColor(grabbed.pixel(28, 5)), QColor(Qt::green));
        QCOMPARE(QColor(grabbed.pixel(28, 3)), QColor(Qt::black));
    }

    void theFrameIsGrayWhiteUnderThePointerAndRedWhenChosen()
    {
        ThumbnailButton button(nullptr);
        button.setFixedSize(56, 50);
        const auto frame = [&button] { return QColor(button.grab().toImage().pixel(1, 25)); };
        // The line inside tells the chosen one without its colour.
        const auto insideIsWhite = [&button] {
            const QImage shown = button.grab().toImage();
            const QRgb white = qRgb(255, 255, 255);
            return shown.pixel(2, 25) == white && shown.pixel(53, 25) == white &&
                   shown.pixel(28, 2) == white && shown.pixel(28, 47) == white;
        };
        QCOMPARE(frame(), QColor(Qt::gray));
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(&button, &enter);
        QCOMPARE(frame(), QColor(Qt::white));
        QVERIFY(!insideIsWhite());
        button.setChecked(true);
        QCOMPARE(frame(), QColor(Qt::red));
        QVERIFY(insideIsWhite());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &leave);
        button.setChecked(false);
        QCOMPARE(frame(), QColor(Qt::gray));
        button.setDown(true);
        QCOMPARE(frame(), QColor(Qt::red));
    }

    void aSmallerFolderBringsTheScrollBarBack()
    {
        open(20);
        m_source->selectPhotograph(19);
        QCOMPARE(m_slider->value(), 14);
        for (const int count : {8, 3}) {
            {
                // As in the program, the strip is filled before the photograph is shown.
                const QSignalBlocker notYet(m_source.get());
                open(count);
            }
            QVERIFY(m_slider->value() <= m_slider->maximum());
            m_strip->photographChanged(0);
            QCOMPARE(m_slider->value(), 0);
        }
        QCOMPARE(shown(), buttons());
    }

    void pressesBesideTheButtonsDoNotReachTheCanvas()
    {
        QVERIFY(m_strip->testAttribute(Qt::WA_NoMousePropagation));
    }

    void itsGroundIsStretchedToTheStrip()
    {
        resizeTo(500);
        const QImage grabbed = m_strip->grab().toImage();
        QCOMPARE(grabbed.width(), 500);
        QVERIFY(qAlpha(grabbed.pixel(250, 30)) > 0);
    }

private:
    QVector<int> shownX() const
    {
        QVector<int> result;
        for (const ThumbnailButton *button : shown())
            result.append(button->x());
        return result;
    }
};

REGISTER_TEST(ThumbnailStripTest)
#include "tst_thumbnail_strip.moc"
