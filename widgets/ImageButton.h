#pragma once

#include "widgets/TabFocusButton.h"

#include <QColor>
#include <QImage>
#include <QKeySequence>
#include <QTimer>

/// A push button painted from the three images of a skin name, as large as its normal image. Held
/// down for half a second it says so, while still down; the release clicks as usual.
///
/// A ring marks it while it has the focus, but only when the focus came by a key; the mouse does
/// not change the three images.
class ImageButton : public TabFocusButton
{
    Q_OBJECT

public:
    ImageButton(const QString &name, QWidget *parent, int x, int y);
    /// Ignores `parent`: a Panel adopts the button later. The tool tip is its accessible name as
    /// well.
    ImageButton(const QString &name, const QString &toolTip, QWidget *parent, int x, int y);

    /// Loads the three images and takes the size of the normal one; a name without images gives an
    /// empty button. A gray look painted earlier stays.
    void setImage(const QString &name);
    [[nodiscard]] QString skin() const { return m_skin; }
    /// The key that does the same, which the tip names; none when it is empty.
    void setKey(const QKeySequence &key);
    [[nodiscard]] QKeySequence key() const { return m_key; }
    /// What the tip says: the tool tip or else the name, and the key in brackets; nothing when it
    /// would repeat the caption alone.
    [[nodiscard]] QString tip() const;
    /// For the caption; an invalid colour paints black. Does not repaint.
    void setTextColor(const QColor &color);
    /// Keeps the caption, which stands in the middle, off that many pixels at the left.
    void setCaptionLead(int pixels);
    /// A gray button shows inverted colours and no caption, and ignores mouse and keys.
    void setGray(bool gray);
    [[nodiscard]] bool isGray() const { return m_gray; }
    /// Whether the right mouse button and the keys for a context menu ask for options; otherwise
    /// they do nothing.
    void setHasOptions(bool has);
    [[nodiscard]] bool hasOptions() const { return m_hasOptions; }
    void askForOptions();
    /// Shows a dot in the upper right corner: there is something to read behind the button.
    void setMarked(bool marked);
    [[nodiscard]] bool isMarked() const { return m_marked; }

    /// A 32-bit copy of the image. If the source was 32-bit without premultiplied alpha the copy
    /// shares its pixels and both turn gray; any other source stays as it is and the copy keeps its
    /// colours. Luma weights 11 : 16 : 5 of 32.
    static QImage convertToGrayScale(const QImage &image);

signals:
    void hold();
    /// The options were asked for with the right mouse button, Menu, Shift+F10, Alt+Down or a
    /// screen reader.
    void optionsWanted();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    /// The image of the current state, or the normal one where the skin has no other.
    const QImage &stateImage();
    void paintCaption(QPainter &painter);
    void paintMark(QPainter &painter);
    void paintFocusRing(QPainter &painter);

    bool m_hovered = false;
    /// Whether the focus came by a key. Kept while another window or a menu has the focus for a
    /// time.
    bool m_focusedByKey = false;
    bool m_gray = false;
    bool m_hasOptions = false;
    bool m_marked = false;
    QKeySequence m_key;
    QColor m_textColor;
    int m_captionLead = 0;
    QString m_skin;
    QImage m_normalImage;
    /// Loaded when first painted, as decoding all of them would delay the start.
    QImage m_overImage;
    QImage m_clickImage;
    /// Built when the button is first painted gray.
    QImage m_grayImage;
    QTimer m_holdTimer;
};
