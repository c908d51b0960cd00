#include "app/LocaleCatalogue.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/RecordingSign.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "resources/Skin.h"
#include "resources/SkinImages.h"
#include "resources/SkinStyle.h"
#include "resources/translations/Translations.h"
#include "tests/mainwindow/WindowProbe.h"
#include "widgets/CameraPage.h"
#include "widgets/FolderField.h"
#include "widgets/TickLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPainter>
#include <QProcess>
#include <QScrollArea>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QTranslator>
#include <QtTest>

#include <cstdio>

namespace
{

/// Pixels that stay free left and right of a caption.
constexpr int MARGIN = 1;
/// Rows above and below the letters in the line of a label.
constexpr int AIR = 2;
/// Of a group's title: where the sign of its fold begins.
constexpr int FOLD_SIGN = 108;

int breaches = 0;

/// English, and each locale of the list of languages.
QStringList locales()
{
    QStringList all{"en_US"};
    QFile list(QStringLiteral(TEST_SOURCE_DIR "/../../resources/translations/languages.txt"));
    if (!list.open(QIODevice::ReadOnly))
        qFatal("The list of languages cannot be read.");
    for (const QByteArray &line : list.readAll().split('\n')) {
        if (!line.isEmpty() && !line.startsWith('#'))
            all << QString::fromLatin1(line).section(' ', 0, 0);
    }
    return all;
}

void tell(const QString &place, const QString &text, int needed, int room)
{
    ++breaches;
    std::printf("%s: \"%s\" needs %d, has %d\n", qPrintable(place), qPrintable(text), needed, room);
}

/// The columns in which two pictures differ, first and last; (0, -1) when they are alike.
std::pair<int, int> changedColumns(const QImage &one, const QImage &other)
{
    std::pair<int, int> found(0, -1);
    for (int x = 0; x < one.width(); ++x) {
        for (int y = 0; y < one.height(); ++y) {
            if (one.pixel(x, y) == other.pixel(x, y))
                continue;
            if (found.second < 0)
                found.first = x;
            found.second = x;
            break;
        }
    }
    return found;
}

/// What is seen of the caption, in the picture itself, in pixels of the screen.
std::pair<int, int> captionColumns(ImageButton *button)
{
    const QString text = button->text();
    const QImage with = button->grab().toImage();
    button->setText(QString());
    const QImage without = button->grab().toImage();
    button->setText(text);
    return changedColumns(with, without);
}

void measureButton(ImageButton *button, const QString &place)
{
    const QString text = button->text();
    const double ratio = button->devicePixelRatioF();
    const auto [first, last] = captionColumns(button);
    const int end = button->skin().startsWith("TOOL_TITLE") ? FOLD_SIGN : button->width() - MARGIN;
    if (last < first || first < MARGIN * ratio || last >= end * ratio)
        tell(place, text, int((last + 1) / ratio), end);
}

/// The dot of a recording, and the caption beside it.
void measureSign(MainWindow *window, const QString &place)
{
    ImageButton *tab = window->button(Command::LiveMode);
    auto *sign = window->findChild<RecordingSign *>();
    sign->start();
    const auto [first, last] = captionColumns(tab);
    const int free = sign->geometry().right() + 1 + MARGIN;
    const double ratio = tab->devicePixelRatioF();
    if (last < first || first < free * ratio || last >= (tab->width() - MARGIN) * ratio)
        tell(place + "while it records", tab->text(), free, int(first / ratio));
    sign->stop();
}

void measureLabel(const QLabel *label, const QString &place)
{
    const QSize needed(label->sizeHint().width(), label->fontMetrics().height());
    if (needed.width() > label->width())
        tell(place, label->text(), needed.width(), label->width());
    if (!label->parentWidget()->rect().contains(label->geometry()))
        tell(place + " outside", label->text(), label->geometry().right(),
             label->parentWidget()->width());
    for (const QWidget *other :
         label->parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        // A picture or a canvas lies under everything.
        const bool isControl =
            qobject_cast<const QLabel *>(other) || qobject_cast<const QAbstractButton *>(other) ||
            qobject_cast<const QComboBox *>(other) || qobject_cast<const QLineEdit *>(other);
        if (other != label && isControl && other->isVisible() &&
            other->geometry().intersects(label->geometry().adjusted(0, AIR, 0, -AIR)))
            tell(place + " overlaps", label->text(), label->geometry().right(),
                 other->geometry().left());
    }
}

void measureBox(const QComboBox *box, const QString &place)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    option.editable = box->isEditable();
    option.frame = box->hasFrame();
    const int room =
        box->style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box)
            .width();
    for (int i = 0; i < box->count(); ++i) {
        const int needed = box->fontMetrics().horizontalAdvance(box->itemText(i));
        if (needed > room)
            tell(place, box->itemText(i), needed, room);
    }
}

