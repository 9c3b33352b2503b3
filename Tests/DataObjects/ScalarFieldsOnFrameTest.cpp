// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldsOnFrame.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/C_TypedScalarFrame.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/ScalarFieldToFrame.h"
#include "Tests/DataObjects/Fields.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::C_TypedScalarFrame;
using BufferApi::I_Frame;
using DataObjects::Private::ScalarFieldsOnFrame;
using RTE::VerificationFailed;
using testing::Each;
using testing::ElementsAre;
using FramePointer = std::unique_ptr<I_Frame>;

constexpr unsigned int width = 3;
constexpr unsigned int height = 2;
const QString wrongSize = "Source scalar field has wrong size.";
const QString inconsistent = "Inconsistent scalar fields beween DataObjects and I_Frame.";
const QString removing = "Removing scalar fields of multi-plane-frames is not supported.";

FramePointer newFrame(unsigned int depth = 1)
{
    return FramePointer(BufferApi::CreateImageFrame(BufferApi::DT_WORD, width, height, depth));
}

BufferApi::I_Component& component(const I_Frame& frame, const std::string& name)
{
    return *C_TypedScalarFrame(&frame, name).GetComponent(0);
}

template <typename T>
T* pixels(const I_Frame& frame, const std::string& name, unsigned int z = 0)
{
    return static_cast<T*>(component(frame, name).GetPlane(z)->GetData());
}

/// A frame with "a" of float, filled with 1, in kelvin.
FramePointer frameWithA(unsigned int depth = 1)
{
    auto frame = newFrame(depth);
    for (unsigned int z = 0; z < depth; ++z) {
        CopyScalarFieldToFrameTypedScalar(filled(1.0F), *frame, "a", z);
    }
    return frame;
}

TEST(ScalarFieldsOnFrame, ViewsEachTypeOfEachPlane)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto frame = newFrame(2);
        frame->AddComponent("TS:", BufferApi::DT_FLOAT, {});
        CopyScalarFieldToFrameTypedScalar(filled(T{7}), *frame, "a", 1);
        ScalarFieldsOnFrame fields(*frame, 1);
        EXPECT_THAT(fields.GetNames(), ElementsAre("a"));
        EXPECT_EQ(fields.size(), 1U);
        EXPECT_FALSE(fields.Contains(""));

        auto& field = CastScalarFieldTo<T>(*fields.Get("a"));
        EXPECT_EQ(field.begin(), pixels<T>(*frame, "a", 1));
        EXPECT_FALSE(field.GetData().HasOwnerShip());
        EXPECT_THAT(field, Each(T{7}));
        EXPECT_EQ(field.GetScaleI(), kelvin);
        field.SetScaleI(Zt::LinearScale(2.0, 1.0, "m", "x"));
        EXPECT_EQ(component(*frame, "a").GetScale().getUnit(), "m");
        field.SetPixel(2, 1, T{3});
        EXPECT_EQ(pixels<T>(*frame, "a", 1)[5], T{3});
    });
}

TEST(ScalarFieldsOnFrame, PlanesShareTheScaleAndWhatOneAdds)
{
    const auto frame = frameWithA(2);
    ScalarFieldsOnFrame first(*frame, 0);
    ScalarFieldsOnFrame second(*frame, 1);
    const auto held = second.Get("a");
    first.Get("a")->SetScaleI(Zt::LinearScale(4.0, 0.0, "px", ""));
    EXPECT_EQ(second.Get("a"), held);
    EXPECT_EQ(held->GetScaleI().getFactor(), 4.0);

    first.Add("b", 5.0F);
    EXPECT_THAT(CastScalarFieldTo<float>(*std::as_const(second).Get("b")), Each(0.0F));
    EXPECT_TRUE(raises(inconsistent, [&] { return second.begin(); }));
    EXPECT_TRUE(raises(inconsistent, [&] { return std::as_const(second).end(); }));
    second.Add("b", 6.0F);
    EXPECT_EQ(std::distance(second.begin(), second.end()), 2);
    EXPECT_EQ(pixels<float>(*frame, "b", 0)[0], 5.0F);
    EXPECT_EQ(pixels<float>(*frame, "b", 1)[5], 6.0F);
}

