// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFields.h"

#include "Tests/DataObjects/Fields.h"
#include "Tests/Support/Raises.h"

#include <array>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using testing::Each;
using Size = Math::Size2T<unsigned int>;

const QString wrongSize = "Source scalar field has wrong size.";
const QString emptyInMap = "Empty scalar field names are not allowed.";
const QString emptyTyped = "empty scalar field name is not allowed.";

const ScalarField<float>& floats(const ScalarFields& fields, const QString& name)
{
    return CastScalarFieldTo<float>(*fields.Get(name));
}

TEST(ScalarFieldMap, RefusesTheEmptyNameAlone)
{
    ScalarFieldMap map;
    map["b"] = std::make_shared<ScalarField<float>>(1, 1, plain);
    EXPECT_EQ(map["\u00e4 .%1"], nullptr);
    EXPECT_EQ(map["B"], nullptr);
    EXPECT_TRUE(raises(emptyInMap, [&] { map[""] = nullptr; }));
    EXPECT_EQ(map.size(), 3U);
    EXPECT_EQ(map.begin()->first, "B");
}

TEST(ScalarFields, TypedAddMakesZeroesOrReplaces)
{
    ScalarFields fields(2, 2);
    const auto made = fields.Add("a");
    EXPECT_EQ(made->GetScaleI(), plain);
    EXPECT_THAT(floats(fields, "a"), Each(0.0F));
    made->SetScaleI(kelvin);
    EXPECT_EQ(fields.Add("a", 2.5F), made);
    EXPECT_THAT(floats(fields, "a"), Each(2.5F));
    EXPECT_EQ(fields.Add(BufferApi::DT_FLOAT, "a", nullptr), made);
    EXPECT_THAT(floats(fields, "a"), Each(0.0F));
    EXPECT_EQ(made->GetScaleI(), kelvin);

    const auto replaced = fields.Add(BufferApi::DT_DOUBLE, "a", nullptr);
    EXPECT_NE(replaced, made);
    EXPECT_EQ(fields.Get("a"), replaced);
    EXPECT_EQ(replaced->GetScaleI(), plain);
    EXPECT_EQ(fields.size(), 1U);
}

TEST(ScalarFields, TypedAddTakesDataOnlyForANewField)
{
    ScalarFields fields(3, 1);
    auto* const data = new unsigned short[3]{1, 2, 3};
    const auto field = fields.Add(BufferApi::DT_WORD, "a", data);
    const auto& words = CastScalarFieldTo<unsigned short>(*field);
    EXPECT_EQ(words.begin(), data);
    EXPECT_TRUE(words.GetDataT().HasOwnerShip());
    EXPECT_EQ(words.GetSize(), Size(3, 1));

    std::array<unsigned short, 3> unused{4, 5, 6};
    EXPECT_EQ(fields.Add(BufferApi::DT_WORD, "a", unused.data()), field);
    EXPECT_THAT(words, Each(0));
    EXPECT_THAT(unused, testing::ElementsAre(4, 5, 6));
}

TEST(ScalarFields, TypedAddKnowsTheSixTypes)
{
    ScalarFields fields(1, 1);
    for (int type = -1; type < 10; ++type) {
        const auto add = [&] { return fields.Add(static_cast<BufferApi::E_DataType>(type), "a", nullptr); };
        if (PixelTypes::contains(type)) {
            EXPECT_EQ(static_cast<int>(add()->GetDataType()), type);
        } else {
            EXPECT_TRUE(raises<RTE::Exception>("Unsupported scalar data type", add)) << type;
        }
    }
    EXPECT_EQ(static_cast<int>(fields.Get("a")->GetDataType()), 7);
}

TEST(ScalarFields, AddCopiesMovesOrTakesTheFieldAndSetWritesIntoIt)
{
    ScalarFields fields(2, 2);
    auto source = filled<int>(2, 2, 5);
    const auto data = source.GetSharedDataT();
    EXPECT_NE(fields.Add("copied", std::as_const(source))->ShareData(), data);
    EXPECT_EQ(fields.Get("copied")->GetScaleI(), kelvin);
    EXPECT_EQ(fields.Add("moved", std::move(source))->ShareData(), data);
    EXPECT_EQ(source.GetSharedDataT(), nullptr);

    auto object = std::make_unique<ScalarField<double>>(2, 2, plain);
    const ScalarFieldVariant* const address = object.get();
    const auto before = fields.Get("moved");
    EXPECT_EQ(fields.Add("moved", std::move(object)).get(), address);
    EXPECT_EQ(fields.Get("moved").get(), address);
    EXPECT_EQ(before->ShareData(), data);
    EXPECT_THAT(fields.GetNames(), testing::ElementsAre("copied", "moved"));
    fields.Set("moved", filled<double>(2, 2, 3.5));
    EXPECT_EQ(fields.Get("moved").get(), address);
    EXPECT_THAT(CastScalarFieldTo<double>(*address), Each(3.5));
    EXPECT_EQ(address->GetScaleI(), kelvin);
}

