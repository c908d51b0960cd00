#include "sources/camera/CameraSettings.h"

#include "sources/camera/CameraParameters.h"
#include "sources/camera/ControlTransfer.h"
#include "sources/camera/UvcCamera.h"

#include <libuvc/libuvc.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

/// How often the answers of the camera are looked for while some are on their way.
constexpr int ANSWER_MS = 20;
/// Between two steps of a zoom key that is held: two seconds from one end to the other.
constexpr int ZOOM_STEP_MS = 50;

/// What every control can be asked for, with the place of its answer.
struct Value {
    std::uint8_t question;
    std::optional<std::int64_t> ControlAnswers::*answer;
};
constexpr Value VALUES[] = {
    {UVC_GET_MIN, &ControlAnswers::minimum},    {UVC_GET_MAX, &ControlAnswers::maximum},
    {UVC_GET_RES, &ControlAnswers::resolution}, {UVC_GET_DEF, &ControlAnswers::initial},
    {UVC_GET_CUR, &ControlAnswers::current},
};
/// More than hands press before a camera has answered.
constexpr std::size_t MOST_EARLY = 64;
constexpr int SETTABLE = 2; ///< in the answer to GET_INFO

std::shared_ptr<ControlRequest> question(const StandardControlRow &row, std::uint8_t what)
{
    const std::size_t bytes = what == UVC_GET_INFO ? 1 : row.bytes;
    auto request = std::make_shared<ControlRequest>();
    request->read = true;
    request->selector = row.selector;
    request->data.resize(bytes);
    request->question = what;
    return request;
}

ControlAnswers answersOf(const StandardControlRow &row,
                         const std::vector<std::shared_ptr<ControlRequest>> &requests)
{
    ControlAnswers answers;
    for (const auto &request : requests) {
        // A short answer lacks the high bytes of a value.
        if (!request->answered || request->result < static_cast<int>(request->data.size()))
            continue;
        if (request->question == UVC_GET_INFO)
            answers.settable = (request->data.front() & SETTABLE) != 0;
        for (const Value &value : VALUES) {
            if (value.question == request->question)
                answers.*value.answer = row.decode(request->data);
        }
    }
    return answers;
}

} // namespace

CameraSettings::CameraSettings()
{
    m_timer.setInterval(ANSWER_MS);
    connect(&m_timer, &QTimer::timeout, this, &CameraSettings::work);
    m_zoomTimer.setInterval(ZOOM_STEP_MS);
    connect(&m_zoomTimer, &QTimer::timeout, this, &CameraSettings::zoomOn);
}

void CameraSettings::use(UvcCamera &camera)
{
    m_camera = &camera;
    m_units = camera.standardUnits();
    m_zoomTimer.stop();
    m_controls.releaseZoom();
    m_pending.clear();
    m_sent.reset();
    m_questions.clear();
    m_question.reset();
    if (m_identity != camera.identity())
        m_controls = {};
    m_identity = camera.identity();
    m_early.clear();
    m_learning = false;
    m_asked = false;
    for (const StandardControlRow &row : STANDARD_CONTROLS) {
        if (!m_units.has(row))
            m_controls.forget(row.control);
    }
    if (camera.lacksExtensionUnit())
        ask();
    emit cameraChanged();
    emit changed();
}

void CameraSettings::ask()
{
    if (std::exchange(m_asked, true))
        return;
    for (const StandardControlRow &row : STANDARD_CONTROLS) {
        if (m_units.has(row))
            askFor(row.control, false);
    }
    m_learning = !m_questions.empty();
}

int CameraSettings::write(std::uint8_t selector, const void *data, std::size_t length)
{
    unsigned long value = 0;
    if (length != sizeof value || !drives())
        return UVC_ERROR_NOT_FOUND;
    std::memcpy(&value, data, sizeof value);
    if (selector == CameraParameter::ID_SELECTOR) {
        m_parameter = value;
        return static_cast<int>(length);
    }
    if (selector != CameraParameter::VALUE_SELECTOR)
        return UVC_ERROR_NOT_SUPPORTED;
    if (m_learning && m_early.size() < MOST_EARLY) {
        m_early.push_back({m_parameter, value});
        return static_cast<int>(length);
    }
    return writeNow(m_parameter, value) ? static_cast<int>(length) : UVC_ERROR_NOT_SUPPORTED;
}

/// Whether the camera has a control for that parameter.
bool CameraSettings::writeNow(unsigned long parameter, unsigned long value)
{
    const auto settings = m_controls.write(parameter, value);
    if (!settings)
        return false;
    apply(*settings);
    if (m_controls.zooming())
        m_zoomTimer.start();
    else
        m_zoomTimer.stop();
    return true;
}

void CameraSettings::writeEarly()
{
    for (const Early &each : std::exchange(m_early, {}))
        static_cast<void>(writeNow(each.parameter, each.value));
}

