// Package start and stop: the parser classes are registered while the
// package runs and gone after it stops.
#include "codeedit/SxPackage.h"
#include "codeedit/uSxCodeEdit.h"
#include "platform/Classes.h"
#include "platform/TypInfo.h"

#include <gtest/gtest.h>

using namespace sx;

TEST(Package, StartRegistersTheParserClassesAndStopTakesThemBack)
{
    const auto units = GetPackageInfoTable();
    ASSERT_EQ(units.size(), 10u);
    EXPECT_EQ(String(units[0].Name), u"uSxCodeParser");
    EXPECT_EQ(String(units[9].Name), u"uSxCodeSqlParser");

    Initialize();
    Initialize();
    EXPECT_NE(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_NE(GetClass(u"TSxCodeXMLParser"), nullptr);
    EXPECT_NE(GetClass(u"TSxCodeSqlParser"), nullptr);
    EXPECT_NE(GetClass(u"TSxCodeVBParser"), nullptr);
    EXPECT_NE(GetClass(u"TSxCodeJSParser"), nullptr);
    EXPECT_NE(GetPropInfo(TSxCodeEdit::ClassInfo(), u"OnCursorChange"), nullptr);
    Finalize();
    EXPECT_EQ(GetClass(u"TSxCodeVBParser"), nullptr);
    EXPECT_EQ(GetPropInfo(TSxCodeEdit::ClassInfo(), u"OnCursorChange"), nullptr);
    EXPECT_EQ(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_EQ(GetClass(u"TSxCodeSqlParser"), nullptr);
    Initialize();  // the package can start again
    EXPECT_NE(GetClass(u"TSxCodeSqlParser"), nullptr);
    Finalize();
}
