// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/FrameBuilder.h"

#include "Core/Buffer/StoredFrame.h"
#include "Core/Common/SystemInfo.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace BufferApi
{

namespace
{

std::unique_ptr<StoredFrame> emptyFrame(const FrameShape& shape)
{
    switch (shape.kind) {
    case FrameKind::Image:
        return std::make_unique<ImageFrame>(shape);
    case FrameKind::Rgb:
        return std::make_unique<RgbFrame>(shape);
    case FrameKind::Vector2C:
        return std::make_unique<VectorFrame<I_FrameVector2C>>(shape);
    case FrameKind::Vector3C:
        return std::make_unique<VectorFrame<I_FrameVector3C>>(shape);
    }
    RTE::raise(RTE::LogicError(QStringLiteral("Unknown frame kind")));
}

/// U, V and W as far as the kind has them.
std::vector<std::string> vectorNames(FrameKind kind)
{
    if (!isVectorKind(kind)) {
        return {};
    }
    std::vector<std::string> names{I_FrameVector::COMPONENT_U, I_FrameVector::COMPONENT_V};
    if (kind == FrameKind::Vector3C) {
        names.push_back(I_FrameVector::COMPONENT_W);
    }
    return names;
}

bool fits(const ComponentParts& parts, unsigned int depth)
{
    return parts.planes.size() == depth &&
           std::all_of(parts.planes.begin(), parts.planes.end(), [&](const auto& plane) {
               return plane && plane->GetDataType() == parts.type &&
                      plane->GetWidth() == parts.planes.front()->GetWidth() &&
                      plane->GetHeight() == parts.planes.front()->GetHeight();
           });
}

/// Refuses what the machine has no memory for, before a part of it is taken plane by plane.
void checkSize(const FrameShape& shape, E_DataType type)
{
    // What the store has beside the pixels of each plane, about.
    constexpr unsigned long long bytesAroundPlane = 256;
    const unsigned long long others = isVectorKind(shape.kind) ? 2 : 1;
    const unsigned long long components = vectorNames(shape.kind).size() * shape.choices + others;
    const auto product = [](unsigned long long a, unsigned long long b) {
        unsigned long long result = 0;
        return __builtin_mul_overflow(a, b, &result) ? std::numeric_limits<unsigned long long>::max()
                                                     : result;
    };
    const unsigned long long pixels = product(1ULL * shape.width * shape.height, GetDataTypeSize(type));
    const unsigned long long plane = std::max(pixels, pixels + bytesAroundPlane);
    const unsigned long long kilobytes = RTE::C_SystemInfo::GetInstance().GetMemoryTotal();
    if (kilobytes != 0 && product(plane, product(components, shape.depth)) / 1024 > kilobytes) {
        RTE::raise(RTE::InvalidArgumentError(
            QStringLiteral("Frame of %1 x %2 x %3 points and %4 choices is larger than the memory")
                .arg(shape.width)
                .arg(shape.height)
                .arg(shape.depth)
                .arg(shape.choices)));
    }
}

void addFilled(StoredFrame& frame, const std::string& name, E_DataType type, unsigned char value)
{
    frame.AddComponent(name, type, {});
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        fillBytes(*frame.GetComponent(name)->GetPlane(z), value);
    }
}

void addVectors(StoredFrame& frame)
{
    for (unsigned int choice = 0; choice < frame.shape().choices; ++choice) {
        for (const std::string& name : vectorNames(frame.shape().kind)) {
            addFilled(frame, choiceComponentName(name, choice), DT_FLOAT, 0);
        }
    }
    addFilled(frame, I_FrameVector::COMPONENT_ENABLED, DT_BYTE, 1);
    addFilled(frame, I_FrameVector::COMPONENT_ACTIVE_CHOICE, DT_INT32, 0);
}

} // namespace

std::unique_ptr<I_Frame> buildFrame(const FrameShape& shape, std::vector<ComponentParts> components)
{
    auto frame = emptyFrame(shape);
    for (ComponentParts& parts : components) {
        if (!fits(parts, shape.depth)) {
            RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Planes of component '%1' do not fit")
                                                     .arg(QString::fromStdString(parts.name))));
        }
        StoredComponent& component = frame->append(parts.name, parts.type, std::move(parts.planes));
        if (parts.scale) {
            component.SetScale(*parts.scale);
        }
    }
    return frame;
}

std::unique_ptr<I_Frame> createFrame(const FrameShape& shape, E_DataType type,
                                     const std::vector<void*>& pixels)
{
    if (pixels.empty()) {
        checkSize(shape, type);
    }
    auto frame = emptyFrame(shape);
    if (isVectorKind(shape.kind)) {
        addVectors(*frame);
    } else {
        frame->AddComponent(I_FrameImage::COMPONENT_PIXEL, type, pixels);
    }
    return frame;
}

FrameShape frameShape(const I_Frame& frame)
{
    FrameShape shape{FrameKind::Image, frame.GetWidth(), frame.GetHeight(), frame.GetDepth(), 1};
    if (const auto* vectors = dynamic_cast<const I_FrameVector*>(&frame)) {
        shape.kind = dynamic_cast<const I_FrameVector3C*>(&frame) ? FrameKind::Vector3C : FrameKind::Vector2C;
        shape.choices = vectors->GetChoiceCount();
    } else if (dynamic_cast<const I_FrameRGB32*>(&frame)) {
        shape.kind = FrameKind::Rgb;
    } else if (!dynamic_cast<const I_FrameImage*>(&frame)) {
        RTE::raise(RTE::LogicError(QStringLiteral("Unknown frame class")));
    }
    return shape;
}

std::string choiceComponentName(const std::string& name, unsigned int choice)
{
    return choice == 0 ? name : name + std::to_string(choice);
}

bool isVectorComponent(const FrameShape& shape, const std::string& name)
{
    for (const std::string& component : vectorNames(shape.kind)) {
        if (name.starts_with(component)) {
            unsigned int choice = 0;
            std::from_chars(name.data() + component.size(), name.data() + name.size(), choice);
            return choice < shape.choices && name == choiceComponentName(component, choice);
        }
    }
    return false;
}

} // namespace BufferApi
