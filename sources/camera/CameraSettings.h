#pragma once

#include "sources/camera/CameraIdentity.h"
#include "sources/camera/StandardControls.h"
#include "sources/threads/BoundedWorker.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

class UvcCamera;
struct ControlRequest;

/// The standard controls of the camera in use, and through them the numbered parameters for a
/// camera without the vendor's unit.
///
/// GUI thread, which never waits: what is written follows in order, of several values for a control
/// that the camera has not taken yet the last one; what is read is what is known.
class CameraSettings : public QObject
{
    Q_OBJECT

public:
    CameraSettings();

    /// Goes on with that camera, which is used until the next call. One without the vendor's unit
    /// is asked for its controls as soon as its stream has been asked for, another one by ask()
    /// alone. Of the same camera as before everything is known until then.
    void use(UvcCamera &camera);
    /// Somebody needs the controls: asks the camera for them, unless it was asked already.
    void ask();

    /// Whether the parameters are these controls' to set, or will be when the camera has answered.
    [[nodiscard]] bool drives() const { return m_learning || !m_controls.empty(); }
    /// The two registers of the parameters: the bytes transferred, or an error of libuvc for a
    /// parameter that the camera has no control for. `data` is written by a successful read only.
    /// What is written while the camera is still asked follows when it has answered.
    int write(std::uint8_t selector, const void *data, std::size_t length);
    int read(std::uint8_t selector, void *data, std::size_t length) const;

    [[nodiscard]] const StandardControls &controls() const { return m_controls; }
    /// Whether the camera is still asked for what it has.
    [[nodiscard]] bool asking() const { return m_question || !m_questions.empty(); }
    /// Whether the camera has a lens or a sensor to zoom with, as far as it has told.
    [[nodiscard]] bool zooms() const;

    void set(StandardControl control, std::int64_t value);
    void setAutomatic(StandardControl control, bool on);
    /// Asks for the values that the camera sets by itself.
    void refresh();

signals:
    /// The camera has told of all its controls.
    void ready();
    void changed();
    /// use() was called; who needs the controls asks for them now.
    void cameraChanged();

private:
    using Requests = std::vector<std::shared_ptr<ControlRequest>>;
    struct Question {
        StandardControl control;
        bool currentOnly = false;
        Requests requests;
        BoundedWorker::Ticket ticket;
    };
    /// A value that was written before the camera had told of its control.
    struct Early {
        unsigned long parameter;
        unsigned long value;
    };
    struct Sent {
        std::vector<StandardControl> controls;
        BoundedWorker::Ticket ticket;
    };

    [[nodiscard]] bool writeNow(unsigned long parameter, unsigned long value);
    void writeEarly();
    void apply(const StandardControls::Settings &settings);
    void zoomOn();
    void work();
    [[nodiscard]] bool sendPending();
    [[nodiscard]] bool takeAnswers();
    [[nodiscard]] bool askNext();
    void askFor(StandardControl control, bool currentOnly);

    UvcCamera *m_camera = nullptr;
    CameraIdentity m_identity;
    StandardUnits m_units;
    StandardControls m_controls;
    unsigned long m_parameter = 0;
    std::vector<Early> m_early;
    StandardControls::Settings m_pending;
    std::optional<Sent> m_sent;
    std::deque<Question> m_questions;
    std::optional<Question> m_question;
    /// The camera has been asked for all its controls.
    bool m_asked = false;
    /// It has not answered all of that yet.
    bool m_learning = false;
    QTimer m_timer;
    QTimer m_zoomTimer;
};
