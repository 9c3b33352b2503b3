// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/FrameSlice.h"

#include "Tests/Support/Raises.h"

#include "Core/Common/Exception.h"

namespace
{

using Frames = std::vector<unsigned int>;

Frames select(const std::string& text, unsigned int count)
{
    Qf::FrameSlice slice;
    EXPECT_EQ(Qf::readFrames(text, slice), "");
    return Qf::selectedFrames(slice, count);
}

TEST(FrameSlice, selectsWhatPythonDoes)
{
    const std::vector<std::tuple<const char*, unsigned int, Frames>> cases{
        {":", 3, {0, 1, 2}},
        {"::", 3, {0, 1, 2}},
        {"0:100:2", 5, {0, 2, 4}},
        {"1:3", 5, {1, 2}},
        {"-2:", 5, {3, 4}},
        {":-2", 5, {0, 1, 2}},
        {"-100:2", 5, {0, 1}},
        {"::-1", 3, {2, 1, 0}},
        {"::-2", 4, {3, 1}},
        {"3:0:-1", 5, {3, 2, 1}},
        {"100::-3", 5, {4, 1}},
        {"-1:-100:-1", 2, {1, 0}},
        {"1::9223372036854775807", 3, {1}},
        {"::-9223372036854775808", 3, {2}},
        {"-9223372036854775808:9223372036854775807", 2, {0, 1}},
        {"2", 3, {2}},
        {"-1", 3, {2}},
        {"-3", 3, {0}},
    };
    for (const auto& [text, count, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(select(text, count), expected);
    }
    EXPECT_EQ(Qf::selectedFrames({}, 2), (Frames{0, 1}));
    EXPECT_EQ(Qf::selectedFrames({}, 0), Frames{});
}

TEST(FrameSlice, refusesWhatSelectsNothing)
{
    for (const char* text :
         {"", "a", "1:2:3:4", "::0", "1,2", "1:b", "0x1", " 1", "1.5", "99999999999999999999"}) {
        SCOPED_TRACE(text);
        Qf::FrameSlice slice;
        EXPECT_THAT(
            Qf::readFrames(text, slice),
            testing::EndsWith("' selects no frames; write START:STOP:STEP as Python does, such as 0:100:2, "
                              "or one number"));
    }
    for (const char* text : {"2:2", "3:1", "5:", ":-5", "0:2:-1"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(static_cast<void>(select(text, 5)), RTE::OutOfRangeError);
    }
    EXPECT_THROW(static_cast<void>(select(":", 0)), RTE::OutOfRangeError);
    EXPECT_TRUE(TestSupport::raises<RTE::OutOfRangeError>("no frame -4; frames count from 0 and there are 3",
                                                          [] { static_cast<void>(select("-4", 3)); }));
    EXPECT_TRUE(TestSupport::raises<RTE::OutOfRangeError>("no frame 1; frames count from 0 and there is 1",
                                                          [] { static_cast<void>(select("1", 1)); }));
}

} // namespace
