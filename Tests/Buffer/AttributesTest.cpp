// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Buffer.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace BufferApi;
using TestSupport::raises;

std::vector<std::string> names(const AttributeMap& map)
{
    std::vector<std::string> result;
    std::vector<unsigned int> kinds;
    std::vector<I_AttributeBase*> attributes;
    Attributes::GetList(map, result, kinds, attributes);
    return result;
}

class AttributesTest : public testing::Test
{
protected:
    void setText(const std::string& name, const QString& text)
    {
        dynamic_cast<I_Attribute<QString>&>(*frame->CreateAttribute(name, AT_STRING)).SetValue(text);
    }

    std::unique_ptr<I_Buffer> buffer{CreateBuffer()};
    std::unique_ptr<I_Frame> frame{CreateImageFrame(DT_BYTE, 1, 1, 1)};
};

TEST_F(AttributesTest, AreListedByNameWithKindAndValue)
{
    frame->CreateAttribute("b", AT_PLANE);
    setText("B", QStringLiteral("text"));
    setText("a", {});
    std::vector<std::string> foundNames{"dropped"};
    std::vector<unsigned int> kinds{9};
    std::vector<I_AttributeBase*> attributes{nullptr};
    Attributes::GetList(frame->GetAttributeList(), foundNames, kinds, attributes);
    EXPECT_EQ(foundNames, (std::vector<std::string>{"B", "a", "b"}));
    EXPECT_EQ(kinds, (std::vector<unsigned int>{4, 4, 7}));
    EXPECT_EQ(dynamic_cast<I_Attribute<QString>&>(*attributes[0]).GetValue(), QStringLiteral("text"));
    EXPECT_EQ(attributes[2], frame->FindAttribute("b"));
}

TEST_F(AttributesTest, RemoveTakesOneNameOrAGroup)
{
    const std::vector<std::string> all{"Acq", "Acq-", "Acq.X", "Acq.X.Y", "AcqX"};
    struct Case
    {
        std::string removed;
        std::vector<std::string> left;
    };
    const std::vector<Case> cases{{"Acq", {"Acq-", "Acq.X", "Acq.X.Y", "AcqX"}},
                                  {"Acq.*", {"Acq", "Acq-", "AcqX"}},
                                  {"Acq.X*", {"Acq", "Acq-", "AcqX"}},
                                  {"Absent", all},
                                  {"Zzz.*", all},
                                  {"*", {}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.removed);
        for (const auto& name : all) {
            setText(name, {});
            buffer->CreateAttribute(name, AT_PLANE);
        }
        C_FrameAttributes(frame.get()).Remove(c.removed);
        C_BufferAttributes(buffer.get()).Remove(c.removed);
        EXPECT_EQ(names(frame->GetAttributeList()), c.left);
        EXPECT_EQ(names(buffer->GetAttributeList()), c.left);
    }
}

TEST_F(AttributesTest, RefuseTheEmptyNameAndUnknownKinds)
{
    const std::vector<std::function<void()>> calls{[&] { static_cast<void>(frame->FindAttribute("")); },
                                                   [&] { frame->CreateAttribute("", AT_STRING); },
                                                   [&] { C_FrameAttributes(frame.get()).Remove(""); },
                                                   [&] { static_cast<void>(buffer->FindAttribute("")); },
                                                   [&] { buffer->CreateAttribute("", AT_PLANE); },
                                                   [&] { C_BufferAttributes(buffer.get()).Remove(""); }};
    for (const auto& call : calls) {
        EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Empty name", call));
    }
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>(
        "Unsupported attribute type", [&] { frame->CreateAttribute("a", static_cast<E_AttributeKind>(5)); }));
    EXPECT_EQ(frame->FindAttribute("a"), nullptr);
}

TEST(AttributeAccess, RefusesNullPointers)
{
    const std::vector<std::pair<const char*, std::function<void()>>> calls{
        {"Buffer is NULL", [] { C_BufferAttributes(nullptr).Remove("a"); }},
        {"Frame is NULL", [] { C_FrameAttributes(nullptr).Remove("a"); }},
        {"Frame is NULL", [] { static_cast<void>(C_TypedScalarFrame(nullptr, "a").IsExisting()); }}};
    for (const auto& [text, call] : calls) {
        EXPECT_TRUE(raises<RTE::VerificationFailed>(text, call));
    }
}

