#include "mainwindow/pages/MicrophoneList.h"

#include "mainwindow/RecordingPreferences.h"
#include "mainwindow/pages/Pages.h"
#include "widgets/FormControls.h"

#include <QAbstractItemView>

namespace
{

constexpr int SOURCES_INTERVAL_MS = 500;

} // namespace

MicrophoneList::MicrophoneList(LiveRecording *recording, QWidget *parent)
    : QComboBox(parent)
    , m_recording(recording)
    , m_sources(SoundCapture::sources())
{
    FormControls::applyLook(this);
    Pages::leaveWheelToPage(this);
    // A long name is cut off instead of widening the pop-up.
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(1);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &MicrophoneList::take);
    connect(&m_timer, &QTimer::timeout, this, &MicrophoneList::look);
    m_timer.start(SOURCES_INTERVAL_MS);
    refresh();
}

void MicrophoneList::look()
{
    // Not under the user's pointer.
    if (!isVisible() || view()->isVisible())
        return;
    std::vector<SoundSource> sources = SoundCapture::sources();
    if (sources == m_sources)
        return;
    m_sources = std::move(sources);
    refresh();
}

void MicrophoneList::refresh()
{
    clear();
    addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "That of the camera")), QString());
    for (const SoundSource &source : m_sources)
        addItem(source.name, RecordingPreferences::toText(MicrophoneChoice::ofSource(source.id)));
    const QString chosen = RecordingPreferences::toText(m_recording->microphone());
    const QString none = RecordingPreferences::toText(MicrophoneChoice::none());
    if (chosen != none && findData(chosen) < 0)
        addItem(Pages::text("%1 (not plugged in)").arg(RecordingPreferences::microphoneName()),
                chosen);
    addItem(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "None")), none);
    setCurrentIndex(findData(chosen));
}

void MicrophoneList::take(int index)
{
    const MicrophoneChoice choice = RecordingPreferences::toChoice(itemData(index).toString());
    // A microphone that is away keeps its name without the remark.
    const bool same = choice == m_recording->microphone();
    if (!same)
        RecordingPreferences::chooseMicrophone(*m_recording, choice, itemText(index));
}
