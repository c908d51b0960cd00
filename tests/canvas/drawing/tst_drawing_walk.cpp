#include "tests/TestProgram.h"
#include "tests/canvas/drawing/DrawingBoard.h"

#include <QtTest>

#include <QRandomGenerator>

namespace
{

/// Does the same to a drawing and to the whole copies, at random.
class Walk
{
public:
    explicit Walk(quint32 seed)
        : m_random(seed)
    {
        m_expected.resize(DrawingBoard::FRAME);
    }

    void step()
    {
        switch (m_random.bounded(16)) {
        case 0:
            m_board.drawing.clear();
            m_expected.clear();
            break;
        case 1:
            resize();
            break;
        case 2:
        case 3:
            turn();
            break;
        case 4:
            write();
            break;
        case 5:
        case 6:
        case 7:
            m_board.drawing.undo();
            m_expected.undo();
            break;
        case 8:
        case 9:
            m_board.drawing.redo();
            m_expected.redo();
            break;
        default:
            drag();
        }
        // What has rested is packed.
        m_nowMs += m_random.bounded(2000);
        for (int i = m_random.bounded(8); i > 0; --i)
            m_board.drawing.packHistory(m_nowMs);
    }

    [[nodiscard]] bool agrees()
    {
        return m_board.shown() == m_expected.shown() &&
               m_board.drawing.canUndo() == m_expected.canUndo() &&
               m_board.drawing.canRedo() == m_expected.canRedo();
    }

private:
    QPoint point() { return {m_random.bounded(-30, 250), m_random.bounded(-30, 250)}; }
    void resize()
    {
        static constexpr QSize SIZES[] = {{200, 140}, {140, 200}, {200, 140}, {320, 64},
                                          {100, 70},  {1, 1},     {0, 0},     {129, 131}};
        const QSize size = SIZES[m_random.bounded(int(std::size(SIZES)))];
        // The canvas only says so when the size is another one.
        if (size == m_board.view.frameSize())
            return;
        m_board.resize(size);
        m_expected.resize(m_board.view.rotatedSize());
    }
    void turn()
    {
        const bool clockwise = m_random.bounded(2) == 0;
        m_board.turn(clockwise);
        m_expected.turn(clockwise);
    }
    void write()
    {
        // On an empty picture a text goes another way, which has its own tests.
        if (m_board.view.isEmpty())
            return;
        m_board.write(m_random.bounded(4) == 0 ? QString() : QString("Wg"), point());
        m_expected.draw(m_board.shown());
    }
    void drag()
    {
        m_board.style.penWidth = m_random.bounded(1, 9);
        m_board.style.fillEnabled = m_random.bounded(2) == 0;
        m_board.style.penColor = QColor::fromHsv(m_random.bounded(360), 255, 255, 180);
        QVector<QPoint> points;
        for (int i = m_random.bounded(1, 6); i >= 0; --i)
            points.append(point());
        m_board.drag(static_cast<CanvasModes::MouseMode>(m_random.bounded(9)), points);
        m_expected.draw(m_board.shown());
    }

    QRandomGenerator m_random;
    DrawingBoard m_board;
    WholeCopies m_expected{LayerHistory::MOST_STEPS};
    std::int64_t m_nowMs = 0;
};

} // namespace

class DrawingWalkTest : public QObject
{
    Q_OBJECT

private slots:
    void twentyThousandStepsAgreeWithWholeCopies()
    {
        for (quint32 seed = 0; seed < 8; ++seed) {
            Walk walk(seed);
            for (int i = 0; i < 2500; ++i) {
                walk.step();
                QVERIFY2(walk.agrees(), qPrintable(QString("seed %1, step %2").arg(seed).arg(i)));
            }
        }
    }
};

REGISTER_TEST(DrawingWalkTest)
#include "tst_drawing_walk.moc"
