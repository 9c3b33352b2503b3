// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldsOnFrame.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/Latin1.h"
#include "Core/DataObjects/ScalarFieldOnFrame.h"
#include "Core/DataObjects/ScalarFieldToFrame.h"
#include "Core/DataObjects/TypedScalars.h"

#include <algorithm>

namespace DataObjects::Private
{

namespace
{

constexpr const char* wrongSize = "Source scalar field has wrong size.";
constexpr const char* inconsistent = "Inconsistent scalar fields beween DataObjects and I_Frame.";

/// The name as the frame gives it back.
QString stored(const QString& name)
{
    return fromLatin1(toLatin1(name));
}

QList<QString> sorted(QList<QString> names)
{
    std::sort(names.begin(), names.end());
    return names;
}

/// \throws RTE::Exception "Unsupported scalar field type" unless it has one of the six types
/// \throws RTE::VerificationFailed "data-pointer is null" when its pixels were given up
void verifyReadable(const ScalarFieldVariant& field)
{
    const auto verifyPixels = [&](auto tag) {
        const auto pixels = CastScalarFieldTo<typename decltype(tag)::type>(field).GetSharedDataT();
        RTE::verify(pixels != nullptr && pixels->GetRawPointer() != nullptr, "data-pointer is null");
    };
    PixelTypes::visit(static_cast<int>(field.GetDataType()), verifyPixels,
                      [] { return RTE::Exception(QStringLiteral("Unsupported scalar field type")); });
}

/// Calls `visitor` with the field when it is a view of the plane; false when it is none.
template <typename Visitor>
bool visitView(ScalarFieldVariant& field, const BufferApi::I_PlaneBase& plane, Visitor visitor)
{
    return visitTypedScalar(plane.GetDataType(), [&](auto tag) {
        auto* const view = dynamic_cast<ScalarFieldOnFrame<typename decltype(tag)::type>*>(&field);
        const bool isView = view != nullptr && view->looksAt(plane);
        if (isView) {
            visitor(*view);
        }
        return isView;
    });
}

} // namespace

ScalarFieldsOnFrame::ScalarFieldsOnFrame(BufferApi::I_Frame& frame, unsigned int plane)
    : ScalarFields(frame.GetWidth(), frame.GetHeight()), m_frame(&frame), m_plane(plane)
{
    for (const QString& name : ScalarFieldsOnFrame::GetNames()) {
        findAndEnter(name);
    }
}

ScalarFieldsOnFrame::~ScalarFieldsOnFrame() = default;

ScalarFields& ScalarFieldsOnFrame::operator=(const ScalarFields& source)
{
    if (this == &source) {
        return *this;
    }
    RTE::verify(source.GetSizeOfScalarFields() == GetSizeOfScalarFields(),
                "Source's frame size must be identical to target's frame size.");
    const QList<QString> surplus = namesLackedBy(source);
    RTE::verify(surplus.isEmpty() || hasOnePlane(),
                "Assignment not possible: Removing scalar fields of multi-plane-frames is not supported.");
    verifyAssignable(source);
    // The source may hold views of what is removed; it lives on here until all is copied.
    const ScalarFieldMap before = ScalarFields::GetMapping();
    std::for_each(surplus.begin(), surplus.end(), [this](const QString& name) { Remove(name); });
    for (const QString& name : source.GetNames()) {
        Add(name, *source.Get(name));
    }
    return *this;
}

ScalarFieldsOnFrame& ScalarFieldsOnFrame::operator=(const ScalarFieldsOnFrame& source)
{
    *this = static_cast<const ScalarFields&>(source);
    return *this;
}

unsigned int ScalarFieldsOnFrame::size() const
{
    return static_cast<unsigned int>(typedScalarNames(*m_frame).size());
}

bool ScalarFieldsOnFrame::empty() const
{
    return size() == 0;
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::operator[](const QString& name)
{
    auto field = findAndEnter(name);
    if (field == nullptr) {
        raiseNoKey();
    }
    return field;
}

std::shared_ptr<const ScalarFieldVariant> ScalarFieldsOnFrame::operator[](const QString& name) const
{
    auto field = find(name);
    if (field == nullptr) {
        raiseNoKey();
    }
    return field;
}

ScalarFieldMap::const_iterator ScalarFieldsOnFrame::begin() const
{
    ThrowOnIntegrityCheckFailure();
    for (const QString& name : GetNames()) {
        RTE::verify(known(name, *findTypedScalar(*m_frame, toLatin1(name))) != nullptr, inconsistent);
    }
    return ScalarFields::begin();
}

ScalarFieldMap::iterator ScalarFieldsOnFrame::begin()
{
    ThrowOnIntegrityCheckFailure();
    for (const QString& name : GetNames()) {
        findAndEnter(name);
    }
    return ScalarFields::begin();
}

ScalarFieldMap::const_iterator ScalarFieldsOnFrame::end() const
{
    ThrowOnIntegrityCheckFailure();
    return ScalarFields::end();
}

ScalarFieldMap::iterator ScalarFieldsOnFrame::end()
{
    ThrowOnIntegrityCheckFailure();
    return ScalarFields::end();
}

Math::Size2T<unsigned int> ScalarFieldsOnFrame::GetSizeOfScalarFields() const
{
    return {m_frame->GetWidth(), m_frame->GetHeight()};
}

unsigned int ScalarFieldsOnFrame::GetCount() const
{
    return size();
}

bool ScalarFieldsOnFrame::Contains(const QString& name) const
{
    return findTypedScalar(*m_frame, toLatin1(name)) != nullptr;
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::Get(const QString& name)
{
    auto field = findAndEnter(name);
    if (field == nullptr) {
        raiseNotExisting(name);
    }
    return field;
}

std::shared_ptr<const ScalarFieldVariant> ScalarFieldsOnFrame::Get(const QString& name) const
{
    auto field = find(name);
    if (field == nullptr) {
        raiseNotExisting(name);
    }
    return field;
}

QList<QString> ScalarFieldsOnFrame::GetNames() const
{
    const std::vector<std::string> names = typedScalarNames(*m_frame);
    QList<QString> result;
    result.reserve(static_cast<qsizetype>(names.size()));
    std::transform(names.begin(), names.end(), std::back_inserter(result), fromLatin1);
    return result;
}

ScalarFieldMap ScalarFieldsOnFrame::GetMapping() const
{
    ScalarFieldMap map;
    for (const QString& name : GetNames()) {
        map[name] = find(name);
    }
    return map;
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::Add(const QString& name, ScalarFieldVariant&& field)
{
    return Add(name, std::as_const(field));
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::Add(BufferApi::E_DataType type, const QString& name,
                                                             void* data)
{
    RTE::verify(data == nullptr, "ScalarFieldsOnFrame::Add does not allow transfer of ownership.");
    if (!PixelTypes::contains(type)) {
        RTE::raise(RTE::Exception(QStringLiteral("Unsupported scalar data type")));
    }
    return addZeros(type, name);
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::Add(const QString& name,
                                                             std::unique_ptr<ScalarFieldVariant> field)
{
    RTE::verify(field != nullptr, "Scalar field is null");
    return Add(name, std::as_const(*field));
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::Add(const QString& name,
                                                             const ScalarFieldVariant& field)
{
    RTE::verify(field.GetSize() == GetSizeOfScalarFields(), wrongSize);
    ScalarFieldMap::verifyName(name);
    if (Contains(name)) {
        Set(name, field);
    } else {
        CopyScalarFieldToFrameTypedScalar(field, *m_frame, toLatin1(name), m_plane);
    }
    return Get(name);
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::Add(const QString& name, float value)
{
    auto field = addZeros(BufferApi::DT_FLOAT, name);
    CastScalarFieldTo<float>(*field).GetDataT().Fill(value);
    return field;
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::Add(const QString& name)
{
    return addZeros(BufferApi::DT_FLOAT, name);
}

void ScalarFieldsOnFrame::Set(const QString& name, const ScalarFieldVariant& field)
{
    Get(name)->DeepCopyFrom(field);
}

void ScalarFieldsOnFrame::Remove(const QString& name)
{
    RTE::verify(hasOnePlane(), "Removing scalar fields of multi-plane-frames is not supported.");
    if (BufferApi::I_Component* const component = findTypedScalar(*m_frame, toLatin1(name))) {
        leavePixelsToHolders(name, *component);
        m_frame->RemoveComponent(m_frame->GetComponentIndex(component->GetName()));
    }
    ScalarFields::Remove(stored(name));
}

void ScalarFieldsOnFrame::Clear()
{
    RTE::verify(hasOnePlane(), "Clearing scalar fields of multi-plane-frames is not supported.");
    for (const QString& name : GetNames()) {
        Remove(name);
    }
    ScalarFields::Clear();
}

/// The field that the map has while it looks at the frame's plane, else a new view; null when the frame has
/// no such typed scalar.
std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::find(const QString& name) const
{
    const std::string key = toLatin1(name);
    BufferApi::I_Component* const component = findTypedScalar(*m_frame, key);
    if (component == nullptr) {
        return nullptr;
    }
    if (auto field = known(name, *component)) {
        return field;
    }
    const BufferApi::I_PlaneBase& plane = typedScalarPlane(*component, m_plane);
    RTE::verify(Math::Size2T<unsigned int>(plane.GetWidth(), plane.GetHeight()) == GetSizeOfScalarFields(),
                wrongSize);
    const auto view = [&](auto tag) -> std::shared_ptr<ScalarFieldVariant> {
        using Field = ScalarFieldOnFrame<typename decltype(tag)::type>;
        return std::make_shared<Field>(*m_frame, key, m_plane);
    };
    return visitTypedScalar(plane.GetDataType(), view);
}

/// Meanwhile the scale may have been changed by the field of another plane. Even the component may be another
/// one, made by another view, whose pixels happen to lie where those of the last one were.
std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::known(const QString& name,
                                                               BufferApi::I_Component& component) const
{
    const QString key = stored(name);
    if (!ScalarFields::Contains(key)) {
        return nullptr;
    }
    auto field = std::const_pointer_cast<ScalarFieldVariant>(ScalarFields::Get(key));
    const bool isView =
        visitView(*field, typedScalarPlane(component, m_plane), [&](auto& view) { view.link(component); });
    return isView ? field : nullptr;
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::findAndEnter(const QString& name)
{
    auto field = find(name);
    return field == nullptr ? nullptr : put(stored(name), std::move(field));
}

std::shared_ptr<ScalarFieldVariant> ScalarFieldsOnFrame::addZeros(BufferApi::E_DataType type,
                                                                  const QString& name)
{
    RTE::verify(!name.isEmpty(), "empty scalar field name is not allowed.");
    const BufferApi::I_Component* const existing = findTypedScalar(*m_frame, toLatin1(name));
    if (existing != nullptr && existing->GetDataType() == type) {
        auto field = Get(name);
        field->InitializeWithZeros();
        return field;
    }
    verifyPlaneIndex(*m_frame, m_plane);
    if (existing != nullptr) {
        Remove(name);
    }
    BufferApi::CreateTypedScalarInFrame(m_frame, toLatin1(name), type);
    return Get(name);
}

QList<QString> ScalarFieldsOnFrame::namesLackedBy(const ScalarFields& source) const
{
    QList<QString> kept = source.GetNames();
    std::transform(kept.begin(), kept.end(), kept.begin(), stored);
    QList<QString> names = GetNames();
    names.removeIf([&](const QString& name) { return kept.contains(name); });
    return names;
}

void ScalarFieldsOnFrame::verifyAssignable(const ScalarFields& source) const
{
    for (const QString& name : source.GetNames()) {
        const auto field = source.Get(name);
        verifyReadable(*field);
        RTE::verify(!Contains(name) || Get(name)->HasSameType(*field), "bad scalar field cast");
    }
}

bool ScalarFieldsOnFrame::hasOnePlane() const
{
    return m_frame->GetDepth() == 1;
}

/// Before a component goes: whoever holds its field goes on with the memory.
void ScalarFieldsOnFrame::leavePixelsToHolders(const QString& name, BufferApi::I_Component& component)
{
    if (const auto field = known(name, component)) {
        BufferApi::I_PlaneBase& plane = typedScalarPlane(component, m_plane);
        visitView(*field, plane, [&](auto& view) { view.takeMemory(plane); });
    }
}

void ScalarFieldsOnFrame::ThrowOnIntegrityCheckFailure() const
{
    RTE::verify(sorted(GetNames()) == sorted(ScalarFields::GetNames()), inconsistent);
}

} // namespace DataObjects::Private
