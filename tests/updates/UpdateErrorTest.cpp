// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/UpdateError.h"

#include <QSet>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(UpdateError, everyCaseHasItsOwnSentence)
{
    const QString detail = QStringLiteral("the detail");
    QSet<QString> sentences;
    int cases = 0;
    for (auto which = UpdateError::Case::insecureAddress; which <= UpdateError::Case::noInstaller;
         which = static_cast<UpdateError::Case>(static_cast<int>(which) + 1)) {
        const UpdateError error(which, detail);
        EXPECT_EQ(error.which(), which);
        EXPECT_FALSE(error.description().isEmpty());
        EXPECT_EQ(QString::fromUtf8(error.what()), error.description());
        sentences.insert(error.description());
        ++cases;
    }
    EXPECT_EQ(sentences.size(), cases);
}

TEST(UpdateError, detailIsOneShortLine)
{
    const UpdateError error(UpdateError::Case::unreachable,
                            QStringLiteral("one\ntwo ") + QString(10'000, u'x'));
    EXPECT_TRUE(error.description().contains(QStringLiteral("one two xxx")));
    EXPECT_LT(error.description().size(), 300);
}

} // namespace
} // namespace quillmark
