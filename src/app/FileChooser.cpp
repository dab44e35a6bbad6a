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
    // Not urlSelected(): only the desktop's own choosers say that.
    connect(m_dialog, &QFileDialog::finished, this, &FileChooser::takeChoice);
    m_dialog->winId(); // makes the window, which can then be told whom it belongs to
    m_dialog->windowHandle()->setTransientParent(m_parentWindow);
    m_dialog->open();
}

void FileChooser::takeChoice(int result)
{
    const QList<QUrl> locations = m_dialog->selectedUrls();
    m_dialog = nullptr; // it is over, even if it is deleted only later
    if (result == QFileDialog::Accepted && !locations.isEmpty()) {
        Q_EMIT chosen(locations.first());
    }
}

QFileDialog *FileChooser::makeDialog() const
{
    auto *dialog = new QFileDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("Quillmark"));
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
