// The demo editor's About box: the library's name and version, the Qt version
// and what the control is.
#include "AboutText.h"

#include "codeedit/SxPackage.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

/// The About text as a reader sees it, without its markup.
QString ShownText() { return sx::demo::AboutText().remove(QRegularExpression(QStringLiteral("<[^>]*>"))); }

}  // namespace

TEST(AboutBox, LibraryVersionIsTheProjectsVersion)
{
    EXPECT_STREQ(sx::LibraryVersion(), SX_PROJECT_VERSION);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d+\\.\\d+\\.\\d+$"))
                    .match(QString::fromLatin1(sx::LibraryVersion()))
                    .hasMatch());
}

TEST(AboutBox, NamesTheLibraryWithItsVersionAndTheQtVersions)
{
    const QString shown = ShownText();
    EXPECT_TRUE(shown.contains(QStringLiteral("Sx code edit ") + QString::fromLatin1(sx::LibraryVersion())))
        << shown.toStdString();
    EXPECT_TRUE(shown.contains(QStringLiteral("Qt ") + QString::fromLatin1(qVersion()))) << shown.toStdString();
    EXPECT_TRUE(shown.contains(QStringLiteral("built with Qt " QT_VERSION_STR))) << shown.toStdString();
}

TEST(AboutBox, SaysWhatTheControlIs)
{
    const QString shown = ShownText();
    EXPECT_TRUE(shown.contains(QStringLiteral("source-code editing control with syntax colouring")))
        << shown.toStdString();
    EXPECT_EQ(sx::demo::AboutTitle(), QStringLiteral("About sxedit"));
}
