// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BufferAttributes.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Settings.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/GlobalAndFrameAttributes.h"
#include "Tests/Support/Raises.h"

#include <QTemporaryDir>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_AttributePlane;

class BufferAttributesTest : public testing::Test
{
protected:
    BufferAttributesTest() { buffer->AddFrame(frame); }

    /// Runs a test on both kinds of target.
    void onBoth(const std::function<void(BufferAttributes&)>& test)
    {
        SCOPED_TRACE("buffer");
        BufferAttributes ofBuffer(*buffer);
        test(ofBuffer);
        SCOPED_TRACE("frame");
        BufferAttributes ofFrame(*frame);
        test(ofFrame);
    }

    I_AttributePlane& createPlane(const std::string& name, BufferApi::I_PlaneBase* plane)
    {
        auto& attribute = dynamic_cast<I_AttributePlane&>(*frame->CreateAttribute(name, BufferApi::AT_PLANE));
        attribute.SetPlane(plane);
        return attribute;
    }

    [[nodiscard]] std::unique_ptr<BufferApi::I_Buffer> throughAFile() const
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("attributes.qfi"));
        BufferApi::ExportBuffer(buffer.get(), path, {});
        return std::unique_ptr<BufferApi::I_Buffer>(BufferApi::ImportBuffer(path, {}));
    }

    std::unique_ptr<BufferApi::I_Buffer> buffer{BufferApi::CreateBuffer()};
    BufferApi::I_Frame* frame = BufferApi::CreateImageFrame(BufferApi::DT_BYTE, 1, 1, 1);
};

/// A value of each kind, and what a frame gives back for it.
const std::vector<std::pair<AttributeValue, AttributeValue>>& everyKind()
{
    static const std::vector<std::pair<AttributeValue, AttributeValue>> kinds{
        {QStringLiteral(u"\u0414 text"), QStringLiteral(u"\u0414 text")},
        {"Latin \xB5", QStringLiteral(u"Latin \u00B5")},
        {static_cast<signed char>(-128), QStringLiteral("-128")},
        {static_cast<short>(-32768), QStringLiteral("-32768")},
        {5, QStringLiteral("5")},
        {-9223372036854775807LL, QStringLiteral("-9223372036854775807")},
        {static_cast<unsigned char>(255), QStringLiteral("255")},
        {static_cast<unsigned short>(65535), QStringLiteral("65535")},
        {4294967295U, QStringLiteral("4294967295")},
        {18446744073709551615ULL, QStringLiteral("18446744073709551615")},
        {0.1F, QStringLiteral("0.1")},
        {1e-300, QStringLiteral("1e-300")},
        {std::vector<unsigned short>{1, 65535}, std::vector<unsigned short>{1, 65535}},
        {std::vector<int>{-1, 2147483647, 3}, std::vector<int>{-1, 2147483647, 3}},
        {std::vector<float>{0.1F}, std::vector<float>{0.1F}},
        {std::vector<double>{0.1, -1e300}, std::vector<double>{0.1, -1e300}},
        {std::vector<double>{}, std::vector<double>{}},
        {std::vector<unsigned short>{}, std::vector<unsigned short>{}},
    };
    return kinds;
}

TEST_F(BufferAttributesTest, KeepTextsAndListsInTheStore)
{
    onBoth([&](BufferAttributes& attributes) {
        for (const auto& [written, read] : everyKind()) {
            SCOPED_TRACE(written.GetType());
            attributes.set("Name", written);
            EXPECT_EQ(attributes.attributeValue("Name"), read);
            attributes.remove("Name");
            EXPECT_EQ(attributes.attribute("Name"), (Attribute{"Name", {}}));
        }
        attributes.set("Number", 5);
        EXPECT_EQ(attributes.attributeValue("Number").value<int>(), 5);
    });
}

