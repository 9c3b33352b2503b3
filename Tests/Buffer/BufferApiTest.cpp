// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Buffer.h"
#include "Core/Buffer/ElementTypes.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Common/Array.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/Raises.h"

#include <algorithm>

namespace
{

using namespace BufferApi;
using TestSupport::raises;

constexpr std::array elementTypes{DT_BYTE, DT_RGB, DT_DOUBLE, DT_FLOAT, DT_INT32, DT_UINT32, DT_WORD};
const auto noType = static_cast<E_DataType>(8);

/// All bytes of all planes of a component are this.
bool isFilledWith(const I_Component& component, unsigned char value)
{
    for (unsigned int z = 0; z < component.GetPlaneCount(); ++z) {
        const I_PlaneBase& plane = *component.GetPlane(z);
        const auto* bytes = static_cast<const unsigned char*>(plane.GetData());
        const auto count = plane.GetWidth() * plane.GetHeight() * GetDataTypeSize(plane.GetDataType());
        if (!std::all_of(bytes, bytes + count, [=](unsigned char byte) { return byte == value; })) {
            return false;
        }
    }
    return true;
}

TEST(CreateImageFrame, MakesPixelsOfEveryTypeAndTwoClassesForColour)
{
    for (const E_DataType type : elementTypes) {
        SCOPED_TRACE(type);
        const std::unique_ptr<I_FrameImage> image(CreateImageFrame(type, 3, 2, 4));
        ASSERT_NE(image, nullptr);
        I_Frame& frame = *image;
        EXPECT_EQ(frame.GetDataType(), type);
        EXPECT_EQ(dynamic_cast<I_FrameRGB32*>(&frame) != nullptr, type == DT_RGB);
        EXPECT_EQ(dynamic_cast<I_FrameVector*>(&frame), nullptr);
        EXPECT_EQ(frame.GetComponentCount(), 1U);
        EXPECT_FALSE(frame.HasMask());
        const I_Component* pixels = frame.GetComponent(I_FrameImage::COMPONENT_PIXEL);
        EXPECT_EQ(pixels->GetPlane(4), nullptr);
        const I_PlaneBase* last = pixels->GetPlane(3);
        EXPECT_EQ(last->GetDataType(), type);
        EXPECT_EQ(dynamic_cast<const I_PlaneRGB*>(last) != nullptr, type == DT_RGB);
        EXPECT_EQ(last->GetWidth(), 3U);
        EXPECT_EQ(last->GetHeight(), 2U);
        EXPECT_NE(last->GetData(), nullptr);
    }
}

TEST(CreateFunctions, GiveNullForWhatTheyCannotMake)
{
    std::unique_ptr<unsigned char[]> array(RTE::newArray<unsigned char>(4));
    for (const E_DataType type : {DT_UNKNOWN, noType}) {
        EXPECT_EQ(CreateImageFrame(type, 2, 2, 1), nullptr);
        EXPECT_EQ(CreateImageFrameWithPlaneMemory(type, 2, 2, array.get()), nullptr);
        EXPECT_EQ(CreatePlane(type, 2, 2), nullptr);
        EXPECT_EQ(GetDataTypeSize(type), 0U);
    }
    EXPECT_EQ(CreateVectorFrame2C(2, 2, 1, 0), nullptr);
    EXPECT_EQ(CreateVectorFrame3C(2, 2, 1, 0), nullptr);
}

TEST(CreateFunctions, NeverMakeSmallArraysOfHugeSizes)
{
    constexpr unsigned int huge = 0xFFFFFFFF;
    const auto isRefused = [](const QString& size, const auto& create) {
        return raises<RTE::InvalidArgumentError>(
            QStringLiteral("Frame of %1 is larger than the memory").arg(size),
            [&] { static_cast<void>(create()); });
    };
    for (const E_DataType type : {DT_RGB, DT_DOUBLE, DT_FLOAT, DT_INT32, DT_UINT32, DT_WORD}) {
        SCOPED_TRACE(type);
        EXPECT_THROW(static_cast<void>(CreatePlane(type, huge, huge)), std::bad_alloc);
        EXPECT_TRUE(isRefused(QStringLiteral("4294967295 x 4294967295 x 1 points and 1 choices"),
                              [&] { return CreateImageFrame(type, huge, huge, 1); }));
        EXPECT_TRUE(isRefused(QStringLiteral("1 x 1 x 4294967295 points and 1 choices"),
                              [&] { return CreateImageFrame(type, 1, 1, huge); }));
    }
    EXPECT_TRUE(
        isRefused(QStringLiteral("4294967295 x 4294967295 x 4294967295 points and 4294967295 choices"),
                  [&] { return CreateVectorFrame3C(huge, huge, huge, huge); }));
    EXPECT_TRUE(isRefused(QStringLiteral("0 x 0 x 1 points and 4294967295 choices"),
                          [&] { return CreateVectorFrame2C(0, 0, 1, huge); }));
}

TEST(CreateFunctions, MakeManyChoicesInTime)
{
    constexpr unsigned int choices = 50000;
    const std::unique_ptr<I_FrameVector3C> frame(CreateVectorFrame3C(1, 1, 1, choices));
    EXPECT_EQ(frame->GetComponentCount(), 3 * choices + 2);
    EXPECT_EQ(frame->GetComponentIndex("W49999"), 3 * choices - 1);
    frame->RemoveComponent(0);
    EXPECT_EQ(frame->GetComponent("U"), nullptr);
    EXPECT_EQ(frame->GetComponentIndex("W49999"), 3 * choices - 2);
}

TEST(CreateFunctions, AllowEmptySizes)
{
    const std::unique_ptr<I_Frame> flat(CreateImageFrame(DT_FLOAT, 0, 7, 2));
    EXPECT_EQ(flat->GetPlane(0, 1)->GetHeight(), 7U);
    const std::unique_ptr<I_Frame> empty(CreateImageFrame(DT_FLOAT, 3, 3, 0));
    EXPECT_EQ(empty->GetDataType(), DT_FLOAT);
    EXPECT_EQ(empty->GetPlane(0, 0), nullptr);
}

TEST(CreateImageFrameWithPlaneMemory, TakesTheArraysOverWhenItSucceeds)
{
    std::vector<void*> arrays{RTE::newArray<float>(6), RTE::newArray<float>(6)};
    const std::unique_ptr<I_FrameImage> frame(CreateImageFrameWithPlaneMemory(DT_FLOAT, 3, 2, arrays));
    EXPECT_EQ(frame->GetDepth(), 2U);
    I_PlaneBase* plane = frame->GetPlane(0, 1);
    EXPECT_EQ(plane->GetData(), arrays[1]);
    const std::unique_ptr<float[]> released(static_cast<float*>(plane->ReleaseData()));
    EXPECT_EQ(released.get(), arrays[1]);
    EXPECT_EQ(plane->GetData(), nullptr);

    const std::unique_ptr<I_FrameImage> single(
        CreateImageFrameWithPlaneMemory(DT_RGB, 1, 1, RTE::newArray<RgbQuad>(1)));
    EXPECT_NE(dynamic_cast<I_FrameRGB32*>(single.get()), nullptr);
}

TEST(CreateImageFrameWithPlaneMemory, LeavesTheArraysWhenItFails)
{
    const std::unique_ptr<float[]> array(RTE::newArray<float>(6));
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Plane memory is NULL", [&] {
        static_cast<void>(CreateImageFrameWithPlaneMemory(DT_FLOAT, 3, 2, {array.get(), nullptr}));
    }));
    array[5] = 1.0F;
}

