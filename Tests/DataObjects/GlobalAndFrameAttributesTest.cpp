// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/GlobalAndFrameAttributes.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Common/DeviceDataCollection.h"
#include "Core/DataObjects/AttributeKeyValuePairs.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/DataObjectAttributeSink.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Scales.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;

RTE::DeviceDataT<double> device(const QString& name, const QString& alias, std::vector<double> trace)
{
    RTE::DeviceDataStatic properties;
    properties.name = name;
    properties.alias = alias;
    return RTE::DeviceDataT<double>(properties, std::move(trace));
}

/// Two frames, two devices, two tags, and names that occur on several levels.
GlobalAndFrameAttributes sample()
{
    GlobalAndFrameAttributes all;
    all.set("Everywhere", "global");
    all.set("Global", 1.5);
    all.set("\xB5m", 7);
    all.set("List", std::vector<int>{1, 2});
    all.set("My CustomImageTag", "hidden");
    all.set("My DevData", "hidden");
    RTE::DeviceDataCollection devices;
    devices.add(device(QStringLiteral("Pump"), QStringLiteral("P 1"), {1.0, 2.0}));
    devices.add(device(QStringLiteral("Laser"), QStringLiteral("L"), {1234567.0}));
    DataObjectAttributeSink sink(all);
    devices.Write(sink);
    setCustomImageTags({{QStringLiteral("Sample"), QStringLiteral("A/1")}, {QStringLiteral("Day"), {}}}, all);
    all.frameAttributes.resize(2);
    for (const char* name : {"Everywhere", "Frames"}) {
        all.frameAttributes[0].set(name, "first");
        all.frameAttributes[1].set(name, "second");
    }
    all.frameAttributes[1].set("Last", "of second");
    return all;
}

TEST(GlobalAndFrameAttributes, AreLookedUpByScope)
{
    const GlobalAndFrameAttributes all = sample();
    using Scope = AttributeScope;
    const std::vector<std::pair<const char*, std::vector<Scope>>> namesAndScopes{
        {"Everywhere", {Scope::Global, Scope::Frame}},
        {"Last", {Scope::Frame}},
        {"\xB5m", {Scope::Global}},
        {"Pump", {Scope::DeviceData}},
        {"Pump - P 1", {Scope::DeviceData}},
        {"Pump - P 1 - x", {Scope::DeviceData}},
        {"Pump -", {}},
        {"P 1", {}},
        {"Day", {Scope::CustomImageTag}},
        {"Absent", {}},
        {"", {}}};
    for (const auto& [name, scopes] : namesAndScopes) {
        for (const Scope scope : {Scope::None, Scope::Global, Scope::Frame, Scope::DeviceData,
                                  Scope::CustomImageTag, static_cast<Scope>(5)}) {
            const bool expected = std::count(scopes.begin(), scopes.end(), scope) > 0;
            EXPECT_EQ(all.contains(std::string(name), scope), expected) << name << int(scope);
            EXPECT_EQ(all.contains(QString::fromLatin1(name), scope), expected) << name << int(scope);
        }
    }
    EXPECT_EQ(all.getDeviceData("Laser - L"), all.getDeviceData("Laser"));
    EXPECT_EQ(all.getDeviceData("Laser")->getAverage(), 1234567.0);
    EXPECT_EQ(all.getCustomImageTag("Sample")->value, QStringLiteral("A/1"));
    EXPECT_EQ(all.getGlobalAttribute("Global"), (Attribute{"Global", 1.5}));
    const std::vector<std::optional<Attribute>> last{std::nullopt, Attribute{"Last", "of second"}};
    EXPECT_EQ(all.getFrameAttributes("Last"), last);
}

TEST(GlobalAndFrameAttributes, GiveTheGlobalValueOrThatOfTheFirstFrame)
{
    GlobalAndFrameAttributes all = sample();
    all.frameAttributes[0].set("Acq.X", "of first");
    const std::vector<std::pair<std::string, QString>> cases{{"Everywhere", QStringLiteral("global")},
                                                             {"Frames", QStringLiteral("first")},
                                                             {"Last", QStringLiteral("of second")},
                                                             {"List", QStringLiteral("1,2")},
                                                             {"Acq", {}}};
    for (const auto& [name, text] : cases) {
        EXPECT_EQ(getAttributeValue(all, name), text) << name;
        EXPECT_EQ(containsAttribute(all, name), !text.isEmpty()) << name;
    }
}

