// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileChooser.h"

#include "app/PortalChooser.h"
#include "app/Theme.h"

#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QShortcut>
#include <QStandardPaths>
#include <QTreeView>

#include <utility>

namespace quillmark {
namespace {

NameFilter nameFilter(const QString &title, const QStringList &extensions)
{
    NameFilter filter{title, {}};
    for (const QString &extension : extensions) {
        filter.patterns << QStringLiteral("*.") + extension
                        << QStringLiteral("*.") + extension.toUpper();
    }
    return filter;
}

std::vector<NameFilter> pictureFilters()
{
    const QStringList jpeg{QStringLiteral("jpg"), QStringLiteral("jpeg")};
    const QStringList tiff{QStringLiteral("tif"), QStringLiteral("tiff")};
    const QStringList other{QStringLiteral("png"),  QStringLiteral("webp"), QStringLiteral("heic"),
                            QStringLiteral("heif"), QStringLiteral("avif"), QStringLiteral("jxl"),
                            QStringLiteral("jp2"),  QStringLiteral("bmp"),  QStringLiteral("gif"),
                            QStringLiteral("dng")};
    return {nameFilter(QStringLiteral("Pictures"), jpeg + tiff + other),
            nameFilter(QStringLiteral("JPEG"), jpeg),
            nameFilter(QStringLiteral("TIFF"), tiff),
            {QStringLiteral("All files"), {QStringLiteral("*")}}};
}

QStringList dialogFilters(const std::vector<NameFilter> &filters)
{
    QStringList result;
    for (const NameFilter &filter : filters) {
        result << filter.title + QStringLiteral(" (") + filter.patterns.join(u' ') +
                      QStringLiteral(")");
    }
    return result;
}

/// Whether Qt sends its own dialogs to the portal too, as it does in a sandbox. Such a dialog
/// counts as cancelled when the portal fails, and nobody ever sees one.
bool dialogsNeedPortal()
{
    return qEnvironmentVariable("QT_QPA_PLATFORMTHEME") == QLatin1String("xdgdesktopportal") ||
           qEnvironmentVariableIsSet("SNAP") ||
           !QStandardPaths::locate(QStandardPaths::RuntimeLocation, QStringLiteral("flatpak-info"))
                .isEmpty();
}

/// Where pictures are looked for first when nothing else is said.
QUrl defaultFolder()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QUrl::fromLocalFile(QDir(pictures).exists() ? pictures : QDir::homePath());
}

/// Gives names the room that the list has, and shows of a folder only what tells it from others.
void arrangeColumns(QFileDialog &dialog, bool folders)
{
    auto *list = dialog.findChild<QTreeView *>();
    if (!list || list->header()->count() == 0) {
        return; // the desktop's own dialog
    }
    constexpr int size = 1;
    constexpr int type = 2;
    list->setColumnHidden(size, folders);
    list->setColumnHidden(type, folders);
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

QFileDialog *makeDialog(const ChooserRequest &request)
{
    constexpr QSize roomy(820, 540);
    auto *dialog = new QFileDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(request.title);
    dialog->setPalette(Theme::widgetPalette());
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setOption(QFileDialog::DontUseNativeDialog, dialogsNeedPortal());
    if (request.folder) {
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
    } else {
        dialog->setFileMode(QFileDialog::ExistingFile);
        dialog->setOption(QFileDialog::HideNameFilterDetails);
        dialog->setNameFilters(dialogFilters(request.filters));
    }
    dialog->setDirectoryUrl(request.startFolder.isEmpty() ? defaultFolder() : request.startFolder);
    dialog->setLabelText(QFileDialog::Accept, request.acceptLabel);
    dialog->resize(roomy);
    arrangeColumns(*dialog, request.folder);
    return dialog;
}

} // namespace

FileChooser::FileChooser(QObject *parent) : QObject(parent) {}

FileChooser::~FileChooser()
{
    delete m_dialog;
}

ChooserRequest FileChooser::request() const
{
    return {.folder = m_kind == Folder,
            .title = QStringLiteral("Quillmark"),
            .acceptLabel = m_acceptLabel,
            .startFolder = m_startFolder,
            .filters = m_kind == Folder ? std::vector<NameFilter>() : pictureFilters()};
}

void FileChooser::open()
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
    } else if (!m_portal && PortalChooser::canBeAsked()) {
        openPortal();
    } else if (!m_portal) {
        openDialog();
    }
}

void FileChooser::close()
{
    endPortal();
    if (m_dialog) {
        m_dialog->reject();
    }
}

void FileChooser::openPortal()
{
    // A desktop that has a portal runs it. One that is not running is not waited for, except
    // where there is to be no other chooser.
    m_portal = std::make_unique<PortalChooser>(request(), dialogsNeedPortal());
    connect(m_portal.get(), &PortalChooser::chosen, this, [this](const QUrl &location) {
        endPortal();
        Q_EMIT chosen(location);
    });
    connect(m_portal.get(), &PortalChooser::cancelled, this, &FileChooser::endPortal);
    connect(m_portal.get(), &PortalChooser::unavailable, this, [this] {
        endPortal();
        openDialog();
    });
    m_portal->open(m_parentWindow);
}

void FileChooser::endPortal()
{
    if (m_portal) {
        m_portal->disconnect(this);
        m_portal.release()->deleteLater(); // it may be the one that is calling
    }
}

void FileChooser::openDialog()
{
    m_dialog = makeDialog(request());
    // Not urlSelected(): only the desktop's own choosers say that.
    connect(m_dialog, &QFileDialog::finished, this, &FileChooser::takeChoice);
    // The program's own keys reach no window that a dialog is modal to.
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+Q")), m_dialog), &QShortcut::activated,
            this, &FileChooser::quit);
    m_dialog->winId(); // makes the window, which can then be told whom it belongs to
    m_dialog->windowHandle()->setTransientParent(m_parentWindow);
    m_dialog->open();
}

void FileChooser::quit()
{
    close();
    if (m_parentWindow) {
        m_parentWindow->close();
    }
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

} // namespace quillmark
