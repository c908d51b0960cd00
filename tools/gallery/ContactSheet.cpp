#include "tools/gallery/ContactSheet.h"

#include "resources/SkinImages.h"

#include <QPainter>

#include <algorithm>

namespace
{

constexpr int SHEET_WIDTH = 1440;
constexpr int MARGIN = 16;
constexpr int GAP = 10;
constexpr int LABEL_HEIGHT = 16;
constexpr int HEADING_HEIGHT = 26;
// Names are up to this wide; narrow images get a column as wide.
constexpr int LEAST_COLUMN = 176;

const QColor sheetColour(0x1a, 0x1d, 0x21);

QList<QColor> grounds(const QString &ground)
{
    if (ground == "panel" || ground == "bar")
        return {QColor(0x2b, 0x30, 0x36)};
    if (ground == "popup")
        return {QColor(0x15, 0x18, 0x1b)};
    // An indication must read on white paper as well as on a black board.
    if (ground == "picture")
        return {QColor(0xff, 0xff, 0xff), QColor(0x0b, 0x0c, 0x0d)};
    // The same two under an indication's own ground.
    if (ground == "pill")
        return {QColor(0x73, 0x73, 0x73), QColor(0x05, 0x05, 0x05)};
    return {QColor(0x22, 0x26, 0x2b)};
}

QSize shownSize(const SkinImage &image)
{
    return image.size.width() > 600 ? image.size / 4 : image.size;
}

// How many pictures stand side by side for one name.
int versions(const SkinImage &image)
{
    return image.targets().size() * grounds(image.ground).size();
}

QSize cellSize(const SkinImage &image)
{
    const QSize shown = shownSize(image);
    return {qMax(LEAST_COLUMN, versions(image) * (shown.width() + GAP) + GAP),
            shown.height() + GAP + LABEL_HEIGHT};
}

} // namespace

ContactSheet::ContactSheet(const QList<SkinImage> &images, double ratio)
    : m_images(images)
    , m_ratio(ratio)
{
}

QImage ContactSheet::draw()
{
    const QSize size(SHEET_WIDTH, drawGroups(nullptr));
    QImage sheet((QSizeF(size) * m_ratio).toSize(), QImage::Format_RGB32);
    sheet.setDevicePixelRatio(m_ratio);
    sheet.fill(sheetColour);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    drawGroups(&painter);
    return sheet;
}

QList<ContactSheet::Group> ContactSheet::groups() const
{
    QList<Group> result;
    for (const SkinImage &image : m_images) {
        const auto sameKind = [&image](const Group &group) {
            return group.first().section == image.section && group.first().ground == image.ground &&
                   group.first().size == image.size;
        };
        const auto found = std::find_if(result.begin(), result.end(), sameKind);
        if (found == result.end())
            result << Group{image};
        else
            *found << image;
    }
    return result;
}

int ContactSheet::drawGroups(QPainter *painter) const
{
    int y = MARGIN;
    int x = MARGIN;
    int rowHeight = 0;
    // Single images flow side by side; a family has rows of its own.
    for (const Group &group : groups()) {
        const QSize cell = cellSize(group.first());
        if (group.size() > 1) {
            y += rowHeight;
            rowHeight = 0;
            x = MARGIN;
            y = drawGroup(painter, group, y);
            continue;
        }
        if (x + cell.width() > SHEET_WIDTH - MARGIN) {
            x = MARGIN;
            y += rowHeight;
            rowHeight = 0;
        }
        if (painter != nullptr)
            drawCell(*painter, group.first(), QRect(QPoint(x, y), cell));
        x += cell.width() + GAP;
        rowHeight = qMax(rowHeight, cell.height() + GAP);
    }
    return y + rowHeight + MARGIN;
}

int ContactSheet::drawGroup(QPainter *painter, const Group &group, int y) const
{
    const SkinImage &first = group.first();
    const QSize cell = cellSize(first);
    const int columns = qMax(1, (SHEET_WIDTH - 2 * MARGIN + GAP) / (cell.width() + GAP));
    if (painter != nullptr) {
        painter->setPen(QColor(0xae, 0xb5, 0xbe));
        painter->setFont(QFont("Arial", 10, QFont::Bold));
        const QString states =
            first.section == "states" ? QString("normal, over, click") : first.section;
        painter->drawText(MARGIN, y + 17,
                          QString("%1 x %2, %3: %4")
                              .arg(first.size.width())
                              .arg(first.size.height())
                              .arg(first.ground, states));
    }
    y += HEADING_HEIGHT;
    for (int i = 0; i < group.size(); ++i) {
        const QPoint corner(MARGIN + i % columns * (cell.width() + GAP),
                            y + i / columns * (cell.height() + GAP));
        if (painter != nullptr)
            drawCell(*painter, group[i], QRect(corner, cell));
    }
    return y + (group.size() + columns - 1) / columns * (cell.height() + GAP);
}

void ContactSheet::drawCell(QPainter &painter, const SkinImage &image, const QRect &cell) const
{
    const QSize shown = shownSize(image);
    const QRect pictures(cell.topLeft(), QSize(cell.width(), shown.height() + GAP));
    const QList<QColor> colours = grounds(image.ground);
    const int share = pictures.width() / colours.size();
    int x = 0;
    for (int i = 0; i < colours.size(); ++i) {
        const QRect ground(pictures.x() + i * share, pictures.y(), share, pictures.height());
        painter.fillRect(ground, colours[i]);
        QStringList targets = image.targets();
        if (targets.size() == 3)
            targets.move(1, 2); // as a hand meets them
        x = ground.x() + (share - targets.size() * (shown.width() + GAP) + GAP) / 2;
        for (const QString &target : targets) {
            painter.drawImage(QRect(QPoint(x, pictures.y() + GAP / 2), shown),
                              SkinImages::load(":/icons/" + target));
            x += shown.width() + GAP;
        }
    }
    painter.setPen(QColor(0xd6, 0xda, 0xe0));
    painter.setFont(QFont("Arial", 8));
    painter.drawText(cell.x() + 2, cell.bottom() - 4, image.name);
}