TEST(ScalarFieldsOnFrame, NamesAreLatin1)
{
    const auto frame = newFrame();
    ScalarFieldsOnFrame fields(*frame, 0);
    fields.Add("\u00e4 .%1");
    EXPECT_TRUE(C_TypedScalarFrame(frame.get(), "\xe4 .%1").IsExisting());
    const auto field = fields.Add("\u6e29", 2.0F);
    EXPECT_EQ(fields.Get("\u6e29"), field);
    EXPECT_THAT(fields.GetNames(), ElementsAre("\u00e4 .%1", "?"));
    EXPECT_EQ(std::distance(fields.begin(), fields.end()), 2);

    ScalarFields source(width, height);
    source.Add("\u6e29", filled(3.0F));
    fields = source;
    EXPECT_THAT(fields.GetNames(), ElementsAre("?"));
    EXPECT_EQ(fields.Get("?"), field);
    fields.Remove("\u6e29");
    EXPECT_EQ(fields.begin(), fields.end());
}

TEST(ScalarFieldsOnFrame, TypedAddMakesZeroesOrReplacesInTheOrderOfCalls)
{
    const auto frame = newFrame();
    ScalarFieldsOnFrame fields(*frame, 0);
    fields.Add("z");
    const auto made = fields.Add(BufferApi::DT_INT32, "a", nullptr);
    EXPECT_THAT(fields.GetNames(), ElementsAre("z", "a"));
    EXPECT_EQ(fields.begin()->first, "a");
    CastScalarFieldTo<int>(*made).GetDataT().Fill(4);
    made->SetScaleI(kelvin);
    EXPECT_EQ(fields.Add(BufferApi::DT_INT32, "a", nullptr), made);
    EXPECT_EQ(pixels<int>(*frame, "a")[5], 0);
    EXPECT_EQ(made->GetScaleI(), kelvin);

    CastScalarFieldTo<int>(*made).GetDataT().Fill(4);
    const auto replaced = fields.Add("a", 2.5F);
    EXPECT_THAT(CastScalarFieldTo<float>(*fields.Get("a")), Each(2.5F));
    EXPECT_EQ(pixels<float>(*frame, "a")[5], 2.5F);
    EXPECT_EQ(replaced->GetScaleI(), plain);
    EXPECT_THAT(CastScalarFieldTo<int>(*made), Each(4));
    EXPECT_TRUE(made->GetData().HasOwnerShip());
}

TEST(ScalarFieldsOnFrame, AddedFieldsAreCopiedAndExistingOnesOverwritten)
{
    const auto frame = newFrame();
    ScalarFieldsOnFrame fields(*frame, 0);
    const auto source = filled(2.0);
    const auto field = fields.Add("a", source);
    EXPECT_EQ(pixels<double>(*frame, "a")[5], 2.0);
    EXPECT_EQ(component(*frame, "a").GetScale(), kelvin);
    EXPECT_EQ(fields.Add("a", filled(3.0)), field);
    EXPECT_EQ(fields.Add("a", std::make_unique<ScalarField<double>>(filled(4.0))), field);
    EXPECT_EQ(pixels<double>(*frame, "a")[5], 4.0);
    EXPECT_EQ(fields.Add("b", *field)->GetScaleI(), kelvin);
    EXPECT_EQ(fields.Add("a", *field), field);
    fields.Set("b", source);
    EXPECT_EQ(pixels<double>(*frame, "b")[0], 2.0);
    EXPECT_EQ(pixels<double>(*frame, "a")[0], 4.0);
}

/// A call on the view of a frame that has "a" of float, filled with 1.
void expectRefused(const char* what, const QString& text,
                   const std::function<void(ScalarFieldsOnFrame&)>& call, unsigned int depth = 1)
{
    SCOPED_TRACE(what);
    const auto frame = frameWithA(depth);
    ScalarFieldsOnFrame fields(*frame, 0);
    const auto field = fields.Get("a");
    EXPECT_TRUE(raises(text, [&] { call(fields); }));
    EXPECT_EQ(fields.Get("a"), field);
    EXPECT_THAT(CastScalarFieldTo<float>(*field), Each(1.0F));
    EXPECT_FALSE(fields.Contains("b"));
    EXPECT_EQ(fields.begin()->second, field);
}

