#include "widgets/RegistrationWidget.h"

#include "widgets/RegistrationFile.h"

#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLineEdit>
#include <QTextEdit>

#include <algorithm>

RegistrationWidget::RegistrationWidget(QWidget *parent)
    : QWidget(parent)
{
    createEditors();
    refresh();
}

void RegistrationWidget::createEditors()
{
    auto *grid = new QGridLayout(this);
    for (int slot = 0; slot < SLOTS; ++slot) {
        auto *nameEdit = new QLineEdit(this);
        auto *contentEdit = new QTextEdit(this);
        // Only plain text is stored; pasted formatting would be lost without a warning.
        contentEdit->setAcceptRichText(false);
        grid->addWidget(nameEdit, (slot / 2) * 2, slot % 2);
        grid->addWidget(contentEdit, (slot / 2) * 2 + 1, slot % 2);
        connect(nameEdit, SIGNAL(textChanged(QString)), this, SLOT(nameChanged()));
        connect(contentEdit, SIGNAL(textChanged()), this, SLOT(contentChanged()));
        m_nameEdits.at(static_cast<size_t>(slot)) = nameEdit;
        m_contentEdits.at(static_cast<size_t>(slot)) = contentEdit;
    }
}

void RegistrationWidget::create()
{
    m_fileName.clear();
    m_items.clear();
    refresh();
}

void RegistrationWidget::open()
{
    const QString chosen = QFileDialog::getOpenFileName(this, tr("Open registration file..."),
                                                        QString(), tr("Registration file (*.rf)"));
    QFile file(chosen);
    if (chosen.isEmpty() || !file.open(QIODevice::ReadOnly))
        return;
    if (const auto items = RegistrationFile::read(file))
        m_items = *items;
    m_page = 0;
    refresh();
}

void RegistrationWidget::save()
{
    if (m_fileName.isEmpty()) {
        m_fileName = QFileDialog::getSaveFileName(this, tr("Save registration file..."), QString(),
                                                  tr("Registration file (*.rf)"));
    }
    if (m_fileName.isEmpty())
        return;
    if (!RegistrationFile::write(m_fileName, m_items))
        qDebug("cannot write %s", qPrintable(m_fileName));
}

void RegistrationWidget::previousPage()
{
    --m_page;
    refresh();
}

void RegistrationWidget::nextPage()
{
    ++m_page;
    refresh();
}

void RegistrationWidget::add()
{
    m_items.append(RegistrationItem());
    refresh();
}

void RegistrationWidget::refresh()
{
    m_refreshing = true;
    const int pages = m_items.isEmpty() ? 1 : (m_items.size() + SLOTS - 1) / SLOTS;
    m_page = std::clamp(m_page, 0, pages - 1);
    for (int slot = 0; slot < SLOTS; ++slot)
        fillSlot(slot);
    m_refreshing = false;
    emit pageChanged(m_page + 1, pages);
}

void RegistrationWidget::nameChanged()
{
    if (m_refreshing)
        return;
    const auto found = std::find(m_nameEdits.begin(), m_nameEdits.end(), sender());
    if (found == m_nameEdits.end())
        return;
    if (RegistrationItem *item = itemOf(static_cast<int>(found - m_nameEdits.begin())))
        item->name = (*found)->text();
}

void RegistrationWidget::contentChanged()
{
    if (m_refreshing)
        return;
    const auto found = std::find(m_contentEdits.begin(), m_contentEdits.end(), sender());
    if (found == m_contentEdits.end())
        return;
    if (RegistrationItem *item = itemOf(static_cast<int>(found - m_contentEdits.begin())))
        item->content = (*found)->toPlainText();
}

void RegistrationWidget::fillSlot(int slot)
{
    QLineEdit *nameEdit = m_nameEdits.at(static_cast<size_t>(slot));
    QTextEdit *contentEdit = m_contentEdits.at(static_cast<size_t>(slot));
    const RegistrationItem *item = itemOf(slot);
    nameEdit->setText(item ? item->name : QString());
    contentEdit->setPlainText(item ? item->content : QString());
    nameEdit->setEnabled(item);
    contentEdit->setEnabled(item);
}

RegistrationItem *RegistrationWidget::itemOf(int slot)
{
    const int index = m_page * SLOTS + slot;
    return index < m_items.size() ? &m_items[index] : nullptr;
}