TEST_F(BufferAttributesTest, ComeBackFromFiles)
{
    const std::vector<std::string> names{"plain", "with blank", "dotted.name", "dotted",
                                         "\xB5m", "a/b",        "a*"};
    std::vector<Attribute> expected;
    onBoth([&](BufferAttributes& attributes) {
        expected.clear();
        for (std::size_t i = 0; i < everyKind().size(); ++i) {
            const std::string name = names[i % names.size()] + "-" + std::to_string(i) + "x";
            attributes.set(name, everyKind()[i].first);
            expected.push_back({name, everyKind()[i].second});
        }
    });
    std::sort(expected.begin(), expected.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    const auto read = throughAFile();
    const auto without = [&](const Attributes& attributes) {
        std::vector<Attribute> all = attributes.toStdVector();
        std::erase_if(all, [](const Attribute& a) { return a.name.find('-') == std::string::npos; });
        return all;
    };
    EXPECT_EQ(without(BufferAttributes(*read)), expected);
    EXPECT_EQ(without(BufferAttributes(*read->GetFrame(0))), expected);
}

TEST_F(BufferAttributesTest, MeetPlanesOfOtherShapesInFiles)
{
    createPlane("Table", BufferApi::CreatePlane(BufferApi::DT_WORD, 3, 2));
    createPlane("None", nullptr);
    createPlane("Empty", BufferApi::CreatePlane(BufferApi::DT_FLOAT, 3, 0));
    const auto read = throughAFile();
    BufferAttributes attributes(*read->GetFrame(0));
    EXPECT_EQ(attributes.attributeValue("Table"), AttributeValue(std::vector<unsigned short>()));
    EXPECT_EQ(attributes.attributeValue("Empty"), AttributeValue(std::vector<float>()));
    EXPECT_EQ(attributes.attributeValue("None").Count(), 0U);
    const std::vector<unsigned short> words{1, 2, 3};
    EXPECT_TRUE(raises("Invalid plane y-size", [&] { attributes.set("Table", words); }));
    attributes.set("None", words);
    EXPECT_EQ(attributes.attributeValue("None"), AttributeValue(words));
}

TEST_F(BufferAttributesTest, WriteIntoTheirTargetAtOnce)
{
    BufferAttributes first(*frame);
    BufferAttributes second(first);
    const std::unique_ptr<Attributes> third = first.clone();
    first.set("A", 1);
    EXPECT_TRUE(second.contains("A"));
    third->set("A", 2);
    EXPECT_EQ(first.attributeValue("A").toString(), QStringLiteral("2"));
    EXPECT_TRUE(BufferAttributes(*buffer).isEmpty());
    second.clear();
    EXPECT_TRUE(first.isEmpty());
}

TEST_F(BufferAttributesTest, AssignmentCopiesIntoTheTargetAndThenLeavesIt)
{
    BufferAttributes source(*buffer);
    source.set("Acq", 1);
    source.set("Acq.X", std::vector<int>{2});
    BufferAttributes target(*frame);
    target.set("Old", 1);
    target = source;
    const BufferAttributes ofFrame(*frame);
    EXPECT_EQ(ofFrame.toStdVector(), source.toStdVector());
    target.set("Late", 1);
    EXPECT_TRUE(source.contains("Late"));
    EXPECT_FALSE(ofFrame.contains("Late"));
    target = static_cast<const BufferAttributes&>(target);
    EXPECT_TRUE(source.contains("Late"));
    // A second view of the same target empties what it would copy.
    target = source;
    EXPECT_TRUE(source.isEmpty());
}

TEST_F(BufferAttributesTest, RemoveGroups)
{
    onBoth([&](BufferAttributes& attributes) {
        for (const char* name : {"Acq", "Acq.X", "Acq.X.Y", "AcqX", "Acquisition"}) {
            attributes.set(name, 1);
        }
        attributes.set("Acq", AttributeValue());
        std::vector<Attribute> left{{"AcqX", QStringLiteral("1")}, {"Acquisition", QStringLiteral("1")}};
        EXPECT_EQ(attributes.toStdVector(), left);
        attributes.remove("AcqX*");
        left.erase(left.begin());
        EXPECT_EQ(attributes.toStdVector(), left);
    });
}

TEST_F(BufferAttributesTest, RefuseTheEmptyName)
{
    onBoth([&](BufferAttributes& attributes) {
        expectRaised<RTE::InvalidArgumentError>(
            {{"Empty name.", [&] { return attributes.attributeValue(""); }},
             {"Empty name.", [&] { return attributes.attribute(""); }},
             {"Empty name", [&] { return attributes.contains(""); }},
             {"Empty name", [&] { attributes.remove(""); }},
             {"Empty name", [&] { attributes.set("", 1); }},
             {"Empty name", [&] { attributes.set("", AttributeValue()); }}});
    });
}

TEST_F(BufferAttributesTest, KeepTheirKindUntilRemoved)
{
    onBoth([&](BufferAttributes& attributes) {
        attributes.set("Text", 1);
        attributes.set("List", std::vector<int>{1, 2});
        expectRaised<RTE::Exception>(
            {{"Can't assign list attribute to AT_STRING",
              [&] { attributes.set("Text", std::vector<int>{1}); }},
             {"Can't assign scalar attribute to AT_PLANE", [&] { attributes.set("List", 1); }}});
        EXPECT_TRUE(raises("Cannot convert attribute value to plane's type.",
                           [&] { attributes.set("List", std::vector<float>{1}); }));
        EXPECT_EQ(attributes.attributeValue("Text").toString(), QStringLiteral("1"));
        EXPECT_EQ(attributes.attributeValue("List"), AttributeValue(std::vector<int>{1, 2}));
        for (const std::vector<int>& list : {std::vector<int>{3, 4}, {5}, {}, {6, 7, 8}}) {
            attributes.set("List", list);
            EXPECT_EQ(attributes.attributeValue("List"), AttributeValue(list));
        }
        attributes.remove("List");
        attributes.set("List", "text");
        EXPECT_EQ(attributes.attributeValue("List").GetType(), AttributeValue::TypeString);
    });
}

TEST_F(BufferAttributesTest, MeetPlanesOfOtherMakers)
{
    using namespace BufferApi;
    BufferAttributes attributes(*frame);
    const auto read = [&] { return attributes.attributeValue("Foreign"); };
    const auto write = [&](const AttributeValue& value) {
        return [&attributes, value] { attributes.set("Foreign", value); };
    };
    const auto words = write(std::vector<unsigned short>{1});
    const auto ints = write(std::vector<int>{1});
    createPlane("Foreign", CreatePlane(DT_BYTE, 2, 1));
    expectRaised<RTE::Exception>({{"Can't create AttributeValue object from DT_BYTE plane.", read},
                                  {"Can't assign AttributeValue object to DT_BYTE plane.", ints}});
    createPlane("Foreign", CreatePlane(DT_RGB, 2, 1));
    expectRaised<RTE::Exception>({{"Can't create AttributeValue object from DT_RGB plane.", read},
                                  {"Can't assign AttributeValue object to DT_RGB plane.", ints}});
    createPlane("Foreign", CreatePlane(DT_UINT32, 2, 1));
    expectRaised<RTE::Exception>({{"Unsupported plane type", read}, {"Unsupported plane type", ints}});
    // The type is looked at before the shape.
    createPlane("Foreign", CreatePlane(DT_WORD, 3, 2));
    EXPECT_EQ(read(), AttributeValue(std::vector<unsigned short>{}));
    expectRaised(
        {{"Cannot convert attribute value to plane's type.", ints}, {"Invalid plane y-size", words}});

    I_AttributePlane& missing = createPlane("Foreign", nullptr);
    EXPECT_EQ(read().Count(), 0U);
    EXPECT_TRUE(read().IsList());
    write(std::vector<float>{1.5F})();
    EXPECT_EQ(read(), AttributeValue(std::vector<float>{1.5F}));
    delete[] static_cast<float*>(missing.GetPlane()->ReleaseData());
    EXPECT_EQ(read(), AttributeValue(std::vector<float>{}));
    write(std::vector<float>{2.5F})();
    EXPECT_EQ(read(), AttributeValue(std::vector<float>{2.5F}));
}

/// A buffer of another maker: nothing but attributes, of whatever kind.
class ForeignBuffer final : public BufferApi::I_Buffer
{
public:
    void AddFrame(BufferApi::I_Frame* /*frame*/) override {}
    void ClearAttributes() override { map.clear(); }
    [[nodiscard]] const BufferApi::AttributeMap& GetAttributeList() const override { return map; }
    [[nodiscard]] BufferApi::I_AttributeBase* FindAttribute(const std::string& name) const override
    {
        const auto found = map.find(name);
        return found == map.end() ? nullptr : found->second.get();
    }
    [[nodiscard]] BufferApi::I_Frame* GetFrame(unsigned int /*index*/) const override { return nullptr; }
    [[nodiscard]] unsigned int GetFrameCount() const override { return 0; }
    BufferApi::I_AttributeBase* CreateAttribute(const std::string& /*name*/,
                                                BufferApi::E_AttributeKind /*kind*/) override
    {
        return nullptr;
    }
    [[nodiscard]] QString GetName() const override { return {}; }
    void SetName(const QString& /*name*/) override {}
    void RemoveAttribute(const std::string& name) override { map.erase(name); }
    void Clear() override {}
    [[nodiscard]] bool IsModified(unsigned int /*aspect*/) const override { return false; }
    void SetModified(bool /*modified*/) override {}

    BufferApi::AttributeMap map;
};

class ForeignAttribute final : public BufferApi::I_AttributeBase
{
public:
    explicit ForeignAttribute(unsigned int kind) : m_kind(kind) {}
    [[nodiscard]] unsigned int GetKind() const override { return m_kind; }

private:
    unsigned int m_kind;
};

/// An attribute that is a plane of no type.
class UntypedAttribute final : public BufferApi::I_AttributePlane, public BufferApi::I_PlaneBase
{
public:
    [[nodiscard]] unsigned int GetKind() const override { return BufferApi::AT_PLANE; }
    [[nodiscard]] BufferApi::I_PlaneBase* GetPlane() const override
    {
        return const_cast<UntypedAttribute*>(this);
    }
    void SetPlane(BufferApi::I_PlaneBase* /*plane*/) override {}
    [[nodiscard]] BufferApi::E_DataType GetDataType() const override { return BufferApi::DT_UNKNOWN; }
    [[nodiscard]] void* GetData() const override { return nullptr; }
    [[nodiscard]] void* ReleaseData() override { return nullptr; }
    [[nodiscard]] unsigned int GetWidth() const override { return 0; }
    [[nodiscard]] unsigned int GetHeight() const override { return 1; }
};

TEST(BufferAttributes, MeetKindsOfOtherMakers)
{
    ForeignBuffer buffer;
    BufferAttributes attributes(buffer);
    const auto read = [&] { return attributes.attributeValue("Foreign"); };
    const auto write = [&] { attributes.set("Foreign", 1); };
    for (const unsigned int kind : {0U, 10U}) {
        buffer.map["Foreign"] = std::make_unique<ForeignAttribute>(kind);
        expectRaised<RTE::Exception>(
            {{"Unsupported attribute type", read}, {"Unsupported attribute type", write}});
    }
    for (const unsigned int kind : {1U, 6U, 9U}) {
        SCOPED_TRACE(kind);
        buffer.map["Foreign"] = std::make_unique<ForeignAttribute>(kind);
        EXPECT_TRUE(read().IsNull());
        EXPECT_TRUE(AttributesContainer(attributes).isEmpty());
        EXPECT_TRUE(raises<RTE::Exception>("Can't assign to unsupported attribute types", write));
    }
    buffer.map["Foreign"] = std::make_unique<UntypedAttribute>();
    expectRaised<RTE::Exception>({{"Can't create AttributeValue object from DT_UNKNOWN plane.", read},
                                  {"Can't assign AttributeValue object to DT_UNKNOWN plane.",
                                   [&] { attributes.set("Foreign", std::vector<int>{}); }}});
}

TEST_F(BufferAttributesTest, RefuseValuesOfUnknownKinds)
{
    Storage::Settings settings;
    settings.Set(QStringLiteral("TypeId"), 16U);
    AttributeValue unknown;
    unknown.DeserializeFrom(settings);
    BufferAttributes attributes(*frame);
    const auto set = [&] { attributes.set("A", unknown); };
    EXPECT_TRUE(raises<RTE::Exception>("Unknown AttributeValue::type", set));
    EXPECT_FALSE(attributes.contains("A"));
    createPlane("A", nullptr);
    EXPECT_TRUE(raises<RTE::Exception>("Unknown AttributeValue::type", set));
}

TEST_F(BufferAttributesTest, MergeReplacesWhateverKindAndLeavesGroupsAlone)
{
    AttributesContainer source;
    source.set("Acq", 7);
    source.set("List", std::vector<int>{1});
    source.set("Text", "x");
    BufferAttributes target(*frame);
    target.set("Acq", 1);
    target.set("Acq.X", 1);
    target.set("List", "text");
    target.set("Text", std::vector<float>{1});
    const std::vector<Attribute> before = target.toStdVector();
    target.merge(source, AttributesMerge::KeepExisting);
    EXPECT_EQ(target.toStdVector(), before);
    target.merge(source);
    const std::vector<Attribute> merged{{"Acq", QStringLiteral("7")},
                                        {"Acq.X", QStringLiteral("1")},
                                        {"List", std::vector<int>{1}},
                                        {"Text", QStringLiteral("x")}};
    EXPECT_EQ(target.toStdVector(), merged);
    target.merge(target);
    EXPECT_EQ(target.toStdVector(), merged);

    // What the store of another maker holds and no value can be is nothing to set.
    ForeignBuffer foreign;
    foreign.map["Acq"] = std::make_unique<ForeignAttribute>(5);
    target.merge(BufferAttributes(foreign));
    EXPECT_EQ(target.toStdVector(), merged);
}

} // namespace
