// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Settings.h"

#include "base/Uninterrupted.h"
#include "base/UniqueFd.h"

#include <QFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <stdlib.h> // NOLINT(modernize-deprecated-headers): mkostemp is not in <cstdlib>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

namespace quillmark::Settings {
namespace {

namespace fs = std::filesystem;

fs::path folder()
{
    const QString configurations =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return fs::path(QFile::encodeName(configurations).toStdString()) / "Larkhollow" / "Quillmark";
}

/// A file that becomes the value's, or is gone at the end.
class Draft
{
public:
    explicit Draft(const fs::path &destination) : m_destination(destination)
    {
        m_fd.reset(uninterrupted([&] {
            m_path = destination.native() + ".XXXXXX";
            return ::mkostemp(m_path.data(), O_CLOEXEC);
        }));
    }
    Draft(const Draft &) = delete;
    Draft &operator=(const Draft &) = delete;
    ~Draft()
    {
        if (m_fd) {
            ::unlink(m_path.c_str());
        }
    }

    bool write(const QByteArray &value)
    {
        for (qsizetype written = 0; m_fd && written < value.size();) {
            const ssize_t count = uninterrupted([&] {
                return ::write(m_fd.get(), value.constData() + written,
                               static_cast<std::size_t>(value.size() - written));
            });
            if (count < 0) {
                return false;
            }
            written += count;
        }
        return m_fd && uninterrupted([&] { return ::fsync(m_fd.get()); }) == 0;
    }

    void takeItsPlace()
    {
        if (::rename(m_path.c_str(), m_destination.c_str()) == 0) {
            m_fd.reset();
        }
    }

private:
    const fs::path &m_destination;
    std::string m_path;
    UniqueFd m_fd;
};

UniqueFd openForReading(const fs::path &path, int furtherFlags)
{
    return UniqueFd(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | furtherFlags); }));
}

} // namespace

std::optional<QByteArray> value(const QString &key)
{
    const UniqueFd file = openForReading(folder() / key.toStdString(), 0);
    QByteArray bytes;
    std::array<char, 4096> piece; // NOLINT(*-member-init): read() fills it
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return ::read(file.get(), piece.data(), piece.size()); });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(piece.data(), static_cast<qsizetype>(count));
    }
}

void store(const QString &key, const QByteArray &value)
{
    const fs::path place = folder();
    std::error_code shownByWhatFollows;
    fs::create_directories(place, shownByWhatFollows);
    const fs::path file = place / key.toStdString();
    Draft draft(file);
    if (draft.write(value)) {
        draft.takeItsPlace();
        const UniqueFd entries = openForReading(place, O_DIRECTORY);
        uninterrupted([&] { return ::fsync(entries.get()); });
    }
}

} // namespace quillmark::Settings
