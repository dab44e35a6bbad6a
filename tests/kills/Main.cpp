// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What a kill test runs, kills and looks at its files with.

#include "Commands.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::kills {
namespace {

constexpr const char *usage = "usage: kill-subject roll FOLDER <PAYLOAD\n"
                              "       kill-subject run FOLDER MODE\n"
                              "       kill-subject pixels FILE...\n";

int dispatch(const std::vector<std::string> &words)
{
    const std::string command = words.empty() ? std::string() : words.front();
    if (command == "roll" && words.size() == 2) {
        const std::string payload{std::istreambuf_iterator<char>(std::cin), {}};
        makeRoll(words[1], QByteArray::fromStdString(payload));
        return EXIT_SUCCESS;
    }
    if (command == "run" && words.size() == 3) {
        if (const auto mode = backupModeFromRawValue(QString::fromStdString(words[2]))) {
            return runIngest(words[1], *mode);
        }
    }
    if (command == "pixels") {
        for (std::size_t i = 1; i < words.size(); ++i) {
            printPixelHash(words[i]);
        }
        return EXIT_SUCCESS;
    }
    std::fputs(usage, stderr);
    return EXIT_FAILURE;
}

} // namespace
} // namespace quillmark::kills

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    try {
        return quillmark::kills::dispatch({argv + 1, argv + argc});
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "kill-subject: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
