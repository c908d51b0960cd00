#include "resources/SkinImages.h"
#include "tests/TestProgram.h"
#include "widgets/ImageButton.h"
#include "widgets/Panel.h"

#include <QGridLayout>
#include <QPainter>
#include <QtTest>

class PanelTest : public QObject
{
    Q_OBJECT

private slots:
    void isAsWideAsItsBackground();
    void paintsThreePieces();
    void lowerThanItsEndsIsHarmless();
    void placesTwoButtonsToARow();
    void everyRowFitsTheLowestWindow();
    void adoptsButtonsWithoutAParent();
    void titleTogglesItsGroupOnly();
    void emptyGroupOnlyClosesItsTitle();
    void disabledMembersStayHidden();
    void groupWithoutEnabledMembersCloses();
    void adjustingShowsCollapsedMembersAndOpensTheTitle();
    void adjustingHidesDisabledButtons();
    void strangersDoNotToggle();
};

namespace
{

ImageButton *add(Panel &panel, const QString &name = "ICON_LINE")
{
    auto *button = new ImageButton(name, "tip", &panel, 0, 0);
    panel.addButton(button);
    return button;
}

QList<ImageButton *> titles(const Panel &panel)
{
    QList<ImageButton *> found;
    for (ImageButton *button : panel.findChildren<ImageButton *>()) {
        if (!button->text().isEmpty())
            found << button;
    }
    return found;
}

bool looksLike(ImageButton *title, const QString &name)
{
    title->setText(QString());
    QImage shown(title->size(), QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::transparent);
    title->render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
    title->setText("title");
    const QImage image(":/icons/Normal/" + name + ".png");
    return shown == image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

void PanelTest::isAsWideAsItsBackground()
{
    const Panel panel(nullptr);
    QCOMPARE(panel.minimumWidth(), 134);
    QCOMPARE(panel.maximumWidth(), 134);
    QCOMPARE(panel.QWidget::layout()->contentsMargins(), QMargins(0, 5, 4, 5));
    QCOMPARE(panel.QWidget::layout()->spacing(), 0);
}

void PanelTest::paintsThreePieces()
{
    Panel panel(nullptr);
    panel.resize(134, 668);
    panel.grab();
    QImage shown(134, 668, QImage::Format_RGB32);
    shown.fill(Qt::magenta);
    panel.render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
    QImage wanted(134, 668, QImage::Format_RGB32);
    wanted.fill(Qt::magenta);
    const QImage top(":/icons/Background_Sub/ICON_BK_TOP.png");
    const QImage middle(":/icons/Background_Sub/ICON_BK_MID.png");
    const QImage bottom(":/icons/Background_Sub/ICON_BK_BOT.png");
    QPainter painter(&wanted);
    painter.drawImage(0, 0, top);
    painter.drawImage(0, top.height(),
                      middle.scaled(134, 668 - top.height() - bottom.height(),
                                    Qt::IgnoreAspectRatio, Qt::FastTransformation));
    painter.drawImage(0, 668 - bottom.height(), bottom);
    painter.end();
    QCOMPARE(shown, wanted);
}

void PanelTest::lowerThanItsEndsIsHarmless()
{
    Panel panel(nullptr);
    for (const int height : {0, 1, 20, 21, 22}) {
        panel.resize(134, height);
        panel.grab();
    }
    QCOMPARE(panel.height(), 22);
}

void PanelTest::placesTwoButtonsToARow()
{
    Panel panel(nullptr);
    panel.addGroup("one");
    ImageButton *a = add(panel);
    ImageButton *b = add(panel);
    ImageButton *c = add(panel);
    panel.addGroup("two");
    panel.addGroup("three");
    ImageButton *d = add(panel);
    panel.finishAdding();
    panel.resize(134, 668);
    panel.grab();
    QCOMPARE(titles(panel)[0]->geometry(), QRect(0, 5, 130, 22));
    QCOMPARE(a->geometry(), QRect(0, 27, 65, 47));
    QCOMPARE(b->geometry(), QRect(65, 27, 65, 47));
    QCOMPARE(c->geometry(), QRect(0, 74, 65, 47));
    // A title after an odd number of buttons starts a fresh row, one after a title the next.
    QCOMPARE(titles(panel)[1]->geometry(), QRect(0, 121, 130, 22));
    QCOMPARE(titles(panel)[2]->geometry(), QRect(0, 143, 130, 22));
    QCOMPARE(d->geometry(), QRect(0, 165, 65, 47));
    QCOMPARE(titles(panel)[0]->font().family(), QString("Arial"));
    QCOMPARE(titles(panel)[0]->font().pointSize(), 10);
}

void PanelTest::everyRowFitsTheLowestWindow()
{
    Panel panel(nullptr);
    ImageButton *last = nullptr;
    for (const int buttons : {10, 2, 8, 4}) {
        panel.addGroup("group");
        for (int i = 0; i < buttons; ++i)
            last = add(panel);
    }
    panel.finishAdding();
    panel.resize(134, 768 - 100);
    panel.grab();
    QCOMPARE(last->geometry(), QRect(65, 5 + 11 * 47 + 4 * 22, 65, 47));
    QVERIFY(last->geometry().bottom() < 668 - 5);
}

void PanelTest::adoptsButtonsWithoutAParent()
{
    Panel panel(nullptr);
    ImageButton *button = add(panel);
    QCOMPARE(button->parentWidget(), &panel);
    QVERIFY(!button->isHidden());
    QVERIFY(!button->isVisible());
}

void PanelTest::titleTogglesItsGroupOnly()
{
    Panel panel(nullptr);
    panel.addGroup("one");
    ImageButton *a = add(panel);
    ImageButton *b = add(panel);
    panel.addGroup("two");
    ImageButton *c = add(panel);
    panel.finishAdding();
    const QList<ImageButton *> heads = titles(panel);
    QVERIFY(looksLike(heads[0], "TOOL_TITLE_OPEN"));
    // The panel is hidden, which makes no difference.
    heads[0]->click();
    QVERIFY(a->isHidden() && b->isHidden() && !c->isHidden());
    QVERIFY(looksLike(heads[0], "TOOL_TITLE_CLOSE"));
    QVERIFY(looksLike(heads[1], "TOOL_TITLE_OPEN"));
    heads[1]->click();
    QVERIFY(a->isHidden() && b->isHidden() && c->isHidden());
    heads[0]->click();
    QVERIFY(!a->isHidden() && !b->isHidden() && c->isHidden());
    QVERIFY(looksLike(heads[0], "TOOL_TITLE_OPEN"));
    QVERIFY(looksLike(heads[1], "TOOL_TITLE_CLOSE"));
    panel.show();
    heads[1]->click();
    QVERIFY(c->isVisible());
}

void PanelTest::emptyGroupOnlyClosesItsTitle()
{
    Panel panel(nullptr);
    panel.addGroup("one");
    panel.addGroup("two");
    ImageButton *a = add(panel);
    panel.finishAdding();
    const QList<ImageButton *> heads = titles(panel);
    heads[0]->click();
    QVERIFY(!a->isHidden());
    QVERIFY(looksLike(heads[0], "TOOL_TITLE_CLOSE"));
    heads[0]->click();
    QVERIFY(looksLike(heads[0], "TOOL_TITLE_CLOSE"));
    QVERIFY(looksLike(heads[1], "TOOL_TITLE_OPEN"));
}

void PanelTest::disabledMembersStayHidden()
{
    Panel panel(nullptr);
    panel.addGroup("one");
    ImageButton *a = add(panel);
    ImageButton *b = add(panel);
    panel.finishAdding();
    b->setEnabled(false);
    panel.finishAdjusting();
    QVERIFY(b->isHidden());
    ImageButton *head = titles(panel)[0];
    head->click();
    QVERIFY(a->isHidden() && b->isHidden());
    QVERIFY(looksLike(head, "TOOL_TITLE_CLOSE"));
    head->click();
    QVERIFY(!a->isHidden() && b->isHidden());
    QVERIFY(looksLike(head, "TOOL_TITLE_OPEN"));
}

void PanelTest::groupWithoutEnabledMembersCloses()
{
    Panel panel(nullptr);
    panel.addGroup("one");
    add(panel)->setEnabled(false);
    panel.finishAdding();
    ImageButton *head = titles(panel)[0];
    head->click();
    QVERIFY(looksLike(head, "TOOL_TITLE_CLOSE"));
}

void PanelTest::adjustingShowsCollapsedMembersAndOpensTheTitle()
{
    Panel panel(nullptr);
    panel.addGroup("one");
    ImageButton *a = add(panel);
    panel.addGroup("two");
    ImageButton *b = add(panel);
    panel.finishAdding();
    const QList<ImageButton *> heads = titles(panel);
    heads[0]->click();
    heads[1]->click();
    b->setEnabled(false);
    panel.finishAdjusting();
    QVERIFY(!a->isHidden() && b->isHidden());
    QVERIFY(looksLike(heads[0], "TOOL_TITLE_OPEN"));
    QVERIFY(looksLike(heads[1], "TOOL_TITLE_CLOSE"));
    // The next click collapses what is shown.
    heads[0]->click();
    QVERIFY(a->isHidden());
    QVERIFY(looksLike(heads[0], "TOOL_TITLE_CLOSE"));
}

void PanelTest::adjustingHidesDisabledButtons()
{
    QWidget window;
    Panel panel(&window);
    panel.addGroup("one");
    ImageButton *a = add(panel);
    ImageButton *b = add(panel);
    panel.finishAdding();
    a->setEnabled(false);
    b->hide();
    panel.finishAdjusting();
    QVERIFY(a->isHidden() && !b->isHidden());
    a->setEnabled(true);
    panel.finishAdjusting();
    QVERIFY(!a->isHidden());
    QVERIFY(!titles(panel)[0]->isHidden());
}

void PanelTest::strangersDoNotToggle()
{
    Panel panel(nullptr);
    panel.addGroup("one");
    ImageButton *a = add(panel);
    panel.finishAdding();
    connect(a, &ImageButton::clicked, &panel, &Panel::toggleGroup);
    a->click();
    panel.toggleGroup();
    QVERIFY(!a->isHidden());
}

REGISTER_TEST(PanelTest)
#include "tst_panel.moc"
