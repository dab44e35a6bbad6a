// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileChooser.h"

#include "app/Theme.h"

#include <QFileDialog>

#include <utility>

namespace quillmark {
namespace {

/// In both letter cases: scanners write either, and some desktops' choosers tell them apart.
QString nameFilter(const QString &title, const QStringList &extensions)
{
    QStringList patterns;
    for (const QString &extension : extensions) {
        patterns << QStringLiteral("*.") + extension << QStringLiteral("*.") + extension.toUpper();
    }
    return title + QStringLiteral(" (") + patterns.join(u' ') + QStringLiteral(")");
}

} // namespace

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
    // It is over, even if it is deleted only later, and even if it says so twice.
    const QPointer<QFileDialog> dialog = std::exchange(m_dialog, nullptr);
    if (!dialog) {
        return;
    }
    const QList<QUrl> locations = dialog->selectedUrls();
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
        const QStringList jpeg{QStringLiteral("jpg"), QStringLiteral("jpeg")};
        const QStringList tiff{QStringLiteral("tif"), QStringLiteral("tiff")};
        const QStringList other{QStringLiteral("png"),  QStringLiteral("webp"),
                                QStringLiteral("heic"), QStringLiteral("heif"),
                                QStringLiteral("avif"), QStringLiteral("jxl"),
                                QStringLiteral("jp2"),  QStringLiteral("bmp"),
                                QStringLiteral("gif"),  QStringLiteral("dng")};
        dialog->setNameFilters({nameFilter(QStringLiteral("Pictures"), jpeg + tiff + other),
                                nameFilter(QStringLiteral("JPEG"), jpeg),
                                nameFilter(QStringLiteral("TIFF"), tiff),
                                QStringLiteral("All files (*)")});
    }
    if (!m_startFolder.isEmpty()) {
        dialog->setDirectoryUrl(m_startFolder);
    }
    dialog->setLabelText(QFileDialog::Accept, m_acceptLabel);
    return dialog;
}

} // namespace quillmark
