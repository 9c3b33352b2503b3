// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributesContainer.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/GlobalAndFrameAttributes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Raises.h"

#include <thread>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

using Names = std::vector<std::string>;

AttributesContainer containerOf(const Names& names)
{
    AttributesContainer attributes;
    for (const std::string& name : names) {
        attributes.set(name, 1);
    }
    return attributes;
}

Names namesOf(const Attributes& attributes)
{
    Names names;
    for (const Attribute& attribute : attributes.toStdVector()) {
        names.push_back(attribute.name);
    }
    return names;
}

TEST(AttributesContainer, RemovesGroups)
{
    const Names all{"Acq", "Acq ", "Acq*x", "Acq.", "Acq.X", "Acq.X.Y", "Acq/", "AcqX", "Acquisition", "acq"};
    const std::vector<std::pair<std::string, Names>> namesAndLeft{
        {"Acq", {"Acq ", "Acq*x", "Acq/", "AcqX", "Acquisition", "acq"}},
        {"Acq.X", {"Acq", "Acq ", "Acq*x", "Acq.", "Acq/", "AcqX", "Acquisition", "acq"}},
        {"Acq.X*", {"Acq", "Acq ", "Acq*x", "Acq.", "Acq/", "AcqX", "Acquisition", "acq"}},
        {"Acq.", {"Acq", "Acq ", "Acq*x", "Acq.X", "Acq.X.Y", "Acq/", "AcqX", "Acquisition", "acq"}},
        {"Acq*bar", {"acq"}},
        {"AcqX*", {"Acq", "Acq ", "Acq*x", "Acq.", "Acq.X", "Acq.X.Y", "Acq/", "Acquisition", "acq"}},
        {"Ac", all},
        {"", all},
        {"*", {}},
    };
    for (const auto& [name, left] : namesAndLeft) {
        SCOPED_TRACE(name);
        AttributesContainer removed = containerOf(all);
        removed.remove(name);
        EXPECT_EQ(namesOf(removed), left);
        AttributesContainer nulled = containerOf(all);
        nulled.set(name, AttributeValue());
        EXPECT_EQ(namesOf(nulled), left);
    }
    AttributesContainer byItsOwnName = containerOf({"Acq", "Acq.X", "B"});
    byItsOwnName.remove(byItsOwnName.begin()->first);
    EXPECT_EQ(namesOf(byItsOwnName), Names{"B"});
}

TEST(AttributesContainer, TakesAnyNameAndSortsByBytes)
{
    const std::string micro = "\xB5m";
    const AttributesContainer attributes =
        containerOf({"b", micro, "B", "a b", "a.b", "", std::string("a\0", 2)});
    EXPECT_EQ(namesOf(attributes), (Names{"", "B", std::string("a\0", 2), "a b", "a.b", "b", micro}));
    EXPECT_EQ(attributes.attribute(micro), (Attribute{micro, 1}));
    EXPECT_FALSE(attributes.contains("A B"));
}

TEST(AttributesContainer, RefusesToReadTheEmptyName)
{
    const AttributesContainer attributes;
    expectRaised<RTE::InvalidArgumentError>({{"Empty name.", [&] { return attributes.attributeValue(""); }},
                                             {"Empty name.", [&] { return attributes.attribute(""); }}});
    EXPECT_FALSE(attributes.contains(""));
    EXPECT_EQ(attributes.attribute("Absent"), (Attribute{"Absent", {}}));
}

TEST(AttributesContainer, BuildsFromAListInItsOrder)
{
    using List = std::vector<Attribute>;
    const std::vector<std::pair<List, List>> listsAndHeld{
        {{{"A", 1}, {"A.B", 2}}, {{"A", 1}, {"A.B", 2}}},
        {{{"A.B", 2}, {"A", 1}}, {{"A", 1}}},
        {{{"A", 1}, {"A.B", 2}, {"A", 3}}, {{"A", 3}}},
        {{{"A.B", 2}, {"A", {}}}, {}},
        {{{"A", 1}, {"A*", 2}, {"A.B", 3}}, {{"A", 1}, {"A*", 2}, {"A.B", 3}}},
        {{{"A", 1}, {"A*", 2}, {"A*", 3}}, {{"A*", 3}}},
    };
    for (const auto& [list, held] : listsAndHeld) {
        EXPECT_EQ(AttributesContainer(list).toStdVector(), held);
    }
}

TEST(AttributesContainer, CopiesValuesAndMovesThem)
{
    AttributesContainer first = containerOf({"A", "B"});
    AttributesContainer copy(first);
    first.set("A", 2);
    EXPECT_EQ(copy.attributeValue("A").value<int>(), 1);

    AttributesContainer assigned = containerOf({"C"});
    assigned = copy;
    assigned = static_cast<const AttributesContainer&>(assigned);
    copy.clear();
    EXPECT_EQ(namesOf(assigned), (Names{"A", "B"}));
    EXPECT_EQ(namesOf(AttributesContainer(static_cast<const Attributes&>(assigned))), (Names{"A", "B"}));

    AttributesContainer moved(std::move(assigned));
    EXPECT_TRUE(assigned.isEmpty());
    assigned = std::move(moved);
    EXPECT_TRUE(moved.isEmpty());
    const std::unique_ptr<Attributes> clone = assigned.clone();
    assigned.clear();
    EXPECT_EQ(namesOf(*clone), (Names{"A", "B"}));
}

