// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "appcast/AppcastTool.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("appcast"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLMARK_VERSION));
    try {
        const QString answer =
            quillmark::tools::runAppcastTool(QCoreApplication::arguments().sliced(1));
        std::cout << answer.toStdString() << '\n';
    } catch (const std::exception &error) {
        std::cerr << "appcast: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
