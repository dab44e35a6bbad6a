// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

/// What is remembered of updates from one start to the next, in the program's settings. What
/// was written by others and makes no sense is not there. The main thread.
namespace quillmark::UpdateMemory {

/// When updates were last looked for, with whatever result.
std::optional<QDateTime> lastCheck();
void setLastCheck(const QDateTime &time);

/// The version that the user does not want to hear of again; empty where there is none.
QString skippedVersion();
void setSkippedVersion(const QString &version);

/// The date of the newest feed from this address that was believed. Another feed has another
/// history.
std::optional<QDateTime> newestFeed(const QUrl &feed);
/// An older date than the one remembered changes nothing.
void noteFeed(const QUrl &feed, const QDateTime &date);

} // namespace quillmark::UpdateMemory