TEST(AttributesContainer, MergesUnderExactlyTheName)
{
    const auto text = [](const Attributes& attributes) {
        std::string all;
        for (const auto& [name, value] : attributes.toStdVector()) {
            all += name + '=' + value.toStdString() + ' ';
        }
        return all;
    };
    AttributesContainer source;
    source.set("Acq", 7);
    source.set("New*", 8);
    AttributesContainer replaced = containerOf({"Acq", "Acq.X", "New"});
    AttributesContainer kept(replaced);
    replaced.merge(source);
    kept.merge(source, AttributesMerge::KeepExisting);
    EXPECT_EQ(text(replaced), "Acq=7 Acq.X=1 New=1 New*=8 ");
    EXPECT_EQ(text(kept), "Acq=1 Acq.X=1 New=1 New*=8 ");
    kept.merge(kept);
    EXPECT_EQ(text(kept), "Acq=1 Acq.X=1 New=1 New*=8 ");
}

TEST(AttributesContainer, HoldsValuesAsTheyAre)
{
    AttributesContainer attributes;
    attributes.set("int8", static_cast<signed char>(-1));
    attributes.set("float", 0.1F);
    attributes.set("list", std::vector<unsigned short>{1, 2});
    attributes.setAttribute({"double", 2.0});
    EXPECT_EQ(attributes.attributeValue("int8").GetType(), AttributeValue::TypeInt8);
    EXPECT_EQ(attributes.attributeValue("float").value<double>(), 0.1);
    EXPECT_EQ(attributes.attributeValue("list"), AttributeValue(std::vector<unsigned short>{1, 2}));
    EXPECT_EQ(attributes.attributeValue("double").GetType(), AttributeValue::TypeDouble);
    static_assert(!AttributeWritable<long> && !AttributeWritable<std::vector<long long>>);
}

TEST(AttributesContainer, ReadsNumbersWithoutAnAllocation)
{
    AttributesContainer attributes;
    attributes.set("std::string", std::string("123.456789012345678901234567890"));
    attributes.set("QString", QStringLiteral("123.5"));
    for (const std::string name : {"std::string", "QString"}) {
        double number = 0.0;
        EXPECT_EQ(allocationsDuring([&] { number = attributes.attributeValue(name).value<double>(); }), 0U);
        EXPECT_GT(number, 123.0);
    }
}

TEST(AttributesContainer, ThreadsSetAndRemoveAtOnce)
{
    AttributesContainer attributes;
    std::vector<std::jthread> threads;
    constexpr int rounds = 2000;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&attributes, thread] {
            const std::string own = "Own" + std::to_string(thread);
            for (int round = 0; round < rounds; ++round) {
                attributes.set("Shared.X" + std::to_string(round % 7), round);
                attributes.set(own, round);
                attributes.set("Shared.X" + std::to_string(round % 5), AttributeValue());
                attributes.remove(round % 3 == 0 ? "Shared" : "Shar*");
            }
        });
    }
    threads.clear();
    attributes.remove("Shared");
    EXPECT_EQ(namesOf(attributes), (Names{"Own0", "Own1", "Own2", "Own3"}));
    EXPECT_EQ(attributes.attributeValue("Own3").value<int>(), rounds - 1);
}

TEST(AttributesContainer, GivesTheTimeStamp)
{
    AttributesContainer attributes;
    EXPECT_EQ(getTimeStampFromAttributes(attributes), std::nullopt);
    attributes.set(Attr::timestamp, QStringLiteral("1970-01-01T00:00:05Z"));
    EXPECT_EQ(getTimeStampFromAttributes(attributes), RTE::TimeStamp(5, 0));
    attributes.set(Attr::timestamp, "five");
    EXPECT_THROW((void)getTimeStampFromAttributes(attributes), RTE::ParseError);
}

TEST(Attributes, KnowEllipseData)
{
    AttributesContainer attributes;
    EXPECT_FALSE(hasEllipseData(attributes));
    const std::vector<std::pair<AttributeValue, bool>> cases{
        {10, true}, {"10.7", true}, {std::vector<int>{10}, true}, {11, false}, {"ten", false}};
    for (const auto& [value, expected] : cases) {
        attributes.set("CellSizeOrientation", value);
        EXPECT_EQ(hasEllipseData(attributes), expected) << value.toStdString();
    }
}

TEST(Attribute, ChecksNamesOfUsers)
{
    for (const char* name : {"", "Laser power", "a_1b", "Z", "9x", " "}) {
        EXPECT_TRUE(Attribute::isNameValid(std::string(name))) << name;
    }
    for (const char* name : {"a1", "7", "Acq.Time", "a-b", "\xB5m", "a\n", "a*"}) {
        EXPECT_FALSE(Attribute::isNameValid(std::string(name))) << name;
        EXPECT_FALSE(Attribute::isNameValid(QString::fromLatin1(name))) << name;
    }
    EXPECT_FALSE(Attribute::isNameValid(std::string("a\0b", 3)));
    EXPECT_FALSE(Attribute::isNameValid(QStringLiteral(u"\u0414")));
    EXPECT_TRUE(Attribute::isNameValid(QStringLiteral("Laser power")));
}

} // namespace
