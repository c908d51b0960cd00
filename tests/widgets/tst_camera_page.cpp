#include "widgets/CameraAdvice.h"
#include "widgets/CameraPage.h"
#include "widgets/ImageButton.h"
#include "widgets/StatusSign.h"

#include "tests/TestProgram.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QtTest>

using State = CameraStatus::State;

namespace
{

CameraStatus statusOf(State state)
{
    CameraStatus status;
    status.state = state;
    status.size = {1280, 720};
    status.framesPerSecond = 29.97;
    status.framesLost = 7;
    return status;
}

constexpr State STATES[] = {State::Waiting,   State::Seen,       State::Showing,
                            State::Unplugged, State::Busy,       State::NoPermission,
                            State::NotOpened, State::NoSuchSize, State::Silent};

} // namespace

class CameraPageTest : public QObject
{
    Q_OBJECT

private slots:
    void everyStateHasASentenceOfItsOwn()
    {
        QStringList sentences;
        for (const State state : STATES)
            sentences.append(CameraAdvice::of(statusOf(state)).sentence);
        QVERIFY(!sentences.contains(QString()));
        QCOMPARE(sentences.removeDuplicates(), 0);
        QVERIFY2(!sentences.join(' ').contains('%'), qPrintable(sentences.join('\n')));
    }

    void whateverIsWrongHasARemedyAndNothingElse()
    {
        for (const State state : STATES) {
            const CameraStatus status = statusOf(state);
            QCOMPARE(CameraAdvice::of(status).remedy.isEmpty(), !status.wrong());
        }
    }

    void theSignTellsByItsShape()
    {
        CameraPage page;
        const auto *sign = page.findChild<StatusSign *>();
        // Without colours, as bits: fine, waiting and wrong differ.
        QVector<QImage> looks;
        for (const State state : {State::Showing, State::Seen, State::Busy}) {
            page.setStatus(statusOf(state));
            QPixmap picture(sign->size());
            picture.fill(QColor(0x15181B));
            page.findChild<StatusSign *>()->render(&picture, {}, {}, QWidget::DrawChildren);
            looks << picture.toImage().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
        }
        QVERIFY(looks[0] != looks[1] && looks[1] != looks[2] && looks[0] != looks[2]);
        for (const State state : STATES) {
            page.setStatus(statusOf(state));
            QCOMPARE(sign->look() == StatusSign::Look::Wrong, statusOf(state).wrong());
        }
    }

    void whatIsShownIsToldInNumbers()
    {
        CameraPage page;
        page.setStatus(statusOf(State::Showing));
        QCOMPARE(page.sentence(),
                 QString("The camera shows 1280 x 720 at 30.0 pictures a second. Lost: 7."));
        page.setStatus(statusOf(State::NoSuchSize));
        QCOMPARE(page.sentence(), QString("The camera has no pictures of 1280 x 720."));
    }

    void aChosenCameraThatIsAwayIsCalledSo()
    {
        for (const State state : {State::Waiting, State::Unplugged}) {
            CameraStatus status = statusOf(state);
            status.chosen = true;
            const CameraAdvice advice = CameraAdvice::of(status);
            QCOMPARE(advice.sentence, QString("The chosen camera is not plugged in."));
            QVERIFY(advice.remedy.contains("choose another"));
        }
        CameraStatus there = statusOf(State::Busy);
        there.chosen = true;
        QCOMPARE(CameraAdvice::of(there).sentence,
                 CameraAdvice::of(statusOf(State::Busy)).sentence);
    }

    void anotherSizeThanTheWantedOneIsExplained()
    {
        CameraStatus status = statusOf(State::Showing);
        status.wantedSize = status.size;
        QVERIFY(CameraAdvice::of(status).remedy.isEmpty());
        status.wantedSize = {1920, 1080};
        QVERIFY(CameraAdvice::of(status).remedy.contains("no pictures of 1920 x 1080"));
        QVERIFY(!status.wrong());
    }

    void withoutACameraItSaysWhatToDo()
    {
        CameraPage page;
        page.resize(300, 260);
        page.show();
        QCOMPARE(page.sentence(), QString("No camera is plugged in."));
        const auto labels = page.findChildren<QLabel *>();
        QCOMPARE(labels.size(), 2);
        QVERIFY(labels[1]->isVisible());
        QVERIFY(labels[1]->text().startsWith("Plug the document camera"));
        QVERIFY(!page.findChild<QPlainTextEdit *>()->isVisible());
        QVERIFY(!page.findChild<ImageButton *>()->isVisible());
    }

    void theTwoCommandsForThePermissionAreCopied()
    {
        CameraPage page;
        page.resize(300, 260);
        page.show();
        CameraStatus status = statusOf(State::NoPermission);
        status.vendorId = 0x1bcf;
        status.productId = 0x0002;
        page.setStatus(status);
        auto *copy = page.findChild<ImageButton *>();
        QVERIFY(copy->isVisible());
        QTest::mouseClick(copy, Qt::LeftButton);
        const QStringList lines = QApplication::clipboard()->text().split('\n');
        QCOMPARE(lines.size(), 3); // the last one is empty, so that a terminal takes the second
        QVERIFY(lines[0].contains("ATTR{idVendor}==\"1bcf\", ATTR{idProduct}==\"0002\""));
        QVERIFY(lines[1].contains("udevadm control --reload"));
        page.setStatus(statusOf(State::Showing));
        QVERIFY(!copy->isVisible());
        QVERIFY(page.findChild<QPlainTextEdit *>()->toPlainText().isEmpty());
    }
};

REGISTER_TEST(CameraPageTest)
#include "tst_camera_page.moc"
