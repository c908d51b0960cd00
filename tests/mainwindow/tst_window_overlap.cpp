#include "tests/TestProgram.h"
#include "tests/mainwindow/WindowProbe.h"

#include "widgets/HorizontalSlider.h"
#include "widgets/Slider.h"

#include <QLabel>

using namespace WindowProbe;

namespace
{

QString nameOf(const QWidget *widget)
{
    const auto *label = qobject_cast<const QLabel *>(widget);
    const QString said = label ? label->text() : widget->accessibleName();
    return QString("%1 \"%2\"").arg(widget->metaObject()->className(), said);
}

/// What is seen of a widget's children, but for the picture, on which some of them lie.
QList<QWidget *> seenChildren(const QWidget *parent)
{
    QList<QWidget *> seen;
    for (QWidget *child : parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        const auto *label = qobject_cast<QLabel *>(child);
        const bool isEmpty = label && label->text().isEmpty();
        if (child->isVisible() && !child->isWindow() && !isEmpty &&
            !qobject_cast<QStackedWidget *>(child))
            seen << child;
    }
    return seen;
}

/// The pairs of neighbours that lie over each other, in the widget and in all that stands in it.
QStringList overlaps(const QWidget *parent)
{
    QStringList found;
    const QList<QWidget *> seen = seenChildren(parent);
    for (int i = 0; i < seen.size(); ++i) {
        if (!parent->rect().contains(seen[i]->geometry()))
            found << nameOf(seen[i]) + " reaches out of " + nameOf(parent);
        for (int j = i + 1; j < seen.size(); ++j) {
            if (seen[i]->geometry().intersects(seen[j]->geometry()))
                found << nameOf(seen[i]) + " over " + nameOf(seen[j]);
        }
        found << overlaps(seen[i]);
    }
    return found;
}

} // namespace

/// In the smallest windows nothing lies over anything else but the volume.
class WindowOverlapTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init() { usualSettings(); }
    void nothingLiesOverAnythingElse_data();
    void nothingLiesOverAnythingElse();
};

void WindowOverlapTest::nothingLiesOverAnythingElse_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("open");
    for (int mode = 0; mode < 4; ++mode) {
        QTest::newRow(qPrintable(modes()[mode])) << mode << false;
        QTest::newRow(qPrintable(modes()[mode] + ", panel open")) << mode << true;
    }
}

void WindowOverlapTest::nothingLiesOverAnythingElse()
{
    QFETCH(int, mode);
    QFETCH(bool, open);
    MainWindow window;
    window.show();
    if (!open)
        button(window, "Side panel")->click();
    QCOMPARE(window.width(), open ? 938 : 800);
    if (mode != 0)
        enter(window, mode);
    QStringList expected;
    if (mode == 1) {
        button(window, "Volume")->click();
        // It stands up from its bar, over the position and the picture.
        expected << "HorizontalSlider \"Position in the film\" over Slider \"Volume\"";
    }
    if (mode == 2) {
        button(window, "Slideshow interval")->click();
        button(window, "Thumbnails")->click();
    }
    QCoreApplication::processEvents();
    QVERIFY(seenChildren(&window).size() > 4);
    const QStringList found = overlaps(&window);
    QVERIFY2(found == expected, qPrintable("\n" + found.join('\n')));
}

REGISTER_TEST(WindowOverlapTest)
#include "tst_window_overlap.moc"