void measureField(const QLineEdit *field, const QString &place)
{
    QStyleOptionFrame option;
    option.initFrom(field);
    option.lineWidth = 1;
    // The toolkit keeps two pixels free at either end.
    const int room =
        field->style()->subElementRect(QStyle::SE_LineEditContents, &option, field).width() - 4;
    const int needed = field->fontMetrics().horizontalAdvance(field->text());
    if (needed > room)
        tell(place, field->text(), needed, room);
}

void measurePage(const QScrollArea *area, const QString &place)
{
    // It wraps its lines to the room, and is wider only when a word is.
    const int needed = std::max(area->widget()->width(), area->widget()->minimumSizeHint().width());
    if (needed > area->viewport()->width())
        tell(place, area->widget()->accessibleName(), needed, area->viewport()->width());
    for (const QCheckBox *box : area->findChildren<QCheckBox *>()) {
        if (box->sizeHint().width() > box->width())
            tell(place, box->text(), box->sizeHint().width(), box->width());
    }
}

void measure(const QWidget &window, const QString &place)
{
    for (const QScrollArea *area : window.findChildren<QScrollArea *>())
        measurePage(area, place);
    for (ImageButton *button : window.findChildren<ImageButton *>()) {
        if (button->isVisible() && !button->text().isEmpty())
            measureButton(button, place);
    }
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        const bool isWords = !label->text().isEmpty() && !label->wordWrap() &&
                             label->textFormat() != Qt::RichText &&
                             !qobject_cast<const TickLabel *>(label);
        if (label->isVisible() && isWords)
            measureLabel(label, place);
    }
    // The lists of fonts and sizes are long and may be cut.
    if (window.inherits("TextToolWindow"))
        return;
    for (const QComboBox *box : window.findChildren<QComboBox *>())
        measureBox(box, place);
    for (const QLineEdit *field : window.findChildren<QLineEdit *>()) {
        if (field->isVisible() && !qobject_cast<const FolderField *>(field))
            measureField(field, place);
    }
}

void measurePopup(const MainWindow &window, const QString &place)
{
    if (const ToolWindow *popup = window.currentToolWindow())
        measure(*popup, place + popup->accessibleName());
    else
        tell(place, "no pop-up", 0, 0);
}

/// What is hidden without a camera that has it gets its place, too.
void showEveryControl(QWidget *popup)
{
    QList<QWidget *> controls;
    for (QCheckBox *box : popup->findChildren<QCheckBox *>())
        controls << box;
    for (QComboBox *box : popup->findChildren<QComboBox *>())
        controls << box;
    for (QWidget *each : controls) {
        for (; each != popup; each = each->parentWidget())
            each->show();
    }
    QCoreApplication::sendPostedEvents();
}

/// Every page of the pop-up "More", that of the camera in each of its states.
void measurePages(MainWindow *window, const QString &place)
{
    window->more();
    auto *more = static_cast<MoreToolWindow *>(window->currentToolWindow());
    for (const Pages::Page &page : Pages::all()) {
        more->showPage(page.id);
        showEveryControl(more);
        measurePopup(*window, place);
    }
    more->showPage(Pages::Id::Camera);
    auto *page = new CameraPage;
    more->findChild<QScrollArea *>()->setWidget(page);
    for (int state = 0; state <= int(CameraStatus::State::Silent); ++state) {
        CameraStatus status;
        status.state = CameraStatus::State(state);
        status.size = QSize(1920, 1080);
        page->setStatus(status);
        QCoreApplication::sendPostedEvents();
        measurePopup(*window, place);
    }
}

