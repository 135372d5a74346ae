// Package start and stop: the parser classes are registered while the
// package runs and gone after it stops.
#include "codeedit/SxPackage.h"
#include "codeedit/uSxCodeEdit.h"
#include "platform/Classes.h"
#include "platform/TypInfo.h"

#include <gtest/gtest.h>

using namespace sx;

namespace {

TEST(Package, StartRegistersTheParserClassesAndStopTakesThemBack)
{
    Initialize();
    Initialize();  // a second start changes nothing
    // the first parser unit and the last
    EXPECT_NE(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_NE(GetClass(u"TSxCodeSqlParser"), nullptr);
    EXPECT_NE(GetPropInfo(TSxCodeEdit::ClassInfo(), u"OnCursorChange"), nullptr);
    Finalize();
    EXPECT_EQ(GetClass(u"TsxCodePasParser"), nullptr);
    EXPECT_EQ(GetClass(u"TSxCodeSqlParser"), nullptr);
    EXPECT_EQ(GetPropInfo(TSxCodeEdit::ClassInfo(), u"OnCursorChange"), nullptr);
    Initialize();  // the package can start again
    EXPECT_NE(GetClass(u"TSxCodeSqlParser"), nullptr);
    Finalize();
}

}  // namespace
