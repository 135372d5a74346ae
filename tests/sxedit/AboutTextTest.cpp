// The demo editor's About box names the library's version, which is the
// project's, and the Qt versions the editor runs on and was built with.
#include "codeedit/SxPackage.h"
#include "sxedit/AboutText.h"

#include <gtest/gtest.h>

namespace {

TEST(AboutBox, ShowsTheProjectsVersionAndTheQtVersions)
{
    EXPECT_STREQ(sx::LibraryVersion(), SX_PROJECT_VERSION);
    const QString shown = sx::demo::AboutText();
    for (const QString& version : {QStringLiteral(SX_PROJECT_VERSION), QString::fromLatin1(qVersion()),
                                   QStringLiteral(QT_VERSION_STR)})
        EXPECT_TRUE(shown.contains(version)) << shown.toStdString() << " lacks " << version.toStdString();
}

}  // namespace
