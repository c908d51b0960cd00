#include "tests/TestProgram.h"

#include <QImage>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

// What a developer looks at when an image or a widget is changed.
class GalleryTest : public QObject
{
    Q_OBJECT

private slots:
    void theSheetHasEveryImageOnItsGround();
    void aTableThatCannotBeReadIsAnError();
    void everyWidgetIsOnThePage();
    void eachModeHasButtonsOfItsOwn();

private:
    bool run(const QStringList &arguments);
    QImage saved(const QStringList &arguments);

    QTemporaryDir m_folder;
    QByteArray m_errors;
};

namespace
{

constexpr int TIMEOUT = 60000;
const QRgb PANEL = 0xFF2B3036;

int pixelsOf(const QImage &image, QRgb colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += (image.pixel(x, y) | 0xFF000000) == colour ? 1 : 0;
    }
    return count;
}

int coloursOf(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    }
    return colours.size();
}

} // namespace

bool GalleryTest::run(const QStringList &arguments)
{
    QProcess gallery;
    gallery.start(GALLERY, arguments);
    const bool ended = gallery.waitForFinished(TIMEOUT);
    m_errors = gallery.readAllStandardError();
    return ended && gallery.exitStatus() == QProcess::NormalExit && gallery.exitCode() == 0;
}

QImage GalleryTest::saved(const QStringList &arguments)
{
    const QString path = m_folder.filePath("saved.png");
    QFile::remove(path);
    return run(arguments + QStringList{"--save", path}) ? QImage(path) : QImage();
}

void GalleryTest::theSheetHasEveryImageOnItsGround()
{
    const QString path = m_folder.filePath("sheet.png"), few = m_folder.filePath("few.ini"),
                  small = m_folder.filePath("small.png");
    QVERIFY2(run({"--contact-sheet", path, "--table", SKIN_TABLE}), m_errors.constData());
    const QImage sheet(path);
    QCOMPARE(sheet.width(), 1440);
    QVERIFY(pixelsOf(sheet, PANEL) > 100000);

    // Two names of one kind in three states, and one for itself: half as many take less room.
    QFile table(few);
    QVERIFY(table.open(QIODevice::WriteOnly));
    table.write("[states]\nICON_LINE = 65x47 panel\nICON_ARROW = 65x47 panel\n");
    table.close();
    QVERIFY2(run({"--contact-sheet", small, "--table", few}), m_errors.constData());
    const QImage two(small);
    QCOMPARE(two.width(), 1440);
    QVERIFY(two.height() > 47 && two.height() < sheet.height() / 4);
    QVERIFY(pixelsOf(two, PANEL) > 2 * 65 * 3);
    QVERIFY(coloursOf(two) > 20);
}

void GalleryTest::aTableThatCannotBeReadIsAnError()
{
    const QString path = m_folder.filePath("sheet.png");
    QVERIFY(!run({"--contact-sheet", path, "--table", m_folder.filePath("none.ini")}));
    QVERIFY2(m_errors.contains("none.ini"), m_errors.constData());
    QVERIFY(!run({"--contact-sheet", m_folder.filePath("no/where.png"), "--table", SKIN_TABLE}));
    QVERIFY2(m_errors.contains("cannot write"), m_errors.constData());
}

void GalleryTest::everyWidgetIsOnThePage()
{
    const QImage page = saved({"--widgets"});
    QVERIFY2(page.width() > 400 && page.height() > 300, m_errors.constData());
    // Buttons, sliders and windows: no plain ground.
    QVERIFY(coloursOf(page) > 200);
}

void GalleryTest::eachModeHasButtonsOfItsOwn()
{
    const QString photograph = m_folder.filePath("red.png");
    QImage red(64, 48, QImage::Format_RGB32);
    red.fill(0xFFFF0000);
    QVERIFY(red.save(photograph));
    const QImage live = saved({"--picture", photograph});
    QVERIFY2(live.width() >= 800, m_errors.constData());
    QVERIFY(pixelsOf(live, 0xFFFF0000) > live.width() * live.height() / 10);
    const QImage film = saved({"--mode", "film", "--picture", photograph});
    const QImage photographs = saved({"--mode", "photograph", "--picture", photograph});
    QCOMPARE(film.size(), live.size());
    QVERIFY(film != live && film != photographs && photographs != live);
}

REGISTER_CORE_TEST(GalleryTest)
#include "tst_gallery.moc"
