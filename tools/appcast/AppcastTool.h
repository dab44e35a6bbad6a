// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace quillmark::tools {

/// Does what the arguments (without the program's name) ask for, and gives what is to be
/// printed. Throws std::exception with a sentence for whoever typed them.
QString runAppcastTool(const QStringList &arguments);

/// What can be asked for.
QString appcastUsage();

} // namespace quillmark::tools
