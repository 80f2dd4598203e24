// Filters of the open-file dialog.
#include "platform/QKSystemDialogs.h"

#include <gtest/gtest.h>

TEST(SystemDialogsTest, FilterEntriesBecomeNameFiltersInOrder)
{
    const QStringList f = QKFileDialogFilters(QStringLiteral("Text (*.a;*.b)|*.a;*.b|Windows Media Files (*.asf; *.wmv)|*.asf; *.wmv|All Files (*.*)|*.*;|"));
    ASSERT_EQ(f.size(), 3);
    EXPECT_EQ(f[0], QStringLiteral("Text (*.a *.b)"));
    // The space after a semicolon is not part of a pattern.
    EXPECT_EQ(f[1], QStringLiteral("Windows Media Files (*.asf *.wmv)"));
    // The trailing semicolon leaves no empty pattern; all files are all, with a dot or not.
    EXPECT_EQ(f[2], QStringLiteral("All Files (*)"));
}

TEST(SystemDialogsTest, OddFiltersGiveWhatTheyCan)
{
    EXPECT_TRUE(QKFileDialogFilters(QString()).isEmpty());
    EXPECT_TRUE(QKFileDialogFilters(QStringLiteral("|||")).isEmpty());
    // A text without its own parentheses gets them; an entry without patterns is left out;
    // a last entry without its pattern half is dropped.
    EXPECT_EQ(QKFileDialogFilters(QStringLiteral("Pictures|*.png|Nothing||Dangling")), QStringList({ QStringLiteral("Pictures (*.png)") }));
}
