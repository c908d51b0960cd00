#pragma once

#include <QLabel>

/// The numbers under the ticks of a slider: one line in letters of 9 pixels, in which every digit
/// and every space is 5 pixels wide, so that the spaces in the text place the numbers. The words
/// between them keep the widths of their letters.
class TickLabel : public QLabel
{
    Q_OBJECT

public:
    static constexpr int CELL_WIDTH = 5;
    static constexpr int LETTER_HEIGHT = 9;

    TickLabel(const QString &text, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
