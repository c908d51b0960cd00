#include "tests/widgets/PopupTest.h"
#include "widgets/TextToolWindow.h"

#include "tests/TestProgram.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>

namespace
{

QComboBox *faceBox(const QWidget &popup)
{
    return popup.findChildren<QComboBox *>()[0];
}

QComboBox *sizeBox(const QWidget &popup)
{
    return popup.findChildren<QComboBox *>()[1];
}

} // namespace

class TextToolWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void everythingStandsInItsPlace();
    void openingChangesNothing();
    void showsTheCanvasSettings();
    void choosingAFaceReachesTheCanvas();
    void choosingASizeReachesTheCanvas();
    void typingSetsTheSizeAtEveryNumber();
    void aSizeThatIsNotListedIsNotSelected();
    void everySizeCanBeTyped();
    void whatIsNoSizeDoesNotStay();
    void aSizeThatIsNotListedIsShown();
    void aFaceThatIsNotListedLeavesTheBox();
    void theFirstFaceIsShownAsWhatItResolvesTo();
    void everyColorReachesTheCanvas();
    void anUnknownColorLeavesTheButtons();
    void readingTheCanvasAgainWritesNothing();
};

void TextToolWindowTest::everythingStandsInItsPlace()
{
    PopupScene scene;
    const TextToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(popup.size(), QSize(292, 70));
    QCOMPARE(faceBox(popup)->geometry(), QRect(10, 20, 150, 22));
    QCOMPARE(sizeBox(popup)->geometry(), QRect(165, 20, 70, 22));
    QVERIFY(sizeBox(popup)->isEditable());
    QVERIFY(!faceBox(popup)->isEditable());
    QCOMPARE(Popup::lefts(popup, 43), (QList<int>{130, 163, 196, 229}));
    QStringList labels;
    for (const QLabel *label : popup.findChildren<QLabel *>())
        labels << QString("%1 %2,%3").arg(label->text()).arg(label->x()).arg(label->y());
    QCOMPARE(labels, (QStringList{"Text 8,2", "Color 8,45"}));

    QStringList faces;
    for (int i = 0; i < faceBox(popup)->count(); ++i)
        faces << faceBox(popup)->itemText(i);
    QCOMPARE(faces, QFontDatabase().families());
    QCOMPARE(sizeBox(popup)->count(), QFontDatabase::standardSizes().size());
    QCOMPARE(sizeBox(popup)->itemText(0), QString::number(QFontDatabase::standardSizes().first()));
}

void TextToolWindowTest::openingChangesNothing()
{
    PopupScene scene;
    scene.canvas.setFontSize(13);
    scene.canvas.setFontFace("No such face");
    scene.canvas.setTextColor(QColor(1, 2, 3));
    const TextToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(scene.canvas.fontSize(), 13);
    QCOMPARE(scene.canvas.fontFace(), QString("No such face"));
    QCOMPARE(scene.canvas.textColor(), QColor(1, 2, 3));
}

void TextToolWindowTest::showsTheCanvasSettings()
{
    PopupScene scene;
    const QString face = QFontDatabase().families().last();
    scene.canvas.setFontSize(24);
    scene.canvas.setFontFace(face);
    scene.canvas.setTextColor(QColor(0, 0, 255));
    const TextToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(sizeBox(popup)->currentText(), QString("24"));
    QCOMPARE(faceBox(popup)->currentText(), face);
    QCOMPARE(Popup::checked(popup, 43), 3);
}

void TextToolWindowTest::choosingAFaceReachesTheCanvas()
{
    PopupScene scene;
    const TextToolWindow popup(&scene.toolButton, &scene.window);
    const int last = faceBox(popup)->count() - 1;
    faceBox(popup)->setCurrentIndex(last);
    emit faceBox(popup)->activated(last);
    QCOMPARE(scene.canvas.fontFace(), QFontDatabase().families().last());
}

void TextToolWindowTest::choosingASizeReachesTheCanvas()
{
    PopupScene scene;
    const TextToolWindow popup(&scene.toolButton, &scene.window);
    sizeBox(popup)->setCurrentIndex(2);
    QCOMPARE(scene.canvas.fontSize(), QFontDatabase::standardSizes()[2]);
}

void TextToolWindowTest::typingSetsTheSizeAtEveryNumber()
{
    PopupScene scene;
    TextToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    QLineEdit *edit = sizeBox(popup)->lineEdit();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, '1');
    QCOMPARE(scene.canvas.fontSize(), 1);
    QTest::keyClick(edit, '4');
    QCOMPARE(scene.canvas.fontSize(), 14);
    QTest::keyClick(edit, 'x');
    QCOMPARE(scene.canvas.fontSize(), 14);
    edit->clear();
    QCOMPARE(scene.canvas.fontSize(), 14);
}

