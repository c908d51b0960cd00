#pragma once

#include <QWidget>

/// Shows at one glance how something is: a tick in a disc, three dots in a ring, or an exclamation
/// mark in a triangle. The shapes tell it without their colours. GUI thread.
class StatusSign : public QWidget
{
    Q_OBJECT

public:
    enum class Look { Fine, Waiting, Wrong };

    explicit StatusSign(QWidget *parent);

    void setLook(Look look);
    [[nodiscard]] Look look() const { return m_look; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Look m_look = Look::Waiting;
};
