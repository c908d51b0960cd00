#include "widgets/SettingsToolWindow.h"

#include "resources/SkinImages.h"
#include "settings/Config.h"
#include "sources/LiveSource.h"
#include "sources/WindowServices.h"
#include "widgets/FileDialogs.h"
#include "widgets/FolderField.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"
#include "widgets/IntervalTable.h"
#include "widgets/ToolTips.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>

#include <array>

namespace
{

constexpr std::array<const char *, 3> RESOLUTION_NAMES{
    QT_TRANSLATE_NOOP("SettingsToolWindow", "XGA 1024 x 768"),
    QT_TRANSLATE_NOOP("SettingsToolWindow", "HD 1280 x 720"),
    QT_TRANSLATE_NOOP("SettingsToolWindow", "FHD 1920 x 1080"),
};
constexpr int HD = 1;
constexpr int FHD = 2;

constexpr std::array<const char *, 2> CAPTURE_NAMES{
    QT_TRANSLATE_NOOP("SettingsToolWindow", "Single"),
    QT_TRANSLATE_NOOP("SettingsToolWindow", "Continuous"),
};
constexpr std::array<CanvasModes::SnapshotMode, 2> CAPTURE_MODES{CanvasModes::Single,
                                                                 CanvasModes::Continuous};

// Rows of the form; the background has its dividing lines between them.
enum Row { Source, Resolution, Recording, Capture, Time, SaveAs, RecordingSave, Buttons };
constexpr std::array<int, 8> ROW_Y{30, 60, 90, 128, 158, 196, 226, 270};
constexpr int ROW_HEIGHT = 24;
constexpr int LABEL_X = 16;
constexpr int LABEL_WIDTH = 122;
constexpr int FIELD_X = 142;
constexpr int FIELD_WIDTH = 132;
/// Frame, padding and margins of a field; those and the sign of a box.
constexpr int FIELD_MARGINS = 14;
constexpr int BOX_MARGINS = 28;
constexpr int BUTTON_X = 278;
constexpr int OK_X = 196;

template <std::size_t N>
QStringList translated(const std::array<const char *, N> &names)
{
    QStringList texts;
    for (const char *name : names)
        texts << SettingsToolWindow::tr(name);
    return texts;
}

QStringList intervalNames()
{
    QStringList texts;
    for (const IntervalTable::Interval &interval : IntervalTable::intervals())
        texts << IntervalTable::label(interval);
    return texts;
}

/// Every stored index outside the first two entries means the largest size.
int resolutionEntry(int stored)
{
    return stored == 0 || stored == HD ? stored : FHD;
}

int captureEntry(CanvasModes::SnapshotMode mode)
{
    return mode == CanvasModes::Continuous ? 1 : 0;
}

} // namespace

SettingsToolWindow::SettingsToolWindow(ImageButton *toolButton, MainWindow *mainWindow)
    : ToolWindow(SkinImages::load(":/icons/Background/POP_BK_SETTING_MULTILANG.png"), toolButton,
                 WindowServices::of(mainWindow).widget(), tr("Setting"))
    , m_mainWindow(mainWindow)
{
    setStyleSheet("QLabel { font-family: Arial; font-size: 14px; color: gray; }"
                  "QLineEdit { width: 124px; } QComboBox { width: 124px; } ");
    const QStringList resolutions = translated(RESOLUTION_NAMES);
    addField(tr("Source"), tr("Document Camera"), Source);
    m_resolutionBox = addBox(tr("Resolution"), resolutions,
                             resolutionEntry(Config::resolutionIndex()), Resolution);
    m_recordingBox = addBox(tr("Recording"), resolutions,
                            resolutionEntry(Config::recordingResolutionIndex()), Recording);
    // Connected after the stored value is shown, which is not a new choice to ask about.
    connect(m_recordingBox, SIGNAL(currentIndexChanged(int)), this,
            SLOT(recordingResolutionChanged(int)));
    m_captureBox = addBox(tr("Capture"), translated(CAPTURE_NAMES),
                          captureEntry(Config::snapshotMode()), Capture);
    m_timeBox = addBox(tr("Time"), intervalNames(),
                       IntervalTable::indexOf(Config::snapshotInterval()), Time);
    m_snapshotPath =
        addFolder(tr("Save as"), Config::snapshotPath(), SaveAs, SLOT(snapshotFileBrowse()));
    addButton(tr("Browse"), tr("Browse for the snapshot folder"), {BUTTON_X, ROW_Y[SaveAs]},
              SLOT(snapshotFileBrowse()));
    m_recordPath = addFolder(tr("RecordingSave"), Config::recordPath(), RecordingSave,
                             SLOT(recordFileBrowse()));
    addButton(tr("Browse"), tr("Browse for the recording folder"), {BUTTON_X, ROW_Y[RecordingSave]},
              SLOT(recordFileBrowse()));
    addButton(tr("OK"), tr("OK"), {OK_X, ROW_Y[Buttons]}, SLOT(settingsOk()));
    addButton(tr("Cancel"), tr("Cancel"), {BUTTON_X, ROW_Y[Buttons]}, SLOT(close()));
}

