// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldFromFrame.h"

#include "Core/Buffer/LazyPlane.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
#include "Core/DataObjects/Latin1.h"
#include "Core/DataObjects/ScalarFieldOnFrame.h"
#include "Core/DataObjects/ScalarFieldsOnFrame.h"
#include "Core/DataObjects/TypedScalars.h"

namespace DataObjects
{

namespace
{

[[noreturn]] void raiseNamed(const char* text, const std::string& name,
                             RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::raise(RTE::VerificationFailed(QString::fromLatin1(text).arg(Private::fromLatin1(name))), location);
}

BufferApi::I_PlaneBase& planeOf(const BufferApi::I_Frame& frame, const std::string& name, unsigned int z)
{
    return Private::typedScalarPlane(*Private::findTypedScalar(frame, name), z);
}

void verifyMovable(const BufferApi::I_PlaneBase& plane, const Math::Size2T<unsigned int>& size)
{
    Private::visitTypedScalar(plane.GetDataType(), [](auto /*tag*/) {});
    RTE::verify(Math::Size2T<unsigned int>(plane.GetWidth(), plane.GetHeight()) == size,
                "Source scalar field has wrong size.");
    RTE::verify(plane.GetData() != nullptr, "data-pointer is null");
}

} // namespace

bool ContainsScalarField(const BufferApi::I_Frame& frame, const std::string& name)
{
    return Private::findTypedScalar(frame, name) != nullptr;
}

std::unique_ptr<ScalarFieldVariant> GetScalarField(const BufferApi::I_Frame& frame, const std::string& name,
                                                   unsigned int plane)
{
    const BufferApi::I_Component* const component = Private::findTypedScalar(frame, name);
    if (component == nullptr) {
        raiseNamed("No scalar field of name '%1' found.", name);
    }
    const BufferApi::I_PlaneBase* const source = component->GetPlane(plane);
    if (source == nullptr) {
        raiseNamed("No scalar field of name '%1' found for given plane.", name);
    }
    const auto copy = [&](auto tag) -> std::unique_ptr<ScalarFieldVariant> {
        using T = typename decltype(tag)::type;
        ImageData<T> pixels(source->GetWidth(), source->GetHeight());
        BufferApi::readPlane(*source, pixels.begin());
        return std::make_unique<ScalarField<T>>(std::move(pixels), component->GetScale());
    };
    return Private::visitTypedScalar(source->GetDataType(), copy);
}

std::unique_ptr<ScalarFields> GetScalarFields(BufferApi::I_Frame& frame, unsigned int plane)
{
    return std::make_unique<Private::ScalarFieldsOnFrame>(frame, plane);
}

void MoveScalarFieldFromFrame(ScalarFields& fields, BufferApi::I_Frame&& frame, unsigned int plane)
{
    const std::vector<std::string> names = Private::typedScalarNames(frame);
    for (const std::string& name : names) {
        verifyMovable(planeOf(frame, name, plane), fields.GetSizeOfScalarFields());
    }
    for (const std::string& name : names) {
        const auto move = [&](auto tag) -> std::unique_ptr<ScalarFieldVariant> {
            using Field = Private::ScalarFieldMovedFromFrame<typename decltype(tag)::type>;
            return std::make_unique<Field>(std::move(frame), name, plane);
        };
        auto field = Private::visitTypedScalar(planeOf(frame, name, plane).GetDataType(), move);
        fields.Add(Private::fromLatin1(name), std::move(field));
    }
}

} // namespace DataObjects
