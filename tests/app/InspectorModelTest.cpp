// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/InspectorModel.h"
#include "support/Printers.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(InspectorModel, behavesAsViewsExpect)
{
    InspectorModel model;
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setRows({{QStringLiteral("ISO"), QStringLiteral("400")}});
    model.setRows({});
}

TEST(InspectorModel, givesLabelsAndValuesByRole)
{
    InspectorModel model;
    model.setRows({{QStringLiteral("ISO"), QStringLiteral("400")},
                   {QStringLiteral("FILM"), QStringLiteral("Vela")}});
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.data(model.index(1), InspectorModel::LabelRole), QStringLiteral("FILM"));
    EXPECT_EQ(model.data(model.index(1), InspectorModel::ValueRole), QStringLiteral("Vela"));
    EXPECT_FALSE(model.data(model.index(0), Qt::DisplayRole).isValid());
    EXPECT_EQ(model.roleNames().value(InspectorModel::LabelRole), QByteArray("label"));
    EXPECT_EQ(model.roleNames().value(InspectorModel::ValueRole), QByteArray("value"));
}

} // namespace
} // namespace quillmark
