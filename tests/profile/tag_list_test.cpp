#include "profile/tag_list.h"

#include <gtest/gtest.h>

namespace {

TEST(TagList, BothEndsAndIndexing) {
    iccTagList list;
    icTag tag;
    EXPECT_FALSE(list.peekHead(tag));
    EXPECT_FALSE(list.popTail(tag));
    list.pushTail({icSig("wtpt"), 1, 2});
    list.pushHead({icSig("desc"), 3, 4});
    list.pushTail({icSig("cprt"), 5, 6});
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.at(1)->sig, icSig("wtpt"));
    EXPECT_EQ(list.at(3), nullptr);
    EXPECT_EQ(list.at(-1), nullptr);
    ASSERT_TRUE(list.get(tag, 2));
    EXPECT_EQ(tag.offset, 5u);
    ASSERT_TRUE(list.popHead(tag));
    EXPECT_EQ(tag.sig, icSig("desc"));
    ASSERT_TRUE(list.popTail(tag));
    EXPECT_EQ(tag.sig, icSig("cprt"));
    ASSERT_TRUE(list.peekTail(tag));
    EXPECT_EQ(tag.sig, icSig("wtpt"));
    list.clear();
    EXPECT_EQ(list.count(), 0);
}

} // namespace