TEST(ScalarFieldsOnFrame, FailuresLeaveTheFrameAsItWas)
{
    const ScalarField<float> larger(width + 1, height, kelvin);
    const QString missing = "Scalar field 'b' is not existing.";
    const QString typed = "empty scalar field name is not allowed.";
    const QString inMap = "Empty scalar field names are not allowed.";
    const QString cast = "bad scalar field cast";
    const QString given = "ScalarFieldsOnFrame::Add does not allow transfer of ownership.";
    const QString newExists = "Scalar field already contains item of the new name.";
    const QString otherSize = "Source's frame size must be identical to target's frame size.";
    const QString clearing = "Clearing scalar fields of multi-plane-frames is not supported.";
    const QString assigning = "Assignment not possible: " + removing;
    const auto copied = [&] { return std::make_unique<ScalarField<float>>(larger); };
    ScalarFields otherType(width, height);
    otherType.Add("a", filled(1.0));
    expectRefused("given data", given, [](auto& f) { f.Add(BufferApi::DT_RGB, "", &f); });
    expectRefused("typed, name", typed, [](auto& f) { f.Add(BufferApi::DT_FLOAT, "", nullptr); });
    expectRefused("typed, value", typed, [](auto& f) { f.Add("", 1.0F); });
    expectRefused("copy, size first", wrongSize, [&](auto& f) { f.Add("", larger); });
    expectRefused("copy over, size", wrongSize, [&](auto& f) { f.Add("a", larger); });
    expectRefused("copy, name", inMap, [](auto& f) { f.Add("", filled(1.0F)); });
    expectRefused("copy, type", cast, [](auto& f) { f.Add("a", filled(1.0)); });
    expectRefused("move, size", wrongSize, [&](auto& f) { f.Add("b", std::move(*copied())); });
    expectRefused("take, size", wrongSize, [&](auto& f) { f.Add("b", copied()); });
    const auto takeNull = [](auto& f) { f.Add("b", std::unique_ptr<ScalarFieldVariant>()); };
    expectRefused("take null", "Scalar field is null", takeNull);
    expectRefused("set, missing", missing, [](auto& f) { f.Set("b", filled(1.0F)); });
    expectRefused("set, type", cast, [](auto& f) { f.Set("a", filled(1.0)); });
    expectRefused("get", missing, [](auto& f) { return f.Get("b"); });
    expectRefused("get of const", missing, [](auto& f) { return std::as_const(f).Get("b"); });
    expectRefused("rename", newExists, [](auto& f) { f.Rename("a", "a"); });
    expectRefused("assign, size", otherSize, [](auto& f) { f = ScalarFields(height, width); });
    expectRefused("assign, type", cast, [&](auto& f) { f = otherType; });
    const auto assignOtherType = [&](auto& f) {
        f.Add("surplus");
        f = otherType;
    };
    const auto expectTwoRefused = [](const char* what, const QString& text, const auto& call) {
        expectRefused(what, text, call, 2);
    };
    expectTwoRefused("assign, planes before types", assigning, assignOtherType);
    expectTwoRefused("assign, planes", assigning, [](auto& f) { f = ScalarFields(width, height); });
    expectTwoRefused("remove", removing, [](auto& f) { f.Remove("a"); });
    expectTwoRefused("replace", removing, [](auto& f) { f.Add(BufferApi::DT_BYTE, "a", nullptr); });
    expectTwoRefused("clear", clearing, [](auto& f) { f.Clear(); });
}

TEST(ScalarFieldsOnFrame, OtherErrors)
{
    const auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    expectRaised<RTE::Exception>(
        {{"Unsupported scalar data type", [&] { fields.Add(BufferApi::DT_RGB, "", nullptr); }},
         {"Unsupported scalar field type", [&] { fields.Add("missing", StrangeField(width, height)); }}});
    EXPECT_EQ(textOfMissing(fields), "invalid map<K, T> key");
    EXPECT_EQ(textOfMissing(std::as_const(fields)), "invalid map<K, T> key");
    EXPECT_EQ(fields["a"], fields.Get("a"));
}

TEST(ScalarFieldsOnFrame, WhatTheStoreCannotShowIsRefused)
{
    const auto frame = newFrame();
    frame->AddComponent("TS:a", BufferApi::DT_FLOAT, {});
    const auto released = newFrame();
    released->AddComponent("TS:a", BufferApi::DT_FLOAT, {});
    delete[] static_cast<float*>(component(*released, "a").GetPlane(0)->ReleaseData());
    const auto colour = newFrame();
    colour->AddComponent("TS:a", BufferApi::DT_RGB, {});
    const auto empty = newFrame();
    ScalarFieldsOnFrame beyond(*empty, 1);
    expectRaised({{"Invalid plane index 1", [&] { ScalarFieldsOnFrame(*frame, 1); }},
                  {"data-pointer is null", [&] { ScalarFieldsOnFrame(*released, 0); }},
                  {"Invalid plane index 1", [&] { beyond.Add("a"); }},
                  {"Invalid plane index 1", [&] { beyond.Add("a", filled(1)); }}});
    EXPECT_TRUE(beyond.empty());
    EXPECT_TRUE(raises<RTE::Exception>("RGB scalar field is not supported.",
                                       [&] { ScalarFieldsOnFrame(*colour, 0); }));
}

