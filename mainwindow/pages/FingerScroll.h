#pragma once

#include <QObject>

class QMouseEvent;
class QScrollArea;
class QWidget;

/// Lets a finger pull the page of a scroll area up and down, wherever it lies on it. What a finger
/// moves itself, a slider or a list, is left alone, and a tap stays a tap. GUI thread.
class FingerScroll : public QObject
{
    Q_OBJECT

public:
    /// A child of the area.
    explicit FingerScroll(QScrollArea *area);

    /// Takes the moves of a finger that pulls the page.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class State { Idle, Down, Pulling };

    [[nodiscard]] bool isOnPage(const QWidget *widget) const;
    void press(QWidget *widget, const QMouseEvent &event);
    [[nodiscard]] bool move(QWidget *widget, const QMouseEvent &event);
    [[nodiscard]] bool release(QWidget *widget);

    QScrollArea *m_area;
    State m_state = State::Idle;
    /// Where the finger came down, in screen coordinates, and where the page stood then.
    int m_pressedY = 0;
    int m_pressedValue = 0;
    /// What is sent from here is not looked at.
    bool m_sending = false;
};
