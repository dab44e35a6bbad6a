// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What the screens are made of, as far as it shows texts from outside.

#include "support/Printers.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using namespace Qt::StringLiterals;

/// Where an element of QML begins that interprets what it shows unless told otherwise, or that
/// loads something from an address.
QStringList suspectElements(const QString &qml)
{
    static const QRegularExpression element(
        u"^\\s*(?:\\w+:\\s*)?((?:\\w+\\.)?(?:Text|TextEdit|TextArea|TextField|Label|Image|"
        "AnimatedImage|BorderImage|FontLoader|ToolTip|WebEngineView|MediaPlayer)) *\\{"_s,
        QRegularExpression::MultilineOption);
    // What does so without an element of its own.
    static const QRegularExpression call(
        u"\\b(ToolTip\\.text|ToolTip\\.show|createQmlObject|createComponent|XMLHttpRequest)\\b"_s);
    QStringList found;
    for (const QRegularExpression &suspect : {element, call}) {
        for (auto match = suspect.globalMatch(qml); match.hasNext();) {
            found << match.next().captured(1);
        }
    }
    return found;
}

TEST(TextElements, areFoundWhateverTheyAreCalled)
{
    for (const QString &line :
         {u"Text { }"_s, u"    QC.Label {"_s, u"contentItem: TextArea {"_s, u"Image {"_s,
          u"ToolTip.text: name"_s, u"ToolTip.show(name)"_s, u"Qt.createQmlObject(name, root)"_s,
          u"Qt.createComponent(name)"_s, u"new XMLHttpRequest()"_s}) {
        EXPECT_EQ(suspectElements(u"Item {\n"_s + line + u"\n}"_s).size(), 1) << line.toStdString();
    }
    EXPECT_TRUE(suspectElements(u"StyledText {\n}\nMyImage {\n}"_s).isEmpty());
}

TEST(TextElements, onlyTwoElementsShowTextAndBothShowItPlain)
{
    QStringList suspects;
    QStringList formats;
    int files = 0;
    for (QDirIterator each(u":/qt/qml/Quillmark"_s, {u"*.qml"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
         each.hasNext(); ++files) {
        QFile file(each.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString qml = QString::fromUtf8(file.readAll());
        for (const QString &element : suspectElements(qml)) {
            suspects << each.fileName() + u": "_s + element;
        }
        for (const QString &line : qml.split(u'\n')) {
            if (line.contains(u"textFormat"_s)) {
                formats << each.fileName() + u": "_s + line.trimmed();
            }
        }
    }
    EXPECT_GT(files, 60);
    suspects.sort();
    EXPECT_EQ(suspects,
              QStringList({u"SelectableText.qml: TextEdit"_s, u"StyledText.qml: Text"_s}));
    formats.sort();
    EXPECT_EQ(formats, QStringList({u"SelectableText.qml: textFormat: TextEdit.PlainText"_s,
                                    u"StyledText.qml: textFormat: Text.PlainText"_s}));
}

} // namespace
} // namespace quillmark