TEST(ScalarFields, FailuresLeaveTheCollectionAsItWas)
{
    auto larger = filled<float>(3, 2, 4.0F);
    auto fitting = filled<float>(2, 2, 4.0F);
    const auto owned = [](const auto& field) { return std::make_unique<ScalarField<float>>(field); };
    const QString newExists = "Scalar field already contains item of the new name.";
    ScalarFields fields(2, 2);
    const auto field = fields.Add("a", 1.0F);
    const std::vector<Failure> failures{
        {wrongSize, [&] { fields.Add("a", std::as_const(larger)); }},
        {wrongSize, [&] { fields.Add("", std::as_const(larger)); }},
        {emptyInMap, [&] { fields.Add("", std::as_const(fitting)); }},
        {wrongSize, [&] { fields.Add("a", std::move(larger)); }},
        {emptyInMap, [&] { fields.Add("", std::move(fitting)); }},
        {wrongSize, [&] { fields.Add("b", owned(larger)); }},
        {emptyInMap, [&] { fields.Add("", owned(fitting)); }},
        {"Scalar field is null", [&] { fields.Add("b", std::unique_ptr<ScalarFieldVariant>()); }},
        {emptyTyped, [&] { fields.Add(BufferApi::DT_BYTE, "", nullptr); }},
        {emptyTyped, [&] { fields.Add(""); }},
        {emptyTyped, [&] { fields.Add("", 1.0F); }},
        {"Scalar field 'A %1' is not existing.", [&] { return fields.Get("A %1"); }},
        {"Scalar field '' is not existing.", [&] { return std::as_const(fields).Get(""); }},
        {"Scalar field 'b' is not existing.", [&] { fields.Set("b", larger); }},
        {"Source and destination have different sizes.", [&] { fields.Set("a", larger); }},
        {"bad scalar field cast", [&] { fields.Set("a", filled<double>(2, 2, 1.0)); }},
        {newExists, [&] { fields.Rename("a", "a"); }},
        {newExists, [&] { fields.Rename("missing", "a"); }},
        {emptyInMap, [&] { fields.Rename("a", ""); }}};
    for (const Failure& failure : failures) {
        expectRaised({failure});
        SCOPED_TRACE(&failure - failures.data());
        EXPECT_EQ(fields.GetCount(), 1U);
        EXPECT_EQ(fields.Get("a"), field);
        EXPECT_THAT(floats(fields, "a"), Each(1.0F));
        EXPECT_EQ(larger.size(), 6U);
        EXPECT_EQ(fitting.size(), 4U);
    }
}

TEST(ScalarFields, AnUnknownTypeIsSeenBeforeTheSizeAndStays)
{
    ScalarFields fields(2, 2);
    StrangeField strange(3, 3);
    const auto add = [&] { fields.Add("", std::move(strange)); };
    EXPECT_TRUE(raises<RTE::Exception>("Unsupported scalar field type", add));
    EXPECT_NE(strange.GetSharedDataT(), nullptr);
    EXPECT_TRUE(fields.empty());
}

TEST(ScalarFields, AMissingKeyIsOutOfRange)
{
    ScalarFields fields(2, 2);
    EXPECT_EQ(textOfMissing(fields), "invalid map<K, T> key");
    EXPECT_EQ(textOfMissing(std::as_const(fields)), "invalid map<K, T> key");
    EXPECT_FALSE(fields.Contains("missing"));
    const auto field = fields.Add("there");
    EXPECT_EQ(fields["there"], field);
    EXPECT_EQ(std::as_const(fields)["there"], field);
}

TEST(ScalarFields, RenamesAndRemoves)
{
    ScalarFields fields(2, 2);
    const auto held = fields.Add("a");
    fields.Rename("missing", "b");
    fields.Rename("missing", "");
    fields.Rename("a", "A");
    EXPECT_THAT(fields.GetNames(), testing::ElementsAre("A"));
    EXPECT_EQ(fields.Get("A"), held);
    fields.Remove("a");
    EXPECT_EQ(fields.size(), 1U);
    fields.Remove("A");
    EXPECT_TRUE(fields.empty());
    fields.Add("b", *held);
    fields.Clear();
    EXPECT_TRUE(fields.empty());
    EXPECT_EQ(fields.GetSizeOfScalarFields(), Size(2, 2));
    EXPECT_EQ(held->GetSize(), Size(2, 2));
}