/// The caption of an indication stands right of its icon.
void measureIndication(OSDProcessor *processor, const char *image, const QString &text,
                       const QString &place)
{
    constexpr int ICON_AREA = 38;
    const QImage ground = SkinImages::load(QString(":/icons/OSD/%1.png").arg(image));
    const QSize size = SkinImages::layoutSize(ground);
    QImage pictures[2];
    for (int i = 0; i < 2; ++i) {
        pictures[i] = QImage(2 * size.width(), 2 * size.height(), QImage::Format_RGB32);
        pictures[i].fill(Qt::gray);
        QPainter painter(&pictures[i]);
        processor->paintImageText(&painter, 0, 0, ground, i == 0 ? text : QString());
    }
    const auto [first, last] = changedColumns(pictures[0], pictures[1]);
    if (last < first || first < ICON_AREA || last >= size.width())
        tell(place, text, last - first + 1, size.width() - ICON_AREA);
}

void measureLanguage(const QString &locale)
{
    QTranslator translator;
    if (translator.load(catalogueForLocale(locale), ":/translations", QString(""), QString("")))
        QCoreApplication::installTranslator(&translator);
    MainWindow window;
    window.show();
    for (const Commands::Row &mode : Commands::rowsOf(Commands::Group::Modes)) {
        window.button(mode.command)->click();
        measure(window, locale + " ");
        measureSign(&window, locale + " ");
    }
    const Command tools[] = {Command::Line, Command::Rectangle, Command::Eraser,
                             Command::Text, Command::Mask,      Command::Effect};
    for (const Command tool : tools) {
        emit window.button(tool)->hold();
        measurePopup(window, locale + " ");
    }
    emit window.button(Command::FillBackground)->hold();
    measurePopup(window, locale + " ");
    window.button(Command::LiveMode)->click();
    window.settings();
    measurePopup(window, locale + " ");
    window.About();
    measurePopup(window, locale + " ");
    measurePages(&window, locale + " ");

    OSDProcessor *processor = window.osdProcessors().value(window.currentCanvas());
    const auto translated = [](const char *context, const char *text) {
        return QCoreApplication::translate(context, text);
    };
    for (const char *effect : {"Color", "B & W", "Negative", "Mosaic"})
        measureIndication(processor, "OSD_COLOR_COLOR", translated("EffectToolWindow", effect),
                          locale + " effect ");
    measureIndication(processor, "OSD_ZOOM_OUT", translated("OSDProcessor", "Best fit"),
                      locale + " zoom ");
    QCoreApplication::removeTranslator(&translator);
}

/// The whole window in each language, with the fonts and the scale of the environment: prints what
/// is cut off or lies over something. Its exit code is the number of breaches.
int measureAll(int argc, char **argv)
{
    QApplication application(argc, argv);
    initialiseSkin();
    initialiseTranslations();
    SkinStyle::install();
    for (const QString &locale : locales())
        measureLanguage(locale);
    std::printf("measured with %s\n", qPrintable(QFontInfo(QFont("Arial")).family()));
    return breaches;
}

} // namespace

/// Whether every caption has room, whatever font stands for the usual one.
class CaptionRoomTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCaptionHasRoom_data();
    void everyCaptionHasRoom();
};

void CaptionRoomTest::everyCaptionHasRoom_data()
{
    QTest::addColumn<QString>("fonts");
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("scale");
    for (const char *scale : {"1", "1.25", "1.5"}) {
        QTest::addRow("Liberation at %s", scale) << "fonts.conf"
                                                 << "Liberation Sans" << scale;
        QTest::addRow("DejaVu at %s", scale) << "fonts-dejavu.conf"
                                             << "DejaVu Sans" << scale;
    }
}

void CaptionRoomTest::everyCaptionHasRoom()
{
    QFETCH(QString, fonts);
    QFETCH(QString, family);
    QFETCH(QString, scale);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("FONTCONFIG_FILE", TEST_SOURCE_DIR "/../" + fonts);
    environment.insert("QT_SCALE_FACTOR", scale);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(), {"--measure"});
    QVERIFY(process.waitForFinished(60000));
    const QByteArray said = process.readAll();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
             said.constData());
    QVERIFY2(said.contains("measured with " + family.toUtf8()), said.constData());
}

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--measure") == 0)
        return measureAll(argc, argv);
    QCoreApplication application(argc, argv);
    CaptionRoomTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_caption_room.moc"
