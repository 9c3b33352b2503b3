// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/ImageFrames.h"

#include "Core/Buffer/C_TypedScalarFrame.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Tests/Support/SampleBuffers.h"

#include <gtest/gtest.h>

namespace TestSupport
{

namespace
{

using namespace BufferApi;

/// The bytes of a mask are 0 or 1.
void makeMaskBinary(I_Frame& frame)
{
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        auto* const bytes = static_cast<unsigned char*>(memoryOf(frame, I_Frame::COMPONENT_MASK, z));
        std::for_each(bytes, bytes + 1ULL * frame.GetWidth() * frame.GetHeight(),
                      [](unsigned char& byte) { byte &= 1U; });
    }
}

} // namespace

std::unique_ptr<I_FrameImage> imageFrame(E_DataType type, unsigned int depth, unsigned int seed)
{
    std::unique_ptr<I_FrameImage> frame(CreateImageFrame(type, 31, 17, depth));
    frame->AddMask({});
    CreateTypedScalarInFrame(frame.get(), "Peak ratio", DT_FLOAT);
    CreateTypedScalarInFrame(frame.get(), "Height", DT_WORD);
    C_TypedScalarFrame(frame.get(), "Peak ratio").SetLinearScale(1.0, 0.5, "", "Peak ratio");
    C_TypedScalarFrame(frame.get(), "Height").SetLinearScale(0.25, 1.0, "mm", "Height");
    fillWithNoise(*frame, seed);
    makeMaskBinary(*frame);
    frame->SetScaleX({0.02, -3.0, "mm", "x"});
    frame->SetScaleY({-0.04, 5.0, "mm", "y"});
    frame->SetScaleZ({1.5, static_cast<double>(seed), "mm", "z"});
    frame->SetScaleI({0.1, -7.0, "K", "Temperature"});
    DataObjects::BufferAttributes attributes(*frame);
    attributes.set("Acq.Gain", 2.5);
    attributes.set("Operator", QStringLiteral("é %1").arg(seed));
    attributes.set("Times", std::vector<float>{0.5F, 1.5F});
    return frame;
}

std::unique_ptr<I_Buffer> imageBuffer(E_DataType type, unsigned int depth, unsigned int frames)
{
    std::unique_ptr<I_Buffer> buffer(CreateBuffer());
    for (unsigned int seed = 1; seed <= frames; ++seed) {
        buffer->AddFrame(imageFrame(type, depth, seed).release());
    }
    buffer->SetName("Recording");
    DataObjects::BufferAttributes(*buffer).set("Project", QStringLiteral("Jet"));
    return buffer;
}

I_FrameImage& imageFrameOf(const I_Buffer& buffer, unsigned int frame)
{
    return dynamic_cast<I_FrameImage&>(*buffer.GetFrame(frame));
}

void removeMask(I_Frame& frame)
{
    frame.RemoveComponent(frame.GetComponentIndex(I_Frame::COMPONENT_MASK));
}

void* memoryOf(const I_Frame& frame, const std::string& component, unsigned int z)
{
    const I_Component* const found = frame.GetComponent(component);
    const I_PlaneBase* const plane = found != nullptr ? found->GetPlane(z) : nullptr;
    return plane != nullptr ? plane->GetData() : nullptr;
}

void* pixelsOf(const I_Frame& frame, unsigned int z)
{
    return memoryOf(frame, I_FrameImage::COMPONENT_PIXEL, z);
}

std::unique_ptr<I_FrameImage> newFrame(E_DataType type, unsigned int width, unsigned int height,
                                       unsigned int depth)
{
    return std::unique_ptr<I_FrameImage>(CreateImageFrame(type, width, height, depth));
}

const I_FrameImage& onlyFrame(const std::unique_ptr<I_FrameImage>& frame)
{
    return *frame;
}

const I_FrameImage& onlyFrame(const std::unique_ptr<I_Buffer>& buffer)
{
    EXPECT_EQ(buffer->GetFrameCount(), 1U);
    return imageFrameOf(*buffer, 0);
}

ComponentParts onePlane(const std::string& name, E_DataType type, unsigned int width, unsigned int height)
{
    ComponentParts parts;
    parts.name = name;
    parts.type = type;
    parts.planes.emplace_back(CreatePlane(type, width, height));
    return parts;
}

} // namespace TestSupport