void SettingsToolWindow::recordingResolutionChanged(int index)
{
    if (index != FHD)
        return;
    const QPointer<SettingsToolWindow> self(this);
    const auto answer = QMessageBox::question(
        WindowServices::of(m_mainWindow).widget(), tr("Question"),
        tr("Using a recording resolution of 1920x1080 may cause low framerate when the PC isn't "
           "powerful. Continue?"));
    if (self && answer != QMessageBox::Yes)
        m_recordingBox->setCurrentIndex(HD);
}

void SettingsToolWindow::snapshotFileBrowse()
{
    browse(m_snapshotPath, tr("Folder for snapshots"));
}

void SettingsToolWindow::recordFileBrowse()
{
    browse(m_recordPath, tr("Folder for recordings"));
}

void SettingsToolWindow::settingsOk()
{
    const int capture = m_captureBox->currentIndex();
    if (capture >= 0)
        Config::setSnapshotMode(CAPTURE_MODES[static_cast<std::size_t>(capture)]);
    const int time = m_timeBox->currentIndex();
    if (time >= 0)
        Config::setSnapshotInterval(
            IntervalTable::intervals()[static_cast<std::size_t>(time)].seconds);
    Config::setSnapshotPath(m_snapshotPath->text());
    Config::setRecordPath(m_recordPath->text());

    LiveSource *live = WindowServices::of(m_mainWindow).liveSource();
    const QSize previous = Config::resolution();
    if (m_resolutionBox->currentIndex() >= 0)
        Config::setResolutionIndex(m_resolutionBox->currentIndex());
    // A new preview size restarts the stream, which would cut off a running recording silently.
    if (Config::resolution() != previous)
        WindowServices::of(m_mainWindow).stopRecording();
    if (live)
        live->setResolution(Config::resolution());

    if (m_recordingBox->currentIndex() >= 0)
        Config::setRecordingResolutionIndex(m_recordingBox->currentIndex());
    if (live)
        live->setRecordingResolution(Config::recordingResolution());
    close();
}

void SettingsToolWindow::addLabel(const QString &text, int row)
{
    auto *label = new QLabel(text, this);
    label->setGeometry(LABEL_X, ROW_Y[std::size_t(row)], LABEL_WIDTH, ROW_HEIGHT);
    label->ensurePolished();
    FormControls::fitFont(label, {text}, LABEL_WIDTH);
}

void SettingsToolWindow::addField(const QString &label, const QString &text, int row)
{
    auto *field = new QLineEdit(text, this);
    field->setReadOnly(true);
    field->setToolTip(text);
    ToolTips::add(field);
    placeField(field, label, row);
    FormControls::fitFont(field, {text}, FIELD_WIDTH - FIELD_MARGINS);
}

FolderField *SettingsToolWindow::addFolder(const QString &label, const QString &path, int row,
                                           const char *slot)
{
    auto *field = new FolderField(path, this);
    // The tip has the path whole.
    field->setToolTip(path);
    ToolTips::add(field);
    placeField(field, label, row);
    connect(field, SIGNAL(browseWanted()), this, slot);
    return field;
}

void SettingsToolWindow::placeField(QWidget *field, const QString &label, int row)
{
    addLabel(label, row);
    field->setAccessibleName(label);
    FormControls::applyLook(field, ROW_HEIGHT);
    field->setFixedWidth(FIELD_WIDTH);
    field->move(FIELD_X, ROW_Y[std::size_t(row)]);
}

QComboBox *SettingsToolWindow::addBox(const QString &label, const QStringList &entries, int index,
                                      int row)
{
    auto *box = new QComboBox(this);
    box->addItems(entries);
    box->setCurrentIndex(index);
    placeField(box, label, row);
    FormControls::fitFont(box, entries, FIELD_WIDTH - BOX_MARGINS);
    return box;
}

void SettingsToolWindow::addButton(const QString &caption, const QString &accessibleName,
                                   QPoint position, const char *slot)
{
    auto *button = new ImageButton("POPUP_BUTTON", this, position.x(), position.y());
    button->setFont(FormControls::font());
    button->setText(caption);
    button->setAccessibleName(accessibleName);
    // A tip that repeats the caption says nothing new.
    if (accessibleName != caption)
        button->setToolTip(accessibleName);
    connect(button, SIGNAL(clicked()), this, slot);
}

void SettingsToolWindow::browse(FolderField *field, const QString &caption)
{
    const QPointer<FolderField> guarded(field);
    const QString folder = FileDialogs::chooseFolder(WindowServices::of(m_mainWindow).widget(),
                                                     caption, field->text());
    if (!guarded || folder.isEmpty())
        return;
    field->setText(folder);
    field->setToolTip(folder);
}
