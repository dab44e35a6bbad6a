// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileChooser.h"

#include "app/Theme.h"

#include <QFileDialog>

namespace quillmark {

FileChooser::FileChooser(QObject *parent) : QObject(parent) {}

FileChooser::~FileChooser()
{
    delete m_dialog;
}

void FileChooser::open()
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    m_dialog = makeDialog();
    connect(m_dialog, &QFileDialog::urlSelected, this, &FileChooser::chosen);
    m_dialog->winId(); // makes the window, which can then be told whom it belongs to
    m_dialog->windowHandle()->setTransientParent(m_parentWindow);
    m_dialog->open();
}

QFileDialog *FileChooser::makeDialog() const
{
    auto *dialog = new QFileDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setPalette(Theme::widgetPalette());
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    if (m_kind == Folder) {
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
    } else {
        dialog->setFileMode(QFileDialog::ExistingFile);
        dialog->setNameFilters(
            {QStringLiteral("Pictures (*.jpg *.jpeg *.tif *.tiff *.png *.webp *.heic *.heif *.avif "
                            "*.jxl *.bmp *.gif *.dng)"),
             QStringLiteral("JPEG (*.jpg *.jpeg)"), QStringLiteral("TIFF (*.tif *.tiff)"),
             QStringLiteral("All files (*)")});
    }
    if (!m_startFolder.isEmpty()) {
        dialog->setDirectoryUrl(m_startFolder);
    }
    dialog->setLabelText(QFileDialog::Accept, m_acceptLabel);
    return dialog;
}

} // namespace quillmark
