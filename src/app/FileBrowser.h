// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

namespace quillmark {

/// Shows a folder in the desktop's file browser and returns at once.
///
/// The desktop's file manager is asked over the session bus (ShowFolders of freedesktop.org's
/// interface org.freedesktop.FileManager1), and started for it where it is not running. Where
/// there is none, or it fails or does not answer within ten seconds, the folder is opened with
/// whatever opens folders here.
///
/// @param folder a file URL; its bytes, percent-encoded, are passed on as they are
void showInFileBrowser(const QUrl &folder);

} // namespace quillmark