TEST(ScalarFieldsOnFrame, RemovedFieldsLiveOnWithTheirHolders)
{
    auto frame = frameWithA();
    frame->AddComponent("TS:", BufferApi::DT_BYTE, {});
    ScalarFieldsOnFrame fields(*frame, 0);
    fields.Add("b", 2.0F);
    const auto a = fields.Get("a");
    const auto b = fields.Get("b");
    const float* const memory = CastScalarFieldTo<float>(*a).begin();
    fields.Remove("missing");
    fields.Remove("");
    fields.Remove("a");
    EXPECT_THAT(fields.GetNames(), ElementsAre("b"));
    EXPECT_EQ(std::distance(fields.begin(), fields.end()), 1);
    fields.Clear();
    EXPECT_TRUE(fields.empty());
    EXPECT_EQ(frame->GetComponentIndex("TS:"), 1U);

    frame.reset();
    EXPECT_THAT(CastScalarFieldTo<float>(*a), Each(1.0F));
    EXPECT_EQ(CastScalarFieldTo<float>(*a).begin(), memory);
    a->SetScaleI(Zt::LinearScale(Zt::ScalePreset::X));
    EXPECT_THAT(CastScalarFieldTo<float>(*b), Each(2.0F));
}

TEST(ScalarFieldsOnFrame, AssignmentRemovesOverwritesAndAddsAlsoByMoving)
{
    for (const bool isMoved : {false, true}) {
        SCOPED_TRACE(isMoved);
        const auto frame = frameWithA();
        ScalarFieldsOnFrame fields(*frame, 0);
        ScalarFields& collection = fields;
        fields.Add("surplus");
        const auto a = fields.Get("a");
        ScalarFields source(width, height);
        source.Add("a", filled(2.0F));
        source.Add("new", filled<unsigned char>(3));
        isMoved ? collection.MoveFrom(std::move(source)) : collection.DeepCopyFrom(source);
        EXPECT_EQ(source.size(), 2U);
        EXPECT_EQ(fields.Get("a"), a);
        EXPECT_EQ(pixels<float>(*frame, "a")[0], 2.0F);
        EXPECT_EQ(pixels<unsigned char>(*frame, "new")[5], 3);
        EXPECT_EQ(fields.size(), 2U);
        EXPECT_EQ(std::distance(fields.begin(), fields.end()), 2);
    }
}

TEST(ScalarFieldsOnFrame, AssignmentBetweenViews)
{
    const auto source = frameWithA(2);
    pixels<float>(*source, "a", 1)[0] = 9.0F;
    ScalarFieldsOnFrame plane0(*source, 0);
    ScalarFieldsOnFrame plane1(*source, 1);
    plane0 = plane1;
    EXPECT_EQ(pixels<float>(*source, "a", 0)[0], 9.0F);

    const auto target = newFrame();
    ScalarFieldsOnFrame other(*target, 0);
    other = plane1;
    pixels<float>(*source, "a", 1)[0] = 8.0F;
    EXPECT_EQ(pixels<float>(*target, "a")[0], 9.0F);
    ScalarFieldsOnFrame again(*target, 0);
    again = other;
    other = other;
    EXPECT_EQ(pixels<float>(*target, "a")[0], 9.0F);
    EXPECT_EQ(component(*target, "a").GetScale(), kelvin);
}

TEST(ScalarFieldsOnFrame, AssignmentOfViewsOfWhatItRemoves)
{
    const auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    ScalarFields source(width, height);
    source.Add(
        "b", std::make_unique<ScalarField<float>>(width, height, pixels<float>(*frame, "a"), false, kelvin));
    fields = source;
    EXPECT_THAT(fields.GetNames(), ElementsAre("b"));
    EXPECT_THAT(CastScalarFieldTo<float>(*fields.Get("b")), Each(1.0F));
}

