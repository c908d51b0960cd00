#include "resources/SkinStyle.h"
#include "tests/TestProgram.h"
#include "tests/widgets/Contrast.h"
#include "widgets/FolderField.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"

#include <QComboBox>
#include <QFontInfo>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QStyleOption>
#include <QTest>

namespace
{

QImage polished(QWidget &widget)
{
    widget.ensurePolished();
    return widget.grab().toImage();
}

} // namespace

class DarkMaterialTest : public QObject
{
    Q_OBJECT

private slots:
    void fieldsAreFlatAndDarkWhateverTheTheme();
    void theColoursCanBeRead();
    void tipsHaveTheEdgeOfThePopUps();
    void dialogButtonsHaveNoIcons();
    void noDialogIsWrittenLikeATerminal();
    void aPathIsCutAtItsBeginning();
    void aDoubleClickAsksForAnotherFolder();
    void aTipNamesTheKey();
};

void DarkMaterialTest::fieldsAreFlatAndDarkWhateverTheTheme()
{
    for (const QColor &theme : {QColor(Qt::white), QColor(Qt::black)}) {
        QApplication::setPalette(QPalette(theme));
        QComboBox box;
        box.addItem(QString());
        FormControls::applyLook(&box);
        box.setFixedWidth(120);
        const QImage image = polished(box);
        QApplication::setPalette(QPalette());
        QCOMPARE(image.pixelColor(60, 0), QColor(0x4A525C));
        for (int y = 2; y < image.height() - 2; ++y)
            QCOMPARE(image.pixelColor(60, y), QColor(0x22262B));
    }
}

void DarkMaterialTest::theColoursCanBeRead()
{
    const QPalette palette = SkinStyle::darkPalette();
    QVERIFY(Contrast::of(palette.color(QPalette::Text), palette.color(QPalette::Base)) >= 4.5);
    QVERIFY(Contrast::of(palette.color(QPalette::WindowText), palette.color(QPalette::Window)) >=
            4.5);
    QVERIFY(Contrast::of(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)) >=
            4.5);
    QVERIFY(Contrast::of(palette.color(QPalette::HighlightedText),
                         palette.color(QPalette::Highlight)) >= 4.5);
    QVERIFY(Contrast::of(palette.color(QPalette::Link), palette.color(QPalette::Window)) >= 4.5);
    QVERIFY(Contrast::of(palette.color(QPalette::Disabled, QPalette::Text),
                         palette.color(QPalette::Base)) >= 4.5);
}

void DarkMaterialTest::tipsHaveTheEdgeOfThePopUps()
{
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOption option;
    option.rect = image.rect();
    const SkinStyle style;
    style.drawPrimitive(QStyle::PE_PanelTipLabel, &option, &painter);
    painter.end();
    QCOMPARE(image.pixelColor(0, 0), QColor(0x4A525C));
    QCOMPARE(image.pixelColor(39, 19), QColor(0x4A525C));
    QCOMPARE(image.pixelColor(1, 1), QColor(0x15181B));
}

void DarkMaterialTest::dialogButtonsHaveNoIcons()
{
    QCOMPARE(SkinStyle().styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons), 0);
}

void DarkMaterialTest::noDialogIsWrittenLikeATerminal()
{
    QFont font("Liberation Mono", 11);
    QVERIFY(QFontInfo(font).fixedPitch());
    QVERIFY(!QFontInfo(SkinStyle::proportional(font)).fixedPitch());
    QCOMPARE(SkinStyle::proportional(font).pointSize(), 11);
    font.setFamily("Liberation Serif");
    QCOMPARE(SkinStyle::proportional(font), font);
}

void DarkMaterialTest::aPathIsCutAtItsBeginning()
{
    const QString end = "/lessons/chemistry/second-year/pictures";
    const auto imageOf = [](const QString &path) {
        FolderField field(path, nullptr);
        FormControls::applyLook(&field);
        field.setFixedWidth(132);
        return polished(field);
    };
    QCOMPARE(imageOf("/home/a" + end), imageOf("/home/b/c" + end));
    QVERIFY(imageOf("/home/a" + end) != imageOf("/home/a" + end + "s"));
    FolderField field("/home/a" + end, nullptr);
    QCOMPARE(field.text(), "/home/a" + end);
    QVERIFY(field.isReadOnly());
}

void DarkMaterialTest::aDoubleClickAsksForAnotherFolder()
{
    FolderField field("/home", nullptr);
    const QSignalSpy wanted(&field, &FolderField::browseWanted);
    QTest::mouseClick(&field, Qt::LeftButton);
    QCOMPARE(wanted.count(), 0);
    QTest::mouseDClick(&field, Qt::LeftButton);
    QCOMPARE(wanted.count(), 1);
}

void DarkMaterialTest::aTipNamesTheKey()
{
    ImageButton button("ICON_CAPTURE", "Take snapshot", nullptr, 0, 0);
    QCOMPARE(button.tip(), QString("Take snapshot"));
    button.setKey(Qt::CTRL + Qt::Key_S);
    QCOMPARE(button.tip(), QString("Take snapshot (Ctrl+S)"));
    QCOMPARE(button.toolTip(), QString("Take snapshot"));

    ImageButton named("ICON_CAPTURE", nullptr, 0, 0);
    named.setAccessibleName("Take snapshot");
    QCOMPARE(named.tip(), QString("Take snapshot"));
    // A caption says it already.
    named.setText("Take snapshot");
    QCOMPARE(named.tip(), QString());
    named.setKey(Qt::CTRL + Qt::Key_S);
    QCOMPARE(named.tip(), QString("Take snapshot (Ctrl+S)"));
}

REGISTER_TEST(DarkMaterialTest)
#include "tst_dark_material.moc"
