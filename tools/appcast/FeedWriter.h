// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Appcast.h"

#include <QByteArray>
#include <QDateTime>

namespace quillmark::tools {

/// A feed without items. Its title is the program's name.
QByteArray emptyFeed();

/// The feed with one more item in front of those that it has, and with the date at which it was
/// made. Everything else in it, items for other systems included, stays as it is, but for the
/// white space around it. The item's notes are written as plain text or Markdown.
///
/// Throws std::runtime_error where the feed is none, or would be larger than what is read.
QByteArray feedWith(const QByteArray &feed, const AppcastItem &item, const QDateTime &made);

/// The date as a feed has it, in UTC.
QString rssDate(const QDateTime &date);

} // namespace quillmark::tools