TEST(CreateVectorFrame, HasZeroVectorsEnabledWithChoiceZeroInForce)
{
    const std::unique_ptr<I_FrameVector3C> owner(CreateVectorFrame3C(5, 4, 2, 3));
    const I_FrameVector& frame = *owner;
    EXPECT_EQ(frame.GetChoiceCount(), 3U);
    EXPECT_EQ(frame.GetDataType(), DT_FLOAT);
    EXPECT_EQ(frame.GetComponentCount(), 3U * 3U + 2U);
    for (unsigned int choice = 0; choice < 3; ++choice) {
        for (const auto& name :
             {I_FrameVector::COMPONENT_U, I_FrameVector::COMPONENT_V, I_FrameVector::COMPONENT_W}) {
            const I_Component* component = frame.GetComponent(name, choice);
            ASSERT_NE(component, nullptr);
            EXPECT_EQ(component->GetPlaneCount(), 2U);
            EXPECT_TRUE(IsOfType<float>(*component->GetPlane(1)));
            EXPECT_TRUE(isFilledWith(*component, 0));
        }
    }
    EXPECT_NE(frame.GetComponent(I_FrameVector::COMPONENT_U, 0),
              frame.GetComponent(I_FrameVector::COMPONENT_U, 1));
    EXPECT_EQ(frame.GetComponent(I_FrameVector::COMPONENT_U),
              frame.GetComponent(I_FrameVector::COMPONENT_U, 0));
    EXPECT_EQ(frame.GetComponent(I_FrameVector::COMPONENT_U, 3), nullptr);
    EXPECT_TRUE(isFilledWith(*frame.GetComponent(I_FrameVector::COMPONENT_ENABLED), 1));
    EXPECT_EQ(frame.GetComponent(I_FrameVector::COMPONENT_ENABLED)->GetDataType(), DT_BYTE);
    EXPECT_TRUE(isFilledWith(*frame.GetComponent(I_FrameVector::COMPONENT_ACTIVE_CHOICE), 0));
    EXPECT_EQ(frame.GetComponent(I_FrameVector::COMPONENT_ACTIVE_CHOICE)->GetDataType(), DT_INT32);
}

