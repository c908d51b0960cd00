#include "widgets/TextToolWindow.h"

#include "canvas/ImageCanvas.h"
#include "resources/SkinImages.h"
#include "sources/WindowServices.h"
#include "widgets/ChoiceRow.h"
#include "widgets/DrawingColors.h"
#include "widgets/FormControls.h"
#include "widgets/ToolTips.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

TextToolWindow::TextToolWindow(ImageButton *toolButton, MainWindow *mainWindow)
    : ToolWindow(SkinImages::load(":/icons/Background/POP_BK_COLOR_2LINE"), toolButton,
                 WindowServices::of(mainWindow).widget(), tr("Text"))
    , m_fontFaceBox(new QComboBox(this))
    , m_fontSizeBox(new QComboBox(this))
    , m_canvas(WindowServices::of(mainWindow).currentCanvas())
    , m_mainWindow(mainWindow)
{
    auto *label = new QLabel(tr("Color"), this);
    label->setStyleSheet("font-family: Arial; font-size: 15px; color: white;");
    label->move(8, 45);
    FormControls::keepLineHeight(label);

    std::vector<ChoiceRow::Choice> choices;
    choices.reserve(DrawingColors::PEN.size());
    for (const DrawingColors::Entry &entry : DrawingColors::PEN) {
        choices.push_back(
            {QStringLiteral("ICON_LINE_COLOR_%1").arg(entry.skin), DrawingColors::name(entry)});
    }
    m_colorRow = new ChoiceRow(this, QString(), choices, {{}, {130, 43}, 33}, SLOT(colorChanged()));

    createFaceBox();
    createSizeBox();
    WindowServices::of(mainWindow).notifyOfMode(this);
    modeChanged();
}

TextToolWindow::~TextToolWindow()
{
    // The window hides while it is destroyed, which takes the focus from the field.
    m_fontSizeBox->lineEdit()->disconnect(this);
}

void TextToolWindow::modeChanged()
{
    m_canvas = WindowServices::of(m_mainWindow).currentCanvas();
    if (!m_canvas)
        return;
    const int color = DrawingColors::indexOf(DrawingColors::PEN, m_canvas->textColor(), -1);
    if (color >= 0)
        m_colorRow->check(color);

    // Showing the canvas's font must not write it back.
    const QSignalBlocker blocker(m_fontFaceBox);
    const int face = faceEntry(m_canvas->fontFace());
    if (face >= 0)
        m_fontFaceBox->setCurrentIndex(face);
    showFontSize();
}

void TextToolWindow::colorChanged()
{
    const int index = m_colorRow->indexOf(sender());
    if (m_canvas && index >= 0)
        m_canvas->setTextColor(DrawingColors::colorAt(DrawingColors::PEN, index));
}

void TextToolWindow::fontFaceChanged()
{
    if (m_canvas)
        m_canvas->setFontFace(m_fontFaceBox->currentText());
}

void TextToolWindow::fontSizeChanged()
{
    bool isNumber = false;
    const int size = m_fontSizeBox->currentText().toInt(&isNumber);
    if (m_canvas && isNumber)
        m_canvas->setFontSize(size);
}

void TextToolWindow::showFontSize()
{
    if (!m_canvas)
        return;
    // Showing the canvas's size must not write it back.
    const QSignalBlocker blocker(m_fontSizeBox);
    const int entry = m_fontSizes.indexOf(m_canvas->fontSize());
    if (entry >= 0)
        m_fontSizeBox->setCurrentIndex(entry);
    m_fontSizeBox->setEditText(QString::number(m_canvas->fontSize()));
}

int TextToolWindow::faceEntry(const QString &face) const
{
    const int entry = m_fontFaces.indexOf(face);
    // The font that every canvas starts with is an alias on most systems and therefore in no list.
    if (entry < 0 && face == "Arial")
        return m_fontFaces.indexOf(QFontInfo(QFont(face)).family());
    return entry;
}

void TextToolWindow::createFaceBox()
{
    m_fontFaces = QFontDatabase().families();
    m_fontFaceBox->addItems(m_fontFaces);
    m_fontFaceBox->setAccessibleName(tr("Font"));
    ToolTips::addName(m_fontFaceBox);
    FormControls::applyLook(m_fontFaceBox);
    m_fontFaceBox->setFixedWidth(150);
    m_fontFaceBox->move(10, 20);
    connect(m_fontFaceBox, SIGNAL(activated(int)), this, SLOT(fontFaceChanged()));
}

void TextToolWindow::createSizeBox()
{
    m_fontSizeBox->setEditable(true);
    // Every number counts while it is typed: with completion to "10", a "1" could not be entered.
    m_fontSizeBox->setCompleter(nullptr);
    m_fontSizeBox->setInsertPolicy(QComboBox::NoInsert);
    m_fontSizes = QFontDatabase::standardSizes();
    for (const int size : qAsConst(m_fontSizes))
        m_fontSizeBox->addItem(QString::number(size));
    m_fontSizeBox->setAccessibleName(tr("Font size"));
    ToolTips::addName(m_fontSizeBox);
    FormControls::applyLook(m_fontSizeBox);
    m_fontSizeBox->setFixedWidth(70);
    m_fontSizeBox->move(165, 20);
    // Connected after the box is filled, which also edits its text.
    connect(m_fontSizeBox, SIGNAL(activated(int)), this, SLOT(fontSizeChanged()));
    connect(m_fontSizeBox, SIGNAL(editTextChanged(QString)), this, SLOT(fontSizeChanged()));
    // A text that is not a number is replaced when the typing ends.
    connect(m_fontSizeBox->lineEdit(), &QLineEdit::editingFinished, this,
            &TextToolWindow::showFontSize);
}
