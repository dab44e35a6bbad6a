// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileChooser.h"
#include "app/Theme.h"
#include "support/Printers.h"
#include "support/TempDir.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

class FileChooserTest : public ::testing::Test
{
protected:
    FileChooserTest()
    {
        m_window.show();
        m_chooser.setProperty("parentWindow", QVariant::fromValue(&m_window));
        m_chooser.setProperty("startFolder",
                              QUrl::fromLocalFile(QString::fromStdString(m_dir.path())));
        m_chooser.setProperty("acceptLabel", QStringLiteral("Ingest"));
    }

    static QFileDialog *dialog()
    {
        return qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    }
    static QPushButton *button(const QString &text)
    {
        for (auto *candidate : dialog()->findChildren<QPushButton *>()) {
            if (candidate->text().remove(QLatin1Char('&')) == text) {
                return candidate;
            }
        }
        return nullptr;
    }
    static bool isClosed()
    {
        return QTest::qWaitFor([] { return dialog() == nullptr; });
    }

    test::TempDir m_dir;
    QWindow m_window;
    FileChooser m_chooser;
    QSignalSpy m_chosen{&m_chooser, &FileChooser::chosen};
};

TEST_F(FileChooserTest, isModalToItsWindow)
{
    m_chooser.open();
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->isModal());
    EXPECT_EQ(dialog()->windowHandle()->transientParent(), &m_window);
    EXPECT_EQ(dialog()->palette().color(QPalette::Highlight), ThemeColor().primary);
}

TEST_F(FileChooserTest, opensOnce)
{
    m_chooser.open();
    const auto *first = dialog();
    m_chooser.open();
    EXPECT_EQ(dialog(), first);
    first = nullptr;
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_TRUE(isClosed());
    m_chooser.open();
    EXPECT_NE(dialog(), nullptr);
}

TEST_F(FileChooserTest, offersOneFolderUnderTheGivenLabel)
{
    m_chooser.open();
    EXPECT_EQ(dialog()->fileMode(), QFileDialog::Directory);
    EXPECT_NE(button(QStringLiteral("Ingest")), nullptr);
}

TEST_F(FileChooserTest, confirmsATypedFolderWithoutSubfolders)
{
    std::filesystem::create_directory(m_dir / "roll 12");
    m_chooser.open();
    dialog()->findChild<QLineEdit *>()->setText(QString::fromStdString(m_dir / "roll 12"));
    QTest::mouseClick(button(QStringLiteral("Ingest")), Qt::LeftButton);
    ASSERT_TRUE(isClosed());
    ASSERT_EQ(m_chosen.count(), 1);
    EXPECT_EQ(m_chosen.at(0).at(0).toUrl(),
              QUrl::fromLocalFile(QString::fromStdString(m_dir / "roll 12")));
}

TEST_F(FileChooserTest, saysNothingWhenCancelled)
{
    m_chooser.open();
    QTest::mouseClick(button(QStringLiteral("Cancel")), Qt::LeftButton);
    ASSERT_TRUE(isClosed());
    EXPECT_EQ(m_chosen.count(), 0);
}

TEST_F(FileChooserTest, saysNothingWhenClosed)
{
    m_chooser.close();
    m_chooser.open();
    ASSERT_NE(dialog(), nullptr);
    m_chooser.close();
    ASSERT_TRUE(isClosed());
    EXPECT_EQ(m_chosen.count(), 0);
}

TEST_F(FileChooserTest, picksAPictureFromTheStartFolder)
{
    const auto file = m_dir.write("Slate.JPG", "");
    m_dir.write("notes.txt", "");
    m_chooser.setProperty("kind", FileChooser::Picture);
    m_chooser.setProperty("acceptLabel", QStringLiteral("Use as slate"));
    m_chooser.open();
    EXPECT_EQ(dialog()->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(dialog()->directory().absolutePath(), QString::fromStdString(m_dir.path()));
    EXPECT_TRUE(dialog()->nameFilters().first().contains(QLatin1String("*.tiff")));
    dialog()->findChild<QLineEdit *>()->setText(QStringLiteral("Slate.JPG"));
    QTest::mouseClick(button(QStringLiteral("Use as slate")), Qt::LeftButton);
    ASSERT_TRUE(isClosed());
    ASSERT_EQ(m_chosen.count(), 1);
    EXPECT_EQ(m_chosen.at(0).at(0).toUrl(), QUrl::fromLocalFile(QString::fromStdString(file)));
}

TEST_F(FileChooserTest, goesAwayWithItsOwner)
{
    {
        FileChooser chooser;
        chooser.open();
        EXPECT_NE(dialog(), nullptr);
    }
    EXPECT_EQ(dialog(), nullptr);
}

} // namespace
} // namespace quillmark