int CameraSettings::read(std::uint8_t selector, void *data, std::size_t length) const
{
    const auto value = m_controls.read(m_parameter);
    if (length != sizeof *value || m_controls.empty())
        return UVC_ERROR_NOT_FOUND;
    if (selector != CameraParameter::VALUE_SELECTOR || !value)
        return UVC_ERROR_NOT_SUPPORTED;
    std::memcpy(data, &*value, sizeof *value);
    return static_cast<int>(length);
}

bool CameraSettings::zooms() const
{
    const bool asked = !m_learning;
    return asked ? m_controls.has(StandardControl::Zoom)
                 : m_units.has(StandardControlRow::of(StandardControl::Zoom));
}

void CameraSettings::set(StandardControl control, std::int64_t value)
{
    apply(m_controls.set(control, value));
}

void CameraSettings::setAutomatic(StandardControl control, bool on)
{
    apply(m_controls.setAutomatic(control, on));
}

void CameraSettings::refresh()
{
    if (asking())
        return;
    for (const StandardControlRow &row : STANDARD_CONTROLS) {
        if (m_controls.has(row.control) && m_controls.automatic(row.control))
            askFor(row.control, true);
    }
}

void CameraSettings::apply(const StandardControls::Settings &settings)
{
    if (settings.empty() || !m_camera)
        return;
    for (const StandardControls::Setting &setting : settings) {
        m_pending.erase(std::remove_if(m_pending.begin(), m_pending.end(),
                                       [&setting](const StandardControls::Setting &earlier) {
                                           return earlier.control == setting.control;
                                       }),
                        m_pending.end());
    }
    m_pending.insert(m_pending.end(), settings.begin(), settings.end());
    work();
    emit changed();
}

void CameraSettings::zoomOn()
{
    // A slow camera gets fewer and not later steps.
    if (!m_sent && m_camera->lacksExtensionUnit())
        apply(m_controls.zoom());
}

void CameraSettings::work()
{
    if (!m_timer.isActive())
        m_timer.start();
    const bool sending = sendPending();
    const bool waiting = takeAnswers() || askNext();
    if (sending || waiting)
        return;
    m_timer.stop();
    if (!std::exchange(m_learning, false))
        return;
    writeEarly();
    emit ready();
    emit changed();
}

/// Whether something is on its way.
bool CameraSettings::sendPending()
{
    if (m_sent && m_sent->ticket.open())
        return true;
    // A value that the camera has refused is not the one that it has.
    const bool refused = m_sent && m_sent->ticket.result().value_or(0) == UVC_ERROR_PIPE;
    for (const StandardControl control :
         refused ? m_sent->controls : std::vector<StandardControl>())
        askFor(control, true);
    m_sent.reset();
    if (m_pending.empty())
        return false;
    // One job has one unit.
    const StandardUnit unit = StandardControlRow::of(m_pending.front().control).unit;
    Sent sent;
    Requests requests;
    while (!m_pending.empty() && StandardControlRow::of(m_pending.front().control).unit == unit) {
        const StandardControlRow &row = StandardControlRow::of(m_pending.front().control);
        auto request = std::make_shared<ControlRequest>();
        request->selector = row.selector;
        request->data = row.encode(m_pending.front().value);
        requests.push_back(std::move(request));
        sent.controls.push_back(row.control);
        m_pending.erase(m_pending.begin());
    }
    sent.ticket = m_camera->send(m_units.numberOf(unit), std::move(requests));
    m_sent = std::move(sent);
    return true;
}

/// Whether an answer is still to come.
bool CameraSettings::takeAnswers()
{
    if (!m_question)
        return false;
    if (m_question->ticket.open())
        return true;
    const Question question = *std::exchange(m_question, std::nullopt);
    const int result = question.ticket.result().value_or(UVC_ERROR_TIMEOUT);
    if (result == UVC_ERROR_TIMEOUT || result == UVC_ERROR_NO_DEVICE) {
        m_questions.clear();
        m_early.clear();
        m_learning = false;
        return false;
    }
    const StandardControlRow &row = StandardControlRow::of(question.control);
    const ControlAnswers answers = answersOf(row, question.requests);
    if (!question.currentOnly)
        m_controls.learn(question.control, answers);
    else if (answers.current)
        m_controls.note(question.control, *answers.current);
    emit changed();
    return false;
}

bool CameraSettings::askNext()
{
    if (m_questions.empty())
        return false;
    m_question = std::move(m_questions.front());
    m_questions.pop_front();
    const StandardControlRow &row = StandardControlRow::of(m_question->control);
    if (!m_question->currentOnly)
        m_question->requests.push_back(question(row, UVC_GET_INFO));
    for (const Value &value : VALUES) {
        if (!m_question->currentOnly || value.question == UVC_GET_CUR)
            m_question->requests.push_back(question(row, value.question));
    }
    m_question->ticket = m_camera->send(m_units.numberOf(row.unit), m_question->requests);
    return true;
}

void CameraSettings::askFor(StandardControl control, bool currentOnly)
{
    m_questions.push_back({control, currentOnly, {}, {}});
    // Not at once: the stream that is asked for in the same breath goes first.
    m_timer.start();
}
