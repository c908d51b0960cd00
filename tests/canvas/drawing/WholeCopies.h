#pragma once

#include <QImage>
#include <QSize>
#include <QTransform>

#include <cstring>
#include <deque>

/// The steps of a drawing written a second time, slow and plain, with copies of all of it before
/// and after each: the reference that the history of changed parts is compared with.
class WholeCopies
{
public:
    explicit WholeCopies(std::size_t mostSteps)
        : m_mostSteps(mostSteps)
    {
    }

    [[nodiscard]] static QImage blank(QSize size)
    {
        QImage picture(size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        return picture;
    }
    [[nodiscard]] static bool isBlank(const QImage &picture)
    {
        return picture == blank(picture.size());
    }

    /// The picture that is visible.
    [[nodiscard]] const QImage &shown() const { return m_shown; }
    [[nodiscard]] bool canUndo() const { return m_done != 0; }
    [[nodiscard]] bool canRedo() const { return m_done != m_steps.size(); }

    /// Something was drawn, and this is what is seen now. A drawing of another size has taken the
    /// size in which it was seen.
    void draw(const QImage &shown)
    {
        if (shown == m_shown)
            return;
        m_drawing = m_shown;
        become(shown);
        m_shown = shown;
    }
    void clear()
    {
        if (!isBlank(m_drawing))
            become(blank(m_drawing.size()));
        m_shown = blank(m_shown.size());
    }
    void resize(QSize size)
    {
        if (!isBlank(m_drawing))
            become(blank(size));
        else if (m_steps.empty())
            m_drawing = blank(size);
        m_shown = blank(size);
    }
    void turn(bool clockwise)
    {
        const QTransform quarter = QTransform().rotate(clockwise ? 90 : 270);
        m_drawing = m_drawing.transformed(quarter);
        m_shown = m_shown.transformed(quarter);
        m_turns += clockwise ? 1 : 3;
    }
    void undo()
    {
        if (canUndo())
            show(m_steps[--m_done].before);
    }
    void redo()
    {
        if (canRedo())
            show(m_steps[m_done++].after);
    }

private:
    struct Copy {
        QImage drawing;
        int turns = 0;
    };
    struct Step {
        Copy before;
        Copy after;
    };

    void become(const QImage &drawing)
    {
        m_steps.resize(m_done);
        m_steps.push_back({{m_drawing, m_turns}, {drawing, m_turns}});
        if (m_steps.size() > m_mostSteps)
            m_steps.pop_front();
        m_done = m_steps.size();
        m_drawing = drawing;
    }

    void show(const Copy &copy)
    {
        const int quarters = (m_turns - copy.turns) % 4;
        m_drawing = copy.drawing.transformed(QTransform().rotate(90.0 * quarters));
        m_shown = fitted(m_drawing, m_shown.size());
    }

    static QImage fitted(const QImage &drawing, QSize size)
    {
        if (drawing.size() == size || drawing.isNull() || size.isEmpty())
            return drawing.size() == size ? drawing : blank(size);
        const QSize inside = drawing.size().scaled(size, Qt::KeepAspectRatio);
        const QImage scaled = drawing.scaled(inside.expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                                             Qt::SmoothTransformation);
        QImage picture = blank(size);
        const QPoint corner((size.width() - scaled.width()) / 2,
                            (size.height() - scaled.height()) / 2);
        for (int y = 0; y < scaled.height(); ++y)
            std::memcpy(picture.scanLine(corner.y() + y) + std::ptrdiff_t{4} * corner.x(),
                        scaled.constScanLine(y),
                        std::size_t{4} * static_cast<std::size_t>(scaled.width()));
        return picture;
    }

    std::size_t m_mostSteps;
    QImage m_drawing = blank({0, 0});
    QImage m_shown = blank({0, 0});
    std::deque<Step> m_steps;
    std::size_t m_done = 0;
    int m_turns = 0;
};