void TextToolWindowTest::aSizeThatIsNotListedIsNotSelected()
{
    PopupScene scene;
    TextToolWindow popup(&scene.toolButton, &scene.window);
    sizeBox(popup)->setEditText("37");
    QCOMPARE(scene.canvas.fontSize(), 37);
    sizeBox(popup)->setCurrentIndex(1);
    const int before = sizeBox(popup)->currentIndex();
    scene.canvas.setFontSize(37);
    popup.modeChanged();
    QCOMPARE(sizeBox(popup)->currentIndex(), before);
    QCOMPARE(scene.canvas.fontSize(), 37);
}

void TextToolWindowTest::everySizeCanBeTyped()
{
    PopupScene scene;
    TextToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    QLineEdit *edit = sizeBox(popup)->lineEdit();
    // As a user sees it: the box completes what is typed as soon as it has the focus.
    popup.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&popup));
    edit->setFocus();
    for (int size = 1; size <= 30; ++size) {
        edit->selectAll();
        QTest::keyClicks(edit, QString::number(size));
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(scene.canvas.fontSize(), size);
        QCOMPARE(edit->text(), QString::number(size));
    }
}

void TextToolWindowTest::whatIsNoSizeDoesNotStay()
{
    PopupScene scene;
    scene.canvas.setFontSize(13);
    TextToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    const int entries = sizeBox(popup)->count();
    QLineEdit *edit = sizeBox(popup)->lineEdit();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, "abc");
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(sizeBox(popup)->count(), entries);
    QCOMPARE(scene.canvas.fontSize(), 13);
    QCOMPARE(edit->text(), QString("13"));
}

void TextToolWindowTest::aSizeThatIsNotListedIsShown()
{
    PopupScene scene;
    scene.canvas.setFontSize(13);
    TextToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(sizeBox(popup)->currentText(), QString("13"));
    scene.canvas.setFontSize(24);
    popup.modeChanged();
    QCOMPARE(sizeBox(popup)->currentText(), QString("24"));
    scene.canvas.setFontSize(25);
    popup.modeChanged();
    QCOMPARE(sizeBox(popup)->currentText(), QString("25"));
    QCOMPARE(scene.canvas.fontSize(), 25);
}

void TextToolWindowTest::aFaceThatIsNotListedLeavesTheBox()
{
    PopupScene scene;
    TextToolWindow popup(&scene.toolButton, &scene.window);
    faceBox(popup)->setCurrentIndex(1);
    scene.canvas.setFontFace("No such face");
    popup.modeChanged();
    QCOMPARE(faceBox(popup)->currentIndex(), 1);
}

void TextToolWindowTest::theFirstFaceIsShownAsWhatItResolvesTo()
{
    PopupScene scene;
    QCOMPARE(scene.canvas.fontFace(), QString("Arial"));
    const TextToolWindow popup(&scene.toolButton, &scene.window);
    QCOMPARE(faceBox(popup)->currentText(), QFontInfo(QFont("Arial")).family());
    QCOMPARE(scene.canvas.fontFace(), QString("Arial"));
}

void TextToolWindowTest::everyColorReachesTheCanvas()
{
    PopupScene scene;
    TextToolWindow popup(&scene.toolButton, &scene.window);
    popup.show();
    const QRgb colors[] = {0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFF0000FF};
    for (const int i : {3, 2, 1, 0}) {
        QTest::mouseClick(Popup::row(popup, 43)[i], Qt::LeftButton);
        QCOMPARE(scene.canvas.textColor().rgba(), colors[i]);
    }
}

void TextToolWindowTest::anUnknownColorLeavesTheButtons()
{
    PopupScene scene;
    scene.canvas.setTextColor(QColor(255, 255, 0));
    TextToolWindow popup(&scene.toolButton, &scene.window);
    scene.canvas.setTextColor(QColor(1, 2, 3));
    popup.modeChanged();
    QCOMPARE(Popup::checked(popup, 43), 2);
}

void TextToolWindowTest::readingTheCanvasAgainWritesNothing()
{
    PopupScene scene;
    const TextToolWindow popup(&scene.toolButton, &scene.window);
    ImageCanvas other(&scene.window);
    other.setFontSize(48);
    scene.window.canvas = &other;
    emit scene.window.modeChanged();
    QCOMPARE(sizeBox(popup)->currentText(), QString("48"));
    QCOMPARE(other.fontSize(), 48);
    QCOMPARE(scene.canvas.fontSize(), 18);
}

REGISTER_TEST(TextToolWindowTest)
#include "tst_text_tool_window.moc"