TEST(CreateVectorFrame, OfTwoComponentsHasNoW)
{
    const std::unique_ptr<I_FrameVector2C> owner(CreateVectorFrame2C(5, 4, 1, 1));
    const I_FrameVector& frame = *owner;
    EXPECT_EQ(frame.GetComponent(I_FrameVector::COMPONENT_W, 0), nullptr);
    EXPECT_EQ(dynamic_cast<const I_FrameVector3C*>(&frame), nullptr);
    EXPECT_EQ(frame.GetGridX() * frame.GetGridY() * frame.GetGridZ(), 1U);
}

TEST(TypedScalar, StaysWhenItExistsInTheSameTypeAndIsReplacedInAnother)
{
    const std::unique_ptr<I_Frame> frame(CreateImageFrame(DT_WORD, 3, 2, 2));
    C_TypedScalarFrame scalar(frame.get(), "Peak ratio");
    EXPECT_FALSE(scalar.IsExisting());
    EXPECT_TRUE(raises<RTE::VerificationFailed>("Typed scalar does not exist",
                                                [&] { scalar.SetLinearScale(1.0, 0.0, {}, {}); }));

    CreateTypedScalarInFrame(frame.get(), "Peak ratio", DT_FLOAT);
    EXPECT_TRUE(scalar.IsExisting());
    I_Component* component = scalar.GetComponent(0);
    EXPECT_EQ(component->GetName(), "TS:Peak ratio");
    EXPECT_EQ(component->GetPlaneCount(), 2U);
    EXPECT_TRUE(isFilledWith(*component, 0));
    EXPECT_EQ(scalar.GetComponent(1), nullptr);
    EXPECT_EQ(component->GetScale(), Zt::LinearScale(1.0, 0.0, {}, {}));

    scalar.SetLinearScale(0.5, 2.0, QStringLiteral("%"), QStringLiteral("Ratio"));
    CreateTypedScalarInFrame(frame.get(), "Peak ratio", DT_FLOAT);
    EXPECT_EQ(scalar.GetComponent(0), component);
    EXPECT_EQ(component->GetScale().getUnit(), QStringLiteral("%"));

    EXPECT_TRUE(raises<RTE::InvalidArgumentError>(
        "Unsupported data type", [&] { CreateTypedScalarInFrame(frame.get(), "Peak ratio", DT_UNKNOWN); }));
    EXPECT_EQ(scalar.GetComponent(0), component);
    CreateTypedScalarInFrame(frame.get(), "Peak ratio", DT_BYTE);
    EXPECT_EQ(scalar.GetComponent(0)->GetDataType(), DT_BYTE);
    EXPECT_EQ(frame->GetComponentCount(), 2U);
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>(
        "Empty name", [&] { CreateTypedScalarInFrame(frame.get(), "", DT_BYTE); }));
}

TEST(TypedScalar, StaysWhenThereIsNoMemoryForOneOfAnotherType)
{
    std::vector<ComponentParts> parts(1);
    parts[0].name = "TS:a";
    parts[0].type = DT_BYTE;
    parts[0].planes.emplace_back(CreatePlane(DT_BYTE, 1, 1));
    const auto frame = buildFrame({FrameKind::Image, 0xFFFFFFFF, 0xFFFFFFFF, 1, 1}, std::move(parts));
    const I_Component* scalar = frame->GetComponent(0);
    EXPECT_THROW(CreateTypedScalarInFrame(frame.get(), "a", DT_DOUBLE), std::bad_alloc);
    EXPECT_EQ(C_TypedScalarFrame(frame.get(), "a").GetComponent(0), scalar);
}

TEST(Buffer, RefusesAFrameThatABufferHolds)
{
    const std::unique_ptr<I_Buffer> buffer(CreateBuffer());
    const std::unique_ptr<I_Buffer> other(CreateBuffer());
    I_Frame* frame = CreateImageFrame(DT_WORD, 3, 2, 1);
    buffer->AddFrame(frame);
    for (I_Buffer* target : {buffer.get(), other.get()}) {
        EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Frame belongs to a buffer already",
                                                      [&] { target->AddFrame(frame); }));
    }
    EXPECT_EQ(buffer->GetFrameCount(), 1U);
    EXPECT_EQ(other->GetFrameCount(), 0U);
}