TEST_F(AttributesTest, PlaneAttributesOwnTheirPlane)
{
    auto& attribute = dynamic_cast<I_AttributePlane&>(*frame->CreateAttribute("list", AT_PLANE));
    EXPECT_EQ(attribute.GetPlane(), nullptr);
    attribute.SetPlane(CreatePlane(DT_FLOAT, 3, 1));
    I_PlaneBase* second = CreatePlane(DT_FLOAT, 5, 1);
    attribute.SetPlane(second);
    attribute.SetPlane(second);
    EXPECT_EQ(attribute.GetPlane()->GetWidth(), 5U);
    auto& other = dynamic_cast<I_AttributePlane&>(*frame->CreateAttribute("other", AT_PLANE));
    for (I_PlaneBase* held : {second, frame->GetPlane(0, 0)}) {
        EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Plane belongs to a frame or an attribute already",
                                                      [&] { other.SetPlane(held); }));
    }
    EXPECT_EQ(other.GetPlane(), nullptr);
    attribute.SetPlane(nullptr);
    EXPECT_EQ(attribute.GetPlane(), nullptr);
}

TEST_F(AttributesTest, GetStringReadsTextsAlone)
{
    C_FrameAttributes attributes(frame.get());
    setText("text", QStringLiteral("value"));
    frame->CreateAttribute("list", AT_PLANE);
    EXPECT_EQ(attributes.GetString("text"), QStringLiteral("value"));
    EXPECT_EQ(attributes.GetString("list"), QString());
    EXPECT_EQ(attributes.GetString("absent"), QString());
}

TEST_F(AttributesTest, ArraysComeBackInTheirTypeAlone)
{
    C_BufferAttributes attributes(buffer.get());
    const std::array<int, 3> values{1, -2, 3};
    std::array<int, 4> read{7, 7, 7, 7};
    EXPECT_TRUE(attributes.SetArray("a", 3, DT_INT32, values.data()));
    EXPECT_EQ(attributes.GetArray("a", 2, DT_INT32, read.data()), 3);
    EXPECT_EQ(read, (std::array<int, 4>{1, -2, 7, 7}));
    EXPECT_EQ(attributes.GetArray("a", 4, DT_INT32, read.data()), 3);
    EXPECT_EQ(read, (std::array<int, 4>{1, -2, 3, 7}));
    EXPECT_EQ(attributes.GetArray("a", 0, DT_INT32, nullptr), 3);
    EXPECT_EQ(attributes.GetArray("a", 4, DT_UINT32, read.data()), -1);
    EXPECT_EQ(attributes.GetArray("absent", 4, DT_INT32, read.data()), -1);

    EXPECT_TRUE(attributes.SetArray("a", 0, DT_WORD, nullptr));
    EXPECT_EQ(attributes.GetArray("a", 4, DT_WORD, read.data()), 0);
    EXPECT_FALSE(attributes.SetArray("a", 1, DT_UNKNOWN, values.data()));
    EXPECT_EQ(attributes.GetArray("a", 0, DT_WORD, nullptr), 0);
    EXPECT_TRUE(raises<RTE::VerificationFailed>("Data is NULL",
                                                [&] { attributes.SetArray("a", 1, DT_INT32, nullptr); }));
    EXPECT_TRUE(attributes.SetArray("a", 3, DT_INT32, values.data()));
    EXPECT_TRUE(raises<RTE::VerificationFailed>(
        "Data is NULL", [&] { static_cast<void>(attributes.GetArray("a", 1, DT_INT32, nullptr)); }));
    const std::unique_ptr<int[]> released(static_cast<int*>(
        dynamic_cast<I_AttributePlane&>(*buffer->FindAttribute("a")).GetPlane()->ReleaseData()));
    EXPECT_EQ(attributes.GetArray("a", 3, DT_INT32, read.data()), -1);
    buffer->CreateAttribute("text", AT_STRING);
    EXPECT_FALSE(attributes.SetArray("text", 1, DT_INT32, values.data()));
    EXPECT_EQ(buffer->FindAttribute("text")->GetKind(), 4U);
}

} // namespace
