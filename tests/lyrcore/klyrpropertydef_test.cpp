#include "lyrfilesdk/lyrcore/klyrpropertydef.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {
namespace {

using Flags = LyrPropertyFlags::eLyrPropertyFlags;

static_assert(std::is_same_v<kLyrPropertyId, int>, "ids are signed");
static_assert(std::is_same_v<KLyrTypeInfo, KLyrPropertyPage>, "a type info is a page");
static_assert(std::is_same_v<std::underlying_type_t<Flags>, unsigned>, "any 32 bits are flags");
static_assert(std::is_same_v<std::underlying_type_t<KLyrInheritType>, int>, "any int is an inherit type");

TEST(LyrPropertyFlags, AreOneBitEachWithTheirFixedValues) {
    struct Row {
        Flags mFlag;
        unsigned mValue;
    };
    const Row lRows[] = {
        {LyrPropertyFlags::eNO_FLAG, 0},
        {LyrPropertyFlags::eANIMATABLE, 1},
        {LyrPropertyFlags::eUSER, 2},
        {LyrPropertyFlags::eTEMPORARY, 4},
        {LyrPropertyFlags::ePUBLISHED, 8},
        {LyrPropertyFlags::ePSTATIC, 16},
        {LyrPropertyFlags::eNOT_SAVABLE, 32},
        {LyrPropertyFlags::eHIDDEN, 64},
        {LyrPropertyFlags::eUI_DISABLED, 128},
        {LyrPropertyFlags::eUI_GROUP, 256},
        {LyrPropertyFlags::eUI_BOOLGROUP, 512},
        {LyrPropertyFlags::eUI_EXPANDED, 1024},
        {LyrPropertyFlags::eUI_NOCAPTION, 2048},
        {LyrPropertyFlags::eUI_PANEL, 4096},
        {LyrPropertyFlags::eUI_LEFTLABEL, 8192},
        {LyrPropertyFlags::eUI_HIDDEN, 16384},
    };
    unsigned lAll = 0;
    for (const Row& lRow : lRows) {
        EXPECT_EQ(static_cast<unsigned>(lRow.mFlag), lRow.mValue);
        EXPECT_EQ(lAll & lRow.mValue, 0u);
        lAll |= lRow.mValue;
    }
    EXPECT_EQ(lAll, static_cast<unsigned>(LyrPropertyFlags::AllFlags()));
}

TEST(LyrPropertyFlags, CountsSixteenButDefinesFifteen) {
    EXPECT_EQ(LyrPropertyFlags::GetFlagCount(), 16);
    EXPECT_EQ(static_cast<unsigned>(LyrPropertyFlags::AllFlags()), 0x7FFFu);
}

TEST(LyrPropertyFlags, CombineToFlags) {
    const Flags lBoth = LyrPropertyFlags::eUSER | LyrPropertyFlags::eHIDDEN;
    EXPECT_EQ(static_cast<unsigned>(lBoth), 66u);
    EXPECT_EQ(lBoth & LyrPropertyFlags::eHIDDEN, LyrPropertyFlags::eHIDDEN);
    EXPECT_EQ(lBoth & LyrPropertyFlags::eANIMATABLE, LyrPropertyFlags::eNO_FLAG);
    EXPECT_EQ(static_cast<unsigned>(~lBoth), 0xFFFFFFBDu);
    EXPECT_EQ(lBoth & ~LyrPropertyFlags::eUSER, LyrPropertyFlags::eHIDDEN);
}

TEST(KLyrInheritType, HasItsFixedValues) {
    EXPECT_EQ(static_cast<int>(eLyrOverride), 0);
    EXPECT_EQ(static_cast<int>(eLyrInherit), 1);
    EXPECT_EQ(static_cast<int>(eLyrDeleted), 2);
}

}  // namespace
}  // namespace lyrsdk
