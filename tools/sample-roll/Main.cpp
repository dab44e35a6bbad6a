// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "Roll.h"
#include "RollOptions.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("sample-roll"));
    try {
        quillmark::tools::makeRoll(
            quillmark::tools::parseRollOptions(QCoreApplication::arguments()),
            [](const std::string &line) { std::cout << line << std::endl; });
    } catch (const std::exception &error) {
        std::cerr << "sample-roll: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