TEST(ScalarFields, TakesNamesAndFieldsOfItsOwn)
{
    ScalarFields fields(2, 2);
    const auto first = [&]() -> const QString& { return fields.begin()->first; };
    const auto held = fields.Add("a", 3.0F);
    fields.Rename(first(), "b");
    EXPECT_EQ(fields.Get("b"), held);
    EXPECT_NE(fields.Add(first(), std::as_const(*held)), held);
    EXPECT_THAT(floats(fields, "b"), Each(3.0F));
    const auto copy = fields.Get("b");
    const auto pixels = copy->ShareData();
    EXPECT_EQ(fields.Add(first(), std::move(*copy))->ShareData(), pixels);
    fields.Add(BufferApi::DT_INT32, first(), nullptr);
    EXPECT_EQ(fields.GetCount(), 1U);
    fields.Remove(first());
    EXPECT_TRUE(fields.empty());
}

TEST(ScalarFields, IsWalkedByNameAndMappedWithItsFields)
{
    ScalarFields fields(2, 2);
    fields.Add("b", 2.0F);
    fields.Add("B", 1.0F);
    EXPECT_THAT(fields.GetNames(), testing::ElementsAre("B", "b"));
    EXPECT_EQ(std::as_const(fields).begin()->first, "B");

    auto map = fields.GetMapping();
    static_cast<void>(map["c"]);
    map["b"]->InitializeWithZeros();
    EXPECT_FALSE(fields.Contains("c"));
    EXPECT_THAT(floats(fields, "b"), Each(0.0F));
}

TEST(ScalarFields, CopiesAreDeep)
{
    ScalarFields fields(2, 2);
    fields.Add("a", 1.0F);
    fields.Get("a")->SetScaleI(kelvin);
    const ScalarFields copy(fields);
    ScalarFields target(5, 5);
    const auto old = target.Add("old");
    target.DeepCopyFrom(fields);
    fields.Get("a")->InitializeWithZeros();
    for (const ScalarFields* const each : {&copy, static_cast<const ScalarFields*>(&target)}) {
        EXPECT_EQ(each->GetSizeOfScalarFields(), Size(2, 2));
        EXPECT_THAT(each->GetNames(), testing::ElementsAre("a"));
        EXPECT_THAT(floats(*each, "a"), Each(1.0F));
        EXPECT_EQ(each->Get("a")->GetScaleI(), kelvin);
    }
    EXPECT_EQ(old->GetSize(), Size(5, 5));

    const ScalarFields& same = target;
    const auto kept = target.Get("a");
    target = same;
    EXPECT_EQ(target.Get("a"), kept);
}

TEST(ScalarFields, MovesKeepTheFieldsViewsIncluded)
{
    std::array<float, 4> memory{1, 2, 3, 4};
    ScalarFields fields(2, 2);
    const auto owner = fields.Add("owner");
    const auto view =
        fields.Add("view", std::make_unique<ScalarField<float>>(2, 2, memory.data(), false, plain));
    ScalarFields moved(std::move(fields));
    EXPECT_TRUE(fields.empty());
    EXPECT_EQ(fields.GetSizeOfScalarFields(), Size(0, 0));
    EXPECT_EQ(moved.GetSizeOfScalarFields(), Size(2, 2));
    EXPECT_EQ(moved.Get("owner"), owner);
    EXPECT_EQ(moved.Get("view"), view);

    ScalarFields target(7, 7);
    target.Add("old");
    target.MoveFrom(std::move(moved));
    EXPECT_THAT(target.GetNames(), testing::ElementsAre("owner", "view"));
    EXPECT_EQ(target.Get("view"), view);
    EXPECT_EQ(moved.GetSizeOfScalarFields(), Size(0, 0));

    ScalarFields& same = target;
    target = std::move(same);
    EXPECT_EQ(target.size(), 2U);
}

/// A collection over memory that it ends when it is cleared, as that of a frame does.
class FieldsOverMemory : public ScalarFields
{
public:
    using ScalarFields::operator=;

    FieldsOverMemory() : ScalarFields(2, 2), m_memory{1, 2, 3, 4}
    {
        ScalarFields::Add("view", std::make_unique<ScalarField<float>>(2, 2, m_memory.data(), false, kelvin));
        ScalarFields::Add("owner", 5.0F);
    }
    void Clear() override
    {
        RTE::verify(!refusesToClear, "kept");
        ScalarFields::Clear();
        m_memory.fill(-1);
    }
    bool refusesToClear = false;

private:
    std::array<float, 4> m_memory;
};

TEST(ScalarFields, MovedOutOfADerivedCollectionViewsOutliveIt)
{
    FieldsOverMemory source;
    const auto owner = source.Get("owner");
    const ScalarFields moved(std::move(source));
    EXPECT_TRUE(source.empty());
    EXPECT_THAT(floats(moved, "view"), testing::ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(moved.Get("view")->GetScaleI(), kelvin);
    EXPECT_EQ(moved.Get("owner"), owner);

    FieldsOverMemory refusing;
    refusing.refusesToClear = true;
    ScalarFields target(1, 1);
    target.Add("old");
    EXPECT_TRUE(raises("kept", [&] { target = std::move(refusing); }));
    EXPECT_THAT(target.GetNames(), testing::ElementsAre("old"));
    EXPECT_EQ(refusing.size(), 2U);
}

} // namespace
