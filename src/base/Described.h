// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <exception>

namespace quillmark {

/// What every failure that a person may see offers: one sentence (or a few) that
/// says what went wrong, in the words in which it is shown.
///
/// Failures are exceptions of two kinds. Those of this program implement Described;
/// everything else comes from the libraries below and has only its what().
/// A caller's bug is neither: it is an assertion.
class Described
{
public:
    Described() = default;
    Described(const Described &) = default;
    Described &operator=(const Described &) = default;
    virtual ~Described() = default;

    /// The text for the user: plain text, never to be interpreted as markup.
    virtual QString description() const = 0;
};

/// The text for the user of any exception: description() where the exception has one,
/// what() read as UTF-8 otherwise. Never throws what it is given. Any thread.
QString describe(const std::exception_ptr &failure);

} // namespace quillmark