TEST(GlobalAndFrameAttributes, ComeFromABufferByCopy)
{
    const auto buffer = bufferOf();
    BufferAttributes(*buffer).set("Global", 1);
    for (int i = 0; i < 2; ++i) {
        BufferApi::I_Frame* frame = newFrame(BufferApi::DT_BYTE, 1, 1).release();
        buffer->AddFrame(frame);
        frame->SetScaleX(scaleOf(1.0 + i));
        frame->SetScaleY(scaleOf(3.0 + i));
        frame->SetScaleZ(scaleOf(5.0 + i));
        frame->SetScaleI(scaleOf(7.0 + i));
        // Sorted, so that no group takes away what came before it.
        BufferAttributes(*frame).set("Acq.X", i);
        BufferAttributes(*frame).set("Acq", i);
    }
    GlobalAndFrameAttributes all = GetBufferAttributes(*buffer);
    buffer->ClearAttributes();
    buffer->GetFrame(1)->ClearAttributes();
    EXPECT_EQ(getAttributeValue(all, "Global"), QStringLiteral("1"));
    ASSERT_EQ(all.frameAttributes.size(), 2U);
    EXPECT_EQ(all.frameAttributes[1].attributeValue("Acq").toString(), QStringLiteral("1"));
    EXPECT_TRUE(all.frameAttributes[1].contains("Acq.X"));
    EXPECT_EQ(all.scalesX, (std::vector{scaleOf(1), scaleOf(2)}));
    EXPECT_EQ(all.scalesY, (std::vector{scaleOf(3), scaleOf(4)}));
    EXPECT_EQ(all.scalesZ, (std::vector{scaleOf(5), scaleOf(6)}));
    EXPECT_EQ(all.scalesI, (std::vector{scaleOf(7), scaleOf(8)}));

    const std::unique_ptr<Attributes> clone = all.clone();
    const GlobalAndFrameAttributes moved = std::move(all);
    EXPECT_TRUE(all.isEmpty() && all.frameAttributes.empty() && all.scalesX.empty() && all.scalesI.empty());
    EXPECT_EQ(moved.frameAttributes.size(), 2U);
    EXPECT_EQ(dynamic_cast<const GlobalAndFrameAttributes&>(*clone).frameAttributes.size(), 2U);
}

TEST(AttributeScope, HasATextForDisplay)
{
    const QStringList texts{"None", "Global", "Frame", "Device Data", "Custom Image Tag", "None", "None"};
    for (int i = -1; i < texts.size(); ++i) {
        EXPECT_EQ(getAttributeScopeAsString(static_cast<AttributeScope>(i)), texts.value(i, "None"));
    }
}

TEST(AttributeKeyValuePairs, HoldFramesOverGlobalsThenTagsAndDevices)
{
    GlobalAndFrameAttributes all = sample();
    setCustomImageTags(
        {{QStringLiteral("Sample"), QStringLiteral("other")}, {QStringLiteral("Run"), QStringLiteral("2")}},
        all.frameAttributes[1]);
    std::map<QString, QString> expected{{QStringLiteral("attr:Everywhere"), QStringLiteral("second")},
                                        {QStringLiteral("attr:Frames"), QStringLiteral("second")},
                                        {QStringLiteral("attr:Global"), QStringLiteral("1.5")},
                                        {QStringLiteral("attr:Last"), QStringLiteral("of second")},
                                        {QStringLiteral("attr:List"), QStringLiteral("1,2")},
                                        {QStringLiteral(u"attr:\u00B5m"), QStringLiteral("7")}};
    EXPECT_EQ(GetKeyValuePairsFromAttributes(all, false, false), expected);
    expected[QStringLiteral("tag:Sample")] = QStringLiteral("A/1");
    expected[QStringLiteral("tag:Day")] = QString();
    expected[QStringLiteral("tag:Run")] = QStringLiteral("2");
    EXPECT_EQ(GetKeyValuePairsFromAttributes(all, true, false), expected);
    expected[QStringLiteral("device:P 1")] = QStringLiteral("1.5");
    expected[QStringLiteral("device:L")] = QStringLiteral("1.23457e+06");
    EXPECT_EQ(GetKeyValuePairsFromAttributes(all, true, true), expected);
}

TEST(AttributeKeyValuePairs, FillPlaceholders)
{
    GlobalAndFrameAttributes all = sample();
    all.set("Nested", "<tag:Sample>");
    all.set("a>b", "never");
    all.set("Regex.*", "regex");
    const QString none = "<other:X> <attr Global> <ATTR:Global>";
    // A text, what it becomes, and what it becomes for the name of a file.
    const std::vector<std::array<QString, 3>> cases{
        {"<attr:Global>-<attr:Global>", "1.5-1.5", "1.5-1.5"},
        {"<attr:Unknown> <tag:Unknown> <device:Unknown>", "_ _ _", "_ _ _"},
        {none, none, none},
        {"<attr:global>", "_", "_"},
        {"<attr:>", "_", "_"},
        {"<attr:Global", "<attr:Global", "<attr:Global"},
        {"<device:L>", "1.23457e+06", "1.23457e+06"},
        {"<attr:Regex.*>", "regex", "regex"},
        // The key ends at the first bracket.
        {"<attr:a>b>", "_b>", "_b>"},
        // The inner placeholder is found too, once the outer one is gone.
        {"<attr:<attr:Global>", "_", "_"},
        {"<tag:Sample>", "A/1", "A_1"},
        // A value is not looked at again, unless the text has the same placeholder of a later prefix.
        {"<attr:Nested>", "<tag:Sample>", "_tag_Sample_"},
        {"<attr:Nested><tag:Sample>", "A/1A/1", "_tag_Sample_A_1"},
        {"", "", ""}};
    for (const auto& [text, plain, forFileName] : cases) {
        EXPECT_EQ(resolveAttributes(text, all, false), plain) << text.toStdString();
        EXPECT_EQ(resolveAttributes(text, all, true), forFileName) << text.toStdString();
    }
}

} // namespace