TEST(Buffer, OwnsItsFramesInOrder)
{
    const std::unique_ptr<I_Buffer> buffer(CreateBuffer());
    I_Frame* first = CreateImageFrame(DT_WORD, 3, 2, 1);
    I_Frame* second = CreateVectorFrame2C(3, 2, 1, 1);
    buffer->AddFrame(first);
    buffer->AddFrame(second);
    EXPECT_EQ(buffer->GetFrameCount(), 2U);
    EXPECT_EQ(buffer->GetFrame(1), second);
    EXPECT_EQ(buffer->GetFrame(2), nullptr);
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Frame is NULL", [&] { buffer->AddFrame(nullptr); }));
    buffer->SetName(QStringLiteral("Düse"));
    buffer->CreateAttribute("Kept", AT_STRING);
    buffer->Clear();
    EXPECT_EQ(buffer->GetFrameCount(), 0U);
    EXPECT_EQ(buffer->GetName(), QStringLiteral("Düse"));
    EXPECT_NE(buffer->FindAttribute("Kept"), nullptr);
}

TEST(Buffer, TellsEveryChangeButThoseOfPixels)
{
    const std::unique_ptr<I_Buffer> buffer(CreateBuffer());
    EXPECT_FALSE(buffer->IsModified(0));
    auto* frame = CreateVectorFrame2C(3, 2, 1, 1);
    buffer->AddFrame(frame);
    EXPECT_TRUE(buffer->IsModified(0));
    EXPECT_FALSE(buffer->IsModified(1));
    auto* text = dynamic_cast<I_Attribute<QString>*>(frame->CreateAttribute("a", AT_STRING));
    I_Component* u = frame->GetComponent(I_FrameVector::COMPONENT_U);
    const std::map<std::string, std::function<void()>> changes{
        {"grid", [&] { frame->SetGridZ(3); }},
        {"frame scale", [&] { frame->SetScaleY(frame->GetScaleX()); }},
        {"component scale", [&] { u->SetScale(frame->GetScaleX()); }},
        {"text", [&] { text->SetValue(QStringLiteral("t")); }},
        {"component", [&] { CreateTypedScalarInFrame(frame, "s", DT_BYTE); }},
        {"fewer components", [&] { frame->ClearTypedScalars(); }},
        {"mask", [&] { frame->AddMask({}); }},
        {"name", [&] { buffer->SetName(QStringLiteral("n")); }},
        {"new attribute", [&] { buffer->CreateAttribute("b", AT_PLANE); }},
        {"group", [&] { frame->RemoveAttribute("a*"); }},
        {"fewer frames", [&] { buffer->Clear(); }}};
    const std::vector<std::string> order{
        "grid", "frame scale", "component scale", "text",  "component",   "fewer components",
        "mask", "name",        "new attribute",   "group", "fewer frames"};
    for (const auto& name : order) {
        SCOPED_TRACE(name);
        buffer->SetModified(false);
        EXPECT_FALSE(buffer->IsModified(0));
        changes.at(name)();
        EXPECT_TRUE(buffer->IsModified(0));
    }
}

TEST(BuffersEqual, NamesTheFirstDifference)
{
    const auto make = [](unsigned short pixel, const char* text, double offset) {
        std::unique_ptr<I_Buffer> buffer(CreateBuffer());
        auto* frame = CreateImageFrame(DT_WORD, 3, 2, 2);
        std::fill_n(static_cast<unsigned short*>(frame->GetPlane(0, 0)->GetData()), 6, pixel);
        std::fill_n(static_cast<unsigned short*>(frame->GetPlane(0, 1)->GetData()), 6, pixel);
        static_cast<unsigned short*>(frame->GetPlane(0, 1)->GetData())[4] =
            static_cast<unsigned short>(pixel * 2);
        frame->SetScaleZ({1.0, offset, {}, {}});
        dynamic_cast<I_Attribute<QString>&>(*frame->CreateAttribute("Time", AT_STRING))
            .SetValue(QString::fromUtf8(text));
        buffer->AddFrame(frame);
        return buffer;
    };
    const auto difference = [&](const I_Buffer& other) {
        return std::string(TestSupport::buffersEqual(*make(0, "t", 0.0), other).message());
    };
    EXPECT_EQ(difference(*make(0, "t", 0.0)), "");
    EXPECT_EQ(difference(*make(0, "u", 0.0)), "frame 0, attribute 'Time', text: \"t\" != \"u\"");
    EXPECT_EQ(difference(*make(0, "t", -0.0)), "frame 0, scale Z: factor or offset: 1, 0 != 1, -0");
    auto other = make(0, "t", 0.0);
    static_cast<unsigned short*>(other->GetFrame(0)->GetPlane(0, 1)->GetData())[4] = 7;
    EXPECT_EQ(difference(*other), "frame 0, component 'PIXEL', plane 1, pixel (1, 1): 0 != 7");
    static_cast<unsigned short*>(other->GetFrame(0)->GetPlane(0, 1)->GetData())[4] = 0;
    other->GetFrame(0)->AddMask({});
    EXPECT_EQ(difference(*other), "frame 0, component 'MASK', only in the second");
}

} // namespace