TEST(ScalarFieldsOnFrame, PlainCollectionsTakeCopies)
{
    auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    // A collection that knows of no field of its own asks the frame.
    ScalarFieldsOnFrame(*frame, 0).Add("late", 2.0F);
    ScalarFields copied(fields);
    ScalarFields assigned(1, 1);
    assigned = fields;
    EXPECT_THAT(CastScalarFieldTo<float>(*copied.Get("late")), Each(2.0F));
    const auto copy = fields.Get("a")->CreateCopy();
    ScalarFields moved(std::move(static_cast<ScalarFields&>(fields)));
    EXPECT_TRUE(fields.empty());
    fields.Add("later", filled(1));
    EXPECT_EQ(fields.GetSizeOfScalarFields(), moved.GetSizeOfScalarFields());
    EXPECT_EQ(std::distance(fields.begin(), fields.end()), 1);
    frame.reset();
    for (const ScalarFields& plain : {std::cref(copied), std::cref(assigned), std::cref(moved)}) {
        EXPECT_THAT(CastScalarFieldTo<float>(*plain.Get("a")), Each(1.0F));
        EXPECT_EQ(plain.Get("a")->GetScaleI(), kelvin);
    }
    EXPECT_THAT(CastScalarFieldTo<float>(*copy), Each(1.0F));
}

TEST(ScalarFieldsOnFrame, FollowsTheFrameWhereItCan)
{
    const auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    const auto taken = fields.Get("a")->MoveFrom();
    EXPECT_THAT(CastScalarFieldTo<float>(*fields.Get("a")), Each(1.0F));

    fields.Rename("a", "b");
    EXPECT_TRUE(raises(inconsistent, [&] { return fields.begin(); }));
    EXPECT_TRUE(fields.Contains("a"));

    ScalarFieldsOnFrame other(*frame, 0);
    frame->ClearTypedScalars();
    EXPECT_TRUE(raises(inconsistent, [&] { return other.end(); }));
    EXPECT_TRUE(other.empty());
    EXPECT_TRUE(other.GetMapping().empty());
    EXPECT_TRUE(raises("Scalar field 'a' is not existing.", [&] { return other.Get("a"); }));
}

TEST(ScalarFieldsOnFrame, FollowsWhatAnotherViewReplaced)
{
    const auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    ScalarFieldsOnFrame other(*frame, 0);
    const auto removed = other.Get("a");
    other.Remove("a");
    // New components at other places, the last one with the pixels where they were.
    other.Add("b");
    float* const memory = CastScalarFieldTo<float>(*removed).GetDataT().ReleaseRawPointer();
    frame->AddComponent("TS:a", BufferApi::DT_FLOAT, {memory});
    EXPECT_EQ(fields.Get("a")->GetScaleI(), component(*frame, "a").GetScale());
    fields.Get("a")->SetScaleI(kelvin);
    EXPECT_EQ(component(*frame, "a").GetScale(), kelvin);
}

TEST(ScalarFieldsOnFrame, IteratorsLeadToNothingThatAnotherViewReplaced)
{
    const auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    ScalarFieldsOnFrame(*frame, 0).Add(BufferApi::DT_DOUBLE, "a", nullptr);
    EXPECT_TRUE(raises(inconsistent, [&] { return std::as_const(fields).begin(); }));
    EXPECT_THAT(CastScalarFieldTo<double>(*fields.begin()->second), Each(0.0));
    EXPECT_EQ(std::as_const(fields).begin()->second, fields.Get("a"));
}

TEST(ScalarFieldsOnFrame, MovingLeavesAloneWhatAnotherViewRemoved)
{
    const auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    fields.Add("b", 2.0F);
    ScalarFieldsOnFrame(*frame, 0).Remove("a");
    const ScalarFields taken(std::move(static_cast<ScalarFields&>(fields)));
    EXPECT_THAT(taken.GetNames(), ElementsAre("b"));
    EXPECT_THAT(CastScalarFieldTo<float>(*taken.Get("b")), Each(2.0F));
}

TEST(ScalarFieldsOnFrame, AssignmentLooksAtAllFieldsBeforeItRemovesAny)
{
    const auto frame = frameWithA();
    ScalarFieldsOnFrame fields(*frame, 0);
    fields.Add("surplus");
    ScalarFields source(width, height);
    source.Add("b");
    source.Add("strange", std::make_unique<StrangeField>(width, height));
    EXPECT_TRUE(raises<RTE::Exception>("Unsupported scalar field type", [&] { fields = source; }));
    source.Remove("strange");
    source.Add("a", filled(1.0));
    EXPECT_TRUE(raises("bad scalar field cast", [&] { fields = source; }));
    source.Remove("a");
    delete[] CastScalarFieldTo<float>(*source.Get("b")).GetDataT().ReleaseRawPointer();
    EXPECT_TRUE(raises("data-pointer is null", [&] { fields = source; }));
    EXPECT_THAT(fields.GetNames(), ElementsAre("a", "surplus"));
}

} // namespace
